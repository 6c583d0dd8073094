#include "support/ClaimChecker.h"

#include <algorithm>
#include <map>
#include <stdexcept>

namespace {

using namespace lf::astapi;
using ca::astapi::CA;
using ca::lexer::Token;
using enum ca::lexer::TokenType;
using Type = ca::lexer::TokenType;
using Types = std::vector<Type>;
using Tree = Node<CA>;
using List = NodeList<CA>;

const Types nameTypes = {NameToken27, NameToken28};

/// Nodes of one token, and the types that it may have.
const std::map<NodeKind, Types> leafTypes = {
    {NodeKind::TokenLeaf2, {Comma, Semicolon}},
    {NodeKind::TokenLeaf10, {Break}},
    {NodeKind::TokenLeaf14, {CharacterLiteral}},
    {NodeKind::TokenLeaf16, {Colon}},
    {NodeKind::TokenLeaf19, {Continue}},
    {NodeKind::TokenLeaf27, {EndIndex}},
    {NodeKind::TokenLeaf33, {Unmeasured33}},
    {NodeKind::Ignored, {PrefixOperator34}},
    {NodeKind::NumberLiteral, {NumberToken29, NumberToken30, NumberToken99, NumberToken100}},
    {NodeKind::TokenLeaf58, {Return}},
    {NodeKind::TokenLeaf61, {StringLiteral}},
};

/// The keyword that a block of members starts with.
const std::map<NodeKind, Type> blockKeywords = {
    {NodeKind::ArgumentsBlock, OpeningKeyword26},  {NodeKind::EnumerationBlock, OpeningKeyword24},
    {NodeKind::EventsBlock, OpeningKeyword23},     {NodeKind::MethodsBlock, ClassLevelKeyword22},
    {NodeKind::PropertiesBlock, OpeningKeyword21},
};

bool isOneOf(Type type, const Types& types) {
    return std::find(types.begin(), types.end(), type) != types.end();
}

/// Operators with the same number share a flat chain of the formatter.
int getChainGroup(int number) {
    static constexpr int groups[] = {3, 3, 2, 2, 2, 1, 2, 2, 2, 1, 4, 4, 4, 4, 4, 4, 7, 5, 8, 6, 0};
    return groups[number];
}

Type getOperatorType(int number) {
    static constexpr int types[] = {51, 52, 53, 54, 55, 56, 59, 60, 61, 62, 67,
                                    68, 69, 70, 71, 72, 65, 63, 66, 64, 46};
    return static_cast<Type>(types[number]);
}

/// The walk. A member with the name of a node class claims that node's tokens.
class Walk {
public:
    explicit Walk(const std::vector<Token>& tokens) : tokens(tokens) {
        positions.reserve(tokens.size());
        std::size_t position = 0;
        for (const Token& token : tokens) {
            positions.push_back(position);
            position += token.lexeme.size();
        }
    }

    /// Gives the number of claims: of tokens, and of gaps between them, empty ones too.
    std::size_t run(const ProgramFile<CA>& root) {
        statements(root.statements, root);
        gap({Semicolon, Comma});
        take({EndOfInput}, "the end of the text");
        return claims;
    }

private:
    [[noreturn]] void fail(const std::string& what) const {
        const Token& token = tokens[std::min(index, tokens.size() - 1)];
        throw std::runtime_error(std::to_string(token.line) + ":" + std::to_string(token.column) + ": " +
                                 what + ", found " + getTokenTypeName(token.type));
    }

    Type peek() const {
        std::size_t i = index;
        while (tokens.at(i).isWhitespace()) {
            ++i;
        }
        return tokens[i].type;
    }

    void gap(const Types& absorbed = {}) {
        ++claims;
        while (index < tokens.size() &&
               (tokens[index].isWhitespace() || isOneOf(tokens[index].type, absorbed))) {
            ++index;
        }
    }

    void take(const Types& expected, const char* what) {
        if (index >= tokens.size() || !isOneOf(tokens[index].type, expected)) {
            fail(std::string("expected ") + what);
        }
        ++index;
        ++claims;
    }

    void takeIn(const Types& expected, const char* what) {
        gap();
        take(expected, what);
    }

    /// A gap in front of a child, the child and what belongs to every node.
    void child(const Tree* node, const Tree& parent) {
        gap();
        visit(node, parent);
    }

