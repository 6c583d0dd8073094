#pragma once

#include "lsp/Feature.h"
#include "text/Edit.h"

#include <vector>

namespace ombrel::lsp {

/// More edits of one answer are joined into one.
inline constexpr std::size_t maximalEditCount = 10'000;

/// textDocument/formatting: a list of TextEdit, empty if nothing changes or if the document is left out by
/// an ignore file. Null if the text doesn't parse and has to: the diagnostics say so already. Anything else
/// that keeps the text from being formatted is an error.
Json formatDocument(const Question& question);

/// textDocument/rangeFormatting and textDocument/rangesFormatting: the lines that the ranges touch.
Json formatRange(const Question& question);
Json formatRanges(const Question& question);

/// textDocument/willSaveWaitUntil: null unless the user wants that in the settings, and after any failure.
Json formatBeforeSaving(const Question& question);

/// Edits of a document as TextEdits: none of them starts or ends inside of a CR LF or a surrogate pair, or
/// replaces a character by itself at its edges.
Json writeEdits(const Document& document, const std::vector<Edit>& edits);

} // namespace ombrel::lsp
