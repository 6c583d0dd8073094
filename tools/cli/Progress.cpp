#include "cli/Progress.h"

#include "cli/Summary.h"
#include "files/Interruption.h"

#include <ostream>

#include <fmt/format.h>

namespace ombrel {

Progress::Progress(std::ostream* stream, std::size_t total, Clock clock)
    : stream(stream), total(total), clock(std::move(clock)) {
    nextTime = this->clock() + std::chrono::seconds(1);
}

void Progress::show(std::size_t done) {
    if (stream == nullptr || clock() < nextTime) {
        return;
    }
    nextTime = clock() + std::chrono::milliseconds(100);
    isShown = true;
    setUnfinishedLineShown(true);
    *stream << fmt::format("\r\033[K{} of {} files", groupDigits(done), groupDigits(total)) << std::flush;
}

void Progress::erase() {
    if (isShown) {
        *stream << "\r\033[K" << std::flush;
        setUnfinishedLineShown(false);
        isShown = false;
        nextTime = clock();
    }
}

} // namespace ombrel
