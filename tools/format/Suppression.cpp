#include "format/Suppression.h"

#include "format/StatementTracker.h"
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

enum class Directive { None, Off, OffNext, On };

Directive readWords(std::u16string_view words) {
    if (words == u"on") {
        return Directive::On;
    }
    if (!words.starts_with(u"off")) {
        return Directive::None;
    }
    words.remove_prefix(3);
    if (words.empty()) {
        return Directive::Off;
    }
    const bool isNext = isWhitespace(words.front()) && removeLeadingWhitespace(words) == u"next";
    return isNext ? Directive::OffNext : Directive::None;
}

/// What a comment line says: `%`, the name and what to do, whitespace aside.
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
    return readWords(removeTrailingWhitespace(word));
}

/// Walks over the tokens of a text and collects its regions.
class Reader {
public:
    explicit Reader(const std::vector<Token>& tokens) : tokens(tokens) {}

    Suppression read() {
        for (token = tokens.begin(); token != tokens.end(); ++token) {
            if (token->type == TokenType::LineComment) {
                readComment(token[1].isEndOfLine() ? token[1].lexeme.size() : 0);
            }
            hasCode = hasCode || (!token->isWhitespace() && token->type != TokenType::EndOfInput);
            tracker.take(*token);
            offset += token->lexeme.size();
        }
        if (open) {
            closeAtEnd();
        }
        joinOverlapping();
        std::sort(result.warnings.begin(), result.warnings.end(),
                  [](const Problem& a, const Problem& b) { return a.line < b.line; });
        return std::move(result);
    }

private:
    /// An `off` whose `on` hasn't come yet.
    struct Opening {
        SuppressedRegion region; ///< its end isn't known
        bool isInFrontOfCode;
    };

    void readComment(std::size_t lineEndLength) {
        const Directive directive = readDirective(token->lexeme);
        if (directive == Directive::None) {
            return;
        }
        column = token->column + static_cast<std::uint32_t>(token->lexeme.find(u'%'));
        const std::size_t lineEnd = offset + token->lexeme.size() + lineEndLength;
        const SuppressedRegion region{offset, 0, lineEnd, 0, token->line, column};
        if (directive == Directive::On) {
            turnOn(lineEnd);
        } else if (open) {
            warn(Code::RepeatedSuppression,
                 fmt::format("formatting is already off since line {}; one 'on' ends both",
                             open->region.line));
        } else if (directive == Directive::Off) {
            open = Opening{region, !hasCode};
        } else {
            turnOffNext(region);
        }
    }

    void turnOn(std::size_t end) {
        if (!open) {
            warn(Code::UselessSuppression, "formatting isn't off here; this comment has no effect");
            return;
        }
        addRegion(open->region, offset, end);
        open.reset();
    }

    void turnOffNext(const SuppressedRegion& region) {
        if (offset < nextEnd) {
            warn(Code::RepeatedSuppression,
                 fmt::format("formatting is already off for the whole statement after line {}", nextLine));
            return;
        }
        if (!areFunctionsClosed) {
            areFunctionsClosed = hasFunctionEnds(tokens);
        }
        StatementSearch search(tracker, offset, *areFunctionsClosed);
        auto following = token;
        while (following != tokens.end() && search.take(*following)) {
            ++following;
        }
        const std::optional<std::size_t> end = search.getEnd();
        if (!end) {
            warn(Code::UselessSuppression, "no statement follows in this block; this comment has no effect");
            return;
        }
        addRegion(region, *end, *end);
        nextEnd = *end;
        nextLine = region.line;
    }

    void closeAtEnd() {
        if (open->isInFrontOfCode) {
            result.isWholeFile = true;
        } else {
            result.warnings.emplace_back(
                Code::UnclosedSuppression,
                "formatting is off from here to the end of the file; no '% ombrel-format on' follows",
                open->region.line, open->region.column);
        }
        addRegion(open->region, offset, offset);
    }

    void addRegion(SuppressedRegion region, std::size_t innerEnd, std::size_t end) {
        region.innerEnd = innerEnd;
        region.end = end;
        result.regions.push_back(region);
    }

    /// An `off` may be inside of the statement that an `off next` is for, and its `on` after it.
    void joinOverlapping() {
        auto& regions = result.regions;
        std::sort(regions.begin(), regions.end(),
                  [](const SuppressedRegion& a, const SuppressedRegion& b) { return a.begin < b.begin; });
        std::vector<SuppressedRegion> joined;
        for (const SuppressedRegion& region : regions) {
            if (joined.empty() || joined.back().end <= region.begin) {
                joined.push_back(region);
            } else if (joined.back().end < region.end) {
                joined.back().end = region.end;
                joined.back().innerEnd = region.innerEnd;
            }
        }
        regions = std::move(joined);
    }

    void warn(Code code, std::string text) {
        result.warnings.emplace_back(code, std::move(text), token->line, column);
    }

    const std::vector<Token>& tokens;
    std::vector<Token>::const_iterator token;
    std::size_t offset = 0;   ///< of the token
    std::uint32_t column = 0; ///< of the comment
    StatementTracker tracker; ///< before the token
    Suppression result;
    std::optional<Opening> open;
    std::size_t nextEnd = 0;                ///< of the last statement that an `off next` is for
    std::uint32_t nextLine = 0;             ///< of that comment
    std::optional<bool> areFunctionsClosed; ///< once it is needed
    bool hasCode = false;
};

} // namespace

Suppression findSuppression(const std::u16string& text) {
    if (text.find(name) == text.npos) {
        return {};
    }
    const std::vector<Token> tokens = ca::lexer::lex(text);
    return Reader(tokens).read();
}

} // namespace ombrel
