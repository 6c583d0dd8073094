#pragma once

#include "lsp/Json.h"
#include "lsp/Position.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace ombrel::lsp {

enum class DocumentKind {
    Source,
    OptionsFile, ///< called `.ombrel-format.json`
    Other,       ///< of some other language: nothing is said about it
};

/// One version of a text in the editor. Never changes, so that any thread may work on it while the editor
/// goes on.
struct Document {
    std::string uri;
    std::optional<std::string> path; ///< absolute; none if it isn't a file
    DocumentKind kind;
    std::int64_t version;
    std::uint64_t revision; ///< of the store: another one for each text
    PositionEncoding encoding;
    std::u16string text;
    LineIndex lines;

    std::size_t findOffset(Position position) const {
        return lsp::findOffset(text, lines, position, encoding);
    }

    /// The offset of a line and a column of the program, both from 1, as problems have them. What is beyond
    /// an end means that end.
    std::size_t findPlace(std::size_t line, std::size_t column) const;

    PositionFinder makeFinder() const { return {text, lines, encoding}; }
};

using DocumentPointer = std::shared_ptr<const Document>;

} // namespace ombrel::lsp
