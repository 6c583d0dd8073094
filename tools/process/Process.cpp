#include "process/Process.h"

#include "files/Descriptor.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace ombrel {

namespace {

void check(int errorNumber, const char* what) {
    if (errorNumber != 0) {
        throw std::system_error(errorNumber, std::generic_category(), what);
    }
}

struct Channel {
    Descriptor ours;
    Descriptor theirs;
};

/// For the other program's input: unlike a pipe, a socket can be written without a signal when nobody reads
/// it any more.
Channel makeInput() {
    std::array<int, 2> ends{};
    check(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) == 0 ? 0 : errno,
          "can't talk to a process");
    return {Descriptor(ends[0]), Descriptor(ends[1])};
}

/// For its output: unlike a socket, a pipe can be opened again as /dev/stderr, as scripts do.
Channel makeOutput() {
    std::array<int, 2> ends{};
    check(::pipe2(ends.data(), O_CLOEXEC) == 0 ? 0 : errno, "can't talk to a process");
    return {Descriptor(ends[0]), Descriptor(ends[1])};
}

/// What the new process's standard descriptors are.
class Actions {
public:
    Actions() { check(::posix_spawn_file_actions_init(&actions), "can't start a process"); }
    Actions(const Actions&) = delete;
    Actions& operator=(const Actions&) = delete;
    ~Actions() { ::posix_spawn_file_actions_destroy(&actions); }

    void connect(int target, const Descriptor& end) {
        check(::posix_spawn_file_actions_adddup2(&actions, end.get(), target), "can't start a process");
    }

    void readNothing() {
        check(::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0),
              "can't start a process");
    }

    const posix_spawn_file_actions_t* get() const { return &actions; }

private:
    posix_spawn_file_actions_t actions{};
};

std::vector<char*> getPointers(const std::vector<std::string>& words) {
    std::vector<char*> pointers;
    pointers.reserve(words.size() + 1);
    for (const std::string& word : words) {
        pointers.push_back(const_cast<char*>(word.c_str()));
    }
    pointers.push_back(nullptr);
    return pointers;
}

/// Sends what fits; closes the end when all is sent, or nobody reads any more.
void send(Descriptor& end, std::string_view& bytes) {
    const ssize_t count = ::send(end.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    if (count >= 0) {
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    const bool isGone = count < 0 && errno != EINTR && errno != EAGAIN;
    if (bytes.empty() || isGone) {
        end.close();
    }
}

/// Appends what is there; closes the end when nothing more will come.
void receive(Descriptor& end, std::string& bytes) {
    std::array<char, 1 << 16> buffer;
    const ssize_t count = ::read(end.get(), buffer.data(), buffer.size());
    if (count > 0) {
        bytes.append(buffer.data(), static_cast<std::size_t>(count));
    } else if (count == 0 || errno != EINTR) {
        end.close();
    }
}

using Clock = std::chrono::steady_clock;

/// For `poll`: 0 if no time is left.
int getMillisecondsUntil(Clock::time_point end) {
    const auto rest = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now());
    return static_cast<int>(std::max<std::chrono::milliseconds::rep>(rest.count(), 0));
}

/// The other program while it runs. It is killed if it is left before its end.
class Running {
public:
    explicit Running(pid_t process) : process(process) {}
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;
    ~Running() {
        if (process != 0) {
            ::kill(process, SIGKILL);
            ::waitpid(process, nullptr, 0);
        }
    }

    int wait() {
        int status = 0;
        while (::waitpid(process, &status, 0) < 0) {
            check(errno == EINTR ? 0 : errno, "can't wait for a process");
        }
        process = 0;
        return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }

private:
    pid_t process;
};

/// Serves all three ends as they get ready, so that neither side waits for the other. False if that isn't
/// over at this time.
bool exchange(Descriptor& in, std::string_view& input, Descriptor& out, Descriptor& err,
              Clock::time_point deadline, const ProcessLimits& limits, ProcessResult& result) {
    while (in.get() >= 0 || out.get() >= 0 || err.get() >= 0) {
        std::array<pollfd, 4> ends{{{in.get(), POLLOUT, 0},
                                    {out.get(), POLLIN, 0},
                                    {err.get(), POLLIN, 0},
                                    {limits.client, POLLRDHUP, 0}}};
        const int count = ::poll(ends.data(), ends.size(), getMillisecondsUntil(deadline));
        if (count < 0) {
            check(errno == EINTR ? 0 : errno, "can't wait for a process");
            continue;
        }
        if (count == 0) {
            return false;
        }
        if (ends[0].revents != 0) {
            send(in, input);
        }
        if (ends[1].revents != 0) {
            receive(out, result.out);
        }
        if (ends[2].revents != 0) {
            receive(err, result.err);
        }
        check(ends[3].revents != 0 ? ECANCELED : 0, "nobody waits for a process");
        check(result.out.size() > limits.outputLimit ? EOVERFLOW : 0, "too much output");
    }
    return true;
}

} // namespace

std::vector<std::string> getEnvironment() {
    std::vector<std::string> lines;
    for (char** variable = environ; *variable != nullptr; ++variable) {
        lines.emplace_back(*variable);
    }
    return lines;
}

ProcessResult runProcess(const std::vector<std::string>& words, const std::vector<std::string>& environment,
                         std::string_view input, const ProcessLimits& limits) {
    const Clock::time_point start = Clock::now();
    Channel in = makeInput();
    Channel out = makeOutput();
    Channel err = makeOutput();
    Actions actions;
    if (input.empty()) {
        actions.readNothing();
        in.ours.close();
    } else {
        actions.connect(STDIN_FILENO, in.theirs);
    }
    actions.connect(STDOUT_FILENO, out.theirs);
    actions.connect(STDERR_FILENO, err.theirs);

    pid_t process = 0;
    check(::posix_spawnp(&process, words.front().c_str(), actions.get(), nullptr, getPointers(words).data(),
                         getPointers(environment).data()),
          words.front().c_str());
    Running running(process);
    in.theirs.close();
    out.theirs.close();
    err.theirs.close();
    ProcessResult result{};
    const auto serveUntil = [&](Clock::time_point deadline) {
        return exchange(in.ours, input, out.ours, err.ours, deadline, limits, result);
    };
    if (!serveUntil(start + limits.patience)) {
        limits.onSlow();
        check(serveUntil(start + limits.timeLimit) ? 0 : ETIMEDOUT, words.front().c_str());
    }
    result.status = running.wait();
    return result;
}

} // namespace ombrel
