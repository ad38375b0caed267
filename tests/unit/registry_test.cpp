// Keys and values as they are stored, and the room that the registry's answers take.
#include "win32/registry/registry.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <string>
#include <tuple>
#include <vector>

#include "tests/support/looked_up.h"
#include "tests/support/registry_fixture.h"
#include "tests/support/text.h"
#include "win32/base/flavour.h"
#include "win32/registry/registry_buffers.h"
#include "win32/registry/registry_tree.h"

namespace {

using win32::RegistryKey;
using win32::RegistryValue;

const HKEY machine = HKEY_LOCAL_MACHINE;

// Asks for data of `size` bytes, told each time or never, and notes the rooms.
struct Data {
    std::string bytes;
    bool isTold = true;
    std::vector<DWORD> rooms = {};
    LONG operator()(BYTE* to, DWORD* size, DWORD* type) {
        const DWORD room = *size;
        rooms.push_back(room);
        if (room < bytes.size()) {
            *size = isTold ? static_cast<DWORD>(bytes.size()) : 0;
            return ERROR_MORE_DATA;
        }
        std::copy(bytes.begin(), bytes.end(), to);
        *size = static_cast<DWORD>(bytes.size());
        *type = REG_BINARY;
        return ERROR_SUCCESS;
    }
};

struct QueryKey {
    static constexpr const char* name = "NtQueryKey";
    using Function = LONG(WINAPI*)(HANDLE, int, void*, ULONG, ULONG*);
};
const LookedUp<QueryKey> queryKey;

int askedClass = 0;
// What the keys are called, in turn; none for what cannot be told.
std::vector<std::string> keyNames;

LONG WINAPI tellName(HANDLE, int information, void* bytes, ULONG room, ULONG* size) {
    askedClass = information;
    const std::string name = keyNames.front();
    keyNames.erase(keyNames.begin());
    REQUIRE(name.size() <= room);
    std::copy(name.begin(), name.end(), static_cast<char*>(bytes));
    *size = static_cast<ULONG>(name.size());
    return name.empty() ? -1 : 0;
}

struct Keys : RegistryFixture {
    RegistryKey key;
    Keys() { setString(machine, L"top", L"v", L"text"); }
    LONG query(const std::wstring& name, RegistryValue& value) {
        RegistryKey top;
        REQUIRE(top.open(machine, L"top", KEY_READ) == ERROR_SUCCESS);
        return top.query(name, value);
    }
};

}  // namespace

TEST_CASE("a name is asked for with the usual room, and with the longest one's where it is too little") {
    for (size_t length : {0, 1, 511, 512, 513, 16383, 65535}) {
        std::vector<DWORD> rooms;
        std::wstring name = L"before";
        const LONG error = win32::readName<win32::WideFlavour>(name, [&](wchar_t* text, DWORD* room) -> LONG {
            rooms.push_back(*room);
            if (length >= *room) return ERROR_MORE_DATA;
            std::fill_n(text, length, L'n');
            *room = static_cast<DWORD>(length);
            return ERROR_SUCCESS;
        });
        CHECK(error == ERROR_SUCCESS);
        CHECK(name == std::wstring(length, L'n'));
        CHECK((rooms == (length < 512 ? std::vector<DWORD>{512} : std::vector<DWORD>{512, 65536})));
    }
    std::wstring name = L"before";
    const auto answer = [&](LONG error, DWORD told) {
        return win32::readName<win32::AnsiFlavour>(name, [=](char* text, DWORD* room) {
            std::fill_n(text, std::min<DWORD>(*room, 600), 'n');
            *room = told;
            return error;
        });
    };
    CHECK(answer(ERROR_ACCESS_DENIED, 5) == ERROR_ACCESS_DENIED);
    CHECK(answer(ERROR_MORE_DATA, 5) == ERROR_MORE_DATA);
    CHECK(name == L"before");
    CHECK(answer(ERROR_SUCCESS, 600) == ERROR_SUCCESS);
    CHECK(name == std::wstring(512, L'n'));
}

TEST_CASE("data is read in the room that it is told to need, else in twice as much each time") {
    for (size_t size : {0, 1, 1023, 1024, 1025, 2047, 5000, 100000}) {
        for (bool isTold : {true, false}) {
            CAPTURE(size);
            RegistryValue value = {77, "before"};
            Data data = {std::string(size, 'd'), isTold};
            CHECK(win32::readData(value, true, [&](auto... a) { return data(a...); }) == ERROR_SUCCESS);
            CHECK(value.type == REG_BINARY);
            const bool isSame = value.data == data.bytes;
            CHECK(isSame);
            std::vector<DWORD> rooms = {1024};
            while (rooms.back() < size)
                rooms.push_back(isTold ? std::max<DWORD>(size, 2 * rooms.back()) : 2 * rooms.back());
            CHECK(data.rooms == rooms);
        }
    }
}

