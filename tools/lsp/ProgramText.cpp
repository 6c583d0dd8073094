#include "lsp/ProgramText.h"

#include "diagnostics/SourceText.h"
#include "text/TextEncoding.h"

#include <utility>

namespace ombrel::lsp {

ProgramText::ProgramText(DocumentPointer document)
    : document(std::move(document)), markLength(this->document->text.starts_with(u'\uFEFF') ? 1 : 0) {
    if (markLength > 0) {
        text = this->document->text.substr(markLength);
    }
}

std::vector<Edit> ProgramText::toDocument(const Edits& edits) const {
    std::vector<Edit> moved(edits.begin(), edits.end());
    for (Edit& edit : moved) {
        edit.offset += markLength;
    }
    return moved;
}

std::optional<Problem> ProgramText::findEncodingProblem() const {
    if (get().find(u'\0') == std::u16string::npos) {
        return std::nullopt;
    }
    const auto decoded = decodeSource(encodeLossy(get()));
    return decoded ? std::nullopt : std::optional(decoded.error().front());
}

} // namespace ombrel::lsp
