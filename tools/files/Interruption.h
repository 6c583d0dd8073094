#pragma once

namespace ombrel {

/// From now on SIGINT, SIGTERM and SIGHUP end the process with the status 128 + number: at once if no file is
/// being replaced, otherwise as soon as the replacements that have started are done; no other one starts. A
/// second signal ends it at once in any case. Signals that the process was started to ignore (`nohup`) stay
/// ignored.
void handleInterruptions();

/// Lives while a file is being replaced. If a signal has come before, the constructor doesn't return.
class ReplacementGuard {
public:
    ReplacementGuard();
    ReplacementGuard(const ReplacementGuard&) = delete;
    ReplacementGuard& operator=(const ReplacementGuard&) = delete;
    ~ReplacementGuard();
};

/// Says whether standard error shows a line without an end, which an interruption has to erase.
void setUnfinishedLineShown(bool isShown);

} // namespace ombrel
