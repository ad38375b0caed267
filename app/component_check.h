// Whether the components that the program is made of are there.
#pragma once

#include <string>

namespace app {

// Makes one object of Helmkit.dll and one of QLNCustom.dll by their class identifiers and releases them.
// False on the first that cannot be made, with a message for the user; true leaves the message alone.
bool ComponentCheck(std::wstring& message);

// How to register the components: for a Windows before XP, where the file of the one that is missing lies
// beside the program all the same. Empty otherwise. Needs neither component.
std::wstring registrationAdvice();

}  // namespace app
