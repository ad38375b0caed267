#include "win32/files/roots.h"

#include <algorithm>
#include <iterator>

#include "win32/files/files.h"

namespace win32 {

namespace {

const DWORD outOfReach[] = {
    ERROR_NOT_READY,           ERROR_REM_NOT_LIST,       ERROR_BAD_NETPATH,         ERROR_NETWORK_BUSY,
    ERROR_DEV_NOT_EXIST,       ERROR_ADAP_HDW_ERR,       ERROR_UNEXP_NET_ERR,       ERROR_NETNAME_DELETED,
    ERROR_BAD_NET_NAME,        ERROR_SEM_TIMEOUT,        ERROR_NO_NET_OR_BAD_PATH,  ERROR_CONNECTION_UNAVAIL,
    ERROR_NO_NETWORK,          ERROR_CONNECTION_REFUSED, ERROR_NETWORK_UNREACHABLE, ERROR_HOST_UNREACHABLE,
    ERROR_GRACEFUL_DISCONNECT,
};

DWORD lookAtRoot(const std::wstring& root) {
    return attributesOf(root) == INVALID_FILE_ATTRIBUTES ? ::GetLastError() : ERROR_SUCCESS;
}

}  // namespace

DWORD (*errorOfRoot)(const std::wstring& root) = lookAtRoot;

bool isOutOfReach(DWORD error) {
    return std::find(std::begin(outOfReach), std::end(outOfReach), error) != std::end(outOfReach);
}

}  // namespace win32
