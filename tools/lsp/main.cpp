#include "diagnostics/Message.h"
#include "files/FileSystem.h"
#include "lsp/Arguments.h"
#include "lsp/FrameReader.h"
#include "lsp/Log.h"
#include "lsp/Server.h"
#include "lsp/Stream.h"

#include <csignal>
#include <cstdint>
#include <exception>
#include <iostream>
#include <limits>
#include <memory>

#include <malloc.h>
#include <unistd.h>

namespace {

using namespace ombrel;
using namespace ombrel::lsp;

constexpr int usageStatus = 2;

/// Ends the process without waiting for work that nobody will see. There is nothing to be saved.
[[noreturn]] void leave(int status) {
    ::_exit(status);
}

void watchProcess(std::int64_t processId) {
    if (processId > 0 && processId <= std::numeric_limits<int>::max()) {
        endWithProcess(static_cast<int>(processId));
    }
}

/// All threads share one pool of memory: malloc_trim() can't give back what is unused at the end of another.
void tuneMemory() {
#ifdef __GLIBC__
    ::mallopt(M_ARENA_MAX, 1);
#endif
}

void releaseMemory() {
#ifdef __GLIBC__
    ::malloc_trim(0);
#endif
}

/// The messages of one read.
void handleFrames(FrameReader& reader, Server& server, Log& log) {
    while (auto frame = reader.getNext()) {
        if (auto* body = std::get_if<std::string>(&*frame)) {
            log.write("received", *body);
            server.step(std::move(*body));
            if (const auto status = server.getExitStatus()) {
                leave(*status);
            }
            continue;
        }
        const auto& fault = std::get<FrameFault>(*frame);
        log.write("fault", fault.text);
        server.loseTexts();
        server.reportFault(fault.isFatal ? ErrorCode::ParseError : ErrorCode::InvalidRequest, fault.text);
        if (fault.isFatal) {
            leave(1);
        }
    }
}

[[noreturn]] void serve(const Arguments& arguments, Log& log) {
    const Stream stream;
    DiskFileSystem files;
    const auto send = [&](std::string_view body) {
        log.write("sent", body);
        if (!stream.write(body)) {
            leave(1);
        }
    };
    Server server(send, files, std::make_unique<ThreadedWorker>(),
                  {.watchParent = watchProcess, .releaseMemory = releaseMemory});
    if (arguments.processId) {
        watchProcess(*arguments.processId);
    }
    FrameReader reader;
    for (std::string bytes = stream.read(); !bytes.empty(); bytes = stream.read()) {
        reader.append(bytes);
        handleFrames(reader, server, log);
    }
    log.write("end", reader.isBetweenFrames() ? "of the stream" : "of the stream, inside a message");
    leave(1);
}

int refuse(const Problem& problem) {
    printRunProblem(std::cerr, "ombrel-lsp", problem, Color::Off);
    return usageStatus;
}

int runProgram(int argc, char** argv) {
    const auto parsed = parseArguments(argc, argv);
    if (!parsed) {
        return refuse(parsed.error().front());
    }
    if (const auto* printed = std::get_if<PrintedText>(&*parsed)) {
        std::cout << printed->text << std::flush;
        return std::cout ? 0 : 1;
    }
    const auto& arguments = std::get<Arguments>(*parsed);
    Log log(arguments.logFile);
    if (!log.isGood()) {
        return refuse({Code::WriteFailed, "can't write the log file " + getPrintableName(arguments.logFile)});
    }
    serve(arguments, log);
}

} // namespace

int main(int argc, char** argv) {
    std::signal(SIGPIPE, SIG_IGN); // a client that is gone is noticed where the write fails
    tuneMemory();
    try {
        return runProgram(argc, argv);
    } catch (const std::exception& error) {
        std::cerr << "ombrel-lsp: " << error.what() << '\n';
        leave(1);
    }
}
