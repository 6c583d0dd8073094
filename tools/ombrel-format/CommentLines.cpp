#include "CommentLines.h"

#include <ca/lexer/lex.h>

#include <algorithm>
#include <string_view>

namespace ombrel {

namespace {

using ca::lexer::Token;
using ca::lexer::TokenType;

std::u16string_view getLeadingBlanks(std::u16string_view line) {
    return line.substr(0, std::min(line.find_first_not_of(u" \t"), line.size()));
}

std::u16string_view withoutLeadingBlanks(std::u16string_view line) {
    return line.substr(getLeadingBlanks(line).size());
}

bool isLineOfBlock(const Token& token) {
    return TokenType::BlockCommentOpen <= token.type && token.type <= TokenType::BlockCommentClose;
}

void appendLine(std::u16string& text, std::u16string_view line) {
    const std::u16string_view content = line.substr(0, line.find_first_of(u"\r\n"));
    text += content;
    if (content.size() < line.size()) {
        text += u'\n';
    }
}

/// Follows a token list, telling block comments from what stands inside them.
class BlockTracker {
public:
    /// To be called with each token in turn.
    void step(const Token& token) {
        isBehind = isClosed;
        isOpening = token.type == TokenType::BlockCommentOpen && depth == 0;
        depth += token.type == TokenType::BlockCommentOpen ? 1 : 0;
        depth -= token.type == TokenType::BlockCommentClose ? 1 : 0;
        isClosed = token.type == TokenType::BlockCommentClose && depth == 0;
    }

    bool isAtOpening() const { return isOpening; }  ///< the line that opens an outermost block comment
    bool isBehindBlock() const { return isBehind; } ///< directly behind the end of an outermost one

private:
    int depth = 0;
    bool isOpening = false;
    bool isClosed = false;
    bool isBehind = false;
};

/// The leading blanks of the opening line of each outermost block comment.
std::vector<std::u16string_view> getBlockIndentations(const std::vector<Token>& tokens) {
    std::vector<std::u16string_view> indentations;
    BlockTracker tracker;
    for (const Token& token : tokens) {
        tracker.step(token);
        if (tracker.isAtOpening()) {
            indentations.push_back(getLeadingBlanks(token.lexeme));
        }
    }
    return indentations;
}

class BlockAlignment {
public:
    explicit BlockAlignment(std::vector<std::u16string_view> oldIndentations)
        : oldIndentations(std::move(oldIndentations)) {}

    std::u16string run(const std::vector<Token>& tokens) {
        for (const Token& token : tokens) {
            tracker.step(token);
            append(token);
        }
        return std::move(text);
    }

private:
    void append(const Token& token) {
        if (tracker.isAtOpening()) {
            open(token.lexeme);
        } else if (isLineOfBlock(token)) {
            move(token.lexeme);
        } else if (token.type == TokenType::LineComment && tracker.isBehindBlock()) {
            text += newIndentation;
            text += withoutLeadingBlanks(token.lexeme);
        } else {
            text += token.lexeme;
        }
    }

    void open(std::u16string_view line) {
        oldIndentation = next < oldIndentations.size() ? oldIndentations[next++] : std::u16string_view();
        if (!tracker.isBehindBlock()) {
            newIndentation = getLeadingBlanks(line);
        }
        text += newIndentation;
        text += withoutLeadingBlanks(line);
    }

    void move(std::u16string_view line) {
        const bool isBlank = line.find_first_not_of(u" \t\r\n") == std::u16string_view::npos;
        if (!isBlank && line.starts_with(oldIndentation)) {
            line.remove_prefix(oldIndentation.size());
            text += newIndentation;
        }
        text += line;
    }

    std::vector<std::u16string_view> oldIndentations;
    std::size_t next = 0;
    BlockTracker tracker;
    std::u16string_view oldIndentation;
    std::u16string_view newIndentation;
    std::u16string text;
};

} // namespace

std::u16string getTextToFormat(const std::vector<Token>& tokens, bool isIndented) {
    std::u16string text;
    BlockTracker tracker;
    for (const Token& token : tokens) {
        tracker.step(token);
        const bool isMovable = token.type == TokenType::LineComment || tracker.isAtOpening();
        appendLine(text, isIndented && isMovable ? withoutLeadingBlanks(token.lexeme) : token.lexeme);
    }
    return text;
}

std::u16string alignBlockComments(const std::vector<Token>& before, const std::u16string& result) {
    std::vector<std::u16string_view> indentations = getBlockIndentations(before);
    if (indentations.empty()) {
        return result;
    }
    return BlockAlignment(std::move(indentations)).run(ca::lexer::lex(result));
}

} // namespace ombrel
