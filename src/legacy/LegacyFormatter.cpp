#include "ca/formatting/LegacyFormatter.h"

#include "ca/formatting/lineWalk.h"
#include "tokens/TokenContract.h"

#include <algorithm>
#include <iterator>

namespace ca::formatting::legacy {

namespace {

/// How many tokens the result may have: each line can gain one token of whitespace. The line that the last
/// token names is only a hint of how many lines there are, and no list has more lines than tokens.
std::size_t estimateResultSize(const std::vector<Token>& tokens) {
    return tokens.empty() ? 0 : tokens.size() + std::min<std::size_t>(tokens.size(), tokens.back().line);
}

} // namespace

LegacyFormatter::LegacyFormatter(Settings settings) : settings(settings) {}

LegacyFormatter::~LegacyFormatter() = default;

std::vector<Token> LegacyFormatter::indentCode(const std::vector<Token>& tokens) {
    functionsHaveEnds = checkForFunctionEnds(tokens) ? 1 : 0;

    std::vector<Token> result;
    result.reserve(estimateResultSize(tokens));
    std::uint32_t number = 0;
    forEachLine(tokens.begin(), tokens.end(), [&](std::vector<Token>& line) {
        formatLine(*this, getLinePlace(settings, ++number), line);
        std::move(line.begin(), line.end(), std::back_inserter(result));
        return true;
    });
    return result;
}

std::vector<std::vector<Token>> LegacyFormatter::getLines(const std::vector<Token>& tokens) const {
    std::vector<std::vector<Token>> lines;
    forEachLine(tokens.begin(), tokens.end(), [&lines](const std::vector<Token>& line) {
        lines.push_back(line);
        return true;
    });
    return lines;
}

std::u16string LegacyFormatter::getFormattedText(const std::vector<Token>& tokens) const {
    std::size_t length = 0;
    for (const Token& token : tokens) {
        length += token.lexeme.size();
    }
    std::u16string text;
    text.reserve(length);
    for (const Token& token : tokens) {
        text += token.lexeme;
    }
    return text;
}

} // namespace ca::formatting::legacy
