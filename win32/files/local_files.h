// Files of this machine and those of others.
#pragma once

#include <string>

namespace win32 {

// True for a path with a drive that is this machine's own: what it names is never fetched over a network.
bool isLocal(const std::wstring& path);

}  // namespace win32
