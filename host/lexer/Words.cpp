// Words: names, keywords by their place, and the statements that are a name and plain words, called commands:
//
//     hold on          a command: a letter follows the space
//     a -b             a command, unless `a` has been assigned
//     a - b            no command: a space follows the operator
//     x (1)            no command: brackets never start a word

#include "Characters.h"
#include "Lexer.h"
#include "ca/lexer/KeywordTypes.h"

#include <unicode/uchar.h>

namespace ca::lexer {

namespace {

bool isUnicodeLetter(char16_t c) {
    return isLetter(c) || (c >= 0x80 && u_isalpha(c));
}

/// Whether a quote directly after the character is a transpose, by the characters that operands end in.
bool isTransposeAfter(char16_t c) {
    return isNameCharacter(c) || c == u')' || c == u']' || c == u'}' || c == u'\'' || c == u'"' || c == u'.';
}

} // namespace

void Lexer::lexWord() {
    const std::size_t end = skipNameCharacters(position);
    const std::u16string_view word = getText(position, end);
    const std::optional<Keyword> keyword = findKeyword(word);
    if (keyword && isKeywordHere(*keyword, end)) {
        lexKeyword(keyword->type, end);
        return;
    }
    isInCommand = startsStatement && blocks.holdsStatements() && isCommand(word, end);
    emitCode(keyword ? TokenType::NameToken28 : TokenType::NameToken27, end);
}

bool Lexer::isKeywordHere(Keyword keyword, std::size_t end) const {
    if (lastToken == TokenType::Dot) {
        return false;
    }
    switch (keyword.place) {
    case KeywordPlace::ClassMember:
        return startsStatement && blocks.getInnermost() == keyword::Classdef;
    case KeywordPlace::FunctionStart:
        return startsStatement && blocks.isAtFunctionStart() && isArgumentsLine(end);
    case KeywordPlace::ImportStatement:
        return startsStatement && blocks.holdsStatements() && isImport(end);
    default:
        return !isNamedLikeKeyword(end);
    }
}

/// A function, a method above all, may be called like a reserved word: function n = end(obj, k, count).
bool Lexer::isNamedLikeKeyword(std::size_t end) const {
    const bool isAfterOutput = lastCode == TokenType::Assign && !brackets.isAnyOpen() &&
                               (assignments.isAfterOutputs() || blocks.getInnermost() == keyword::Methods);
    if (lastCode != TokenType::Function && !isAfterOutput) {
        return false;
    }
    const std::size_t next = skipGap(end);
    return at(next) == u'(' || isSeparator(at(next)) || isAtCommentOrLineEnd(next);
}

bool Lexer::isArgumentsLine(std::size_t end) const {
    std::size_t next = skipGap(end);
    if (at(next) == u'(') {
        next = skipGap(skipParentheses(next));
    }
    while (isSeparator(at(next))) {
        next = skipGap(next + 1);
    }
    return isAtCommentOrLineEnd(next);
}

bool Lexer::isImport(std::size_t end) const {
    const std::size_t next = skipGap(end);
    return next != end && isUnicodeLetter(at(next));
}

/// The first index from `index` on that is not in whitespace or a continuation.
std::size_t Lexer::skipGap(std::size_t index) const {
    index = skipBlanks(index);
    while (isContinuation(text + index)) {
        index = skipContinuation(index);
    }
    return index;
}

/// The code after the continuation at `index`, comment lines skipped; the line end of an empty line if that
/// comes first, since it ends what was continued.
std::size_t Lexer::skipContinuation(std::size_t index) const {
    std::size_t next = index;
    do {
        const bool isBlockComment = isLoneOnLine(next, u"%{");
        next = isBlockComment ? skipBlockComment(next) : skipLineEnd(findLineEnd(next));
        next = skipBlanks(next);
    } while (at(next) == u'%');
    return next;
}

/// The line after the block comment whose opening is at `index`, or the end of the text.
std::size_t Lexer::skipBlockComment(std::size_t index) const {
    std::size_t depth = 0;
    do {
        depth += isLoneOnLine(index, u"%{") ? 1 : 0;
        depth -= isLoneOnLine(index, u"%}") ? 1 : 0;
        index = skipLineEnd(findLineEnd(index));
        index = depth > 0 ? skipBlanks(index) : index;
    } while (depth > 0 && index != size);
    return index;
}

/// The index after the parenthesis that closes the one at `index`, or `index` if none does before the
/// statement ends. Brackets count as they do for the tokens: where nothing closes it here, the parenthesis
/// stays open for the tokens of the same lines too, and no statement starts there to look ahead again.
std::size_t Lexer::skipParentheses(std::size_t index) const {
    Brackets open;
    std::size_t next = index;
    while (!isAtCommentOrLineEnd(next)) {
        const char16_t c = at(next);
        const std::optional<TokenType> bracket = findBracket(c);
        if (bracket && isOpening(*bracket)) {
            open.open(*bracket);
        } else if (bracket) {
            open.close(*bracket);
        }
        if (!open.isAnyOpen()) {
            return next + 1;
        }
        if (isContinuation(text + next)) {
            next = skipContinuation(next);
            if (cannotBeInBrackets(next, blocks.isAnyOpen())) {
                return index;
            }
            continue;
        }
        const bool opensString = c == u'"' || (c == u'\'' && !isTransposeAfter(at(next - 1)));
        next = opensString ? skipString(next) : next + 1;
    }
    return index;
}

/// After the string that starts at `index`. An unclosed one is the rest of its line.
std::size_t Lexer::skipString(std::size_t index) const {
    const std::size_t length = scanString(text + index, text + size);
    return length != 0 ? index + length : findLineEnd(index);
}

void Lexer::lexKeyword(TokenType type, std::size_t end) {
    if (type == TokenType::End) {
        lexEnd(end);
        return;
    }
    emitCode(type, end);
    if (opensBlock(type)) {
        blocks.open(type);
    }
    switch (type) {
    case TokenType::Import:
        isInCommand = true;
        return;
    case keyword::Catch:
        if (namesCaughtError(end)) {
            assignments.expectCaughtName();
        } else {
            allowStatement();
        }
        return;
    case keyword::Else:
    case keyword::Otherwise:
    case keyword::Try:
        allowStatement();
        return;
    case keyword::Spmd:
        allowStatement();
        header = mayStartStatement ? Header::Spmd : Header::None;
        return;
    case keyword::For:
    case keyword::If:
    case keyword::Parfor:
    case keyword::While:
    case keyword::Elseif:
    case keyword::Case:
        header = brackets.isAnyOpen() ? header : Header::Keyword;
        return;
    default:
        return;
    }
}

/// `end` closes a block only outside brackets; inside them it is the last index.
void Lexer::lexEnd(std::size_t end) {
    if (brackets.isAnyOpen() || !blocks.isAnyOpen()) {
        emitCode(TokenType::EndIndex, end);
        return;
    }
    emitCode(TokenType::End, end);
    if (blocks.close() == TokenType::Function) {
        assignments.leaveFunction();
    }
    allowStatement();
}

/// Whether the name after the `catch` that ends at `end` is the caught error: nothing else is on the rest of
/// the line.
bool Lexer::namesCaughtError(std::size_t end) const {
    const std::size_t begin = skipBlanks(end);
    if (!isLetter(at(begin))) {
        return false;
    }
    const std::size_t nameEnd = skipNameCharacters(begin);
    const std::optional<Keyword> keyword = findKeyword(getText(begin, nameEnd));
    const std::size_t next = skipBlanks(nameEnd);
    const bool endsStatement = isSeparator(at(next)) || isAtCommentOrLineEnd(next);
    return endsStatement && !(keyword && keyword->place == KeywordPlace::Anywhere);
}

/// Whether the name that ends at `end` and starts a statement starts a command.
bool Lexer::isCommand(std::u16string_view name, std::size_t end) {
    const std::size_t next = skipBlanks(end);
    if (next == end) {
        return false;
    }
    return isCommandWord(next) || (isCommandOperator(next) && !assignments.isAssigned(name));
}

/// Whether the text at `index` can only be a word, whatever the name before it means.
bool Lexer::isCommandWord(std::size_t index) const {
    const char16_t first = at(index);
    if (isNameCharacter(first)) {
        return !blocks.isAnyOpen() || getText(index, skipNameCharacters(index)) != u"end";
    }
    if (first == u'.') {
        return isDigit(at(index + 1)) || (at(index + 1) == u'.' && at(index + 2) != u'.');
    }
    return first == u'\'' || first == u'"' || isUnicodeLetter(first);
}

/// Whether there is an operator at `index` with nothing between it and what comes next.
bool Lexer::isCommandOperator(std::size_t index) const {
    const Piece piece = scanOperator(text + index);
    if (piece.length == 0 || piece.type == TokenType::Assign ||
        piece.type == TokenType::ComparisonOperator67) {
        return false;
    }
    const std::size_t next = index + piece.length;
    return !isBlank(at(next)) && !endsWords(next);
}

/// Whether a command's words end at `index`, for good or until the next line.
bool Lexer::endsWords(std::size_t index) const {
    return isSeparator(at(index)) || isContinuation(text + index) || isAtCommentOrLineEnd(index);
}

void Lexer::lexCommandToken() {
    const char16_t first = at(position);
    if (isSeparator(first)) {
        isInCommand = false;
    }
    if (endsWords(position)) {
        lexToken();
    } else {
        startsStatement = false;
        emitCode(TokenType::CommandWord, findWordEnd());
    }
}

std::size_t Lexer::findWordEnd() const {
    std::size_t end = position;
    while (!isBlank(at(end)) && !endsWords(end)) {
        end = skipQuoted(end) + 1;
    }
    return end;
}

/// The closing quote of the quoted part that starts at `index`; `index` itself if there is no such part. A
/// line has at most one unclosed quote of each kind, so the look-ahead stays linear.
std::size_t Lexer::skipQuoted(std::size_t index) const {
    const char16_t quote = at(index);
    if (quote != u'\'' && quote != u'"') {
        return index;
    }
    std::size_t end = index + 1;
    while (at(end) != quote && !isAtLineEnd(end)) {
        ++end;
    }
    return isAtLineEnd(end) ? index : end;
}

} // namespace ca::lexer
