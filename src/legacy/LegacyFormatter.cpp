#include "ca/formatting/LegacyFormatter.h"

#include "legacy/Line.h"

#include <ombrel/hugePages.h>

#include <algorithm>

namespace ca::formatting::legacy {

namespace {

using TokenIterator = std::vector<Token>::const_iterator;

/// The place behind the token that ends the line starting at `begin`.
TokenIterator findLineEnd(TokenIterator begin, TokenIterator end) {
    const auto last = std::find_if(begin, end, [](const Token& token) {
        return isLineEnding(token.type) || isBlockCommentLine(token.type);
    });
    return last == end ? end : last + 1;
}

/// How many tokens the result may have: each line can gain one token of blanks. The number of lines is the
/// tokenizer's word and only a hint, and no list has more lines than tokens.
std::size_t estimateResultSize(const std::vector<Token>& tokens) {
    return tokens.empty() ? 0 : tokens.size() + std::min<std::size_t>(tokens.size(), tokens.back().line);
}

void formatBlankLine(const LegacyFormatter& formatter, bool isInRange, EditedLine line) {
    const BlankLineStyle style = formatter.settings.blankLineStyle;
    if (style == BlankLineStyle::Ignore || !isInRange) {
        return;
    }
    trimLine(line);
    if (style != BlankLineStyle::Trim) {
        indentLine(formatter, line);
    }
}

/// Formats the line in place. Blank lines are not tracked, so they neither change the level nor end a
/// continuation; lines before the range are tracked as they stand; lines behind it don't matter any more.
void formatLine(LegacyFormatter& formatter, std::uint32_t number, EditedLine line) {
    const Settings& settings = formatter.settings;
    const bool isInRange = settings.firstLine <= number && number <= settings.lastLine;
    if (isBlank(line)) {
        formatBlankLine(formatter, isInRange, line);
        return;
    }
    if (isInRange) {
        trimLine(line);
        if (line[0].type == TokenType::BlockCommentBody) {
            return;
        }
        indentLine(formatter, line);
    }
    if (number <= settings.lastLine) {
        trackLine(formatter, line);
    }
}

} // namespace

LegacyFormatter::LegacyFormatter(Settings settings) : settings(settings) {}

LegacyFormatter::~LegacyFormatter() = default;

std::vector<Token> LegacyFormatter::indentCode(const std::vector<Token>& tokens) {
    functionsHaveEnds = checkForFunctionEnds(tokens) ? 1 : 0;

    std::vector<Token> result;
    result.reserve(estimateResultSize(tokens));
    ombrel::adviseHugePages(result.data(), result.capacity() * sizeof(Token));
    std::uint32_t number = 0;
    for (auto begin = tokens.begin(); begin != tokens.end();) {
        const auto end = findLineEnd(begin, tokens.end());
        const EditedLine line(result, result.size());
        result.insert(result.end(), begin, end);
        formatLine(*this, ++number, line);
        begin = end;
    }
    return result;
}

std::vector<std::vector<Token>> LegacyFormatter::getLines(const std::vector<Token>& tokens) const {
    std::vector<std::vector<Token>> lines;
    for (auto begin = tokens.begin(); begin != tokens.end();) {
        const auto end = findLineEnd(begin, tokens.end());
        lines.emplace_back(begin, end);
        begin = end;
    }
    return lines;
}

std::u16string LegacyFormatter::getFormattedText(const std::vector<Token>& tokens) const {
    std::size_t length = 0;
    for (const Token& token : tokens) {
        length += token.lexeme.size();
    }
    std::u16string text;
    text.reserve(length);
    ombrel::adviseHugePages(text.data(), length * sizeof(char16_t));
    for (const Token& token : tokens) {
        text += token.lexeme;
    }
    return text;
}

} // namespace ca::formatting::legacy
