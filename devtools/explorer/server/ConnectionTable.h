#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <unordered_map>

namespace ombrel {

/// The open connections, each of which has a thread. There is room for a fixed number. When it is needed, the
/// connection that has been waiting longest for its client is shut down: one that sends slowly or not at all
/// never keeps another one out. Those that are being answered stay. All operations may be called on any
/// thread.
class ConnectionTable {
public:
    using Clock = std::chrono::steady_clock;

    explicit ConnectionTable(std::size_t capacity) : capacity(capacity) {}

    /// Waits until there is room for one more connection and takes it. False once everything has been shut
    /// down.
    bool reserve();

    /// Gives the room back.
    void release();

    /// A socket waits for its client, since the given time; it may be shut down until it doesn't any more.
    void startWaiting(int socket, Clock::time_point since);
    void stopWaiting(int socket);

    /// Shuts down every connection, and from now on each as soon as it waits.
    void shutDown();

    /// Returns when no connection is left.
    void waitForAll();

private:
    void shutDownOldest();

    const std::size_t capacity;
    std::mutex lock;
    std::condition_variable changed;
    std::size_t count = 0;
    std::unordered_map<int, Clock::time_point> waiting;
    bool isShutDown = false;
};

} // namespace ombrel