    void visit(const Tree* node, const Tree& parent) {
        if (node == nullptr) {
            fail("a child is missing");
        }
        if (node->parent != &parent) {
            fail(std::string("the parent is wrong of a ") + getNodeKindName(node->kind));
        }
        const Token& token = tokens.at(index);
        if (node->position != positions[index] || node->line != token.line || node->column != token.column) {
            fail(std::string("the place is wrong of a ") + getNodeKindName(node->kind));
        }
        dispatch(*node);
    }

    void statements(const List& list, const Tree& parent) {
        for (const Tree* item : list) {
            gap({Semicolon, Comma});
            visit(item, parent);
        }
    }

    void commaList(Type open, Type close, const List& list, const Tree& parent) {
        take({open}, "an opening bracket");
        for (const Tree* item : list) {
            if (item != list.front()) {
                takeIn({Comma}, "a comma");
            }
            child(item, parent);
        }
        takeIn({close}, "a closing bracket");
    }

    void parentheses(const List& list, const Tree& parent) {
        gap();
        commaList(OpenParenthesis, CloseParenthesis, list, parent);
    }

    void rowElements(const List& list, const Tree& parent) {
        for (const Tree* item : list) {
            if (item != list.front()) {
                gap({Comma});
            }
            visit(item, parent);
        }
        if (peek() == Comma) {
            gap({Comma});
        }
    }

    void rows(const List& list, const Tree& parent) {
        gap();
        for (const Tree* row : list) {
            if (row != list.front()) {
                gap({Semicolon});
            }
            visit(row, parent);
        }
        if (!list.empty() && isOneOf(peek(), {Semicolon, CloseSquareBracket})) {
            gap({Semicolon});
        }
        if (!list.empty()) {
            gap();
        }
    }

    void bracketedOutputs(const List& list, const Tree& node) {
        take({OpenSquareBracket}, "'['");
        gap();
        if (!list.empty()) {
            rowElements(list, node);
            gap();
        }
        take({CloseSquareBracket}, "']'");
    }

    /// Behind a statement: its semicolon, unless it is printed.
    void terminator(const Tree& node) {
        if (node.parent->kind != NodeKind::PrintingStatement) {
            takeIn({Semicolon}, "the statement's semicolon");
        }
    }

    void end() {
        gap({Semicolon, Comma});
        take({End}, "'end'");
    }

    void words(const List& list) {
        for (std::size_t i = 0; i < list.size(); ++i) {
            takeIn({CommandWord}, "a word");
        }
    }

    void identifier(const Identifier<CA>& node) {
        std::u16string text;
        takeName(text);
        for (auto dots = std::count(node.text.begin(), node.text.end(), u'.'); dots > 0; --dots) {
            takeIn({Dot}, "a dot of a name");
            text += u'.';
            gap();
            takeName(text);
        }
        if (text != node.text) {
            fail("the text of a name is wrong");
        }
        if (peek() == At && node.parent->kind == NodeKind::PropertyDefinition) {
            takeIn({At}, "'@'");
            takeIn(nameTypes, "a class name");
            while (peek() == Dot) {
                takeIn({Dot}, "a dot");
                takeIn(nameTypes, "a class name");
            }
        }
    }

    void takeName(std::u16string& text) {
        take(nameTypes, "a name");
        text += tokens[index - 1].lexeme;
    }

    void binary(const BinaryOperation<CA>& top) {
        struct Part {
            const Tree* operand;
            const Tree* parent;
        };
        const int group = getChainGroup(top.operatorNumber);
        std::vector<Part> operands;
        std::vector<Type> operators;
        // Depth first, left to right. An entry without an operand is an operator to note.
        std::vector<std::pair<Part, int>> stack{{{&top, top.parent}, -1}};
        while (!stack.empty()) {
            const auto [part, number] = stack.back();
            stack.pop_back();
            if (number >= 0) {
                operators.push_back(getOperatorType(number));
                continue;
            }
            const Tree* node = part.operand;
            if (node->kind == NodeKind::BinaryOperation &&
                getChainGroup(as<BinaryOperation>(*node).operatorNumber) == group) {
                const auto& operation = as<BinaryOperation>(*node);
                stack.push_back({{operation.right, node}, -1});
                stack.push_back({{nullptr, nullptr}, operation.operatorNumber});
                stack.push_back({{operation.left, node}, -1});
            } else {
                operands.push_back(part);
            }
        }
        for (std::size_t i = 0; i < operands.size(); ++i) {
            if (i > 0) {
                takeIn({operators[i - 1]}, "the operator");
                gap();
            }
            visit(operands[i].operand, *operands[i].parent);
        }
    }

