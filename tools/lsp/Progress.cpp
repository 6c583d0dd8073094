#include "lsp/Progress.h"

#include <algorithm>
#include <utility>

#include <fmt/format.h>

namespace ombrel::lsp {

Progress::Progress(Connection& connection, std::optional<std::chrono::milliseconds> delay)
    : connection(connection), delay(delay) {
    if (delay) {
        thread = std::jthread([this](const std::stop_token& stop) { run(stop); });
    }
}

Progress::Work Progress::start(const std::string& title, const Json& token) {
    const std::lock_guard guard(mutex);
    const std::uint64_t id = ++lastId;
    const bool isClients = token.is_string() || token.is_number_integer();
    entries[id] = {title, isClients ? token : Json(fmt::format("ombrel-{}", id)), isClients,
                   std::chrono::steady_clock::now() + delay.value_or(std::chrono::milliseconds())};
    isChanged.notify_one();
    return {*this, id};
}

/// Waits for the next entry that has waited long enough. Entries start in the order of their deadlines.
void Progress::run(const std::stop_token& stop) {
    std::unique_lock lock(mutex);
    while (!stop.stop_requested()) {
        const auto next = std::find_if(entries.begin(), entries.end(),
                                       [](const auto& item) { return item.second.stage == Stage::Waiting; });
        if (next == entries.end()) {
            const std::uint64_t known = lastId;
            isChanged.wait(lock, stop, [&] { return lastId != known; });
        } else if (std::chrono::steady_clock::now() < next->second.deadline) {
            const auto deadline = next->second.deadline;
            isChanged.wait_until(lock, stop, deadline, [] { return false; });
        } else {
            const std::uint64_t id = next->first;
            next->second.stage = Stage::Asked;
            const Entry entry = next->second;
            lock.unlock();
            show(id, entry);
            lock.lock();
        }
    }
}

void Progress::show(std::uint64_t id, const Entry& entry) {
    if (entry.isClients) {
        begin(id);
    } else if (canCreate) {
        connection.request("window/workDoneProgress/create", {{"token", entry.token}},
                           [this, id](const Json* result) {
                               if (result != nullptr) {
                                   begin(id);
                               }
                           });
    }
}

/// Sends while it holds the lock, so that no end can come before its begin.
void Progress::begin(std::uint64_t id) {
    const std::lock_guard guard(mutex);
    const auto found = entries.find(id);
    if (found == entries.end()) {
        return; // done in the meantime
    }
    found->second.stage = Stage::Shown;
    const Json value = {{"kind", "begin"}, {"title", found->second.title}, {"cancellable", false}};
    connection.notify("$/progress", {{"token", found->second.token}, {"value", value}});
}

void Progress::finish(std::uint64_t id) {
    const std::lock_guard guard(mutex);
    const auto found = entries.find(id);
    if (found->second.stage == Stage::Shown) {
        connection.notify("$/progress", {{"token", found->second.token}, {"value", {{"kind", "end"}}}});
    }
    entries.erase(found);
}

} // namespace ombrel::lsp
