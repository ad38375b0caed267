#include "report/run_once_ex_command.h"

namespace report {

std::wstring runOnceExCommand(const std::wstring& data) {
    if (data.substr(0, 2) == L"||") return data.substr(2);
    return data.substr(0, data.find(L'|'));
}

}  // namespace report
