// Keeps one value of the registry as registry-export text in C:\sample.reg.
// Needs helmkit.h, which widl or midl makes of helmkit/helmkit.idl, and ole32, oleaut32 and uuid.
#include <cstdio>

#include "helmkit.h"

namespace {

const LONG currentUser = static_cast<LONG>(0x80000001);

struct Text {
    explicit Text(const OLECHAR* text) : text(::SysAllocString(text)) {}
    ~Text() { ::SysFreeString(text); }
    Text(const Text&) = delete;
    Text& operator=(const Text&) = delete;
    BSTR text;
};

template <class Interface>
Interface* make(REFCLSID clsid, REFIID iid) {
    void* object = nullptr;
    HRESULT answer = ::CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, iid, &object);
    if (FAILED(answer))
        std::printf("Helmkit is not registered: 0x%08lx\n", static_cast<unsigned long>(answer));
    return static_cast<Interface*>(object);
}

bool keep(const OLECHAR* file) {
    auto* registry = make<IRegistryAccess>(CLSID_RegistryAccess, IID_IRegistryAccess);
    auto* files = make<IFileServices>(CLSID_FileServices, IID_IFileServices);
    if (!registry || !files) return false;
    Text key(L"Software\\Microsoft\\Windows\\CurrentVersion\\Run"), name(L"Sample"), path(file),
        exported(nullptr);
    Text content(nullptr);
    HRESULT answer = registry->ExportValue(currentUser, key.text, name.text, &exported.text);
    if (SUCCEEDED(answer)) {
        ::VarBstrCat(Text(L"REGEDIT4\r\n").text, exported.text, &content.text);
        answer = files->WriteTextFile(path.text, content.text);
    }
    files->Release();
    registry->Release();
    return SUCCEEDED(answer);
}

}  // namespace

int main() {
    ::CoInitialize(nullptr);
    const bool isKept = keep(L"C:\\sample.reg");
    std::puts(isKept ? "kept" : "not kept");
    ::CoUninitialize();
    return isKept ? 0 : 1;
}
