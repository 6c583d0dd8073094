// The server starts this program again for each request: the body goes in and the answer comes out. It waits
// for whatever comes first, the end of the answer, the deadline, or the client closing its socket. How the
// process ended says what to tell the client:
//
//     exited              its status is one of those below
//     SIGXCPU, SIGKILL    it used up its processor time
//     another signal      it crashed

#include "explorer/server/Worker.h"

#include "explorer/server/Answers.h"
#include "process/Process.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <exception>
#include <iostream>
#include <new>
#include <system_error>
#include <utility>

#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace ombrel {

namespace {

using Kind = WorkerResult::Kind;

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

Kind getKind(const std::system_error& error) {
    if (error.code() == std::errc::timed_out) {
        return Kind::TooSlow;
    }
    if (error.code() == std::errc::operation_canceled) {
        return Kind::Abandoned;
    }
    return error.code() == std::errc::value_too_large ? Kind::TooLarge : Kind::Failed;
}

WorkerResult readResult(ProcessResult done) {
    switch (done.status) {
    case answered:
        return {Kind::Answer, std::move(done.out)};
    case badRequest:
        return {Kind::BadRequest, std::move(done.out)};
    case tooLarge:
        return {Kind::TooLarge, {}};
    case failed:
        return {Kind::Failed, std::move(done.out)};
    case 128 + SIGXCPU:
    case 128 + SIGKILL:
        return {Kind::TooSlow, {}};
    default:
        return {Kind::Failed, {}};
    }
}

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
    ProcessLimits limits{std::chrono::seconds(maximalSeconds)};
    limits.outputLimit = maximalAnswerLength;
    limits.client = clientSocket;
    try {
        ProcessResult done =
            runProcess({"/proc/self/exe", "--worker", operation}, getEnvironment(), body, limits);
        std::cerr << done.err;
        return readResult(std::move(done));
    } catch (const std::system_error& error) {
        return {getKind(error), error.what()};
    }
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
