#include "ca/formatting/LegacyFormatter.h"
#include "legacy/Line.h"

#include <algorithm>

namespace ca::formatting::legacy {

namespace {

constexpr std::u16string_view whitespace = u"\t ";
constexpr std::u16string_view lineEnds = u"\r\n";
constexpr std::u16string_view whitespaceAndLineEnds = u"\t \n\r";

/// Length of `text` up to its last character that is not in `characters`, 0 if there is none.
std::size_t getLengthWithout(std::u16string_view characters, std::u16string_view text) {
    return text.find_last_not_of(characters) + 1;
}

bool isCommentUpToLineEnd(TokenType type) {
    return type == TokenType::LineTail || type == TokenType::LineComment ||
           type == TokenType::TrailingComment;
}

/// Trims a token that holds its own line end. A token that holds only a line end stays as it is.
void trimBlockCommentLine(std::u16string& lexeme) {
    const std::size_t inner = getLengthWithout(lineEnds, lexeme);
    if (inner == 0) {
        return;
    }
    const std::size_t kept = getLengthWithout(whitespaceAndLineEnds, lexeme);
    lexeme.erase(kept, inner - kept);
}

/// How many characters of the token before a line's end are kept.
std::size_t getTrimmedLength(const Token& token) {
    return token.type == TokenType::Whitespace ? 0 : getLengthWithout(whitespace, token.lexeme);
}

void trimBeforeLineEnd(std::vector<Token>& line) {
    const std::size_t index = line.size() - 2;
    Token& token = line[index];
    if (token.type != TokenType::Whitespace && !isCommentUpToLineEnd(token.type)) {
        return;
    }
    const std::size_t kept = getTrimmedLength(token);
    line[index + 1].column -= static_cast<std::uint32_t>(token.lexeme.size() - kept);
    if (kept == 0) {
        line.erase(line.begin() + static_cast<std::ptrdiff_t>(index));
    } else {
        token.lexeme.resize(kept);
    }
}

/// Characters of a run of whitespace, the tabs first.
struct WhitespaceCount {
    std::uint32_t tabs;
    std::uint32_t spaces;
};

WhitespaceCount countWhitespace(std::uint32_t width, const Settings& settings) {
    if (settings.useSpaces != 0) {
        return {0, width};
    }
    return {width / settings.tabSize, width % settings.tabSize};
}

} // namespace

std::u16string_view getLeadingWhitespace(std::u16string_view text) {
    return text.substr(0, text.find_first_not_of(whitespace));
}

std::uint32_t measureWhitespace(std::u16string_view text, const Settings& settings) {
    std::uint32_t width = 0;
    std::uint32_t spacesSinceTab = 0;
    for (const char16_t character : text) {
        if (character == u' ') {
            ++width;
            ++spacesSinceTab;
        } else if (character == u'\t') {
            width += settings.tabSize - spacesSinceTab % settings.tabSize;
            spacesSinceTab = 0;
        }
    }
    return width;
}

void replaceWhitespace(std::u16string& text, std::size_t length, std::uint32_t width,
                       const Settings& settings) {
    const WhitespaceCount count = countWhitespace(width, settings);
    text.replace(0, length, std::size_t{count.tabs} + count.spaces, u' ');
    std::fill_n(text.begin(), count.tabs, u'\t');
}

bool LegacyFormatter::isBlankLine(const std::vector<Token>& line) const {
    if (line.size() == 1) {
        return isLineEnding(line[0].type) || line[0].type == TokenType::EndOfInput;
    }
    return line.size() == 2 && line[0].type == TokenType::Whitespace;
}

void LegacyFormatter::removeTrailingWhitespaceInPlace(std::vector<Token>& line) const {
    if (line.size() >= 2) {
        trimBeforeLineEnd(line);
    } else if (line.size() == 1 && isBlockCommentLine(line[0].type)) {
        trimBlockCommentLine(line[0].lexeme);
    }
}

void LegacyFormatter::adjustLineOffsetInPlace(std::vector<Token>& line, long delta) const {
    if (delta == 0) {
        return;
    }
    for (std::size_t index = 1; index < line.size(); ++index) {
        line[index].column += static_cast<std::uint32_t>(delta);
    }
}

unsigned int LegacyFormatter::calculateIndentationSize(const std::u16string& text) const {
    return measureWhitespace(text, settings);
}

unsigned int LegacyFormatter::calculateNumOfWhitespaceChar(const unsigned int& width) const {
    const WhitespaceCount count = countWhitespace(width, settings);
    return count.tabs + count.spaces;
}

std::u16string LegacyFormatter::buildWhitespaceLexeme(const unsigned int& width) const {
    std::u16string lexeme;
    replaceWhitespace(lexeme, 0, width, settings);
    return lexeme;
}

} // namespace ca::formatting::legacy
