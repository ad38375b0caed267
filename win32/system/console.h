// The standard streams of a console program.
#pragma once

#include <string>

namespace win32 {

enum class Stream { output, error };

// Writes the text: in the console's code page to a console, as UTF-8 to a file or a pipe. What the code page
// lacks becomes its replacement character. Throws when the stream takes no more.
void writeText(Stream stream, const std::wstring& text);
// The bytes as they are.
void writeBytes(Stream stream, const std::string& bytes);

// True when what is written is shown on a console.
bool isConsole(Stream stream);

// While it lives, a request to end the program (Ctrl+C, Ctrl+Break, the closed window, logging off) waits.
class NoInterruption {
  public:
    NoInterruption();
    ~NoInterruption();
    NoInterruption(const NoInterruption&) = delete;
    NoInterruption& operator=(const NoInterruption&) = delete;
};

}  // namespace win32
