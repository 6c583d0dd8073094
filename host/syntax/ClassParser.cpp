// Classes and the blocks that hold members. Members are separated like statements, but none of them is one.

#include "syntax/NodeFactory.h"
#include "syntax/Recovery.h"

namespace ca::syntax {

namespace {

using namespace lf::astapi;

} // namespace

const Node* Parser::parseClass() {
    Levels levels(*this);
    levels.enterBlock();
    auto* node = make<ClassDefinition<CA>>(cursor.get());
    openBlock();
    parseOrSkip([&] { parseClassHead(node); });
    const std::size_t mark = pending.size();
    parseMembers([this] { return parseClassBlock(); });
    node->members = takePending(mark, node);
    closeBlock();
    return node;
}

/// `(attributes) Name < Base & pkg.Other`.
void Parser::parseClassHead(ClassDefinition<CA>* node) {
    node->attributes = parseAttributes(node);
    node->name = own(node, parseDottedName(u"a class name"));
    const std::size_t mark = pending.size();
    if (skipIf(TokenType::ComparisonOperator69)) {
        do {
            pending.push_back(parseDottedName(u"the name of a superclass"));
        } while (skipIf(TokenType::LogicalOperator63));
    }
    node->superclasses = takePending(mark, node);
}

const Node* Parser::parseClassBlock() {
    switch (cursor.getType()) {
    case keyword::Properties:
        return parseMemberBlock<PropertiesBlock<CA>>(&Parser::parseProperty);
    case keyword::Methods:
        return parseMemberBlock<MethodsBlock<CA>>(&Parser::parseMethod);
    case keyword::Events:
        return parseMemberBlock<EventsBlock<CA>>(&Parser::parseEvent);
    case keyword::Enumeration:
        return parseMemberBlock<EnumerationBlock<CA>>(&Parser::parseEnumerationMember);
    default:
        failExpected(u"'properties', 'methods', 'events', 'enumeration' or 'end'");
    }
}

const Node* Parser::parseArgumentsBlock() {
    return parseMemberBlock<ArgumentsBlock<CA>>(&Parser::parseArgumentDefinition);
}

template <class Block>
const Node* Parser::parseMemberBlock(const Node* (Parser::*parseMember)()) {
    Levels levels(*this);
    levels.enterBlock();
    auto* node = make<Block>(cursor.get());
    openBlock();
    parseOrSkip([&] { node->attributes = parseAttributes(node); });
    const std::size_t mark = pending.size();
    parseMembers([this, parseMember] { return (this->*parseMember)(); });
    node->members = takePending(mark, node);
    closeBlock();
    return node;
}

/// Reads members into `pending`, up to the `end` of their block. A block among them needs no separator after
/// it.
template <class ParseMember>
void Parser::parseMembers(ParseMember parseMember) {
    for (skipSeparators(); !isAt(TokenType::End) && !isAt(TokenType::EndOfInput); skipSeparators()) {
        const std::size_t place = cursor.getPlace();
        const bool isWhole = parseOrSkip([&] {
            if (opensBlock(cursor.getType()) && !mayHold(blocks.back().keyword.type, cursor.getType())) {
                return skipMisplacedBlock();
            }
            const bool isBlock = opensBlock(cursor.getType());
            pending.push_back(parseMember());
            if (!isBlock) {
                expectStatementEnd();
            }
        });
        if (!isWhole && cursor.getPlace() == place) {
            cursor.advance();
        }
    }
}

/// Whether a block of a class, or the class itself, may have a member that starts with the keyword.
bool Parser::mayHold(TokenType block, TokenType member) {
    switch (member) {
    case keyword::Properties:
    case keyword::Methods:
    case keyword::Events:
    case keyword::Enumeration:
        return block == keyword::Classdef;
    case TokenType::Function:
        return block == keyword::Methods;
    default:
        return false;
    }
}

/// Reports a block that can't be a member, and reads it all the same, so that its `end` is known.
void Parser::skipMisplacedBlock() {
    const OpenBlock& block = blocks.back();
    const Token keyword = getToken(block.keyword);
    report(u"MisplacedBlock",
           quoteCurrent() + u" can't be directly inside the " + quoteToken(keyword) + u" on line " +
               toText(keyword.line) + u"; is an 'end' missing?",
           cursor.get());
    blocks.back().isReported = true;
    if (isAt(TokenType::Function)) {
        parseMethodDefinition();
    } else {
        parseBlockStatement();
    }
}

/// `(name, name = value, ~name)`, or nothing.
NodeList Parser::parseAttributes(const Node* parent) {
    if (!isAt(TokenType::OpenParenthesis)) {
        return {};
    }
    const std::size_t mark = pending.size();
    const CodeToken open = openBracket();
    do {
        pending.push_back(parseAttribute());
    } while (skipIf(TokenType::Comma));
    closeBracket(open);
    return takePending(mark, parent);
}

const Node* Parser::parseAttribute() {
    auto* node = make<Attribute<CA>>(cursor.get());
    node->negated = skipIf(TokenType::PrefixOperator34);
    node->name = own(node, parseName(u"an attribute name"));
    if (skipIf(TokenType::Assign)) {
        node->value = own(node, parseExpression());
    }
    return node;
}

const Node* Parser::parseMethod() {
    return isAt(TokenType::Function) ? parseMethodDefinition() : parseMethodDeclaration();
}

const Node* Parser::parseEvent() {
    auto* node = make<EventDefinition<CA>>(cursor.get());
    node->name = own(node, parseName(u"an event name"));
    return node;
}

const Node* Parser::parseEnumerationMember() {
    auto* node = make<EnumerationMember<CA>>(cursor.get());
    node->name = own(node, parseName(u"the name of an enumeration member"));
    if (!isAt(TokenType::OpenParenthesis)) {
        return node;
    }
    if (cursor.getNext().type == TokenType::CloseParenthesis) {
        fail(u"EmptyParentheses", u"an enumeration member can't have empty parentheses", cursor.get());
    }
    const std::size_t mark = pending.size();
    parseArguments(Arguments::OfCall);
    node->arguments = takePending(mark, node);
    return node;
}

/// `name (1,:) double {validator} = v` or `name@class.name = v`. A class after `@` is not part of the tree.
const Node* Parser::parseProperty() {
    auto* node = make<PropertyDefinition<CA>>(cursor.get());
    node->name = own(node, parseName(u"a property name"));
    if (skipIf(TokenType::At)) {
        parseDottedName(u"a class name after '@'");
    }
    node->validation = parseValidation(node);
    node->defaultValue = parseDefault(node);
    return node;
}

/// As a property, or `name.member …` or `name.?Class.Name`.
const Node* Parser::parseArgumentDefinition() {
    auto* node = make<ArgumentDefinition<CA>>(cursor.get());
    node->name = own(node, parseName(u"an argument name"));
    if (skipIf(TokenType::Dot)) {
        const bool isClass = skipIf(TokenType::PrefixOperator45);
        const Node* name = own(node, parseDottedName(isClass ? u"a class name" : u"a name or '?' after '.'"));
        (isClass ? node->metaClassName : node->member) = name;
    }
    node->validation = parseValidation(node);
    if (node->metaClassName != nullptr && isAt(TokenType::Assign)) {
        fail(u"MisplacedDefault", u"an argument for the properties of a class can't have a default value",
             cursor.get());
    }
    node->defaultValue = parseDefault(node);
    return node;
}

/// `= value`, null if there is none.
const Node* Parser::parseDefault(const Node* parent) {
    return skipIf(TokenType::Assign) ? own(parent, parseExpression()) : nullptr;
}

/// `(dimensions) class {validators}`, null if there is none of them.
const ValidationSpec* Parser::parseValidation(const Node* parent) {
    if (!isAt(TokenType::OpenParenthesis) && !isAtName() && !isAt(TokenType::OpenBrace)) {
        return nullptr;
    }
    auto* spec = arena.make<ValidationSpec>();
    const std::size_t mark = pending.size();
    if (isAt(TokenType::OpenParenthesis)) {
        parseArguments(Arguments::OfIndex);
        spec->dimensions = takePending(mark, parent);
    }
    if (isAtName()) {
        spec->classType = own(parent, parseDottedName(u"a class name"));
    }
    if (isAt(TokenType::OpenBrace)) {
        parseArguments(Arguments::Plain);
        spec->validators = takePending(mark, parent);
    }
    return spec;
}

} // namespace ca::syntax
