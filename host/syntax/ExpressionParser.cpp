// Expressions. Binary operators run over two explicit stacks, so that a chain of any length needs no more of
// the call stack than one operator:
//
//     a + b * c - d       operands a b c, operators + *; the - folds both away before it is pushed itself
//
// Inside a matrix a space can end an expression: [a -b] is two of them, see findBinaryOperator.

#include "syntax/NodeFactory.h"

#include <array>
#include <utility>

namespace ca::syntax {

namespace {

using namespace lf::astapi;

constexpr int colonPrecedence = 6;

struct OperatorRow {
    TokenType type;
    int precedence;
    int number;
};

constexpr OperatorRow operatorRows[] = {
    {TokenType::LogicalOperator66, 1, 18},       {TokenType::LogicalOperator65, 2, 16},
    {TokenType::LogicalOperator64, 3, 19},       {TokenType::LogicalOperator63, 4, 17},
    {TokenType::ComparisonOperator67, 5, 10},    {TokenType::ComparisonOperator68, 5, 11},
    {TokenType::ComparisonOperator69, 5, 12},    {TokenType::ComparisonOperator70, 5, 13},
    {TokenType::ComparisonOperator71, 5, 14},    {TokenType::ComparisonOperator72, 5, 15},
    {TokenType::Colon, colonPrecedence, 0},      {TokenType::PlusMinusOperator51, 7, 0},
    {TokenType::PlusMinusOperator52, 7, 1},      {TokenType::MultiplyDivideOperator53, 8, 2},
    {TokenType::MultiplyDivideOperator54, 8, 3}, {TokenType::MultiplyDivideOperator55, 8, 4},
    {TokenType::MultiplyDivideOperator59, 8, 6}, {TokenType::MultiplyDivideOperator60, 8, 7},
    {TokenType::MultiplyDivideOperator61, 8, 8},
};

struct OperatorEntry {
    std::int8_t precedence; ///< 0 for what is no binary operator
    std::int8_t number;
};

constexpr auto operatorTable = [] {
    std::array<OperatorEntry, 101> table{};
    for (const OperatorRow& row : operatorRows) {
        table[static_cast<std::size_t>(row.type)] = {static_cast<std::int8_t>(row.precedence),
                                                     static_cast<std::int8_t>(row.number)};
    }
    return table;
}();

constexpr int powerNumber = 5;
constexpr int elementwisePowerNumber = 9;
constexpr int methodOfClassNumber = 20;

/// Number of a prefix operator that has an operand of its own level, -1 for any other token.
int getPrefixNumber(TokenType type) {
    switch (type) {
    case TokenType::PlusMinusOperator51:
        return 0;
    case TokenType::PlusMinusOperator52:
        return 1;
    case TokenType::PrefixOperator34:
        return 4;
    default:
        return -1;
    }
}

bool isPlusOrMinus(TokenType type) {
    return type == TokenType::PlusMinusOperator51 || type == TokenType::PlusMinusOperator52;
}

/// What may be indexed: names and what was reached from them, parentheses, matrix and cell literals.
bool canBeIndexed(NodeKind kind) {
    switch (kind) {
    case NodeKind::Identifier:
    case NodeKind::ParenthesizedExpression:
    case NodeKind::MatrixLiteral:
    case NodeKind::CellLiteral:
        return true;
    default:
        return false;
    }
}

} // namespace

const Node* Parser::parseExpression() {
    const std::size_t firstOperator = operators.size();
    Levels levels(*this);
    operands.push_back(parsePrefixed(Power::Allowed));
    Operator found{};
    while (findBinaryOperator(found)) {
        reduce(firstOperator, found.precedence, levels);
        operators.push_back(found);
        cursor.advance();
        operands.push_back(parsePrefixed(Power::Allowed));
    }
    reduce(firstOperator, 0, levels);
    const Node* expression = operands.back();
    operands.pop_back();
    return expression;
}

/// Whitespace before a `+` or `-` and none after it starts a new element of a matrix.
bool Parser::findBinaryOperator(Operator& found) const {
    const CodeToken& code = cursor.get();
    const OperatorEntry entry = operatorTable[static_cast<std::size_t>(code.type)];
    if (entry.precedence == 0) {
        return false;
    }
    if (blankSeparates && code.isAfterGap && isPlusOrMinus(code.type) && !cursor.isBeforeGap()) {
        return false;
    }
    found = {entry.precedence, entry.number};
    return true;
}

/// Folds all operators above `firstOperator` that bind at least as tightly as `precedence`.
void Parser::reduce(std::size_t firstOperator, int precedence, Levels& levels) {
    while (operators.size() > firstOperator && operators.back().precedence >= precedence) {
        const Operator op = operators.back();
        operators.pop_back();
        const Node* right = operands.back();
        operands.pop_back();
        const Node* left = operands.back();
        operands.back() = op.precedence == colonPrecedence ? makeColon(left, right, levels)
                                                           : makeBinary(op.number, left, right);
    }
}

const Node* Parser::makeBinary(int number, const Node* left, const Node* right) {
    auto* node = make<BinaryOperation<CA>>(left);
    node->operatorNumber = number;
    node->left = own(node, left);
    node->right = own(node, right);
    return node;
}

/// The second colon of a range makes its last value the step: 1:2 becomes 1:2:9. A third one starts over with
/// the whole as its first value, which deepens the tree.
const Node* Parser::makeColon(const Node* left, const Node* right, Levels& levels) {
    if (left->kind == NodeKind::ColonExpression) {
        auto* range = const_cast<ColonExpression<CA>*>(&as<ColonExpression>(*left));
        if (range->step == nullptr) {
            range->step = range->last;
            range->last = own(range, right);
            return range;
        }
        levels.enter();
    }
    auto* node = make<ColonExpression<CA>>(left);
    node->first = own(node, left);
    node->last = own(node, right);
    return node;
}

const Node* Parser::parsePrefixed(Power power) {
    const int number = getPrefixNumber(cursor.getType());
    if (number < 0) {
        return power == Power::Allowed ? parsePower() : parseReference();
    }
    Levels levels(*this);
    levels.enter();
    const CodeToken prefix = cursor.advance();
    const Node* operand = parsePrefixed(power);
    return makeUnary(prefix, number, operand);
}

const Node* Parser::makeUnary(const CodeToken& first, int number, const Node* operand) {
    auto* node = make<UnaryOperation<CA>>(first);
    node->operatorNumber = number;
    node->operand = own(node, operand);
    return node;
}

/// Transposes and powers, left to right. Only transposes deepen the tree: a chain of powers has no limit.
const Node* Parser::parsePower() {
    Levels levels(*this);
    const Node* left = parseReference();
    for (;;) {
        switch (cursor.getType()) {
        case TokenType::PostfixOperator43:
        case TokenType::PostfixOperator44: {
            levels.enter();
            auto* node = make<UnaryOperation<CA>>(left);
            node->operatorNumber = cursor.advance().type == TokenType::PostfixOperator43 ? 2 : 3;
            node->operand = own(node, left);
            left = node;
            break;
        }
        case TokenType::ExponentOperator56:
        case TokenType::ExponentOperator62: {
            const bool isPlain = cursor.advance().type == TokenType::ExponentOperator56;
            const Node* right = parsePrefixed(Power::NotAllowed);
            left = makeBinary(isPlain ? powerNumber : elementwisePowerNumber, left, right);
            break;
        }
        default:
            return left;
        }
    }
}

/// An operand with its indexes, fields and class: `pkg.object.list{2}(end).name`.
const Node* Parser::parseReference() {
    const Node* node = parsePrimary();
    if (!canBeIndexed(node->kind)) {
        return node;
    }
    Levels levels(*this);
    while (const Node* longer = parsePostfix(node)) {
        levels.enter();
        node = longer;
    }
    return node;
}

/// The target with the index, field or class that follows it; null if none follows.
const Node* Parser::parsePostfix(const Node* target) {
    const bool isApart = blankSeparates && cursor.get().isAfterGap;
    switch (cursor.getType()) {
    case TokenType::OpenParenthesis:
        return isApart ? nullptr : parseParenthesisIndexing(target);
    case TokenType::OpenBrace:
        return isApart ? nullptr : parseBraceIndexing(target);
    case TokenType::Dot:
        if (isApart) {
            fail(u"MisplacedWhitespace", u"there can't be whitespace before '.' inside brackets",
                 cursor.get());
        }
        return parseFieldAccess(target);
    case TokenType::At:
        return isAtClassOfMethod(target) ? parseClassOfMethod(target) : nullptr;
    default:
        return nullptr;
    }
}

/// `name@Super.Name` has whitespace on both sides of `@` or on none.
bool Parser::isAtClassOfMethod(const Node* left) const {
    const CodeToken& name = cursor.getNext();
    return left->kind == NodeKind::Identifier && isName(name) && name.isAfterGap == cursor.get().isAfterGap;
}

const Node* Parser::parseClassOfMethod(const Node* left) {
    cursor.advance();
    const Node* right = parseDottedName(u"a class name");
    return makeBinary(methodOfClassNumber, left, right);
}

const Node* Parser::parseFieldAccess(const Node* object) {
    cursor.advance();
    if (!isAt(TokenType::OpenParenthesis)) {
        auto* node = make<FieldAccess<CA>>(object);
        node->object = own(node, object);
        node->field = own(node, parseDottedName(u"a field name"));
        return node;
    }
    auto* node = make<DynamicFieldAccess<CA>>(object);
    node->object = own(node, object);
    node->expression = own(node, parseInParentheses());
    return node;
}

const Node* Parser::parseParenthesized() {
    auto* node = make<ParenthesizedExpression<CA>>(cursor.get());
    node->inner = own(node, parseInParentheses());
    return node;
}

const Node* Parser::parseInParentheses() {
    Levels levels(*this);
    levels.enter();
    const bool outer = std::exchange(blankSeparates, false);
    const CodeToken open = openBracket();
    const Node* inner = parseExpression();
    closeBracket(open);
    blankSeparates = outer;
    return inner;
}

const Node* Parser::parsePrimary() {
    switch (cursor.getType()) {
    case TokenType::NameToken27:
    case TokenType::NameToken28:
        return parseDottedName(u"a name");
    case TokenType::NumberToken29:
    case TokenType::NumberToken30:
    case TokenType::NumberToken99:
    case TokenType::NumberToken100:
        return parseNumber();
    case TokenType::CharacterLiteral:
        return takeLeaf(NodeKind::TokenLeaf14);
    case TokenType::StringLiteral:
        return takeLeaf(NodeKind::TokenLeaf61);
    case TokenType::EndIndex:
        return parseEndIndex();
    case TokenType::OpenParenthesis:
        return parseParenthesized();
    case TokenType::OpenSquareBracket:
        return parseMatrix();
    case TokenType::OpenBrace:
        return parseCell();
    case TokenType::At:
        return parseAt();
    case TokenType::PrefixOperator45:
        return parseClassQuery();
    default:
        failExpected(u"an expression");
    }
}

const Node* Parser::takeLeaf(NodeKind kind) {
    const CodeToken& code = cursor.advance();
    auto* node = arena.make<Node>();
    node->kind = kind;
    node->position = code.position;
    node->line = code.line;
    node->column = code.column;
    return node;
}

const Node* Parser::parseNumber() {
    const Node* number = takeLeaf(NodeKind::NumberLiteral);
    const CodeToken& next = cursor.get();
    const char16_t first = next.isAfterGap || next.type == TokenType::EndOfInput ? u' ' : text[next.position];
    const bool isLetter = (u'a' <= first && first <= u'z') || (u'A' <= first && first <= u'Z');
    if (isLetter || (u'0' <= first && first <= u'9') || first == u'_') {
        fail(u"MalformedNumber", u"a number can't be followed directly by " + quoteCurrent(), next);
    }
    return number;
}

const Node* Parser::parseEndIndex() {
    if (indexDepth == 0) {
        fail(u"MisplacedEnd", u"'end' is the last index only inside the index of a variable", cursor.get());
    }
    return takeLeaf(NodeKind::TokenLeaf27);
}

/// A function handle, `@name`, or an anonymous function, `@(parameters) body`.
const Node* Parser::parseAt() {
    const CodeToken at = cursor.advance();
    if (isAt(TokenType::OpenParenthesis)) {
        return parseAnonymousFunction(at);
    }
    const Node* name = parseDottedName(u"a function name or '(' after '@'");
    return makeUnary(at, 5, name);
}

const Node* Parser::parseAnonymousFunction(const CodeToken& at) {
    Levels levels(*this);
    levels.enter();
    auto* node = make<AnonymousFunction<CA>>(at);
    const std::size_t mark = pending.size();
    parseParameters();
    node->parameters = takePending(mark, node);
    node->body = own(node, parseExpression());
    return node;
}

const Node* Parser::parseClassQuery() {
    const CodeToken query = cursor.advance();
    const Node* name = parseDottedName(u"a class name after '?'");
    return makeUnary(query, 6, name);
}

const Node* Parser::parseName(std::u16string_view what) {
    if (!isAtName()) {
        failExpected(what);
    }
    auto* node = make<Identifier<CA>>(cursor.get());
    const CodeToken& name = cursor.advance();
    node->text = text.substr(name.position, name.length);
    return node;
}

/// Names joined by dots with nothing else between them.
const Node* Parser::parseDottedName(std::u16string_view what) {
    if (!isAtName()) {
        failExpected(what);
    }
    auto* node = make<Identifier<CA>>(cursor.get());
    const CodeToken* last = &cursor.advance();
    while (isAt(TokenType::Dot) && !cursor.get().isAfterGap && isName(cursor.getNext()) &&
           !cursor.getNext().isAfterGap) {
        cursor.advance();
        last = &cursor.advance();
    }
    const std::size_t end = last->position + last->length;
    node->text = text.substr(node->position, end - node->position);
    return node;
}

} // namespace ca::syntax