TEST_CASE("a size beyond the room is not believed, and a failure leaves the type") {
    RegistryValue value = {77, "before"};
    const auto ask = [&](LONG error, DWORD told, DWORD kind) {
        return win32::readData(value, kind != REG_SZ, [=](BYTE* bytes, DWORD* size, DWORD* type) {
            bytes[0] = 'a';
            bytes[1] = 'b';
            *size = told;
            *type = kind;
            return error;
        });
    };
    CHECK(ask(ERROR_FILE_NOT_FOUND, 5000, REG_DWORD) == ERROR_FILE_NOT_FOUND);
    CHECK(value.type == 77);
    CHECK(ask(ERROR_SUCCESS, 5000, REG_DWORD) == ERROR_SUCCESS);
    CHECK(value.type == REG_DWORD);
    CHECK(value.data.size() == 1024);
    // Text comes from the code page in the ANSI flavour.
    CHECK(ask(ERROR_SUCCESS, 2, REG_SZ) == ERROR_SUCCESS);
    CHECK(value.data == std::string("a\0b\0", 4));
    int calls = 0;
    const auto grown = [&](BYTE*, DWORD* size, DWORD*) -> LONG {
        if (++calls == 2) return *size = 9000, ERROR_SUCCESS;
        *size = 3000;
        return ERROR_MORE_DATA;
    };
    CHECK(win32::readData(value, true, grown) == ERROR_SUCCESS);
    CHECK(value.data.size() == 3000);
}

TEST_CASE("text data in the code page, an odd byte and other types as they are") {
    const std::string text("a\0b\0", 4);
    for (DWORD type : {REG_SZ, REG_EXPAND_SZ, REG_MULTI_SZ}) {
        CHECK(win32::isTextType(type));
        CHECK(win32::ansiData(type, text) == "ab");
        CHECK(win32::ansiData(type, text + "x") == "abx");
        CHECK(win32::wideData(type, "ab") == text);
    }
    for (DWORD type : {REG_NONE, REG_BINARY, REG_DWORD, REG_LINK}) {
        CHECK_FALSE(win32::isTextType(type));
        CHECK(win32::ansiData(type, text) == text);
        CHECK(win32::wideData(type, "ab") == "ab");
    }
    for (LONG error : {ERROR_FILE_NOT_FOUND, ERROR_PATH_NOT_FOUND, ERROR_KEY_DELETED, ERROR_BAD_PATHNAME})
        CHECK(win32::isAbsent(error));
    for (LONG error : {ERROR_SUCCESS, ERROR_ACCESS_DENIED, ERROR_INVALID_NAME})
        CHECK_FALSE(win32::isAbsent(error));
}

TEST_CASE_FIXTURE(Keys, "a key is opened, made where it is missing, and closed again") {
    CHECK_FALSE(key);
    CHECK(key.open(machine, L"top\\\\", KEY_READ) == ERROR_SUCCESS);
    CHECK(key);
    CHECK(key.open(machine, L"none", KEY_READ) == ERROR_FILE_NOT_FOUND);
    CHECK_FALSE(key);
    CHECK(key.open(machine, std::wstring(L"top\0x", 5), KEY_READ) == ERROR_INVALID_NAME);
    CHECK(key.create(machine, std::wstring(L"new\0x", 5), KEY_READ) == ERROR_INVALID_NAME);
    CHECK_FALSE(hasKey(machine, L"new"));
    CHECK(key.openPlace(machine, L"none", KEY_READ) == ERROR_FILE_NOT_FOUND);
    CHECK(key.createPlace(machine, L"new\\deep\\", KEY_READ) == ERROR_SUCCESS);
    CHECK(key);
    CHECK(hasKey(machine, L"new\\deep"));
    CHECK(key.createPlace(machine, L"top", KEY_ALL_ACCESS) == ERROR_SUCCESS);
    RegistryValue value;
    CHECK(key.query(L"v", value) == ERROR_SUCCESS);
    CHECK(key.openLink(machine, L"top", KEY_READ) == ERROR_SUCCESS);
    CHECK_FALSE(key.isLink());
    CHECK(key.create(machine, L"other\\", KEY_ALL_ACCESS) == ERROR_SUCCESS);
    CHECK(hasKey(machine, L"other"));
    key.close();
    CHECK_FALSE(key);
}

