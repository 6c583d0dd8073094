#include "format/Suppression.h"

#include "text/Whitespace.h"

#include <ca/lexer/lex.h>

#include <algorithm>
#include <optional>
#include <string_view>

#include <fmt/format.h>

namespace ombrel {

namespace {

using ca::lexer::Token;
using ca::lexer::TokenType;

constexpr std::u16string_view name = u"ombrel-format";

enum class Directive { None, Off, On };

/// What a comment line says: `%`, the name and one of two words, whitespace aside.
Directive readDirective(std::u16string_view comment) {
    comment = removeLeadingWhitespace(comment);
    comment = removeLeadingWhitespace(comment.substr(1));
    if (!comment.starts_with(name)) {
        return Directive::None;
    }
    comment.remove_prefix(name.size());
    const std::u16string_view word = removeLeadingWhitespace(comment);
    if (word.size() == comment.size()) {
        return Directive::None;
    }
    const std::u16string_view trimmed = removeTrailingWhitespace(word);
    return trimmed == u"off" ? Directive::Off : trimmed == u"on" ? Directive::On : Directive::None;
}

/// Walks over the tokens of a text and collects its regions.
class Reader {
public:
    Suppression read(const std::vector<Token>& tokens) {
        for (auto token = tokens.begin(); token != tokens.end(); ++token) {
            if (token->type == TokenType::LineComment) {
                readComment(*token, token + 1 == tokens.end() ? 0 : getLineEndLength(token[1]));
            }
            hasCode = hasCode || (!token->isWhitespace() && token->type != TokenType::EndOfInput);
            offset += token->lexeme.size();
        }
        if (open) {
            closeAtEnd();
        }
        std::sort(result.warnings.begin(), result.warnings.end(),
                  [](const Problem& a, const Problem& b) { return a.line < b.line; });
        return std::move(result);
    }

private:
    /// An `off` whose `on` hasn't come yet.
    struct Opening {
        SuppressedRegion region; ///< its end isn't known
        std::uint32_t column;
        bool isInFrontOfCode;
    };

    static std::size_t getLineEndLength(const Token& token) {
        return token.isEndOfLine() ? token.lexeme.size() : 0;
    }

    void readComment(const Token& comment, std::size_t lineEndLength) {
        const Directive directive = readDirective(comment.lexeme);
        if (directive == Directive::None) {
            return;
        }
        const auto indentation = static_cast<std::uint32_t>(comment.lexeme.find(u'%'));
        const std::uint32_t column = comment.column + indentation;
        if (directive == Directive::On) {
            turnOn(comment.line, column, offset + comment.lexeme.size() + lineEndLength);
        } else if (open) {
            warn(Code::RepeatedSuppression, comment.line, column,
                 fmt::format("formatting is already off since line {}; one 'on' ends both",
                             open->region.line));
        } else {
            open = Opening{{offset, 0, comment.line}, column, !hasCode};
        }
    }

    void turnOn(std::uint32_t line, std::uint32_t column, std::size_t end) {
        if (!open) {
            warn(Code::UselessSuppression, line, column,
                 "formatting isn't off here; this comment has no effect");
            return;
        }
        open->region.end = end;
        result.regions.push_back(open->region);
        open.reset();
    }

    void closeAtEnd() {
        if (open->isInFrontOfCode) {
            result.isWholeFile = true;
        } else {
            warn(Code::UnclosedSuppression, open->region.line, open->column,
                 "formatting is off from here to the end of the file; no '% ombrel-format on' follows");
        }
        open->region.end = offset;
        result.regions.push_back(open->region);
    }

    void warn(Code code, std::uint32_t line, std::uint32_t column, std::string text) {
        result.warnings.push_back({code, std::move(text), line, column});
    }

    Suppression result;
    std::optional<Opening> open;
    std::size_t offset = 0; ///< of the token at hand
    bool hasCode = false;
};

} // namespace

Suppression findSuppression(const std::u16string& text) {
    if (text.find(name) == text.npos) {
        return {};
    }
    return Reader().read(ca::lexer::lex(text));
}

} // namespace ombrel
