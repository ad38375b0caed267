// The functions that the program looks up where newer Windows has them, each with another in its place for a
// while.
#pragma once

#include <set>
#include <string>

#include "win32/base/platform.h"

namespace looked_up {

// From the start of the process on, a look-up of `name` gives `thunk`, and `original` gets what it found.
void lead(const char* name, void* thunk, void** original);

// From now on no look-up finds a function that Windows 98 has not got.
void findAsWindows98();

// Every name that was looked up and found since the process started, as in "ReplaceFileW".
const std::set<std::string>& found();

}  // namespace looked_up

// `Tag` names a function: `struct Tag { static constexpr const char* name = "...";
// using Function = BOOL(WINAPI*)(...); };`. A LookedUp<Tag> at namespace scope leads its look-ups here. While
// `replacement` is set, it is called instead.
template <class Tag, class Function = typename Tag::Function>
class LookedUp;

template <class Tag, class Result, class... Arguments>
class LookedUp<Tag, Result(WINAPI*)(Arguments...)> {
  public:
    using Function = Result(WINAPI*)(Arguments...);

    LookedUp() {
        looked_up::lead(Tag::name, reinterpret_cast<void*>(&call), reinterpret_cast<void**>(&original));
    }

    static inline Function original = nullptr, replacement = nullptr;

  private:
    static Result WINAPI call(Arguments... arguments) {
        return (replacement ? replacement : original)(arguments...);
    }
};

// In force while it lives.
template <class Tag>
class ReplacedLookUp {
  public:
    explicit ReplacedLookUp(typename Tag::Function replacement) { LookedUp<Tag>::replacement = replacement; }
    ~ReplacedLookUp() { LookedUp<Tag>::replacement = nullptr; }
    ReplacedLookUp(const ReplacedLookUp&) = delete;
    ReplacedLookUp& operator=(const ReplacedLookUp&) = delete;
};
