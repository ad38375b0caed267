// What JScript can use: everything that comes back as a result. It has no way to take [out] arguments, so ReadValue and
// the other operations with several results are for the other languages.  cscript //nologo values.js
var HKCU = 0x80000001 | 0; // hives are 32-bit numbers with a sign
var runKey = "Software\\Microsoft\\Windows\\CurrentVersion\\Run";

var registry = new ActiveXObject("Helmkit.RegistryAccess");
var system = new ActiveXObject("Helmkit.SystemServices");

WScript.Echo("Windows is in " + system.GetWindowsFolder());
WScript.Echo("Type of the value Sample: " + registry.ValueType(HKCU, runKey, "Sample"));
WScript.Echo("Type of a missing value: " + registry.ValueType(HKCU, runKey, "not there"));

var records = new ActiveXObject("Helmkit.RecordList");
var record = records.AddRecord();
record.SetName("entry");
record.SetField("Name", "Sample");
record.SetField("Size", 12);
WScript.Echo(records.Count + " record, " + record.Name + ": " + record.Field("Name").Value + ", " + record.Field("Size").Value);

WScript.Echo(system.XmlEscape("<a & b>") + " " + system.EncodeBinaryText("abc"));

try {
    registry.ValueType(5, runKey, "Sample");
} catch (error) {
    WScript.Echo("Refused: 0x" + (error.number >>> 0).toString(16));
}
