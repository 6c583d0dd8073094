#pragma once

#include <string>
#include <string_view>

namespace ombrel {

// Every text is formatted in a process of its own, this program started again, with limits on its time and
// memory. Whatever a text does to the formatter, the server and its other requests never notice.

/// Wall-clock seconds, and processor seconds, that one request may take.
constexpr int maximalSeconds = 5;

/// Bytes of address space of one request's process.
constexpr std::size_t maximalMemory = std::size_t{512} << 20;

/// What became of a request.
struct WorkerResult {
    enum class Kind {
        Answer,
        BadRequest, ///< `text` says why
        TooSlow,
        TooLarge,  ///< it needs more memory than there is for one request, or the answer is too long
        Failed,    ///< a fault of ours
        Abandoned, ///< nobody waits for the answer any more
    };

    Kind kind;
    std::string text;
};

/// Has a process do the operation ("format", "dump") on a request's body. Ends it early if the client closes
/// its socket; -1 is no client.
WorkerResult runWorker(const char* operation, std::string_view body, int clientSocket);

/// The other side: limits this process, reads a body from standard input and writes the answer to standard
/// output. Returns the exit status.
int workOnce(std::string_view operation);

/// The same for a body in memory and without limits.
WorkerResult work(std::string_view operation, std::string_view body);

} // namespace ombrel