TEST_CASE_FIXTURE(Keys, "values are listed, read, written and deleted by their exact names") {
    REQUIRE(key.open(machine, L"top", KEY_ALL_ACCESS) == ERROR_SUCCESS);
    CHECK(key.set(L"w", REG_BINARY, std::string("\0\x01\x80", 3)) == ERROR_SUCCESS);
    CHECK(key.set(L"x", REG_EXPAND_SZ, win32::bytesOf(std::wstring(L"%a%\0", 4))) == ERROR_SUCCESS);
    DWORD type = 0;
    CHECK(bytes(machine, L"top", L"w", &type) == std::string("\0\x01\x80", 3));
    CHECK(type == REG_BINARY);
    CHECK(bytes(machine, L"top", L"x", &type) == win32::bytesOf(std::wstring(L"%a%\0", 4)));
    CHECK(type == REG_EXPAND_SZ);
    std::wstring name;
    RegistryValue value;
    std::vector<std::wstring> names;
    CHECK(win32::valueNames(key, names) == ERROR_SUCCESS);
    CHECK((names == std::vector<std::wstring>{L"v", L"w", L"x"}));
    CHECK(key.valueAt(1, name, value) == ERROR_SUCCESS);
    CHECK(name == L"w");
    CHECK(value.type == REG_BINARY);
    CHECK(value.data == std::string("\0\x01\x80", 3));
    CHECK(key.valueAt(3, name, value) == ERROR_NO_MORE_ITEMS);
    CHECK(key.valueNameAt(3, name) == ERROR_NO_MORE_ITEMS);
    const std::wstring cut(L"w\0x", 3);
    CHECK(key.query(cut, value) == ERROR_INVALID_NAME);
    CHECK(key.set(cut, REG_SZ, "") == ERROR_INVALID_NAME);
    CHECK(key.deleteValue(cut) == ERROR_INVALID_NAME);
    CHECK(key.deleteValue(L"w") == ERROR_SUCCESS);
    CHECK(key.deleteValue(L"w") == ERROR_FILE_NOT_FOUND);
    CHECK(valueCount(machine, L"top") == 2);
    // A large value under a long name takes both kinds of room.
    const std::wstring longName(600, L'n');
    CHECK(key.set(longName, REG_BINARY, std::string(5000, 'd')) == ERROR_SUCCESS);
    names.clear();
    CHECK(win32::valueNames(key, names) == ERROR_SUCCESS);
    const auto place = std::find(names.begin(), names.end(), longName) - names.begin();
    CHECK(key.valueAt(static_cast<DWORD>(place), name, value) == ERROR_SUCCESS);
    CHECK(name == longName);
    CHECK(value.data.size() == 5000);
}

TEST_CASE_FIXTURE(Keys, "a tree goes with what is below it, never a whole hive, and nothing beside it") {
    for (const wchar_t* path : {L"top\\a\\1", L"top\\a\\2", L"top\\b", L"topper"}) makeKey(machine, path);
    REQUIRE(key.open(machine, L"top", KEY_READ) == ERROR_SUCCESS);
    std::vector<std::wstring> names;
    CHECK(win32::subkeyNames(key, names) == ERROR_SUCCESS);
    CHECK((names == std::vector<std::wstring>{L"a", L"b"}));
    std::wstring name;
    CHECK(key.subkeyAt(1, name) == ERROR_SUCCESS);
    CHECK(name == L"b");
    CHECK(key.subkeyAt(2, name) == ERROR_NO_MORE_ITEMS);
    key.close();
    for (const wchar_t* path : {L"", L"\\", L"\\\\"})
        CHECK(win32::deleteKeyTree(machine, path) == ERROR_INVALID_PARAMETER);
    CHECK(win32::deleteKeyTree(machine, L"none") == ERROR_FILE_NOT_FOUND);
    CHECK(win32::deleteKeyTree(machine, L"top\\a\\\\") == ERROR_SUCCESS);
    CHECK_FALSE(hasKey(machine, L"top\\a"));
    CHECK(hasKey(machine, L"top\\b"));
    CHECK(win32::deleteKeyTree(machine, L"top") == ERROR_SUCCESS);
    CHECK_FALSE(hasKey(machine, L"top"));
    CHECK(hasKey(machine, L"topper"));
    CHECK(win32::checkSubkey(machine, L"topper") == ERROR_SUCCESS);
}

TEST_CASE_FIXTURE(Keys, "an ordinary key with the value of a link is where its path leads, if that is told") {
    const std::string target("\\\0R\0", 4);
    const auto isLink = [&] {
        REQUIRE(key.openLink(machine, L"top", KEY_READ) == ERROR_SUCCESS);
        return key.isLink();
    };
    setBytes(machine, L"top", L"SymbolicLinkValue", REG_BINARY, target);
    CHECK_FALSE(isLink());
    setBytes(machine, L"top", L"SymbolicLinkValue", REG_LINK, target);
    CHECK_FALSE(isLink());
    if (win32::flavour() == win32::Flavour::ansi) return;  // no links there
    const ReplacedLookUp<QueryKey> told(&tellName);
    for (const auto& [one, other, leadsElsewhere] :
         {std::tuple("one", "one", false), {"one", "other", true}, {"", "", true}, {"one", "", true}}) {
        CAPTURE(one);
        CAPTURE(other);
        keyNames = {one, other};
        askedClass = 0;
        CHECK(isLink() == leadsElsewhere);
        CHECK(askedClass == 3);
    }
}

TEST_CASE_FIXTURE(Keys, "before the NT family a key under one that several are listed as is not opened") {
    for (const wchar_t* path : {L"a \x0416\\below", L"a ?\\below", L"b ?\\below"}) makeKey(machine, path);
    const bool isAnsi = win32::flavour() == win32::Flavour::ansi;
    CHECK(key.open(machine, L"b ?\\below", KEY_READ) == ERROR_SUCCESS);
    CHECK(key.open(machine, L"a ?\\below", KEY_READ) == (isAnsi ? ERROR_INVALID_NAME : ERROR_SUCCESS));
}
