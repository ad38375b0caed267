// A desktop that answers from a script. What nobody scripted fails the test.
#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <doctest/doctest.h>

#include "win32/base/error.h"
#include "win32/base/text.h"
#include "win32/system/desktop.h"

// In force from its making to its end. Time, version and cursor stand still until a test moves them; every
// other question takes the next answer of its queue and is recorded. A question without an answer fails the
// test and is refused (0, false); an answer that nobody asked for fails it at the end.
class ScriptedDesktop : public win32::Desktop {
  public:
    struct MessageBox {
        HWND owner;
        std::wstring text, title;
        UINT style;
    };
    struct Program {
        std::wstring application, commandLine;
    };
    struct PopUp {
        std::vector<std::wstring> captions;  // of its rows; empty for a separator
        POINT position;
        HWND owner;
    };
    struct Folder {
        HWND owner;
        std::wstring path;
    };

    static constexpr DWORD windows98 = 0xC0000A04;
    static constexpr DWORD windows2000 = 0x08930005;
    static constexpr DWORD windowsXp = 0x0A280105;
    static constexpr DWORD windows2003 = 0x0ECE0205;

    ScriptedDesktop() : previous_(win32::setDesktop(this)) {}
    ScriptedDesktop(const ScriptedDesktop&) = delete;
    ScriptedDesktop& operator=(const ScriptedDesktop&) = delete;
    ~ScriptedDesktop() override {
        win32::setDesktop(previous_);
        CHECK_MESSAGE(messageBoxAnswers.empty(), "a message box was expected and did not appear");
        CHECK_MESSAGE(popUpAnswers.empty(), "a pop-up menu was expected and did not appear");
        CHECK_MESSAGE(programAnswers.empty(), "a program was expected to be started and was not");
        CHECK_MESSAGE(shellAnswers.empty(), "a shell request was expected and was not made");
        CHECK_MESSAGE(expectedFolders == folders.size(), "folders opened against folders expected");
    }

    // The script.
    std::deque<int> messageBoxAnswers;
    std::deque<UINT> popUpAnswers;
    std::deque<bool> programAnswers;
    std::deque<bool> shellAnswers;
    size_t expectedFolders = 0;
    std::optional<win32::Error> shellFailure;  // thrown by every shell request
    // What happens while a box or the pop-up menu is open, before it is answered.
    std::function<void(const std::wstring& text)> whileOpen;
    SYSTEMTIME time = {2026, 11, 5, 20, 23, 35, 47, 123};
    DWORD ticks = 60000;
    DWORD windowsVersion = windowsXp;
    POINT cursor = {320, 240};

    // What was asked, in its order.
    std::vector<MessageBox> messageBoxes;
    std::vector<PopUp> popUps;
    std::vector<Program> programs;
    std::vector<Folder> folders;
    std::vector<win32::ShellRequest> shellRequests;

    int messageBox(HWND owner, const std::wstring& text, const std::wstring& title, UINT style) override {
        messageBoxes.push_back({owner, text, title, style});
        if (whileOpen) whileOpen(text);
        return next(messageBoxAnswers, "message box", text);
    }
    UINT popUpMenu(HMENU menu, POINT position, HWND owner) override {
        popUps.push_back({captionsOf(menu), position, owner});
        if (whileOpen) whileOpen({});
        return next(popUpAnswers, "pop-up menu", L"");
    }
    bool startProgram(const std::wstring& application, const std::wstring& commandLine) override {
        programs.push_back({application, commandLine});
        ::SetLastError(ERROR_ACCESS_DENIED);
        return next(programAnswers, "program", commandLine);
    }
    void openFolder(HWND owner, const std::wstring& path) override { folders.push_back({owner, path}); }
    bool shellExecute(const win32::ShellRequest& request) override {
        shellRequests.push_back(request);
        if (shellFailure) throw *shellFailure;
        return next(shellAnswers, "shell request", request.verb + L' ' + request.file);
    }
    SYSTEMTIME localTime() override { return time; }
    DWORD tickCount() override { return ticks; }
    DWORD version() override { return windowsVersion; }
    POINT cursorPosition() override { return cursor; }

  private:
    static std::vector<std::wstring> captionsOf(HMENU menu) {
        std::vector<std::wstring> captions;
        for (int row = 0; row < ::GetMenuItemCount(menu); ++row) {
            wchar_t caption[100] = L"";
            ::GetMenuStringW(menu, row, caption, 100, MF_BYPOSITION);
            captions.push_back(caption);
        }
        return captions;
    }

    // Nothing is thrown: the question may come through a window procedure, which no exception may cross.
    template <class Answer>
    static Answer next(std::deque<Answer>& answers, const char* kind, const std::wstring& what) {
        if (answers.empty()) {
            ADD_FAIL_CHECK_AT(__FILE__, __LINE__, "unscripted " << kind << ": " << win32::toUtf8(what));
            return Answer();
        }
        Answer answer = answers.front();
        answers.pop_front();
        return answer;
    }

    win32::Desktop* previous_;
};
