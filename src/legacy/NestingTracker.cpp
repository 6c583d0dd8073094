#include "ca/formatting/LegacyFormatter.h"
#include "ca/formatting/LineTracker.h"
#include "ca/formatting/lineWalk.h"

#include <algorithm>

namespace ca::formatting::legacy {

void LegacyFormatter::trackIndentationCausedByLine(const std::vector<ca::lexer::Token>& line) {
    LineTracker tracker(*this);
    if (!tracker.start(line)) {
        return;
    }
    for (const ca::lexer::Token& token : line) {
        tracker.take(token);
    }
    tracker.finish();
}

bool LegacyFormatter::checkForFunctionEnds(const std::vector<ca::lexer::Token>& tokens) const {
    FunctionEndFinder finder(*this);
    return std::any_of(tokens.begin(), tokens.end(),
                       [&finder](const auto& token) { return finder.isFunctionEnd(token.type); });
}

} // namespace ca::formatting::legacy
