#pragma once

#include <fstream>
#include <mutex>
#include <string>
#include <string_view>

namespace ombrel::lsp {

/// A file that helps to report a fault: each message with its time, one a line, long ones cut. May be used by
/// several threads at once.
class Log {
public:
    /// Appends to the file; writes nothing if the name is empty.
    explicit Log(const std::string& path);

    /// False if the file can't be written.
    bool isGood() const { return isOff || static_cast<bool>(file); }

    /// `direction` is a word: "received", "sent".
    void write(std::string_view direction, std::string_view text);

private:
    bool isOff;
    std::mutex mutex;
    std::ofstream file;
};

} // namespace ombrel::lsp
