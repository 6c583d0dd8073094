#include "format/CommentLines.h"

#include <ca/lexer/lex.h>

#include <algorithm>
#include <string_view>
#include <utility>

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

bool isBlank(std::u16string_view line) {
    return line.find_first_not_of(u" \t\r\n") == std::u16string_view::npos;
}

bool isLineOfBlock(const Token& token) {
    return TokenType::BlockCommentOpen <= token.type && token.type <= TokenType::BlockCommentClose;
}

/// Appends the lexeme of a token, whose line end, if it has one, becomes LF.
void append(std::u16string& text, std::u16string_view lexeme) {
    const std::u16string_view content = lexeme.substr(0, lexeme.find_first_of(u"\r\n"));
    text += content;
    if (content.size() < lexeme.size()) {
        text += u'\n';
    }
}

/// Follows a token list and tells block comments from those nested in them.
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

    /// At the opening line of a block comment that isn't nested.
    bool isAtOpening() const { return isOpening; }

    /// Directly behind the last line of a block comment that isn't nested.
    bool isBehindBlock() const { return isBehind; }

private:
    int depth = 0;
    bool isOpening = false;
    bool isClosed = false;
    bool isBehind = false;
};

/// The leading blanks of the opening line of each block comment that isn't nested.
std::vector<std::u16string> getBlockIndentations(const std::vector<Token>& tokens) {
    std::vector<std::u16string> indentations;
    BlockTracker tracker;
    for (const Token& token : tokens) {
        tracker.step(token);
        if (tracker.isAtOpening()) {
            indentations.emplace_back(getLeadingBlanks(token.lexeme));
        }
    }
    return indentations;
}

/// Joins tokens in order, with block comments where they shall go.
class CommentAligner {
public:
    explicit CommentAligner(std::vector<std::u16string> indentations)
        : indentations(std::move(indentations)) {}

    std::u16string run(const std::vector<Token>& tokens) {
        for (const Token& token : tokens) {
            tracker.step(token);
            appendAligned(token);
        }
        return std::move(text);
    }

private:
    void appendAligned(const Token& token) {
        if (tracker.isAtOpening()) {
            startBlock(token.lexeme);
        } else if (isLineOfBlock(token)) {
            appendMoved(token.lexeme);
        } else if (token.type == TokenType::LineComment) {
            appendComment(token.lexeme);
        } else {
            append(text, token.lexeme);
        }
    }

    /// Of two block comments with nothing between them only the first is indented by the formatter.
    void startBlock(std::u16string_view line) {
        oldIndentation = getLeadingBlanks(line);
        if (!tracker.isBehindBlock() && next < indentations.size()) {
            newIndentation = indentations[next];
        }
        ++next;
        appendComment(line);
    }

    void appendComment(std::u16string_view line) {
        text += tracker.isBehindBlock() ? newIndentation : std::u16string_view();
        append(text, withoutLeadingBlanks(line));
    }

    void appendMoved(std::u16string_view line) {
        if (!isBlank(line) && line.starts_with(oldIndentation)) {
            line.remove_prefix(oldIndentation.size());
            text += newIndentation;
        }
        append(text, line);
    }

    std::vector<std::u16string> indentations; ///< of the block comments, in the order of the text
    std::size_t next = 0;
    BlockTracker tracker;
    std::u16string_view oldIndentation; ///< of the current or last block comment
    std::u16string_view newIndentation;
    std::u16string text;
};

} // namespace

std::u16string joinLexemes(const std::vector<Token>& tokens) {
    std::u16string text;
    for (const Token& token : tokens) {
        append(text, token.lexeme);
    }
    return text;
}

std::u16string joinWithBareComments(const std::vector<Token>& tokens) {
    std::u16string text;
    BlockTracker tracker;
    for (const Token& token : tokens) {
        tracker.step(token);
        const bool isBare = token.type == TokenType::LineComment || tracker.isAtOpening();
        append(text, isBare ? withoutLeadingBlanks(token.lexeme) : token.lexeme);
    }
    return text;
}

std::u16string joinWithAlignedComments(const std::vector<Token>& tokens, const std::u16string& indented) {
    return CommentAligner(getBlockIndentations(ca::lexer::lex(indented))).run(tokens);
}

bool hasBlockComment(const std::vector<Token>& tokens) {
    return std::any_of(tokens.begin(), tokens.end(),
                       [](const Token& token) { return token.type == TokenType::BlockCommentOpen; });
}

} // namespace ombrel
