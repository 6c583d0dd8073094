#include "lsp/TokenHistory.h"

#include <utility>

namespace ombrel::lsp {

std::string TokenHistory::keep(const std::string& uri, Numbers numbers) {
    const std::lock_guard guard(mutex);
    std::string name = std::to_string(++lastName);
    entries[uri] = {name, std::move(numbers)};
    return name;
}

TokenHistory::Numbers TokenHistory::find(const std::string& uri, std::string_view name) const {
    const std::lock_guard guard(mutex);
    const auto found = entries.find(uri);
    return found == entries.end() || found->second.name != name ? Numbers() : found->second.numbers;
}

void TokenHistory::forget(const std::string& uri) {
    const std::lock_guard guard(mutex);
    entries.erase(uri);
}

} // namespace ombrel::lsp
