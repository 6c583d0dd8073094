#pragma once

#include "explorer/server/ConnectionTable.h"
#include "explorer/server/RequestHead.h"

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

#include <httplib.h>

namespace ombrel {

/// One client's socket. Reads and writes have deadlines that a slow client can't put off, and while it waits
/// the connection can be shut down for another one.
class Connection : public httplib::Stream {
public:
    using Clock = ConnectionTable::Clock;

    /// Seconds from the first byte of a request to its last, and those that a connection may be idle before
    /// it.
    static constexpr std::chrono::seconds requestTime{8};
    static constexpr std::chrono::seconds idleTime{30};
    static constexpr std::chrono::seconds writeTime{10};

    /// Takes the socket over and closes it in the end.
    Connection(int descriptor, ConnectionTable& table);
    ~Connection() override;

    /// The bytes of the next request up to and with the empty line after its head. Nothing if the client has
    /// closed the connection or sent nothing. Fails if they are too many or too slow.
    tl::expected<std::optional<std::string>, Refusal> readHead();

    /// What read() returns before the bytes that follow.
    void putBack(std::string bytes) { replay = std::move(bytes); }

    /// Takes what the client still sends for a moment, so that it reads an answer that came before the end of
    /// its request.
    void drain();

    /// Whether read() has reached a deadline.
    bool isLate() const { return hasTimedOut; }

    bool is_readable() const override;
    bool is_writable() const override;
    ssize_t read(char* bytes, std::size_t size) override;
    ssize_t write(const char* bytes, std::size_t size) override;
    void get_remote_ip_and_port(std::string& address, int& port) const override;
    void get_local_ip_and_port(std::string& address, int& port) const override;
    socket_t socket() const override { return descriptor; }

private:
    bool fill(Clock::time_point deadline);

    const int descriptor;
    ConnectionTable& table;
    std::string replay;
    std::string received; ///< and not yet read
    Clock::time_point waitingSince;
    Clock::time_point deadline; ///< of the request
    bool hasTimedOut = false;
};

} // namespace ombrel
