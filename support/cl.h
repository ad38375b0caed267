// The support request: packs a category, an identifier and named values into a small XML document, zips it
// and posts it to the maker's support endpoint. No window of this version makes one; it stands ready for a
// caller.
#pragma once

#include <string>

#include "helmkit/client/logger.h"

namespace support {

// What a request meets outside the program, so that a test can script it.
class RequestSurroundings {
  public:
    virtual ~RequestSurroundings() = default;
    // A new XMLHTTP object, which is called late; null when this Windows has none.
    virtual win32::ComPtr<IDispatch> newRequest() = 0;
    virtual void sleep(DWORD milliseconds) = 0;
};
// The real ones: MSXML's object and the system's clock tick.
RequestSurroundings& realSurroundings();

class cl {
  public:
    // `php/ic.php` on the host that the build names, over plain HTTP.
    static std::wstring defaultEndpoint();

    explicit cl(std::wstring endpoint = defaultEndpoint(),
                RequestSurroundings& surroundings = realSurroundings());

    // Sends one request and waits for its answer, for 20 seconds at most, while the window messages of the
    // program are handled. `o` holds the named parameters, each with any number of values; null stands for
    // none. `Log` is kept and not written to.
    //
    // True only when the server answered 200, 206, 302 or 304 and no step before failed. Nothing is thrown: a
    // step that fails leaves its result empty and the next one runs. `FalseCouse` gets the reason, and is
    // left as it is when the answer was accepted and when the request could not even be sent: "Cannot send. "
    // when the time is over for a request that is still opened (readyState 1) or receiving (3), which is
    // aborted; else the server's status text, empty where that cannot be read.
    //
    // The XML file and the zip file stay in the temporary folder in every case.
    bool Do1(const helmkit::Logger& Log, const std::wstring& Category, IRecord* o, std::wstring& FalseCouse);

  private:
    static std::wstring EncodeFormValue(const std::wstring& text);

    // Runs one step; a failure is remembered and otherwise passed over. True when it did not fail.
    template <class Step>
    bool attempt(Step step);

    std::wstring document(const std::wstring& category, const std::wstring& id, IRecord* parameters);
    std::wstring parameterElements(IRecord* parameters);
    void zip(const std::wstring& file, const std::wstring& archive);
    bool send(IDispatch* request, const std::wstring& form);
    LONG waitForAnswer(IDispatch* request);
    bool judge(IDispatch* request, LONG readyState, std::wstring& reason);

    std::wstring endpoint_;
    RequestSurroundings& surroundings_;
    helmkit::Logger log_;
    bool hasFailed_ = false;  // some step of this request
};

}  // namespace support
