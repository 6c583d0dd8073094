#include "lsp/AnalysisCache.h"

#include <algorithm>

namespace ombrel::lsp {

namespace {

constexpr std::size_t mostKept = 4;
constexpr std::size_t mostCharacters = 1 << 21; // of all that are kept

} // namespace

AnalysisPointer AnalysisCache::get(const DocumentPointer& document) {
    {
        const std::lock_guard guard(mutex);
        const auto found = std::find_if(latest.begin(), latest.end(), [&](const AnalysisPointer& known) {
            return known->document->revision == document->revision;
        });
        if (found != latest.end()) {
            return *found;
        }
    }
    forget(*document);
    auto analysis = std::make_shared<const Analysis>(document);
    if (document->text.size() <= mostCharacters) {
        keep(analysis);
    }
    return analysis;
}

void AnalysisCache::keep(const AnalysisPointer& analysis) {
    const std::lock_guard guard(mutex);
    latest.push_back(analysis);
    std::size_t characters = 0;
    const auto isTooMuch = [&](const AnalysisPointer& known) {
        characters += known->document->text.size();
        return characters > mostCharacters;
    };
    const auto first = std::find_if(latest.rbegin(), latest.rend(), isTooMuch).base();
    latest.erase(latest.begin(),
                 std::max(first, latest.end() - std::min<std::ptrdiff_t>(mostKept, std::ssize(latest))));
}

void AnalysisCache::forget(const Document& document) {
    const std::lock_guard guard(mutex);
    std::erase_if(latest, [&](const AnalysisPointer& known) { return known->document->uri == document.uri; });
}

} // namespace ombrel::lsp
