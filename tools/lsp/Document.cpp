#include "lsp/Document.h"

#include <algorithm>

namespace ombrel::lsp {

std::size_t Document::findPlace(std::size_t line, std::size_t column) const {
    const std::size_t index = std::clamp<std::size_t>(line, 1, lines.getLineCount()) - 1;
    const std::size_t markLength = index == 0 && text.starts_with(u'\uFEFF') ? 1 : 0;
    return std::min(lines.getStart(index) + markLength + std::max<std::size_t>(column, 1) - 1,
                    lines.getEnd(text, index));
}

} // namespace ombrel::lsp
