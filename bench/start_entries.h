// The startup entries of the start figure.
#pragma once

#include <string>

namespace bench {

// Makes program files in a folder and `entries.reg` beside them: 200 entries that name them. Nothing is put
// into the registry; that is for whoever has one to spare.
void writeStartEntries(const std::wstring& folder);

}  // namespace bench
