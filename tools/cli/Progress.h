#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <iosfwd>

namespace ombrel {

/// "412 of 2,140 files" on the last line of a terminal, from the first second of a run on. Whoever writes to
/// the same terminal erases it before, and then shows it again.
class Progress {
public:
    using Clock = std::function<std::chrono::steady_clock::time_point()>;

    /// `stream` is null if no progress is wanted.
    Progress(std::ostream* stream, std::size_t total, Clock clock = std::chrono::steady_clock::now);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress() { erase(); }

    /// Shows how many inputs are done if it is time to: not in the first second, and then ten times a second
    /// at most, but at once after it was erased.
    void show(std::size_t done);

    void erase();

private:
    std::ostream* stream;
    std::size_t total;
    Clock clock;
    std::chrono::steady_clock::time_point nextTime;
    bool isShown = false;
};

} // namespace ombrel
