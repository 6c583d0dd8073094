#include "explorer/server/ConnectionTable.h"

#include <algorithm>

#include <sys/socket.h>

namespace ombrel {

bool ConnectionTable::reserve() {
    std::unique_lock guard(lock);
    while (count == capacity && !isShutDown) {
        shutDownOldest();
        changed.wait(guard);
    }
    count += isShutDown ? 0 : 1;
    return !isShutDown;
}

void ConnectionTable::release() {
    const std::lock_guard guard(lock);
    --count;
    changed.notify_all();
}

void ConnectionTable::startWaiting(int socket, Clock::time_point since) {
    const std::lock_guard guard(lock);
    waiting.emplace(socket, since);
    if (isShutDown) {
        ::shutdown(socket, SHUT_RDWR);
    }
    changed.notify_all();
}

void ConnectionTable::stopWaiting(int socket) {
    const std::lock_guard guard(lock);
    waiting.erase(socket);
}

void ConnectionTable::shutDown() {
    const std::lock_guard guard(lock);
    isShutDown = true;
    for (const auto& [socket, since] : waiting) {
        ::shutdown(socket, SHUT_RDWR);
    }
    changed.notify_all();
}

void ConnectionTable::waitForAll() {
    std::unique_lock guard(lock);
    changed.wait(guard, [this] { return count == 0; });
}

void ConnectionTable::shutDownOldest() {
    const auto oldest = std::min_element(waiting.begin(), waiting.end(),
                                         [](const auto& a, const auto& b) { return a.second < b.second; });
    if (oldest != waiting.end()) {
        ::shutdown(oldest->first, SHUT_RDWR);
        waiting.erase(oldest);
    }
}

} // namespace ombrel