    void unary(const UnaryOperation<CA>& node) {
        static const std::vector<Types> types = {{PlusMinusOperator51, OpenParenthesis},
                                                 {PlusMinusOperator52},
                                                 {PostfixOperator43},
                                                 {PostfixOperator44},
                                                 {PrefixOperator34},
                                                 {At},
                                                 {PrefixOperator45},
                                                 {CloseParenthesis}};
        const auto number = static_cast<std::size_t>(node.operatorNumber);
        const bool isPostfix = number == 2 || number == 3 || number == 7;
        if (!isPostfix) {
            take(types.at(number), "a prefix operator");
            return child(node.operand, node);
        }
        visit(node.operand, node);
        takeIn(types[number], "a postfix operator");
    }

    void ifStatement(const IfStatement<CA>& node) {
        take({OpeningKeyword4}, "'if'");
        child(node.condition, node);
        statements(node.body, node);
        gap({Semicolon, Comma});
        for (const Tree* item : node.elseifBlocks) {
            const auto& branch = as<ElseifBlock>(*item);
            take({SecondaryKeyword10}, "'elseif'");
            child(branch.condition, branch);
            statements(branch.body, branch);
            gap({Semicolon, Comma});
        }
        if (node.elseBlock != nullptr) {
            take({SecondaryKeyword9}, "'else'");
            statements(as<ElseBlock>(*node.elseBlock).body, *node.elseBlock);
            gap({Semicolon, Comma});
        }
        take({End}, "'end'");
    }

    template <class Loop>
    void loopHeader(const Loop& node) {
        child(node.variable, node);
        takeIn({Assign}, "'='");
        child(node.range, node);
    }

    void parforStatement(const ParforStatement<CA>& node) {
        take({OpeningKeyword5}, "'parfor'");
        if (peek() == OpenParenthesis) {
            takeIn({OpenParenthesis}, "'('");
        }
        loopHeader(node);
        for (const Tree* option : node.options) {
            takeIn({Comma}, "a comma");
            child(option, node);
        }
        if (peek() == CloseParenthesis) {
            takeIn({CloseParenthesis}, "')'");
        }
        statements(node.body, node);
        end();
    }

    void spmdStatement(const SpmdStatement<CA>& node) {
        take({OpeningKeyword25}, "'spmd'");
        if (peek() == OpenParenthesis) {
            parentheses(node.arguments, node);
        }
        statements(node.body, node);
        end();
    }

    void tryStatement(const TryStatement<CA>& node) {
        take({OpeningKeyword13}, "'try'");
        statements(node.body, node);
        gap({Semicolon, Comma});
        if (node.catchBlock != nullptr) {
            const auto& branch = as<CatchBlock>(*node.catchBlock);
            take({SecondaryKeyword16}, "'catch'");
            if (branch.identifier != nullptr) {
                child(branch.identifier, branch);
            }
            statements(branch.body, branch);
            gap({Semicolon, Comma});
        }
        take({End}, "'end'");
    }

    void switchStatement(const SwitchStatement<CA>& node) {
        take({OpeningKeyword6}, "'switch'");
        child(node.subject, node);
        statements(node.cases, node);
        if (node.otherwise != nullptr) {
            gap({Semicolon, Comma});
            visit(node.otherwise, node);
        }
        end();
    }

    void signature(const Signature<CA>& node) {
        if (peek() == OpenSquareBracket) {
            bracketedOutputs(node.outputs, node);
            takeIn({Assign}, "'='");
            gap();
        } else if (node.outputs.size() == 1) {
            visit(node.outputs.front(), node);
            takeIn({Assign}, "'='");
            gap();
        }
        visit(node.name, node);
        if (peek() == OpenParenthesis) {
            parentheses(node.parameters, node);
        } else if (!node.parameters.empty()) {
            fail("parameters without a parenthesis");
        }
    }

    void function(const FunctionBody<CA>& node) {
        take({Type::Function}, "'function'");
        gap();
        signature(node);
        statements(node.argumentsBlocks, node);
        statements(node.body, node);
        gap({Semicolon, Comma});
        if (node.kind == NodeKind::MethodDefinition || peek() == End) {
            take({End}, "the end of a function");
        }
    }

    void attributes(const List& list, const Tree& node) {
        if (!list.empty()) {
            parentheses(list, node);
        }
    }

    void classDefinition(const ClassDefinition<CA>& node) {
        take({ClassLevelKeyword20}, "'classdef'");
        attributes(node.attributes, node);
        child(node.name, node);
        for (const Tree* superclass : node.superclasses) {
            takeIn({superclass == node.superclasses.front() ? ComparisonOperator69 : LogicalOperator63},
                   "'<' or '&' of a superclass");
            child(superclass, node);
        }
        statements(node.members, node);
        end();
    }

