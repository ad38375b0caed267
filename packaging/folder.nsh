; Where the program goes, and who may write there.

Var InstalledFolder ; of an earlier setup, empty without one

; Below Program Files the inherited rights are right. A folder of the command line may lie where everybody can write: on
; the NT family it is made for administrators to write and users to read, and one that was there before must be empty,
; since whoever made it may have put a library there that the program would load.
Function MakeFolder
  ${If} $INSTDIR == ""
    StrCpy $INSTDIR $InstalledFolder
  ${EndIf}
  ${If} $INSTDIR == ""
    Call DefaultFolder
    CreateDirectory $INSTDIR
  ${ElseIf} $INSTDIR != $InstalledFolder
    Call RefuseFilledFolder
    CreateDirectory $INSTDIR
    ${If} ${IsNT}
      Call ProtectFolder
      ; Again: until now others could write there.
      Call RefuseFilledFolder
    ${EndIf}
  ${EndIf}
FunctionEnd

Function DefaultFolder
  ${If} $Architecture == "x64"
    StrCpy $INSTDIR "$PROGRAMFILES64\Quillon"
  ${Else}
    StrCpy $INSTDIR "$PROGRAMFILES\Quillon"
  ${EndIf}
FunctionEnd

Function RefuseFilledFolder
  FindFirst $0 $1 "$INSTDIR\*.*"
  ${DoWhile} $1 != ""
    ${If} $1 != "."
    ${AndIf} $1 != ".."
      FindClose $0
      MessageBox MB_OK|MB_ICONSTOP "The folder $INSTDIR is not empty." /SD IDOK
      Call GiveUp
    ${EndIf}
    FindNext $0 $1
  ${Loop}
  FindClose $0
FunctionEnd

; Owner administrators; nothing inherited; system and administrators everything, users reading and running.
!define FOLDER_RIGHTS "O:BAD:PAI(A;OICI;FA;;;SY)(A;OICI;FA;;;BA)(A;OICI;0x1200a9;;;BU)"
!define OWNER_AND_PROTECTED_RIGHTS 0x80000005

Function ProtectFolder
  System::Call 'advapi32::ConvertStringSecurityDescriptorToSecurityDescriptorA(t "${FOLDER_RIGHTS}", i 1, *p .r1, p 0) i .r0'
  ${If} $0 != 0
    System::Call 'advapi32::SetFileSecurityA(t "$INSTDIR", i ${OWNER_AND_PROTECTED_RIGHTS}, p r1) i .r0'
    System::Call 'kernel32::LocalFree(p r1)'
  ${EndIf}
  ${If} $0 == 0
    MessageBox MB_OK|MB_ICONSTOP "The rights of the folder $INSTDIR could not be set." /SD IDOK
    RMDir $INSTDIR
    Call GiveUp
  ${EndIf}
FunctionEnd

; Nothing has been installed yet but the first line of the description.
Function GiveUp
  ${If} $InstalledFolder == ""
    DeleteRegKey HKLM "${UNINSTALL_KEY}"
  ${EndIf}
  SetErrorLevel 2
  Abort
FunctionEnd
