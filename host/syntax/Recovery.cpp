// How the parser goes on after a fault. What is skipped reaches to the end of the statement, as the tokenizer
// sees it, so that the next statement is read as if nothing had happened:
//
//     x = [1 2            the fault is noticed at the 'for', since the tokenizer gives the bracket up there;
//     for i = 1:3         the loop is parsed
//     end

#include "syntax/Recovery.h"

#include <utility>

namespace ca::syntax {

namespace {

constexpr std::uint32_t deepestNesting = 500;

/// Whether a keyword ends what is skipped, unless a bracket is open.
bool isStructure(TokenType type) {
    return opensBlock(type) || dividesBlock(type);
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

/// Statements after a block that is not entered would belong to nothing, so this ends the parse.
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
    lastFault = at.position;
    if (isInReportedHeader(at)) {
        return;
    }
    errors.report(identifier, std::move(message), getToken(at));
    if (errors.isFull()) {
        throw Stopped{};
    }
}

/// A keyword in the wrong place is a fault, and what is missing on its line follows from it: `x = if`.
bool Parser::isInReportedHeader(const CodeToken& at) const {
    return !blocks.empty() && blocks.back().isReported && blocks.back().keyword.line == at.line;
}

void Parser::fail(std::u16string_view identifier, std::u16string message, const CodeToken& at) {
    report(identifier, std::move(message), at);
    throw Abandoned{};
}

/// At the end of a line in parentheses the line is at fault, and what was expected next doesn't matter.
void Parser::failExpected(std::u16string_view what) {
    failIfUnrecognized();
    if (isAt(lineEnd) && !brackets.empty()) {
        failUnclosed(brackets.back());
    }
    failBefore(u"UnexpectedText", u"expected " + std::u16string(what));
}

/// Makes the message here: texts would take room in the stack frames of functions that recurse.
void Parser::failBefore(std::u16string_view identifier, std::u16string_view what) {
    fail(identifier, std::u16string(what) + u" before " + quoteCurrent(), cursor.get());
}

void Parser::failIfUnrecognized() {
    if (!isAt(TokenType::Unrecognized)) {
        return;
    }
    const char16_t first = text[cursor.get().position];
    if (first == u'\'' || first == u'"') {
        fail(u"UnclosedString", u"this string is not closed on its line", cursor.get());
    }
    fail(u"UnrecognizedText", u"unrecognised text " + quoteCurrent(), cursor.get());
}

/// The comment reaches to the end of the text, so what else is missing there follows from it.
void Parser::checkUnclosedComment() {
    if (!cursor.getUnclosedComment()) {
        return;
    }
    const Token token = getToken(*cursor.getUnclosedComment());
    const auto indentation = static_cast<std::uint32_t>(token.lexeme.find(u'%'));
    errors.reportAt(u"UnclosedComment", u"this block comment is not closed by '%}'", token.line,
                    token.column + indentation, 2);
}

/// " in column 9" for a partner on the current line, " on line 3" for any other.
std::u16string Parser::describePlace(const CodeToken& partner) const {
    if (partner.line == cursor.get().line) {
        return u" in column " + toText(partner.column);
    }
    return u" on line " + toText(partner.line);
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

/// Skips to the end of the statement. A line end inside a matrix or a cell literal doesn't end it, and other
/// brackets end where the tokenizer lets them end.
void Parser::skipStatement(const Context& start) {
    lexer::Brackets open = getOpenBrackets(start.brackets);
    for (; !isAt(TokenType::EndOfInput) && !isAt(TokenType::End); cursor.advance()) {
        const TokenType type = cursor.getType();
        if (isStructure(type) && (!open.isAnyOpen() || cursor.isFirstOnLine())) {
            return;
        }
        if (isAtSeparator() && (!open.isAnyOpen() || (type == lineEnd && !open.isListOpen()))) {
            return;
        }
        open.pass(type);
    }
}

/// The open brackets but for the first so many.
lexer::Brackets Parser::getOpenBrackets(std::size_t first) const {
    lexer::Brackets open;
    for (; first < brackets.size(); ++first) {
        open.open(brackets[first].type);
    }
    return open;
}

} // namespace ca::syntax
