#include "ca/formatting/LegacyFormatter.h"
#include "legacy/Line.h"

#include <algorithm>

namespace ca::formatting::legacy {

namespace {

constexpr std::u16string_view blanks = u"\t ";
constexpr std::u16string_view lineEnds = u"\r\n";
constexpr std::u16string_view blanksAndLineEnds = u"\t \n\r";

/// Length of `text` up to its last character that is not in `characters`, 0 if there is none.
std::size_t getLengthWithout(std::u16string_view characters, std::u16string_view text) {
    return text.find_last_not_of(characters) + 1;
}

bool isCommentUpToLineEnd(TokenType type) {
    return type == TokenType::LineTail || type == TokenType::LineComment ||
           type == TokenType::TrailingComment;
}

/// Trims a token that holds its own line end. A token of line ends only stays.
void trimBlockCommentLine(std::u16string& lexeme) {
    const std::size_t inner = getLengthWithout(lineEnds, lexeme);
    if (inner == 0) {
        return;
    }
    const std::size_t kept = getLengthWithout(blanksAndLineEnds, lexeme);
    lexeme.erase(kept, inner - kept);
}

/// How many characters of the token in front of a line's end stay.
std::size_t getTrimmedLength(const Token& token) {
    return token.type == TokenType::Whitespace ? 0 : getLengthWithout(blanks, token.lexeme);
}

void trimBeforeLineEnd(EditedLine line) {
    const std::size_t index = line.size() - 2;
    Token& token = line[index];
    if (token.type != TokenType::Whitespace && !isCommentUpToLineEnd(token.type)) {
        return;
    }
    const std::size_t kept = getTrimmedLength(token);
    line[index + 1].column -= static_cast<std::uint32_t>(token.lexeme.size() - kept);
    if (kept == 0) {
        line.erase(index);
    } else {
        token.lexeme.resize(kept);
    }
}

/// Tabs and spaces of a run of blanks, the tabs first.
struct BlankCount {
    std::uint32_t tabs;
    std::uint32_t spaces;
};

BlankCount countBlanks(std::uint32_t width, const Settings& settings) {
    if (settings.useSpaces != 0) {
        return {0, width};
    }
    return {width / settings.tabSize, width % settings.tabSize};
}

} // namespace

std::u16string_view getLeadingBlanks(std::u16string_view text) {
    return text.substr(0, text.find_first_not_of(blanks));
}

std::uint32_t measureBlanks(std::u16string_view text, const Settings& settings) {
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

void replaceBlanks(std::u16string& text, std::size_t length, std::uint32_t width, const Settings& settings) {
    const BlankCount count = countBlanks(width, settings);
    text.replace(0, length, std::size_t{count.tabs} + count.spaces, u' ');
    std::fill_n(text.begin(), count.tabs, u'\t');
}

bool isBlank(LineView line) {
    if (line.size() == 1) {
        return isLineEnding(line[0].type) || line[0].type == TokenType::EndOfInput;
    }
    return line.size() == 2 && line[0].type == TokenType::Whitespace;
}

void trimLine(EditedLine line) {
    if (line.size() >= 2) {
        trimBeforeLineEnd(line);
    } else if (line.size() == 1 && isBlockCommentLine(line[0].type)) {
        trimBlockCommentLine(line[0].lexeme);
    }
}

void moveColumns(EditedLine line, long delta) {
    if (delta == 0) {
        return;
    }
    for (std::size_t index = 1; index < line.size(); ++index) {
        line[index].column += static_cast<std::uint32_t>(delta);
    }
}

bool LegacyFormatter::isBlankLine(const std::vector<Token>& line) const {
    return isBlank(line);
}

void LegacyFormatter::removeTrailingWhitespaceInPlace(std::vector<Token>& line) const {
    trimLine(EditedLine(line));
}

void LegacyFormatter::adjustLineOffsetInPlace(std::vector<Token>& line, long delta) const {
    moveColumns(EditedLine(line), delta);
}

unsigned int LegacyFormatter::calculateIndentationSize(const std::u16string& text) const {
    return measureBlanks(text, settings);
}

unsigned int LegacyFormatter::calculateNumOfWhitespaceChar(const unsigned int& width) const {
    const BlankCount count = countBlanks(width, settings);
    return count.tabs + count.spaces;
}

std::u16string LegacyFormatter::buildWhitespaceLexeme(const unsigned int& width) const {
    std::u16string lexeme;
    replaceBlanks(lexeme, 0, width, settings);
    return lexeme;
}

} // namespace ca::formatting::legacy
