#pragma once

#include <chrono>
#include <mutex>
#include <string>
#include <unordered_map>

namespace ombrel {

/// Which pages are open. A page says so from time to time, and says when it is closed. One that says nothing
/// for long, because its browser has crashed, counts as closed. May be used on several threads at once.
class Presence {
public:
    using Clock = std::chrono::steady_clock;

    /// Reads what a page says: {"page": "a name of its own", "isOpen": true}. False if it is something else.
    bool report(const std::string& body);

    /// Whether there has been a page, and none is open since this long.
    bool hasBeenAlone(std::chrono::seconds duration);

private:
    std::mutex lock;
    std::unordered_map<std::string, Clock::time_point> pages; ///< when they were last heard of
    Clock::time_point lastSeen;                               ///< when some page was open
    bool isKnown = false;
};

} // namespace ombrel
