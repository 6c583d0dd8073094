#include "explorer/server/Explorer.h"
#include "explorer/server/Worker.h"

#include "diagnostics/CommandLine.h"
#include "diagnostics/Message.h"
#include "diagnostics/SourceText.h"
#include "files/File.h"
#include "files/FileSystem.h"
#include "files/Paths.h"

#include <csignal>
#include <exception>
#include <iostream>
#include <thread>

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace {

using namespace ombrel;

constexpr std::chrono::seconds maximalLoneliness{20};

struct Arguments {
    std::string file;
    std::uint16_t port = 0;
    bool noBrowser = false;
};

/// Fails with an exit status; what is wrong has been reported.
tl::expected<StartText, int> readStartText(const std::string& path) {
    if (path.empty()) {
        return StartText();
    }
    try {
        std::string bytes = DiskFileSystem().readRegular(path, maximalBodyLength / 2);
        if (const auto text = decodeSource(bytes); !text) {
            printProblem(std::cerr, path, text.error().front(), decodeLossy(bytes), Color::Off);
            return tl::unexpected(3);
        }
        return StartText{path.substr(path.rfind('/') + 1), std::move(bytes)};
    } catch (const FileError& error) {
        printProblem(std::cerr, path, {Code::UnreadableInput, error.what()}, {}, Color::Off);
        return tl::unexpected(2);
    }
}

/// Blocks the signals that end the program, so that all threads leave them to the one that waits for them.
sigset_t blockSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGHUP);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    std::signal(SIGPIPE, SIG_IGN);
    return signals;
}

void openBrowser(const std::string& url) {
    std::string words[] = {"xdg-open", url};
    char* arguments[] = {words[0].data(), words[1].data(), nullptr};
    posix_spawnattr_t attributes;
    sigset_t none;
    sigemptyset(&none);
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setpgroup(&attributes, 0); // Ctrl-C ends the explorer, not the browser
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETPGROUP);
    pid_t process = 0;
    const int error = posix_spawnp(&process, "xdg-open", nullptr, &attributes, arguments, environ);
    posix_spawnattr_destroy(&attributes);
    if (error != 0) {
        std::cerr << "ombrel-explorer: can't start xdg-open; open the address by hand\n";
        return;
    }
    std::thread([process] { waitpid(process, nullptr, 0); }).detach();
}

/// Returns when a signal arrives or, if the program opened the page itself, when the page has been closed for
/// a while.
void waitForEnd(const sigset_t& signals, Presence* presence) {
    const timespec second{1, 0};
    while (sigtimedwait(&signals, nullptr, &second) < 0) {
        if (presence != nullptr && presence->hasBeenAlone(maximalLoneliness)) {
            return;
        }
    }
}

int serve(const Arguments& arguments, const StartText& start) {
    const sigset_t signals = blockSignals();
    const std::string token = makeToken();
    Explorer explorer(token, start);
    HttpServer& server = explorer.getServer();
    if (const std::string fault = server.bind(arguments.port); !fault.empty()) {
        printRunProblem(std::cerr, "ombrel-explorer", {Code::UsageError, fault}, Color::Off);
        return 2;
    }
    const std::string url = fmt::format("http://127.0.0.1:{}/#{}", server.getPort(), token);
    std::cout << url << std::endl;
    std::thread thread([&server] { server.run(); });
    if (!arguments.noBrowser) {
        openBrowser(url);
    }
    waitForEnd(signals, arguments.noBrowser ? nullptr : &explorer.getPresence());
    server.stop();
    thread.join();
    return 0;
}

int runProgram(int argc, char** argv) {
    CLI::App app(
        "Opens a local page on which to try the options of the Ombrel formatter and see every stage.",
        "ombrel-explorer");
    Arguments arguments;
    app.add_option("FILE", arguments.file, "the text to start with")->type_name("");
    app.add_option("--port", arguments.port, "the port to listen on; 0 or nothing is any free one")
        ->type_name("N");
    app.add_flag("--no-browser", arguments.noBrowser, "only print the address of the page");
    app.set_version_flag("--version", "ombrel-explorer " OMBREL_VERSION, "print the version");
    const auto printed = readCommandLine(app, argc, argv);
    if (!printed) {
        printRunProblem(std::cerr, "ombrel-explorer", printed.error().front(), Color::Off);
        return 2;
    }
    if (*printed) {
        std::cout << (*printed)->text;
        return 0;
    }
    const auto start = readStartText(arguments.file);
    return start ? serve(arguments, *start) : start.error();
}

} // namespace

int main(int argc, char** argv) {
    try {
        if (argc == 3 && std::string_view(argv[1]) == "--worker") {
            return workOnce(argv[2]);
        }
        return runProgram(argc, argv);
    } catch (const std::exception& error) {
        printRunProblem(std::cerr, "ombrel-explorer", {Code::InternalError, error.what()}, Color::Off);
        return 5;
    }
}
