# Lists what starts with you. PowerShell hands over [out] arguments with [ref].
$HKCU = [int]0x80000001
$runKey = 'Software\Microsoft\Windows\CurrentVersion\Run'

$registry = New-Object -ComObject Helmkit.RegistryAccess
$names = $null
$registry.EnumValues($HKCU, $runKey, [ref]$names)
foreach ($name in $names) {
    $command = ''
    $status = 0
    $registry.ReadValue($HKCU, $runKey, $name, [ref]$command, [ref]$status)
    if ($status -eq 0) { "${name}: $command" }
}
