' Lists what starts with you, with the maker of each program file that is named in full.  cscript //nologo startup.vbs
Option Explicit

Const HKCU = &H80000001
Const RunKey = "Software\Microsoft\Windows\CurrentVersion\Run"

Dim registry, files, system, names, name, command, status, exists, info
Set registry = CreateObject("Helmkit.RegistryAccess")
Set files = CreateObject("Helmkit.FileServices")
Set system = CreateObject("Helmkit.SystemServices")

registry.EnumValues HKCU, RunKey, names
For Each name In names
    registry.ReadValue HKCU, RunKey, name, command, status
    If status = 0 Then
        files.FileExists command, exists
        If exists Then
            system.GetFileVersionInfo command, info
            WScript.Echo name & ": " & command & " by " & info("CompanyName")
        Else
            WScript.Echo name & ": " & command
        End If
    End If
Next
