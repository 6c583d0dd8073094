#pragma once

#include "Message.h"

#include <functional>
#include <string>
#include <variant>
#include <vector>

namespace ombrel {

/// Lays out a text, the first argument, by the options in a JSON text, the second. The text parses and the
/// options are acceptable. What it throws is reported as a problem of the text.
using TreeFormatter = std::function<std::u16string(const std::u16string&, const std::u16string&)>;

/// What to do with a text whose lines end in different ways.
enum class MixedLineEnds {
    Refuse,
    UseFirst, ///< give all lines the end that the first line has
};

struct TreeOptions {
    std::u16string json;
    bool isIndentationEnabled; ///< what the options come to: true if "indentationEnabled" is in force
    MixedLineEnds mixedLineEnds = MixedLineEnds::Refuse;
};

/// Lays out a text with the tree formatter. All lines of the result end as the first line of the text does,
/// in LF if the text has one line only.
///
/// Gives problems if the text doesn't parse (all its syntax errors), if its line ends are mixed, or if the
/// result isn't the same program.
std::variant<std::u16string, std::vector<Problem>>
formatTree(const std::u16string& text, const TreeOptions& options, const TreeFormatter& formatter);

} // namespace ombrel
