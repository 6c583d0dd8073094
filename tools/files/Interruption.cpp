#include "files/Interruption.h"

#include <atomic>
#include <csignal>
#include <string_view>

#include <unistd.h>

namespace ombrel {

namespace {

// A signal handler can use globals only. It stores the signal and then reads the count; a replacement raises
// the count and then reads the signal. So at least one of them sees the other: no replacement starts after
// the signal unnoticed, and the process always ends.
std::atomic<int> interruptingSignal{0};
std::atomic<int> replacementCount{0};
std::atomic<bool> isUnfinishedLineShown{false};

static_assert(std::atomic<int>::is_always_lock_free && std::atomic<bool>::is_always_lock_free);

[[noreturn]] void endProcess(int number) {
    constexpr std::string_view eraseLine = "\r\033[K";
    if (isUnfinishedLineShown) {
        [[maybe_unused]] const auto written = ::write(STDERR_FILENO, eraseLine.data(), eraseLine.size());
    }
    ::_exit(128 + number);
}

void leaveReplacement() {
    const int running = --replacementCount;
    if (const int number = interruptingSignal; number != 0 && running == 0) {
        endProcess(number);
    }
}

extern "C" void handleInterruption(int number) {
    const int earlier = interruptingSignal.exchange(number);
    if (earlier != 0 || replacementCount == 0) {
        endProcess(number);
    }
}

} // namespace

void handleInterruptions() {
    struct sigaction action {};
    action.sa_handler = handleInterruption;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction before {};
        ::sigaction(number, nullptr, &before);
        if (before.sa_handler != SIG_IGN) {
            ::sigaction(number, &action, nullptr);
        }
    }
}

ReplacementGuard::ReplacementGuard() {
    ++replacementCount;
    if (interruptingSignal == 0) {
        return;
    }
    leaveReplacement();
    while (true) {
        ::pause(); // the last replacement that is still running ends the process
    }
}

ReplacementGuard::~ReplacementGuard() {
    leaveReplacement();
}

void setUnfinishedLineShown(bool isShown) {
    isUnfinishedLineShown = isShown;
}

} // namespace ombrel
