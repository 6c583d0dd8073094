// The main loop: line by line, and in a line of code token by token. How a line begins decides what it is
// (part of a block comment, a comment, empty, code). What is open at its end decides how the next one is
// read:
//
//     x = [1, 2        a bracket is open, so the line end only ends a row, and no command can start
//     hold on];
//
// Names, keywords and commands are in Words.cpp; numbers, strings and operators in Literals.cpp.

#include "Lexer.h"

#include "Characters.h"
#include "ca/lexer/KeywordTypes.h"

#include <cstdint>
#include <new>

namespace ca::lexer {

Lexer::Lexer(const std::u16string& source, TokenFilter filter)
    : text(source.c_str()), size(source.size()), filter(filter) {
    if (size > UINT32_MAX) {
        throw std::bad_alloc(); // lengths and places have 32 bits
    }
}

std::span<const TokenSpan> Lexer::nextLine() {
    line.clear();
    longLineSize = 8'192;
    if (isAtEnd) {
        return {};
    }
    if (position < size) {
        lexLine();
    }
    if (line.empty() || (position == size && !isLineEnd(at(size - 1)))) {
        emit(TokenType::EndOfInput, position);
        isAtEnd = true;
    }
    return line;
}

bool Lexer::isAtLineEnd(std::size_t index) const {
    return isLineEnd(at(index)) || index == size;
}

std::size_t Lexer::skipBlanks(std::size_t index) const {
    while (isBlank(at(index))) {
        ++index;
    }
    return index;
}

std::size_t Lexer::skipBlanksAndSeparators(std::size_t index) const {
    while (isBlank(at(index)) || isSeparator(at(index))) {
        ++index;
    }
    return index;
}

std::size_t Lexer::skipNameCharacters(std::size_t index) const {
    while (isNameCharacter(at(index))) {
        ++index;
    }
    return index;
}

std::size_t Lexer::findLineEnd(std::size_t index) const {
    while (!isAtLineEnd(index)) {
        ++index;
    }
    return index;
}

bool Lexer::isAtCommentOrLineEnd(std::size_t index) const {
    return at(index) == u'%' || isAtLineEnd(index);
}

std::size_t Lexer::trimBlanks(std::size_t begin, std::size_t end) const {
    while (end > begin && isBlank(at(end - 1))) {
        --end;
    }
    return end;
}

std::u16string_view Lexer::getText(std::size_t begin, std::size_t end) const {
    return {text + begin, end - begin};
}

void Lexer::emit(TokenType type, std::size_t end) {
    line.push_back({type, static_cast<std::uint32_t>(end - position)});
    lastToken = type;
    position = end;
    if (line.size() == longLineSize && filter != nullptr) {
        leaveOutMiddle();
    }
}

/// The last three tokens may turn out to be the line's last three. If more than half of the tokens remain,
/// the line may be twice as long before the next attempt.
void Lexer::leaveOutMiddle() {
    const auto first = line.begin() + 2;
    const auto last = line.end() - 3;
    auto kept = first;
    for (auto token = first + 1; token != last; ++token) {
        if (filter(kept->type) || filter(token->type)) {
            *++kept = *token;
        } else {
            kept->length += token->length;
        }
    }
    line.erase(kept + 1, last);
    longLineSize *= line.size() > longLineSize / 2 ? 2 : 1;
}

/// The index after the line end at `index`; `index` itself at the end of the text.
std::size_t Lexer::skipLineEnd(std::size_t index) const {
    if (index == size) {
        return index;
    }
    return at(index) == u'\r' && at(index + 1) == u'\n' ? index + 2 : index + 1;
}

void Lexer::emitLineEnd() {
    const std::size_t end = skipLineEnd(position);
    if (end == position) {
        return;
    }
    const TokenType single = at(position) == u'\n' ? TokenType::LineEnding75 : TokenType::LineEnding77;
    emit(end - position == 2 ? TokenType::LineEnding76 : single, end);
}

/// Emits a line of a block comment, its line end included.
void Lexer::emitWholeLine(TokenType type) {
    emit(type, skipLineEnd(findLineEnd(position)));
}

void Lexer::lexLine() {
    if (blockComments > 0) {
        lexBlockCommentLine();
        return;
    }
    const std::size_t code = skipBlanks(position);
    if (at(code) == u'%') {
        lexCommentLine(code);
    } else if (isAtLineEnd(code)) {
        lexBlankLine();
    } else {
        lexCodeLine(code);
    }
}

/// Whether `mark`, a block comment's opening or closing, is at `index` with nothing but spaces and tabs after
/// it.
bool Lexer::isLoneOnLine(std::size_t index, std::u16string_view mark) const {
    return at(index) == mark[0] && at(index + 1) == mark[1] && isAtLineEnd(skipBlanks(index + 2));
}

void Lexer::lexBlockCommentLine() {
    const std::size_t first = skipBlanks(position);
    if (isLoneOnLine(first, u"%{")) {
        ++blockComments;
        emitWholeLine(TokenType::BlockCommentOpen);
    } else if (isLoneOnLine(first, u"%}")) {
        --blockComments;
        emitWholeLine(TokenType::BlockCommentClose);
    } else {
        emitWholeLine(TokenType::BlockCommentBody);
    }
}

/// A comment line changes no state: a continued statement goes on after it.
void Lexer::lexCommentLine(std::size_t percent) {
    if (isLoneOnLine(percent, u"%{")) {
        ++blockComments;
        emitWholeLine(TokenType::BlockCommentOpen);
        return;
    }
    emit(TokenType::LineComment, findLineEnd(percent));
    emitLineEnd();
}

void Lexer::lexBlankLine() {
    emitBlanks();
    isContinued = false;
    endStatementLine();
    emitLineEnd();
}

void Lexer::lexCodeLine(std::size_t code) {
    if (brackets.isAnyOpen()) {
        giveUpUnclosedBrackets(code);
    }
    isContinued = false;
    emitBlanks();
    if (at(position) == u'!' && mayStartStatement && blocks.holdsStatements()) {
        beginCode(u'!');
        emitCode(TokenType::Unmeasured33, trimBlanks(position, findLineEnd(position)));
    }
    for (emitBlanks(); !isAtLineEnd(position); emitBlanks()) {
        if (isInCommand) {
            lexCommandToken();
        } else {
            lexToken();
        }
    }
    if (!isContinued) {
        endStatementLine();
    }
    emitLineEnd();
}

/// A line end without a continuation ends the statement, unless it ends the row of a matrix.
void Lexer::endStatementLine() {
    if (brackets.isListOpen()) {
        return;
    }
    brackets.clear();
    isInCommand = false;
    mayStartStatement = true;
    lastCode = TokenType::EndOfInput;
    if (header != Header::Spmd) {
        header = Header::None;
    }
}

/// An unclosed bracket would swallow the rest of a file that is being edited. So open brackets are given up
/// at a line that can't be inside them: one that starts with a keyword of a statement, or holds nothing but
/// `end` where there is a block for it to close.
void Lexer::giveUpUnclosedBrackets(std::size_t code) {
    if (!cannotBeInBrackets(code, blocksAroundBrackets > 0)) {
        return;
    }
    brackets.clear();
    header = Header::None;
    lastCode = TokenType::EndOfInput;
    mayStartStatement = !isContinued;
}

bool Lexer::cannotBeInBrackets(std::size_t code, bool isInBlock) const {
    const std::size_t end = skipNameCharacters(code);
    const auto keyword = isLetter(at(code)) ? findKeyword(getText(code, end)) : std::nullopt;
    return (keyword && isStatementKeyword(*keyword)) || (isInBlock && isLoneEnd(code));
}

bool Lexer::isLoneEnd(std::size_t code) const {
    const std::size_t begin = skipBlanksAndSeparators(code);
    const std::size_t end = skipNameCharacters(begin);
    return getText(begin, end) == u"end" && isAtCommentOrLineEnd(skipBlanksAndSeparators(end));
}

void Lexer::lexToken() {
    const char16_t first = at(position);
    if (first == u'%') {
        emit(TokenType::TrailingComment, findLineEnd(position));
        return;
    }
    if (isContinuation(text + position)) {
        lexContinuation();
        return;
    }
    beginCode(first);
    lexCode(first);
}

/// Whitespace, comments and continuations leave it open whether a statement starts; the next code decides.
void Lexer::beginCode(char16_t first) {
    switch (header) {
    case Header::Keyword:
    case Header::Spmd:
        header = first == u'(' ? Header::FirstParenthesis : Header::None;
        break;
    case Header::Closed:
        mayStartStatement = isLetter(first) || first == u'[';
        header = Header::None;
        break;
    default:
        break;
    }
    startsStatement = mayStartStatement;
    mayStartStatement = false;
}

void Lexer::lexCode(char16_t first) {
    switch (getClass(first)) {
    case CharacterClass::Letter:
        lexWord();
        return;
    case CharacterClass::Digit:
        lexNumber();
        return;
    case CharacterClass::SingleQuote:
        lexQuote();
        return;
    case CharacterClass::DoubleQuote:
        lexString();
        return;
    case CharacterClass::Dot:
        lexDot();
        return;
    case CharacterClass::Separator:
        lexSeparator();
        return;
    case CharacterClass::Bracket:
        lexBracket(*findBracket(first));
        return;
    case CharacterClass::Operator:
        lexOperator();
        return;
    default:
        lexUnrecognized();
        return;
    }
}

void Lexer::emitCode(TokenType type, std::size_t end) {
    if (startsStatement) {
        noteStatement(type);
        if (!blocks.holdsStatements()) {
            assignments.startMember();
        }
    }
    const bool isStatement = startsStatement && blocks.holdsStatements();
    assignments.take(type, getText(position, end), brackets.getDepth(), isStatement);
    emit(type, end);
    lastCode = type;
}

/// After a function's first statement there are no more blocks of arguments.
void Lexer::noteStatement(TokenType first) {
    switch (first) {
    case TokenType::Semicolon:
    case TokenType::Comma:
    case TokenType::End:
    case keyword::Arguments:
        return;
    case TokenType::OpenParenthesis:
        if (assignments.awaitsInputs()) {
            return;
        }
        break;
    default:
        break;
    }
    blocks.noteStatement();
}

void Lexer::allowStatement() {
    mayStartStatement = !brackets.isAnyOpen();
}

/// The three dots, and what the rest of their line says about them.
void Lexer::lexContinuation() {
    emit(TokenType::Continuation, position + 3);
    isContinued = true;
    emitBlanks();
    if (!isAtLineEnd(position)) {
        emit(TokenType::LineTail, findLineEnd(position));
    }
}

void Lexer::lexNumber() {
    const Piece number = scanNumber(text + position);
    emitCode(number.type, position + number.length);
}

void Lexer::lexOperator() {
    const Piece piece = scanOperator(text + position);
    emitCode(piece.type, position + piece.length);
}

void Lexer::lexDot() {
    if (isDigit(at(position + 1))) {
        lexNumber();
    } else {
        lexOperator();
    }
}

void Lexer::lexQuote() {
    if (canBeTransposed()) {
        lexOperator();
    } else {
        lexString();
    }
}

/// Whether a quote here is the transpose of what comes directly before it.
bool Lexer::canBeTransposed() const {
    switch (lastToken) {
    case TokenType::NameToken27:
    case TokenType::NameToken28:
    case TokenType::NumberToken29:
    case TokenType::NumberToken30:
    case TokenType::NumberToken99:
    case TokenType::NumberToken100:
    case TokenType::CharacterLiteral:
    case TokenType::StringLiteral:
    case TokenType::CloseParenthesis:
    case TokenType::CloseSquareBracket:
    case TokenType::CloseBrace:
    case TokenType::PostfixOperator43:
    case TokenType::PostfixOperator44:
    case TokenType::EndIndex:
        return true;
    default:
        return false;
    }
}

void Lexer::lexString() {
    const TokenType type = at(position) == u'\'' ? TokenType::CharacterLiteral : TokenType::StringLiteral;
    if (const std::size_t length = scanString(text + position, text + size); length != 0) {
        emitCode(type, position + length);
    } else {
        emitCode(TokenType::Unrecognized, trimBlanks(position, findLineEnd(position)));
    }
}

void Lexer::lexSeparator() {
    emitCode(at(position) == u';' ? TokenType::Semicolon : TokenType::Comma, position + 1);
    if (!brackets.isAnyOpen()) {
        mayStartStatement = true;
        lastCode = TokenType::EndOfInput;
    }
}

void Lexer::lexBracket(TokenType bracket) {
    if (isOpening(bracket)) {
        openBracket(bracket);
    } else {
        closeBracket(bracket);
    }
}

void Lexer::openBracket(TokenType bracket) {
    if (!brackets.isAnyOpen()) {
        blocksAroundBrackets = blocks.getDepth();
    }
    emitCode(bracket, position + 1);
    brackets.open(bracket);
}

void Lexer::closeBracket(TokenType bracket) {
    brackets.close(bracket);
    emitCode(bracket, position + 1);
    if (header == Header::FirstParenthesis && !brackets.isAnyOpen()) {
        header = Header::Closed;
    }
}

void Lexer::lexUnrecognized() {
    std::size_t end = position + 1;
    while (end < size && getClass(at(end)) == CharacterClass::Other) {
        ++end;
    }
    emitCode(TokenType::Unrecognized, end);
}

} // namespace ca::lexer
