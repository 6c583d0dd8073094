#include "cli/Arguments.h"
#include "cli/Run.h"
#include "cli/TextWork.h"
#include "diagnostics/Message.h"
#include "files/FileSystem.h"
#include "files/Interruption.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <new>
#include <string_view>

#include <malloc.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using namespace ombrel;

bool isSet(const char* variable) {
    const char* value = std::getenv(variable);
    return value != nullptr && *value != '\0';
}

ExitStatus refuse(const Problem& problem) {
    printRunProblem(std::cerr, "ombrel-format", problem, Color::Off);
    return getExitStatus(problem);
}

ExitStatus print(const PrintedText& printed) {
    errno = 0;
    std::cout << printed.text << std::flush;
    if (std::cout) {
        return ExitStatus::Done;
    }
    printOutputFailure(std::cerr, "ombrel-format", errno, Color::Off);
    return ExitStatus::WriteFailed;
}

/// Keeps memory that one file has used for the next: giving it back after each takes longer than formatting.
/// Blocks are mapped alone only from the largest size on that the library allows: below, the kernel would
/// clear all their pages, and those of the next ones again; above, a text that grows is moved without a copy.
/// Small blocks are merged when they are freed: a file has millions of them, and merging all at once, as the
/// library does by default, takes an eighth of the line engine's time.
void tuneMemory() {
#ifdef __GLIBC__
    ::mallopt(M_TRIM_THRESHOLD, 64 << 20); // bytes that each thread keeps
    ::mallopt(M_MMAP_THRESHOLD, 32 << 20);
    ::mallopt(M_MXFAST, 0);
#endif
}

/// Columns that the help may use: the terminal's, as far as they are readable.
std::size_t getHelpWidth() {
    constexpr std::size_t narrowest = 50;
    constexpr std::size_t widest = 100;
    winsize size{};
    const bool isKnown = ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col != 0;
    return isKnown ? std::clamp<std::size_t>(size.ws_col, narrowest, widest) : widest;
}

bool isOneTerminal(int a, int b) {
    struct stat first {};
    struct stat second {};
    return ::isatty(a) == 1 && ::isatty(b) == 1 && ::fstat(a, &first) == 0 && ::fstat(b, &second) == 0 &&
           first.st_rdev == second.st_rdev;
}

Console makeConsole() {
    return {std::cin,
            std::cout,
            std::cerr,
            ::isatty(STDOUT_FILENO) == 1,
            ::isatty(STDERR_FILENO) == 1,
            isSet("NO_COLOR"),
            ::isatty(STDIN_FILENO) == 1,
            isOneTerminal(STDOUT_FILENO, STDERR_FILENO)};
}

ExitStatus runProgram(int argc, char** argv) {
    const auto parsed = parseArguments(argc, argv, getHelpWidth());
    if (!parsed) {
        const ExitStatus status = refuse(parsed.error().front());
        std::cerr << "Try ombrel-format --help.\n";
        return status;
    }
    if (const auto* printed = std::get_if<PrintedText>(&*parsed)) {
        return print(*printed);
    }
    Console console = makeConsole();
    const auto& arguments = std::get<Arguments>(*parsed);
    DiskFileSystem files(arguments.replacement);
    return run(arguments, console, files);
}

/// Where memory runs out in a destructor of a library, say, nothing can be thrown. No file is half written
/// then: replacements are renamed as a whole.
[[noreturn]] void endWithoutMemory() {
    try {
        std::rethrow_exception(std::current_exception());
    } catch (const std::bad_alloc&) {
        constexpr std::string_view message = "ombrel-format: error: not enough memory [out-of-memory]\n";
        [[maybe_unused]] const auto written = ::write(STDERR_FILENO, message.data(), message.size());
        ::_exit(static_cast<int>(ExitStatus::Refused));
    } catch (...) {
        std::abort();
    }
}

/// Before all else, since the libraries need memory when they are loaded.
[[gnu::section(".preinit_array"), gnu::used]] void (*const prepareForShortage)() = [] {
    std::set_terminate(endWithoutMemory);
};

} // namespace

int main(int argc, char** argv) {
    std::ios::sync_with_stdio(false);
    std::cin.tie(nullptr);
    std::cerr.tie(nullptr);
    if (argc == 3 && std::string_view(argv[1]) == workerFlag) {
        tuneMemory();
        return serveTextWork(argv[2]);
    }
    // A limit on file sizes is an error to report like a full disk, not the end of the process.
    std::signal(SIGXFSZ, SIG_IGN);
    handleInterruptions();
    tuneMemory();
    try {
        return static_cast<int>(runProgram(argc, argv));
    } catch (const std::bad_alloc&) {
        return static_cast<int>(refuse({Code::OutOfMemory, "not enough memory"}));
    } catch (const std::exception& error) {
        return static_cast<int>(refuse({Code::InternalError, error.what()}));
    }
}
