#include "lsp/PendingRequests.h"

#include <utility>

namespace ombrel::lsp {

std::optional<PendingRequests::Ticket> PendingRequests::start(const Json& id, Progress::Work work) {
    const std::lock_guard guard(mutex);
    const bool isNew = entries.try_emplace(id.dump(), Entry{lastTicket + 1, std::move(work)}).second;
    return isNew ? std::optional(++lastTicket) : std::nullopt;
}

bool PendingRequests::isPending(const Json& id, Ticket ticket) const {
    const std::lock_guard guard(mutex);
    const auto found = entries.find(id.dump());
    return found != entries.end() && found->second.ticket == ticket;
}

bool PendingRequests::finish(const Json& id, Ticket ticket) {
    const std::lock_guard guard(mutex);
    const auto found = entries.find(id.dump());
    if (found == entries.end() || found->second.ticket != ticket) {
        return false;
    }
    entries.erase(found);
    return true;
}

bool PendingRequests::cancel(const Json& id) {
    const std::lock_guard guard(mutex);
    return entries.erase(id.dump()) > 0;
}

} // namespace ombrel::lsp
