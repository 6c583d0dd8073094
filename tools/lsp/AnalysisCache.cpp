#include "lsp/AnalysisCache.h"

#include <algorithm>

namespace ombrel::lsp {

namespace {

constexpr std::size_t mostKept = 4;
constexpr std::size_t largestKept = 1 << 18; // 16-bit characters

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
    auto analysis = std::make_shared<const Analysis>(document);
    if (document->text.size() <= largestKept) {
        forget(*document);
        const std::lock_guard guard(mutex);
        latest.push_back(analysis);
        if (latest.size() > mostKept) {
            latest.pop_front();
        }
    }
    return analysis;
}

void AnalysisCache::forget(const Document& document) {
    const std::lock_guard guard(mutex);
    std::erase_if(latest, [&](const AnalysisPointer& known) { return known->document->uri == document.uri; });
}

} // namespace ombrel::lsp
