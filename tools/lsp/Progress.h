#pragma once

#include "lsp/Connection.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <utility>

namespace ombrel::lsp {

/// Shows in the editor that something takes longer than a moment: work that has gone on for `delay` gets a
/// progress that begins then and ends with the work; without a delay nothing is shown. All members may be
/// called on several threads at once.
class Progress {
public:
    /// The connection has to outlive it.
    Progress(Connection& connection, std::optional<std::chrono::milliseconds> delay);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// Whether the client can be asked to show progress that it didn't offer a token for.
    void setClientCanCreate(bool can) { canCreate = can; }

    /// Counts as work as long as it lives.
    class Work {
    public:
        Work(Progress& progress, std::uint64_t id) : progress(&progress), id(id) {}
        Work(Work&& other) noexcept : progress(std::exchange(other.progress, nullptr)), id(other.id) {}
        Work& operator=(Work&&) = delete;
        ~Work() {
            if (progress != nullptr) {
                progress->finish(id);
            }
        }

    private:
        Progress* progress;
        std::uint64_t id;
    };

    /// Starts work. `token` is the client's, null if it has none for this.
    Work start(const std::string& title, const Json& token);

private:
    enum class Stage { Waiting, Asked, Shown };

    struct Entry {
        std::string title;
        Json token;
        bool isClients; ///< the token, so that nobody has to be asked
        std::chrono::steady_clock::time_point deadline;
        Stage stage = Stage::Waiting;
    };

    void run(const std::stop_token& stop);
    void show(std::uint64_t id, const Entry& entry);
    void begin(std::uint64_t id);
    void finish(std::uint64_t id);

    Connection& connection;
    std::optional<std::chrono::milliseconds> delay;
    std::atomic<bool> canCreate = false;
    std::mutex mutex; ///< guards what follows
    std::uint64_t lastId = 0;
    std::map<std::uint64_t, Entry> entries; ///< by the order in which they started
    std::condition_variable_any isChanged;
    std::jthread thread; ///< shows what has taken long enough; last, so that it ends before what it uses
};

} // namespace ombrel::lsp
