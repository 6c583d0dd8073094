#pragma once

#include "diagnostics/Problem.h"
#include "lsp/Document.h"
#include "text/Edit.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace ombrel::lsp {

/// The text of a document without the byte-order mark, which belongs to the file and not to the program.
class ProgramText {
public:
    explicit ProgramText(DocumentPointer document);

    const std::u16string& get() const { return markLength == 0 ? document->text : text; }

    /// The offset in the document of one in the program.
    std::size_t toDocument(std::size_t offset) const { return offset + markLength; }

    /// The edits of the program as edits of the document.
    std::vector<Edit> toDocument(const Edits& edits) const;

    /// What keeps the text from being a file of Ombrel at all, whatever is in it: NUL characters.
    std::optional<Problem> findEncodingProblem() const;

private:
    DocumentPointer document;
    std::size_t markLength;
    std::u16string text; ///< empty without a mark
};

} // namespace ombrel::lsp
