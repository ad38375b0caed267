// What the whole process does without being asked, set once at its start.
#pragma once

namespace win32 {

// A look at an empty drive, or at a file that cannot be opened, fails without a box that asks for a disk.
void failWithoutBoxes();

// Libraries that are loaded by name later, by Windows for the program too, come from the system folder and
// not from the current one, PATH or, from Windows 8 (or 7 with its update KB2533623) on, the program's own;
// before, from XP SP1 on, not from the current folder. Older ones stay as they are. The program's own
// components are named in full by the manifest or the registry.
void useSystemLibrariesOnly();

}  // namespace win32
