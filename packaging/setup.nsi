; The setup program, for every Windows from 98 on. scripts/package.sh gives it, with /D:
;   VERSION   as in 2.1.0
;   STAGE     the folder with x86\, x64\, LICENSE.txt and readme.txt
;   FILES     a script of macros that name what the folders hold (scripts/package.sh writes it)
;   OUTPUT    the file to write

; The Unicode stub needs functions that Windows 98 lacks.
Unicode false
SetCompressor /SOLID lzma
RequestExecutionLevel admin
Name "Quillon"
OutFile "${OUTPUT}"
BrandingText "Quillon ${VERSION}"
Icon "${ICON}"
UninstallIcon "${ICON}"
XPStyle on
ShowInstDetails nevershow
ShowUninstDetails nevershow
AllowRootDirInstall false
AllowSkipFiles off
; No page asks for the folder: in one that a plain user may write to, he could put a library beside a program that an
; administrator then runs. InstallDir stays empty, so that a folder of the command line (/D=) can be told from none.
LicenseData "${STAGE}/LICENSE.txt"
Page license
Page instfiles
UninstPage uninstConfirm
UninstPage instfiles

VIProductVersion "${VERSION}.0"
VIFileVersion "${VERSION}.0"
VIAddVersionKey "CompanyName" "Mardelix"
VIAddVersionKey "FileDescription" "Quillon setup"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "LegalCopyright" "Copyright 2026 the Quillon team. MIT License."
VIAddVersionKey "OriginalFilename" "Quillon-${VERSION}-setup.exe"
VIAddVersionKey "ProductName" "Quillon"
VIAddVersionKey "ProductVersion" "${VERSION}"

!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Quillon"

!include "LogicLib.nsh"
!include "WinVer.nsh"
!include "${FILES}"
!include "common.nsh"
!include "folder.nsh"

Function .onInit
  !insertmacro ChooseArchitecture
  SetShellVarContext all
  ReadRegStr $InstalledFolder HKLM "${UNINSTALL_KEY}" "InstallLocation"
  ; A second copy would take the place of the first among the installed programs.
  ${If} $INSTDIR != ""
  ${AndIf} $InstalledFolder != ""
  ${AndIf} $INSTDIR != $InstalledFolder
    MessageBox MB_OK|MB_ICONSTOP "Quillon is installed in $InstalledFolder. Uninstall it before you install it in another folder." /SD IDOK
    SetErrorLevel 2
    Quit
  ${EndIf}
FunctionEnd

Section
  ; The first thing written needs the rights that all the rest needs.
  ClearErrors
  WriteRegStr HKLM "${UNINSTALL_KEY}" "DisplayName" "Quillon"
  ${If} ${Errors}
    MessageBox MB_OK|MB_ICONSTOP "Setup must be run by an administrator." /SD IDOK
    SetErrorLevel 2
    Abort
  ${EndIf}
  Call MakeFolder
  SetOutPath $INSTDIR
  !insertmacro EachProgram MakeRoom
  !insertmacro EachLibrary MakeRoom
  ${If} $Architecture == "x64"
    !insertmacro StoreX64
  ${Else}
    !insertmacro StoreX86
  ${EndIf}
  !insertmacro RemoveDisplaced
  Call RegisterLibraries
  CreateShortCut "$SMPROGRAMS\Quillon.lnk" "$INSTDIR\Quillon.exe"
  WriteUninstaller "$INSTDIR\Uninstall.exe"
  Call DescribeInstallation
SectionEnd

; Windows XP and later find the classes in the program's manifest; before, they must be registered.
Function RegisterLibraries
  ${IfNot} ${AtLeastWinXP}
    RegDLL "$INSTDIR\Helmkit.dll"
    RegDLL "$INSTDIR\QLNCustom.dll"
    WriteRegDWORD HKLM "${UNINSTALL_KEY}" "LibrariesRegistered" 1
  ${EndIf}
FunctionEnd

Function DescribeInstallation
  WriteRegStr HKLM "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\Quillon.exe"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "Publisher" "Mardelix"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\Uninstall.exe"'
  WriteRegStr HKLM "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\Uninstall.exe" /S'
  WriteRegDWORD HKLM "${UNINSTALL_KEY}" "NoModify" 1
  WriteRegDWORD HKLM "${UNINSTALL_KEY}" "NoRepair" 1
FunctionEnd

Function un.onInit
  !insertmacro ChooseArchitecture
  SetShellVarContext all
FunctionEnd

Section Uninstall
  !insertmacro EachProgram un.MakeRoom
  ReadRegDWORD $0 HKLM "${UNINSTALL_KEY}" "LibrariesRegistered"
  ${If} $0 == 1
    UnRegDLL "$INSTDIR\QLNCustom.dll"
    UnRegDLL "$INSTDIR\Helmkit.dll"
  ${EndIf}
  !insertmacro EachLibrary un.MakeRoom
  !insertmacro RemoveDisplaced
  Delete "$SMPROGRAMS\Quillon.lnk"
  Delete "$INSTDIR\LICENSE.txt"
  Delete "$INSTDIR\readme.txt"
  Delete "$INSTDIR\Uninstall.exe"
  DeleteRegKey HKLM "${UNINSTALL_KEY}"
  Call un.AskAboutBackups
  SetOutPath $TEMP
  ; Goes only when it is empty.
  ${If} $Displaced == ""
    RMDir $INSTDIR
  ${Else}
    RMDir /REBOOTOK $INSTDIR
  ${EndIf}
SectionEnd

; They are the way back from what the program deleted, so a silent uninstall leaves them.
Function un.AskAboutBackups
  ${If} ${FileExists} "$INSTDIR\*.log"
  ${OrIf} ${FileExists} "$INSTDIR\Backup\*.*"
    MessageBox MB_YESNO|MB_ICONQUESTION|MB_DEFBUTTON2 \
      "Delete the logs and the backups of Quillon, too? Without the backups deleted startup entries cannot be restored." \
      /SD IDNO IDNO keep
    Delete "$INSTDIR\QLN.log"
    Delete "$INSTDIR\short.log"
    Delete "$INSTDIR\Backup\*.reg"
    Delete "$INSTDIR\Backup\*.ini"
    RMDir "$INSTDIR\Backup"
  keep:
  ${EndIf}
FunctionEnd