    void memberBlock(const MemberBlock<CA>& node, Type keyword) {
        take({keyword}, "the keyword of a block");
        attributes(node.attributes, node);
        statements(node.members, node);
        end();
    }

    void validation(const ValidationSpec<CA>* spec, const Tree& node) {
        if (spec == nullptr) {
            return;
        }
        if (peek() == OpenParenthesis) {
            parentheses(spec->dimensions, node);
        }
        if (spec->classType != nullptr) {
            child(spec->classType, node);
        }
        if (peek() == OpenBrace) {
            gap();
            commaList(OpenBrace, CloseBrace, spec->validators, node);
        }
    }

    void defaultValue(const Tree* value, const Tree& node) {
        if (value != nullptr) {
            takeIn({Assign}, "'='");
            child(value, node);
        }
    }

    void argumentDefinition(const ArgumentDefinition<CA>& node) {
        visit(node.name, node);
        if (node.member != nullptr) {
            takeIn({Dot}, "a dot");
            child(node.member, node);
        } else if (node.metaClassName != nullptr) {
            takeIn({Dot}, "a dot");
            takeIn({PrefixOperator45}, "'?'");
            child(node.metaClassName, node);
        }
        validation(node.validation, node);
        defaultValue(node.defaultValue, node);
    }

    void dispatch(const Tree& node) {
        if (const auto leaf = leafTypes.find(node.kind); leaf != leafTypes.end()) {
            return take(leaf->second, getNodeKindName(node.kind));
        }
        if (const auto block = blockKeywords.find(node.kind); block != blockKeywords.end()) {
            return memberBlock(static_cast<const MemberBlock<CA>&>(node), block->second);
        }
        switch (node.kind) {
        case NodeKind::AnonymousFunction: {
            const auto& function = as<AnonymousFunction>(node);
            take({At}, "'@'");
            parentheses(function.parameters, node);
            return child(function.body, node);
        }
        case NodeKind::ArgumentDefinition:
            return argumentDefinition(as<ArgumentDefinition>(node));
        case NodeKind::Assignment: {
            const auto& assignment = as<Assignment>(node);
            visit(assignment.target, node);
            takeIn({Assign}, "'='");
            child(assignment.value, node);
            return terminator(node);
        }
        case NodeKind::Attribute: {
            const auto& attribute = as<Attribute>(node);
            if (attribute.negated) {
                take({PrefixOperator34}, "'~'");
                gap();
            }
            visit(attribute.name, node);
            return defaultValue(attribute.value, node);
        }
        case NodeKind::BinaryOperation:
            return binary(as<BinaryOperation>(node));
        case NodeKind::BraceIndexing: {
            const auto& indexing = as<BraceIndexing>(node);
            visit(indexing.target, node);
            gap();
            return commaList(OpenBrace, CloseBrace, indexing.arguments, node);
        }
        case NodeKind::CaseSelection: {
            const auto& selection = as<CaseSelection>(node);
            take({SecondaryIndentedKeyword18}, "'case'");
            child(selection.value, node);
            return statements(selection.body, node);
        }
        case NodeKind::CellLiteral:
            take({OpenBrace}, "'{'");
            rows(as<CellLiteral>(node).rows, node);
            return take({CloseBrace}, "'}'");
        case NodeKind::ClassDefinition:
            return classDefinition(as<ClassDefinition>(node));
        case NodeKind::ColonExpression: {
            const auto& range = as<ColonExpression>(node);
            visit(range.first, node);
            if (range.step != nullptr) {
                takeIn({Colon}, "':'");
                child(range.step, node);
            }
            takeIn({Colon}, "':'");
            return child(range.last, node);
        }
        case NodeKind::CommandSyntax:
            visit(as<CommandSyntax>(node).command, node);
            words(as<CommandSyntax>(node).words);
            return terminator(node);
        case NodeKind::FieldAccess:
            visit(as<FieldAccess>(node).object, node);
            takeIn({Dot}, "'.'");
            return child(as<FieldAccess>(node).field, node);
        case NodeKind::DynamicFieldAccess:
            visit(as<DynamicFieldAccess>(node).object, node);
            takeIn({Dot}, "'.'");
            takeIn({OpenParenthesis}, "'('");
            child(as<DynamicFieldAccess>(node).expression, node);
            return takeIn({CloseParenthesis}, "')'");
        case NodeKind::EnumerationMember: {
            const auto& member = as<EnumerationMember>(node);
            visit(member.name, node);
            return attributes(member.arguments, node);
        }
        case NodeKind::EventDefinition:
            return visit(as<EventDefinition>(node).name, node);
        case NodeKind::ExpressionStatement:
            visit(as<ExpressionStatement>(node).expression, node);
            return terminator(node);
        case NodeKind::ForStatement:
            take({OpeningKeyword3}, "'for'");
            loopHeader(as<ForStatement>(node));
            statements(as<ForStatement>(node).body, node);
            return end();
        case NodeKind::Function:
        case NodeKind::MethodDefinition:
            return function(as<FunctionBody>(node));
        case NodeKind::GlobalDeclaration:
            take({Global}, "'global'");
            return names(as<GlobalDeclaration>(node).names, node);
        case NodeKind::PersistentDeclaration:
            take({Persistent}, "'persistent'");
            return names(as<PersistentDeclaration>(node).names, node);
        case NodeKind::Identifier:
            return identifier(as<Identifier>(node));
        case NodeKind::IfStatement:
            return ifStatement(as<IfStatement>(node));
        case NodeKind::ImportStatement:
            take({Import}, "'import'");
            words(as<ImportStatement>(node).words);
            return terminator(node);
        case NodeKind::InputArgument: {
            const auto& argument = as<InputArgument>(node);
            return visit(argument.identifier != nullptr ? argument.identifier : argument.ignored, node);
        }
        case NodeKind::MatrixLiteral:
            take({OpenSquareBracket}, "'['");
            rows(as<MatrixLiteral>(node).rows, node);
            return take({CloseSquareBracket}, "']'");
        case NodeKind::MethodDeclaration:
            return signature(as<Signature>(node));
        case NodeKind::MultipleAssignment: {
            const auto& assignment = as<MultipleAssignment>(node);
            bracketedOutputs(assignment.outputs, node);
            defaultValue(assignment.value, node);
            return terminator(node);
        }
        case NodeKind::NamedArgument:
            visit(as<NamedArgument>(node).name, node);
            return defaultValue(as<NamedArgument>(node).value, node);
        case NodeKind::OtherwiseBlock:
            take({SecondaryIndentedKeyword19}, "'otherwise'");
            return statements(as<OtherwiseBlock>(node).body, node);
        case NodeKind::ParenthesisIndexing:
            visit(as<ParenthesisIndexing>(node).target, node);
            return parentheses(as<ParenthesisIndexing>(node).arguments, node);
        case NodeKind::ParenthesizedExpression:
            take({OpenParenthesis}, "'('");
            child(as<ParenthesizedExpression>(node).inner, node);
            return takeIn({CloseParenthesis}, "')'");
        case NodeKind::ParforStatement:
            return parforStatement(as<ParforStatement>(node));
        case NodeKind::PrintingStatement:
            return visit(as<PrintingStatement>(node).statement, node);
        case NodeKind::PropertyDefinition:
            visit(as<PropertyDefinition>(node).name, node);
            validation(as<PropertyDefinition>(node).validation, node);
            return defaultValue(as<PropertyDefinition>(node).defaultValue, node);
        case NodeKind::MatrixRow:
            return rowElements(as<MatrixRow>(node).elements, node);
        case NodeKind::SpmdStatement:
            return spmdStatement(as<SpmdStatement>(node));
        case NodeKind::SwitchStatement:
            return switchStatement(as<SwitchStatement>(node));
        case NodeKind::TryStatement:
            return tryStatement(as<TryStatement>(node));
        case NodeKind::UnaryOperation:
            return unary(as<UnaryOperation>(node));
        case NodeKind::WhileStatement:
            take({OpeningKeyword7}, "'while'");
            child(as<WhileStatement>(node).condition, node);
            statements(as<WhileStatement>(node).body, node);
            return end();
        default:
            fail(std::string("a node that is never delivered: ") + getNodeKindName(node.kind));
        }
    }

    void names(const List& list, const Tree& node) {
        for (const Tree* name : list) {
            child(name, node);
        }
    }

    const std::vector<Token>& tokens;
    std::vector<std::size_t> positions;
    std::size_t index = 0;
    std::size_t claims = 0;
};

} // namespace

std::size_t countClaims(const ProgramFile<CA>& root, const std::vector<Token>& tokens) {
    return Walk(tokens).run(root);
}

std::string checkClaims(const ProgramFile<CA>& root, const std::vector<Token>& tokens) {
    try {
        countClaims(root, tokens);
        return {};
    } catch (const std::exception& fault) {
        return fault.what();
    }
}
