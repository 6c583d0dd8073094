#pragma once

#include "diagnostics/Result.h"
#include "format/FormatRecord.h"
#include "format/Suppression.h"
#include "text/Edit.h"
#include "text/LineRange.h"

#include <ca/formatting/TreeFormat.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace ombrel {

/// 16-bit characters that a text may have at most. The trees of ordinary text take about a hundred times its
/// size, and those of dense text three times as much, so that more would end in a lack of memory.
inline constexpr std::size_t maximalTreeTextLength = std::size_t{64} << 20;

/// The tree formatter's operation. What it throws is reported as a problem of the text.
using TreeFormatter =
    std::function<ca::formatting::TreeFormatResult(const ca::formatting::TreeFormatRequest&)>;

/// The tree formatter's options, for any number of texts.
struct TreeOptions {
    std::shared_ptr<const ca::config::Config> config;
    /// The same without line breaking, for places where that would change a program. The same object if
    /// that is off anyway; null if there is none.
    std::shared_ptr<const ca::config::Config> unbrokenConfig;
    bool isTrimming = false;  ///< "trimUnnecessaryWhitespace"
    bool isIndenting = false; ///< "indentationEnabled"
};

/// The options in a JSON text, {"formatting": {...}}. The same configurations for equal texts, so that each
/// is read once. May be called on several threads at once.
TreeOptions getTreeOptions(const std::u16string& json);

/// A gap of the source that doesn't get the formatter's text, because that would change the program.
struct ExceptionalGap {
    std::size_t begin; ///< offset in 16-bit characters
    std::size_t end;
    bool isKept; ///< it has the source's text, and otherwise one that was made for it
};

/// What the tree engine makes of a text.
struct TreeResult {
    Edits edits;
    Problems notes;                              ///< the statements that keep their text, in order
    std::vector<ExceptionalGap> exceptions = {}; ///< in order; also where nothing may be edited
};

/// Formats a text with the tree formatter: all of it or, if there are ranges, these lines only. Ranges may be
/// in any order and overlap. Suppressed lines are never changed. What is outside of the lines to change is
/// formatted all the same, and then not used, so that a line comes out as it does in the whole text.
///
/// An edit replaces whitespace, line ends and separators between two code tokens or comments. One that
/// reaches over the border of a range, such as one that joins two lines, isn't made. A line end stays what it
/// is, and a new one is as the one before.
///
/// Where the formatter's text would change the program, the gap keeps what gives it its meaning; if that is
/// not enough, the statement keeps its text.
///
/// Fails if the text is too long, if a range starts after the last line, if the text doesn't parse (all its
/// syntax errors), if the formatter doesn't take the options, or if the result isn't the same program in
/// spite of all that.
///
/// Takes time in proportion to the text: everything that has to be kept is found in a few rounds, each of
/// which parses the result once.
Result<TreeResult> formatTree(const std::u16string& text, const TreeOptions& options,
                              const TreeFormatter& formatter, const std::vector<LineRange>& ranges = {},
                              const Suppression& suppression = {}, FormatRecord* record = nullptr);

} // namespace ombrel
