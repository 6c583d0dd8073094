#pragma once

#include "lsp/Json.h"
#include "lsp/Progress.h"

#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>

namespace ombrel::lsp {

/// The requests that have no answer yet. Each gets exactly one: from whoever finishes it first, its handler
/// or a cancellation. May be used by several threads at once.
class PendingRequests {
public:
    /// Tells a request from later ones with the same id.
    using Ticket = std::uint64_t;

    /// Nothing if a request with this id is still pending. The work ends with the request: a client knows its
    /// token no longer than until the answer.
    std::optional<Ticket> start(const Json& id, Progress::Work work);

    bool isPending(const Json& id, Ticket ticket) const;

    /// True for the first caller, who then has to answer.
    bool finish(const Json& id, Ticket ticket);

    /// The same for whatever request has this id.
    bool cancel(const Json& id);

private:
    struct Entry {
        Ticket ticket;
        Progress::Work work;
    };

    mutable std::mutex mutex;
    Ticket lastTicket = 0;
    std::unordered_map<std::string, Entry> entries; ///< by id, as JSON
};

} // namespace ombrel::lsp
