' Helmkit as a script uses it, by its registered names: out arguments, lists, records, errors.
' Says "passed" at its end. The exit code tells nothing: some hosts end with 0 after an error, too.
Option Explicit

Sub Check(what, isTrue)
    If Not isTrue Then
        WScript.Echo "FAILED: " & what
        WScript.Quit 1
    End If
End Sub

Const HKCU = &H80000001
Dim registry, data, status, list, name, text
Set registry = CreateObject("Helmkit.RegistryAccess")
registry.DeleteKey HKCU, "Software\HelmkitScript", status
registry.WriteValue HKCU, "Software\HelmkitScript", "one", "first", status
Check "written", status = 0
registry.WriteValue HKCU, "Software\HelmkitScript", "two", "second", status
registry.ReadValue HKCU, "Software\HelmkitScript", "one", data, status
Check "read", data = "first" And status = 0
Check "type", registry.ValueType(HKCU, "Software\HelmkitScript", "one") = 1
registry.EnumValues HKCU, "Software\HelmkitScript", list
Check "counted", list.Count = 2
Check "by position", list.Item(2) = "two"
Check "by key", list.Item("one") = "one" And list("one") = "one"
text = ""
For Each name In list
    text = text & name & ";"
Next
Check "walked", text = "one;two;"
Dim hive, path
hive = HKCU
path = "Software\HelmkitScript"
registry.ExportKey hive, path, text
Check "exported", text = vbCrLf & "[HKEY_CURRENT_USER\Software\HelmkitScript]" & vbCrLf & _
    """one""=""first""" & vbCrLf & """two""=""second""" & vbCrLf
registry.DeleteKey HKCU, "Software\HelmkitScript", status
Check "deleted", status = 0
registry.EnumValues HKCU, "Software\HelmkitScript", list
Check "gone", list.Count = 0

Dim system, major, minor, build, version, servicePack, platform
Set system = CreateObject("Helmkit.SystemServices")
system.FormatMessage "%1 of %2", Array("a", 7), text
Check "formatted", text = "a of 7"
system.GetOSVersion version, servicePack, platform, major, minor, build
Check "version", version = major & "." & minor & "." & build
Check "identifier", Len(system.NewUniqueId()) = 36
Check "escaped", system.XmlEscape("<") = "&lt;"

Dim records, record
Set records = CreateObject("Helmkit.RecordList")
Set record = records.AddRecord()
record.SetName "item"
record.SetField "Size", 12
Check "record", records.Item(1).Name = "item" And record.Field("Size").Value = 12

On Error Resume Next
registry.ReadValue 5, "x", "y", data, status
Check "error", Err.Number <> 0
WScript.Echo "passed"
