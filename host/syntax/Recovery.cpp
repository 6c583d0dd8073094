// How the parser goes on after a fault. What is skipped reaches to the end of the statement, as the tokenizer
// sees it, so that the next statement is read as if nothing had happened:
//
//     x = [1 2            the fault is noticed at the 'for', since the tokenizer gives the bracket up there;
//     for i = 1:3         the loop is parsed
//     end

#include "syntax/Recovery.h"

#include <algorithm>
#include <utility>

namespace ca::syntax {

namespace {

constexpr std::uint32_t deepestNesting = 256;

/// Whether a keyword stands for itself wherever it is: it ends what is skipped, unless a bracket is open.
bool isStructure(TokenType type) {
    switch (type) {
    case TokenType::SecondaryKeyword9:
    case TokenType::SecondaryKeyword10:
    case TokenType::SecondaryKeyword16:
    case TokenType::SecondaryIndentedKeyword18:
    case TokenType::SecondaryIndentedKeyword19:
        return true;
    default:
        return opensBlock(type);
    }
}

} // namespace

void Parser::Levels::enter() {
    if (!parser.reportTooDeep()) {
        ++parser.depth;
        ++count;
        return;
    }
    throw Abandoned{};
}

/// Statements behind a block that is not entered would belong to nothing, so this is the end.
void Parser::Levels::enterBlock() {
    if (parser.reportTooDeep()) {
        throw Stopped{};
    }
    ++parser.depth;
    ++count;
}

bool Parser::reportTooDeep() {
    if (depth < static_cast<int>(deepestNesting)) {
        return false;
    }
    report(u"NestingTooDeep", u"this is nested deeper than " + toText(deepestNesting) + u" levels",
           cursor.get());
    return true;
}

void Parser::report(std::u16string_view identifier, std::u16string message, const CodeToken& at) {
    lastFault = at.index;
    if (isInReportedHeader(at)) {
        return;
    }
    errors.report(identifier, std::move(message), cursor.getToken(at));
    if (errors.isFull()) {
        throw Stopped{};
    }
}

/// A keyword in the wrong place is a fault, and what is missing on its line follows from it: `x = if`.
bool Parser::isInReportedHeader(const CodeToken& at) const {
    return !blocks.empty() && blocks.back().isReported &&
           cursor.getToken(blocks.back().keyword).line == cursor.getToken(at).line;
}

void Parser::fail(std::u16string_view identifier, std::u16string message, const CodeToken& at) {
    report(identifier, std::move(message), at);
    throw Abandoned{};
}

void Parser::failExpected(std::u16string_view what) {
    failIfUnrecognized();
    fail(u"UnexpectedText", u"expected " + std::u16string(what) + u" before " + describeCurrent(),
         cursor.get());
}

void Parser::failIfUnrecognized() {
    if (!isAt(TokenType::Unrecognized)) {
        return;
    }
    const Token& token = cursor.getToken(cursor.get());
    if (token.lexeme.front() == u'\'' || token.lexeme.front() == u'"') {
        fail(u"UnclosedString", u"this string is not closed on its line", cursor.get());
    }
    fail(u"UnrecognizedText", u"unrecognised text " + describeCurrent(), cursor.get());
}

/// The comment has swallowed everything behind it, so whatever else is missing there follows from it.
void Parser::checkUnclosedComment() {
    if (!cursor.getUnclosedComment()) {
        return;
    }
    const Token& token = cursor.getToken({lineEnd, *cursor.getUnclosedComment(), 0, false});
    const auto blanks = static_cast<std::uint32_t>(token.lexeme.find(u'%'));
    errors.reportAt(u"UnclosedComment", u"this block comment is not closed by '%}'", token.line,
                    token.column + blanks, 2);
}

/// " in column 9" for a partner on the current line, " on line 3" for any other.
std::u16string Parser::describePlace(const CodeToken& partner) const {
    const Token& token = cursor.getToken(partner);
    if (token.line == cursor.getToken(cursor.get()).line) {
        return u" in column " + toText(token.column);
    }
    return u" on line " + toText(token.line);
}

Parser::Context Parser::getContext() const {
    return {pending.size(), operands.size(), operators.size(), brackets.size(),
            blocks.size(),  indexDepth,      blankSeparates};
}

void Parser::restore(const Context& context) {
    pending.resize(context.pending);
    operands.resize(context.operands);
    operators.resize(context.operators);
    brackets.resize(context.brackets);
    blocks.resize(context.blocks);
    indexDepth = context.indexDepth;
    blankSeparates = context.blankSeparates;
}

void Parser::skipStatement(const Context& start) {
    while (!isAt(TokenType::EndOfInput) && !isAt(TokenType::End)) {
        const bool isInBracket = brackets.size() > start.brackets;
        if (isStructure(cursor.getType()) && (!isInBracket || cursor.isFirstOnLine())) {
            return;
        }
        if (isAtSeparator() && (!isInBracket || (isAt(lineEnd) && !isListOpen(start.brackets)))) {
            return;
        }
        skipToken(start.brackets);
    }
}

bool Parser::isListOpen(std::size_t firstBracket) const {
    return std::any_of(brackets.begin() + static_cast<std::ptrdiff_t>(firstBracket), brackets.end(),
                       [](const CodeToken& open) { return open.type != TokenType::OpenParenthesis; });
}

/// Forgets the innermost bracket that `close` fits and what was opened inside it, as the tokenizer does.
void Parser::dropBracket(TokenType close, std::size_t firstBracket) {
    for (std::size_t i = brackets.size(); i > firstBracket; --i) {
        if (static_cast<int>(brackets[i - 1].type) + 1 == static_cast<int>(close)) {
            brackets.resize(i - 1);
            return;
        }
    }
}

/// Skips one token and keeps account of the brackets above the first so many.
void Parser::skipToken(std::size_t firstBracket) {
    const CodeToken& code = cursor.advance();
    switch (code.type) {
    case TokenType::OpenParenthesis:
    case TokenType::OpenSquareBracket:
    case TokenType::OpenBrace:
        brackets.push_back(code);
        return;
    case TokenType::CloseParenthesis:
    case TokenType::CloseSquareBracket:
    case TokenType::CloseBrace:
        dropBracket(code.type, firstBracket);
        return;
    default:
        return;
    }
}

} // namespace ca::syntax
