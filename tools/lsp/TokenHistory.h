#pragma once

#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace ombrel::lsp {

/// What the client has last been sent for each document, so that it can be sent the difference only. May be
/// used by several threads at once.
class TokenHistory {
public:
    using Numbers = std::vector<std::uint32_t>;

    /// Keeps a result and names it.
    std::string keep(const std::string& uri, Numbers numbers);

    /// The result of this name; empty if it isn't the last of the document.
    Numbers find(const std::string& uri, std::string_view name) const;

    void forget(const std::string& uri);

private:
    struct Entry {
        std::string name;
        Numbers numbers;
    };

    mutable std::mutex mutex;
    std::uint64_t lastName = 0;
    std::unordered_map<std::string, Entry> entries; ///< by URI
};

} // namespace ombrel::lsp
