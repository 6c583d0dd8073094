#pragma once

#include "diagnostics/Message.h"
#include "format/Options.h"
#include "format/Suppression.h"

#include <functional>
#include <string>
#include <variant>
#include <vector>

namespace ombrel {

/// Lays out a text, the first argument, by the options in a JSON text, the second. May answer with words of
/// its own where it doesn't take one of them. What it throws is reported as a problem of the text.
using TreeFormatter = std::function<std::u16string(const std::u16string&, const std::u16string&)>;

struct TreeOptions {
    std::u16string json;
    bool isIndentationEnabled; ///< what the options come to: true if "indentationEnabled" is in force
    MixedLineEnds mixedLineEnds = MixedLineEnds::Refuse;
};

/// Lays out a text with the tree formatter. All lines of the result end as the first line of the text does,
/// in LF if the text has one line only.
///
/// Suppressed lines are laid out like all others and then put back as they were, so that what they would have
/// come to is never looked at.
///
/// Gives problems if the text doesn't parse (all its syntax errors), if its line ends are mixed, if the
/// formatter doesn't take the options, if suppressed lines can't be found again, or if the result isn't the
/// same program.
std::variant<std::u16string, std::vector<Problem>> formatTree(const std::u16string& text,
                                                              const TreeOptions& options,
                                                              const TreeFormatter& formatter,
                                                              const Suppression& suppression = {});

} // namespace ombrel
