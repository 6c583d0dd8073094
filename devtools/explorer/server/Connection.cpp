#include "explorer/server/Connection.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace ombrel {

namespace {

/// False if the time is over or the socket is unusable.
bool waitFor(int socket, short events, Connection::Clock::time_point deadline) {
    while (true) {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Connection::Clock::now())
                .count();
        pollfd polled{socket, events, 0};
        const int count = poll(&polled, 1, static_cast<int>(std::max<long>(left, 0)));
        if (count > 0) {
            return true;
        }
        if (count == 0 || errno != EINTR) {
            return false;
        }
    }
}

} // namespace

Connection::Connection(int descriptor, ConnectionTable& table)
    : descriptor(descriptor), table(table), waitingSince(Clock::now()), deadline(waitingSince + requestTime) {
}

Connection::~Connection() {
    ::close(descriptor);
}

tl::expected<std::optional<std::string>, Refusal> Connection::readHead() {
    using Unexpected = tl::unexpected<Refusal>;
    waitingSince = Clock::now();
    deadline = waitingSince + requestTime;
    if (received.empty() && !fill(waitingSince + idleTime)) {
        return std::nullopt;
    }
    deadline = Clock::now() + requestTime;
    std::size_t searched = 0;
    while (true) {
        const std::size_t end = received.find("\r\n\r\n", searched);
        if (end != std::string::npos && end + 4 <= maximalHeadLength) {
            std::string head = received.substr(0, end + 4);
            received.erase(0, end + 4);
            return head;
        }
        if (received.size() >= maximalHeadLength) {
            return Unexpected(Refusal{431, "the head of the request is too long"});
        }
        searched = received.size() < 3 ? 0 : received.size() - 3;
        if (!fill(deadline)) {
            if (!hasTimedOut) {
                return std::nullopt;
            }
            return Unexpected(Refusal{408, "the request took too long"});
        }
    }
}

void Connection::drain() {
    constexpr std::size_t limit = 2 * maximalBodyLength;
    ::shutdown(descriptor, SHUT_WR);
    const auto end = Clock::now() + std::chrono::seconds(1);
    std::size_t count = received.size();
    received.clear();
    while (count < limit && Clock::now() < end && fill(end)) {
        count += received.size();
        received.clear();
    }
}

bool Connection::is_readable() const {
    return !replay.empty() || !received.empty();
}

bool Connection::is_writable() const {
    return waitFor(descriptor, POLLOUT, Clock::now() + writeTime);
}

ssize_t Connection::read(char* bytes, std::size_t size) {
    if (replay.empty() && received.empty() && !fill(deadline)) {
        return -1;
    }
    std::string& source = replay.empty() ? received : replay;
    const std::size_t count = std::min(size, source.size());
    std::memcpy(bytes, source.data(), count);
    source.erase(0, count);
    return static_cast<ssize_t>(count);
}

ssize_t Connection::write(const char* bytes, std::size_t size) {
    const auto end = Clock::now() + writeTime;
    std::size_t written = 0;
    while (written < size) {
        const ssize_t count = send(descriptor, bytes + written, size - written, MSG_NOSIGNAL | MSG_DONTWAIT);
        if (count > 0) {
            written += static_cast<std::size_t>(count);
        } else if (errno == EAGAIN) {
            if (!waitFor(descriptor, POLLOUT, end)) {
                return -1;
            }
        } else if (errno != EINTR) {
            return -1;
        }
    }
    return static_cast<ssize_t>(size);
}

/// Only the server's log would show these, and it has none.
void Connection::get_remote_ip_and_port(std::string& address, int& port) const {
    address = "127.0.0.1";
    port = 0;
}

void Connection::get_local_ip_and_port(std::string& address, int& port) const {
    get_remote_ip_and_port(address, port);
}

/// Receives some bytes. False if there are none before the deadline, or no more at all.
bool Connection::fill(Clock::time_point end) {
    table.startWaiting(descriptor, waitingSince);
    const bool isReady = waitFor(descriptor, POLLIN, end);
    table.stopWaiting(descriptor);
    if (!isReady) {
        hasTimedOut = true;
        return false;
    }
    std::array<char, 65536> buffer;
    const ssize_t count = recv(descriptor, buffer.data(), buffer.size(), MSG_DONTWAIT);
    if (count < 0 && (errno == EAGAIN || errno == EINTR)) {
        return fill(end);
    }
    received.append(buffer.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    return count > 0;
}

} // namespace ombrel
