#pragma once

#include "lsp/Client.h"
#include "lsp/Connection.h"

#include <mutex>
#include <set>
#include <string>

namespace ombrel::lsp {

/// Asks the client to tell when files change that options come from: options files, .editorconfig, ignore
/// files, and whatever options files extend, which may have any name. Does nothing for clients that can't be
/// asked. All members may be called on several threads at once.
class Watch {
public:
    /// The connection has to outlive it.
    explicit Watch(Connection& connection) : connection(connection) {}

    /// Asks for the files with names that are known, and for changes of settings.
    void start(const Client& client);

    /// Asks for those of these options files that aren't watched yet.
    void add(const Client& client, const std::set<std::string>& optionsFiles);

private:
    void watch(const Json& patterns);

    Connection& connection;
    std::mutex mutex;              ///< guards what follows
    std::set<std::string> watched; ///< paths that have watchers of their own
    int registrationCount = 0;
};

} // namespace ombrel::lsp
