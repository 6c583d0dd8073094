#pragma once

#include "lsp/ProgramText.h"

#include <ca/formatting/TreeFormat.h>

#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>

namespace ombrel::lsp {

/// A document and what tokenizer and parser make of it.
struct Analysis {
    explicit Analysis(const DocumentPointer& document)
        : document(document), program(document), parsed(ca::formatting::parseSource(program.get())) {}

    DocumentPointer document;
    ProgramText program;
    ca::formatting::ParsedSource parsed;
};

using AnalysisPointer = std::shared_ptr<const Analysis>;

/// Analyses of the latest documents that somebody asked about, so that a keystroke costs one parse, however
/// many questions the editor has about it. They need about thirty times the memory of their texts, so that of
/// a very large document isn't kept. May be used by several threads at once.
class AnalysisCache {
public:
    AnalysisPointer get(const DocumentPointer& document);

    /// Forgets a document that was closed.
    void forget(const Document& document);

private:
    void keep(const AnalysisPointer& analysis);

    std::mutex mutex;
    std::deque<AnalysisPointer> latest; ///< the newest last
};

} // namespace ombrel::lsp
