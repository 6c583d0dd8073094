#include "lsp/Stream.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <system_error>
#include <thread>

#include <fcntl.h>
#include <fmt/format.h>
#include <signal.h>
#include <unistd.h>

namespace ombrel::lsp {

namespace {

bool writeAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(descriptor, bytes.data(), bytes.size());
        if (count < 0 && errno != EINTR) {
            return false;
        }
        bytes.remove_prefix(count > 0 ? static_cast<std::size_t>(count) : 0);
    }
    return true;
}

} // namespace

Stream::Stream() : output(::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3)) {
    if (output < 0 || ::dup2(STDERR_FILENO, STDOUT_FILENO) < 0) {
        throw std::system_error(errno, std::generic_category(), "standard output");
    }
}

std::string Stream::read() const {
    std::array<char, 1 << 16> buffer;
    while (true) {
        const ssize_t count = ::read(STDIN_FILENO, buffer.data(), buffer.size());
        if (count >= 0) {
            return {buffer.data(), static_cast<std::size_t>(count)};
        }
        if (errno != EINTR) {
            return {};
        }
    }
}

bool Stream::write(std::string_view body) const {
    return writeAll(output, fmt::format("Content-Length: {}\r\n\r\n", body.size())) && writeAll(output, body);
}

void endWithProcess(int processId) {
    constexpr auto pause = std::chrono::milliseconds(500);
    std::thread([processId, pause] {
        while (::kill(processId, 0) == 0 || errno == EPERM) {
            std::this_thread::sleep_for(pause);
        }
        ::_exit(1);
    }).detach();
}

} // namespace ombrel::lsp
