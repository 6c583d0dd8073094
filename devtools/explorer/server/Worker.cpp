// The server starts this program again for each request and talks to it over two pipes: the body goes in and
// the answer comes out. It waits for whatever comes first, the end of the answer, the deadline, or the client
// closing its socket, and then kills the process, which does nothing if that has ended. How it ended says
// what to tell the client:
//
//     exited              its status is one of those below
//     SIGXCPU, SIGKILL    it used up its processor time
//     another signal      it crashed

#include "explorer/server/Worker.h"

#include "explorer/server/Answers.h"
#include "files/Descriptor.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <exception>
#include <new>
#include <system_error>

#include <fcntl.h>
#include <fmt/format.h>
#include <poll.h>
#include <spawn.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace ombrel {

namespace {

using Kind = WorkerResult::Kind;
using Clock = std::chrono::steady_clock;

constexpr std::size_t maximalAnswerLength = std::size_t{128} << 20;

// Exit statuses of a process that has written its answer.
constexpr int answered = 0;
constexpr int badRequest = 3;
constexpr int tooLarge = 4;
constexpr int failed = 5;

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool limitsMemory = false; // sanitizers need address space in terabytes
#else
constexpr bool limitsMemory = true;
#endif

void setLimit(__rlimit_resource resource, rlim_t value) {
    const rlimit limit{value, value};
    if (setrlimit(resource, &limit) != 0) {
        throw std::system_error(errno, std::generic_category(), "can't limit this process");
    }
}

void limitProcess() {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    setLimit(RLIMIT_CPU, maximalSeconds);
    setLimit(RLIMIT_CORE, 0);
    setLimit(RLIMIT_FSIZE, 0); // it writes to pipes only
    if (limitsMemory) {
        setLimit(RLIMIT_AS, maximalMemory);
    }
}

std::string readAll(int descriptor) {
    std::string bytes;
    std::array<char, 65536> buffer;
    for (ssize_t count = 0; (count = read(descriptor, buffer.data(), buffer.size())) > 0;) {
        bytes.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return bytes;
}

bool writeAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = write(descriptor, bytes.data(), bytes.size());
        if (count < 0) {
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

struct Pipe {
    Descriptor readEnd;
    Descriptor writeEnd;

    static Pipe make() {
        int ends[2];
        if (pipe2(ends, O_CLOEXEC) != 0) {
            throw std::system_error(errno, std::generic_category(), "pipe");
        }
        return {Descriptor(ends[0]), Descriptor(ends[1])};
    }
};

/// The process of one request.
class WorkerProcess {
public:
    explicit WorkerProcess(const char* operation) : input(Pipe::make()), output(Pipe::make()) {
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, input.readEnd.get(), STDIN_FILENO);
        posix_spawn_file_actions_adddup2(&actions, output.writeEnd.get(), STDOUT_FILENO);
        posix_spawnattr_t attributes; // the server blocks signals, and ignores SIGPIPE
        sigset_t none;
        sigset_t all;
        sigemptyset(&none);
        sigfillset(&all);
        posix_spawnattr_init(&attributes);
        posix_spawnattr_setsigmask(&attributes, &none);
        posix_spawnattr_setsigdefault(&attributes, &all);
        posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
        std::string words[] = {"ombrel-explorer", "--worker", operation};
        char* arguments[] = {words[0].data(), words[1].data(), words[2].data(), nullptr};
        const int error = posix_spawn(&process, "/proc/self/exe", &actions, &attributes, arguments, environ);
        posix_spawnattr_destroy(&attributes);
        posix_spawn_file_actions_destroy(&actions);
        if (error != 0) {
            throw std::system_error(error, std::generic_category(), "can't start a process");
        }
        input.readEnd.close();
        output.writeEnd.close();
        fcntl(input.writeEnd.get(), F_SETFL, O_NONBLOCK);
    }

    WorkerProcess(const WorkerProcess&) = delete;
    WorkerProcess& operator=(const WorkerProcess&) = delete;

    ~WorkerProcess() {
        kill(process, SIGKILL);
        waitpid(process, nullptr, 0);
    }

    WorkerResult talk(std::string_view body, int clientSocket) {
        const auto deadline = Clock::now() + std::chrono::seconds(maximalSeconds);
        rest = body;
        while (isOpen) {
            const auto left =
                std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
            if (left <= 0) {
                return {Kind::TooSlow, {}};
            }
            pollfd polled[] = {{output.readEnd.get(), POLLIN, 0},
                               {clientSocket, POLLRDHUP, 0},
                               {input.writeEnd.get(), POLLOUT, 0}};
            if (poll(polled, 3, static_cast<int>(left)) < 0 && errno != EINTR) {
                return {Kind::Failed, {}};
            }
            if ((polled[1].revents & (POLLRDHUP | POLLHUP | POLLERR)) != 0) {
                return {Kind::Abandoned, {}};
            }
            if (polled[2].revents != 0) {
                writeSome();
            }
            if (polled[0].revents != 0 && !readSome()) {
                return {Kind::TooLarge, {}};
            }
        }
        return finish();
    }

private:
    void writeSome() {
        const ssize_t count = write(input.writeEnd.get(), rest.data(), rest.size());
        if (count > 0) {
            rest.remove_prefix(static_cast<std::size_t>(count));
        }
        if (rest.empty() || (count < 0 && errno != EAGAIN)) {
            input.writeEnd.close();
        }
    }

    /// False if the answer is too long.
    bool readSome() {
        std::array<char, 65536> buffer;
        const ssize_t count = read(output.readEnd.get(), buffer.data(), buffer.size());
        isOpen = count > 0 || (count < 0 && errno == EINTR);
        answer.append(buffer.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
        return answer.size() <= maximalAnswerLength;
    }

    WorkerResult finish() {
        int status = 0;
        siginfo_t ended{};
        waitid(P_PID, static_cast<id_t>(process), &ended, WEXITED | WNOWAIT); // the destructor collects it
        status = ended.si_status;
        if (ended.si_code != CLD_EXITED) {
            return {status == SIGXCPU || status == SIGKILL ? Kind::TooSlow : Kind::Failed, {}};
        }
        switch (status) {
        case answered:
            return {Kind::Answer, std::move(answer)};
        case badRequest:
            return {Kind::BadRequest, std::move(answer)};
        case tooLarge:
            return {Kind::TooLarge, {}};
        default:
            return {Kind::Failed, std::move(answer)};
        }
    }

    Pipe input;
    Pipe output;
    pid_t process = -1;
    std::string_view rest; ///< of the body, to be written
    std::string answer;
    bool isOpen = true;
};

int getStatus(Kind kind) {
    switch (kind) {
    case Kind::Answer:
        return answered;
    case Kind::BadRequest:
        return badRequest;
    case Kind::TooLarge:
        return tooLarge;
    default:
        return failed;
    }
}

} // namespace

WorkerResult runWorker(const char* operation, std::string_view body, int clientSocket) {
    return WorkerProcess(operation).talk(body, clientSocket);
}

WorkerResult work(std::string_view operation, std::string_view body) {
    try {
        const auto request = readApiRequest(body);
        if (!request) {
            return {Kind::BadRequest, request.error()};
        }
        auto answer = operation == "dump" ? makeDumpAnswer(*request) : makeFormatAnswer(*request);
        return answer ? WorkerResult{Kind::Answer, *std::move(answer)}
                      : WorkerResult{Kind::BadRequest, std::move(answer.error())};
    } catch (const std::bad_alloc&) {
        return {Kind::TooLarge, {}};
    } catch (const std::exception& error) {
        return {Kind::Failed, error.what()};
    }
}

int workOnce(std::string_view operation) {
    limitProcess();
    const WorkerResult result = work(operation, readAll(STDIN_FILENO));
    return writeAll(STDOUT_FILENO, result.text) ? getStatus(result.kind) : failed;
}

} // namespace ombrel
