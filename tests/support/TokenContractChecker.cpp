#include "support/TokenContractChecker.h"

#include "tokens/TokenContract.h"

#include <algorithm>
#include <string_view>

namespace {

using ca::formatting::isBlockCommentLine;
using ca::formatting::isLineEnding;
using ca::lexer::Token;
using ca::lexer::TokenType;

bool isBlank(char16_t c) {
    return c == u' ' || c == u'\t';
}

bool isEndCharacter(char16_t c) {
    return c == u'\n' || c == u'\r';
}

bool opensBlock(TokenType type) {
    const int number = static_cast<int>(type);
    return number == 1 || (3 <= number && number <= 7) || number == 13 || (20 <= number && number <= 26);
}

/// Length of the line end that `text` ends in, 0 if there is none.
std::size_t getLineEndLength(std::u16string_view text) {
    if (text.ends_with(u"\r\n")) {
        return 2;
    }
    return !text.empty() && isEndCharacter(text.back()) ? 1 : 0;
}

class Checker {
public:
    Checker(std::u16string_view text, const std::vector<Token>& tokens) : text(text), tokens(tokens) {}

    std::vector<std::string> run() {
        for (index = 0; index < tokens.size(); ++index) {
            checkPlace();
            checkKind();
            checkNeighbours();
            advance();
        }
        require(offset == text.size(), "the lexemes are not the whole text");
        require(!tokens.empty() && tokens.back().type == TokenType::EndOfInput, "no EndOfInput at the end");
        return std::move(faults);
    }

private:
    const Token& token() const { return tokens[index]; }

    bool isFirstOnLine() const { return token().column == 1; }

    void require(bool holds, const char* rule) {
        if (!holds && faults.size() < 20) {
            faults.push_back("token " + std::to_string(index) + " at line " + std::to_string(line) +
                             ", column " + std::to_string(column) + ": " + rule);
        }
    }

    void checkPlace() {
        const std::u16string& lexeme = token().lexeme;
        require(text.substr(offset, lexeme.size()) == lexeme, "lexeme differs from the text");
        require(token().line == line && token().column == column, "wrong line or column");
        const bool isLast = index + 1 == tokens.size();
        require((token().type == TokenType::EndOfInput) == isLast, "EndOfInput is not the last token");
        require(lexeme.empty() == isLast, "an empty lexeme");
    }

    void checkKind() {
        const std::u16string& lexeme = token().lexeme;
        const std::size_t endLength = getLineEndLength(lexeme);
        switch (token().type) {
        case TokenType::LineEnding75:
            require(lexeme == u"\n", "LineEnding75 is not LF");
            return;
        case TokenType::LineEnding76:
            require(lexeme == u"\r\n", "LineEnding76 is not CRLF");
            return;
        case TokenType::LineEnding77:
            require(lexeme == u"\r" && !text.substr(offset + 1).starts_with(u'\n'),
                    "LineEnding77 is not a CR");
            return;
        case TokenType::Whitespace:
            require(std::all_of(lexeme.begin(), lexeme.end(), isBlank), "Whitespace holds something else");
            return;
        case TokenType::LineComment:
            require(isFirstOnLine(), "LineComment is not first on its line");
            break;
        case TokenType::TrailingComment:
        case TokenType::LineTail:
            require(!isFirstOnLine(), "TrailingComment or LineTail is first on its line");
            break;
        case TokenType::BlockCommentOpen:
        case TokenType::BlockCommentBody:
        case TokenType::BlockCommentClose:
            require(isFirstOnLine(), "a block comment's line does not start its line");
            require(endLength != 0 || offset + lexeme.size() == text.size(),
                    "a block comment's line has no end");
            break;
        case TokenType::End:
            require(openBlocks > 0, "End closes nothing");
            openBlocks -= openBlocks > 0 ? 1 : 0;
            break;
        default:
            openBlocks += opensBlock(token().type) ? 1 : 0;
        }
        const std::size_t inner =
            isBlockCommentLine(token().type) ? lexeme.size() - endLength : lexeme.size();
        require(
            std::none_of(lexeme.begin(), lexeme.begin() + static_cast<std::ptrdiff_t>(inner), isEndCharacter),
            "a line end inside a token");
    }

    void checkNeighbours() {
        if (index + 1 >= tokens.size()) {
            return;
        }
        const TokenType next = tokens[index + 1].type;
        if (token().type == TokenType::Whitespace) {
            require(next != TokenType::Whitespace, "two Whitespace tokens side by side");
            require(!isFirstOnLine() || next != TokenType::LineComment,
                    "whitespace before a LineComment is a token of its own");
        }
        if (token().isComment() && !isBlockCommentLine(token().type)) {
            require(isLineEnding(next) || next == TokenType::EndOfInput,
                    "a comment does not run to the line end");
        }
    }

    void advance() {
        const std::u16string& lexeme = token().lexeme;
        offset += lexeme.size();
        if (isLineEnding(token().type) ||
            (isBlockCommentLine(token().type) && getLineEndLength(lexeme) != 0)) {
            ++line;
            column = 1;
        } else {
            column += static_cast<std::uint32_t>(lexeme.size());
        }
    }

    std::u16string_view text;
    const std::vector<Token>& tokens;
    std::vector<std::string> faults;
    std::size_t index = 0;
    std::size_t offset = 0;
    std::uint32_t line = 1;
    std::uint32_t column = 1;
    std::size_t openBlocks = 0;
};

} // namespace

std::vector<std::string> checkTokenContract(const std::u16string& text, const std::vector<Token>& tokens) {
    return Checker(text, tokens).run();
}
