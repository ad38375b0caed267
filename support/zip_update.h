// One run of cZip over one archive.
#pragma once

#include <map>
#include <memory>

#include "support/cZip.h"
#include "support/zip_failure.h"
#include "support/zip_inputs.h"

namespace support {

class ZipUpdate {
  public:
    // `options` gives the properties and events, and must outlive the run.
    ZipUpdate(const cZip& options, const std::wstring& archive, const std::vector<std::wstring>& specs);

    void add();
    void remove();

  private:
    struct Discard {
        void operator()(zip_t* zip) const { zip_discard(zip); }
    };
    using Index = zip_int64_t;  // of an entry, -1 for none

    void open(int flags);
    void noteEntries();
    std::wstring nameOf(Index entry) const;
    void addInput(const ZipInput& input);
    Index addFolder(const ZipInput& input);
    Index addFile(const ZipInput& input, Index present);
    void startAfresh(Index entry);
    void addVolumeLabel();
    bool isNewer(const ZipInput& input, Index entry);
    void askPassword();
    void setAttributes(Index entry, const ZipInput& input);
    void setAttributes(Index entry, int system, DWORD attributes);

    bool removeMatching(const std::wstring& pattern);
    void finish();

    void progress(const std::wstring& name, int percent);
    void ask();
    static void onProgress(zip_t*, double, void* run);
    static int onCancel(zip_t*, void* run);

    // The entry of that name in the archive as it was opened, in any letter case.
    Index find(const std::wstring& name) const;
    // Gives a result of libzip back, or throws its failure when it is negative.
    Index checked(Index result);
    [[noreturn]] void fail();

    const cZip& options_;
    std::wstring archive_;
    const std::vector<std::wstring>& specs_;
    KeptFailure kept_;
    std::unique_ptr<zip_t, Discard> zip_;
    std::map<std::wstring, Index> present_;  // lower-case names; libzip itself would look through all of them
    std::string password_;
    std::wstring current_;    // the name of the entry at work
    bool asksAgain_ = false;  // there has been progress since Cancel was raised
    bool isCancelled_ = false;
};

}  // namespace support
