; What the setup program and its uninstaller both do.

Var Architecture
Var Displaced ; "yes" when a file in use had to be left for the next start of Windows to delete

; The processor of Windows itself, asked of the registry: the environment is the user's, and Windows 98 has no such value.
; The key is the same in both views. Windows on ARM runs the 32-bit program on each of its versions.
!macro ChooseArchitecture
  StrCpy $Architecture "x86"
  ReadRegStr $0 HKLM "SYSTEM\CurrentControlSet\Control\Session Manager\Environment" "PROCESSOR_ARCHITECTURE"
  ${If} $0 == "AMD64"
    StrCpy $Architecture "x64"
    SetRegView 64
  ${EndIf}
!macroend

; Makes the place of the file in $R0 free. The NT family lets a running program be renamed, though not be deleted; on Windows
; 98 the user has to close it. Programs come before libraries, so that nothing is gone yet when he does not.
!macro DefineMakeRoom prefix
Function ${prefix}MakeRoom
  retry:
  ClearErrors
  Delete "$INSTDIR\$R0"
  IfErrors 0 done
  GetTempFileName $R1 $INSTDIR
  Delete $R1
  ClearErrors
  Rename "$INSTDIR\$R0" $R1
  IfErrors 0 displaced
  MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "$R0 is in use. Close Quillon, then press Retry." /SD IDCANCEL IDRETRY retry
  SetErrorLevel 2
  Abort
  displaced:
  StrCpy $Displaced "yes"
  Delete /REBOOTOK $R1
  done:
FunctionEnd
!macroend
!insertmacro DefineMakeRoom ""
!insertmacro DefineMakeRoom "un."

!macro MakeRoom name
  StrCpy $R0 "${name}"
  Call MakeRoom
!macroend
!macro un.MakeRoom name
  StrCpy $R0 "${name}"
  Call un.MakeRoom
!macroend

; What an earlier run had to leave because it was in use then.
!macro RemoveDisplaced
  Delete "$INSTDIR\ns*.tmp"
!macroend
