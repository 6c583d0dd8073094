#include "Subprocess.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <string_view>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace ombrel {

namespace {

/// What the new process's first three descriptors are.
class Redirections {
public:
    explicit Redirections(int out) {
        ::posix_spawn_file_actions_init(&actions);
        ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        ::posix_spawn_file_actions_adddup2(&actions, out, STDOUT_FILENO);
        ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    }
    Redirections(const Redirections&) = delete;
    Redirections& operator=(const Redirections&) = delete;
    ~Redirections() { ::posix_spawn_file_actions_destroy(&actions); }

    const posix_spawn_file_actions_t* get() const { return &actions; }

private:
    posix_spawn_file_actions_t actions{};
};

std::vector<char*> getPointers(const std::vector<std::string>& words) {
    std::vector<char*> pointers;
    for (const std::string& word : words) {
        pointers.push_back(const_cast<char*>(word.c_str())); // they are only read
    }
    pointers.push_back(nullptr);
    return pointers;
}

std::vector<std::string> getEnvironment(const std::vector<std::string>& removed) {
    std::vector<std::string> kept;
    for (char** variable = environ; *variable != nullptr; ++variable) {
        const std::string_view text = *variable;
        if (std::find(removed.begin(), removed.end(), text.substr(0, text.find('='))) == removed.end()) {
            kept.emplace_back(text);
        }
    }
    return kept;
}

std::string readToEnd(int descriptor) {
    std::string bytes;
    std::array<char, 1 << 16> buffer;
    while (true) {
        const ssize_t count = ::read(descriptor, buffer.data(), buffer.size());
        if (count > 0) {
            bytes.append(buffer.data(), static_cast<std::size_t>(count));
        } else if (count == 0 || errno != EINTR) {
            return bytes;
        }
    }
}

int waitFor(pid_t process) {
    int status = 0;
    while (::waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

} // namespace

std::optional<CommandResult> runCommand(const std::vector<std::string>& words,
                                        const std::vector<std::string>& removedVariables) {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
        return std::nullopt;
    }
    const Redirections redirections(ends[1]);
    const std::vector<std::string> environment = getEnvironment(removedVariables);
    pid_t process = 0;
    const int failure = ::posix_spawnp(&process, words.front().c_str(), redirections.get(), nullptr,
                                       getPointers(words).data(), getPointers(environment).data());
    ::close(ends[1]);
    std::optional<CommandResult> result;
    if (failure == 0) {
        std::string out = readToEnd(ends[0]);
        result = CommandResult{waitFor(process), std::move(out)};
    }
    ::close(ends[0]);
    return result;
}

} // namespace ombrel
