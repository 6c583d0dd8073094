#pragma once

#include "stages/Row.h"

#include <config/FormattingConfig.h>
#include <tree/WhitespaceNode.h>

#include <string>

namespace ca::formatting {
class FormatPass;
}

namespace ombrel {

/// The class of a gap as dumps name it: "NecessaryWhitespace".
std::string getGapClass(const ca::formatting::WhitespaceNode& gap);

/// What a pass that has run decided about a gap, and which options made it decide so.
GapDecision explainGap(const ca::formatting::WhitespaceNode& gap, ca::formatting::FormatPass& pass);

} // namespace ombrel
