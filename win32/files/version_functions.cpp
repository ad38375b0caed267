#include "win32/files/version_functions.h"

#include "win32/system/system.h"

namespace win32 {

template <class F>
const VersionFunctions<F>& versionFunctions() {
    using Functions = VersionFunctions<F>;
    const wchar_t* const library = L"version.dll";
    static const Functions functions = {
        systemProcedure<decltype(Functions::getInfoSize)>(
            library, F::isWide ? "GetFileVersionInfoSizeW" : "GetFileVersionInfoSizeA"),
        systemProcedure<decltype(Functions::getInfo)>(
            library, F::isWide ? "GetFileVersionInfoW" : "GetFileVersionInfoA"),
        systemProcedure<decltype(Functions::queryValue)>(library,
                                                         F::isWide ? "VerQueryValueW" : "VerQueryValueA")};
    return functions;
}

template const VersionFunctions<WideFlavour>& versionFunctions();
template const VersionFunctions<AnsiFlavour>& versionFunctions();

}  // namespace win32
