// The environment variables that tell where Windows is.
#pragma once

namespace win32 {

// Sets windir, SystemRoot, SystemDrive, ProgramFiles and CommonProgramFiles of this process from what the
// system says; on Windows 95, 98 and Me only windir, ProgramFiles and CommonProgramFiles, since the others do
// not exist there.
//
// A plain user's variables (HKEY_CURRENT_USER\Environment) override the system's, in elevated programs too.
// So none of them is read: the Windows folder comes from GetSystemWindowsDirectory, the program folders from
// ProgramFilesDir and CommonFilesDir of HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Windows\CurrentVersion in the
// view of the whole system, else from ProgramW6432Dir and CommonW6432Dir there. What is stored nowhere is no
// variable afterwards.
void setTrustedEnvironment();

}  // namespace win32
