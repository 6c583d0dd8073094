// Builds a format tree from a syntax tree and a token list, which describe the same text twice: the syntax
// tree says what the text means and knows nothing of spacing and comments, the token list holds every
// character.
//
// The parser walks the syntax tree, and wherever the grammar has a token it claims the next one of the list.
// It never searches for a token and never compares one with the node it belongs to. What is between two
// claimed tokens is a run, and each run becomes one whitespace node, an empty one too, at the place that the
// walk names. So leaves are made in the order of the text, and that order is all that chains them:
//
//     x = a + b;      container: token x, run, token =, run, container of the +, run, token ;
//
// Which class a run gets is decided by its place in the grammar alone, with one exception: a run with a
// comment in it is a CommentNode.

#include "parser/FormattingParser.h"

#include "parser/NodeBuilder.h"
#include "parser/OperatorClass.h"

#include <ca/astapi/CA.h>

#include <algorithm>
#include <span>
#include <stdexcept>

namespace ca::formatting {

namespace {

using namespace lf::astapi;
using ca::astapi::CA;
using ca::lexer::TokenType;
using ContainerKind = FormattingConfig::ContainerKind;
using Side = BinaryOperationWhitespaceNode::Side;
using SyntaxNode = Node<CA>;
using SyntaxList = NodeList<CA>;

/// The walk. Lives as long as the constructor of the tree.
class FormattingParser : NodeBuilder {
public:
    using NodeBuilder::getFirstLeaf;
    using NodeBuilder::getLastLeaf;
    using NodeBuilder::getProgramIndentNode;
    using NodeBuilder::getTokenCount;
    using NodeBuilder::NodeBuilder;

    ContainerNode* filePart(const ProgramFile<CA>& node, const FilePart& part) {
        Rule rule(*this);
        for (std::size_t i = part.firstStatement; i < part.endStatement; ++i) {
            takeStatement(node.statements[i], rule);
        }
        if (part.isLast) {
            rule.separator().token();
        }
        getProgramIndentNode()->close();
        return rule.container();
    }

    ContainerNode* programFile(const ProgramFile<CA>& node) {
        enterProgram();
        return Rule(*this).statements(node.statements).separator().token().container();
    }

private:
    /// The tree rule of one syntax node: steps that take what comes next, from left to right, and at last a
    /// container around all that they took. Rules nest as the syntax nodes do, so the children of all open
    /// rules are in one stack.
    class Rule {
    public:
        explicit Rule(FormattingParser& parser) : Rule(parser, parser.children.size()) {}
        Rule(FormattingParser& parser, std::size_t firstChild) : parser(parser), firstChild(firstChild) {}
        Rule(const Rule&) = delete;
        Rule& operator=(const Rule&) = delete;

        Rule& token() { return append(parser.takeToken()); }

        Rule& unnecessary(TokenTypes absorb = {}) {
            return append(parser.takeRun<UnnecessaryWhitespaceNode>(absorb));
        }

        Rule& necessary(TokenTypes absorb = {}) {
            return append(parser.takeRun<NecessaryWhitespaceNode>(absorb));
        }

        /// The gap between statements or members, with the separators in it that belong to no node.
        Rule& separator() {
            return append(
                parser.takeRun<LineSeparatorWhitespaceNode>({TokenType::Semicolon, TokenType::Comma}));
        }

        /// The gap on one side of a binary operator.
        Rule& operatorGap(ContainerKind kind, Side side) {
            return append(parser.takeRun<BinaryOperationWhitespaceNode>({}, kind, side));
        }

        Rule& child(const SyntaxNode* node) { return append(parser.dispatch(node)); }

        Rule& statements(const SyntaxList& list) {
            parser.takeStatementList(list, *this);
            return *this;
        }

        template <class Statement>
        Rule& block(const Statement& statement) {
            parser.takeBlock(statement, *this);
            return *this;
        }

        Rule& append(TextNode* node) {
            parser.children.push_back(node);
            return *this;
        }

        ContainerNode* container(ContainerKind kind = ContainerKind::None) {
            const std::span<TextNode* const> own = std::span(parser.children).subspan(firstChild);
            ContainerNode* node = parser.makeContainer(kind, own);
            parser.children.resize(firstChild);
            return node;
        }

        /// The one child by itself where there is no other, otherwise a container around all.
        TextNode* containerUnlessSingle() {
            if (parser.children.size() > firstChild + 1) {
                return container();
            }
            TextNode* only = parser.children.back();
            parser.children.pop_back();
            return only;
        }

    private:
        FormattingParser& parser;
        std::size_t firstChild;
    };

    // Lists.

    /// A separator before each statement or member, and none after the last: that gap belongs to the
    /// caller. What comes before a nested function indents with it.
    void takeStatementList(const SyntaxList& list, Rule& rule) {
        for (const SyntaxNode* item : list) {
            takeStatement(item, rule);
        }
    }

    void takeStatement(const SyntaxNode* item, Rule& rule) {
        if (!ca::astapi::isNestedFunction(item)) {
            rule.separator().child(item);
            return;
        }
        NestedFunctionIndentNode::FunctionReference function;
        if (item->kind == NodeKind::Function) {
            function = as<Function>(*item);
        }
        enterIndent<NestedFunctionIndentNode>(function);
        rule.separator().child(item);
        leaveIndent();
    }

    /// The statements inside a block statement or one of its branches.
    template <class Statement>
    void takeBlock(const Statement& statement, Rule& rule) {
        enterIndent<StatementBlockIndentNode>(statement);
        takeStatementList(statement.body, rule);
        leaveIndent();
    }

    /// `(a, b)` and `{a, b}`: the commas are tokens of the list.
    void takeCommaList(const SyntaxList& list, Rule& rule) {
        rule.token();
        for (const SyntaxNode* element : list) {
            if (element != list.front()) {
                rule.unnecessary().token();
            }
            rule.unnecessary().child(element);
        }
        rule.unnecessary().token();
    }

    /// `a, b c`: the elements of a matrix row or the left side of a multiple assignment. A comma between two
    /// of them is part of the gap, since the gap separates them with or without it.
    void takeRowElements(const SyntaxList& list, Rule& rule) {
        for (const SyntaxNode* element : list) {
            if (element != list.front()) {
                rule.necessary({TokenType::Comma});
            }
            rule.child(element);
        }
        if (peekType() == TokenType::Comma) {
            rule.unnecessary({TokenType::Comma});
        }
    }

    /// What is between the brackets of a literal. A `]` gets a gap more than a `}` after the last row,
    /// and that is meant: only a semicolon gives the `}` one too.
    void takeMatrixRows(const SyntaxList& rows, Rule& rule) {
        rule.unnecessary();
        if (rows.empty()) {
            return;
        }
        for (const SyntaxNode* row : rows) {
            if (row != rows.front()) {
                rule.necessary({TokenType::Semicolon});
            }
            rule.child(row);
        }
        const TokenType next = peekType();
        if (next == TokenType::Semicolon || next == TokenType::CloseSquareBracket ||
            next == TokenType::CloseParenthesis) {
            rule.necessary({TokenType::Semicolon});
        }
        rule.unnecessary();
    }

    /// `[a, b]` on the left of an assignment or in a signature.
    void takeBracketedOutputs(const SyntaxList& outputs, Rule& rule) {
        rule.token().unnecessary();
        if (!outputs.empty()) {
            takeRowElements(outputs, rule);
            rule.unnecessary();
        }
        rule.token();
    }

    /// The semicolon of a statement. A printing statement has none, and its gap is left to the next
    /// separator.
    void takeTerminator(const SyntaxNode& node, Rule& rule) {
        if (node.parent->kind != NodeKind::PrintingStatement) {
            rule.unnecessary().token();
        }
    }

    /// `command word word`: each word is one token.
    void takeWords(const SyntaxList& words, Rule& rule) {
        for (std::size_t i = 0; i < words.size(); ++i) {
            rule.necessary().token();
        }
    }

    /// `= value` after the name of a property or argument.
    void takeDefaultValue(const SyntaxNode* value, Rule& rule) {
        if (value != nullptr) {
            rule.necessary().token().necessary().child(value);
        }
    }

    /// `[outputs] = name(parameters)`. Whether there are brackets and parentheses is in the tokens only.
    ContainerNode* takeSignature(const Signature<CA>& node) {
        Rule rule(*this);
        const bool hasBracket = peekType() == TokenType::OpenSquareBracket;
        if (hasBracket) {
            takeBracketedOutputs(node.outputs, rule);
        } else if (node.outputs.size() == 1) {
            rule.child(node.outputs.front());
        }
        if (hasBracket || node.outputs.size() == 1) {
            rule.unnecessary().token().unnecessary();
        }
        rule.child(node.name);
        if (peekType() == TokenType::OpenParenthesis) {
            rule.unnecessary();
            takeCommaList(node.parameters, rule);
        }
        return rule.container();
    }

    /// `(a, b = c)` after the keyword of a class or block, with the gap before it.
    void takeAttributeList(const SyntaxList& attributes, Rule& rule) {
        if (attributes.empty()) {
            return;
        }
        rule.necessary();
        takeCommaList(attributes, rule);
    }

    /// `(dimensions) class {validators}` after the name of a property or argument.
    void takeValidation(const ValidationSpec<CA>* validation, Rule& rule) {
        if (validation == nullptr) {
            return;
        }
        if (peekType() == TokenType::OpenParenthesis) {
            rule.necessary();
            takeCommaList(validation->dimensions, rule);
        }
        if (validation->classType != nullptr) {
            rule.necessary().child(validation->classType);
        }
        if (peekType() == TokenType::OpenBrace) {
            rule.necessary();
            takeCommaList(validation->validators, rule);
        }
    }

    // The rules, one for each syntax node, in the order of the kinds.

    TextNode* anonymousFunction(const AnonymousFunction<CA>& node) {
        Rule rule(*this);
        rule.token().unnecessary();
        takeCommaList(node.parameters, rule);
        return rule.necessary().child(node.body).container();
    }

    TextNode* argumentDefinition(const ArgumentDefinition<CA>& node) {
        Rule rule(*this);
        rule.child(node.name);
        if (node.member != nullptr) {
            rule.unnecessary().token().unnecessary().child(node.member);
        } else if (node.metaClassName != nullptr) {
            rule.unnecessary().token().unnecessary().token().unnecessary().child(node.metaClassName);
        }
        takeValidation(node.validation, rule);
        takeDefaultValue(node.defaultValue, rule);
        return rule.container();
    }

    TextNode* assignment(const Assignment<CA>& node) {
        Rule rule(*this);
        rule.child(node.target).unnecessary().token().unnecessary().child(node.value);
        takeTerminator(node, rule);
        return rule.container();
    }

    TextNode* attribute(const Attribute<CA>& node) {
        Rule rule(*this);
        if (node.negated) {
            rule.token().unnecessary();
        }
        rule.child(node.name);
        if (node.value != nullptr) {
            rule.unnecessary().token().unnecessary().child(node.value);
        }
        return rule.container();
    }

    TextNode* braceIndexing(const BraceIndexing<CA>& node) {
        return indexing(node.target, node.arguments, ContainerKind::BraceList);
    }

    TextNode* caseSelection(const CaseSelection<CA>& node) {
        return Rule(*this).token().necessary().child(node.value).block(node).container(ContainerKind::Case);
    }

    TextNode* cellLiteral(const CellLiteral<CA>& node) {
        return literal(node.rows, ContainerKind::BraceList);
    }

    TextNode* classDefinition(const ClassDefinition<CA>& node) {
        Rule rule(*this);
        rule.token();
        takeAttributeList(node.attributes, rule);
        rule.necessary().child(node.name);
        for (const SyntaxNode* superclass : node.superclasses) {
            rule.unnecessary().token().unnecessary().child(superclass);
        }
        return rule.statements(node.members).separator().token().container();
    }

    TextNode* commandSyntax(const CommandSyntax<CA>& node) {
        Rule rule(*this);
        rule.child(node.command);
        takeWords(node.words, rule);
        takeTerminator(node, rule);
        return rule.container();
    }

    TextNode* dynamicFieldAccess(const DynamicFieldAccess<CA>& node) {
        Rule rule(*this);
        rule.child(node.object).unnecessary().token().unnecessary().token();
        return rule.unnecessary().child(node.expression).unnecessary().token().container();
    }

    TextNode* enumerationMember(const EnumerationMember<CA>& node) {
        Rule rule(*this);
        rule.child(node.name);
        if (!node.arguments.empty()) {
            rule.unnecessary();
            takeCommaList(node.arguments, rule);
        }
        return rule.container();
    }

    TextNode* eventDefinition(const EventDefinition<CA>& node) {
        Rule rule(*this);
        rule.child(node.name);
        if (node.value != nullptr) {
            rule.unnecessary().token().unnecessary().child(node.value).unnecessary().token();
        }
        return rule.container();
    }

    TextNode* expressionStatement(const ExpressionStatement<CA>& node) {
        Rule rule(*this);
        rule.child(node.expression);
        takeTerminator(node, rule);
        return rule.containerUnlessSingle();
    }

    TextNode* fieldAccess(const FieldAccess<CA>& node) {
        Rule rule(*this);
        return rule.child(node.object).unnecessary().token().unnecessary().child(node.field).container();
    }

    TextNode* forStatement(const ForStatement<CA>& node) {
        Rule rule(*this);
        rule.token().necessary().child(node.variable).unnecessary().token().unnecessary().child(node.range);
        return rule.block(node).separator().token().container(ContainerKind::For);
    }

    /// The gap after the last statement belongs to the level around the function, `end` or not. Only the
    /// tokens tell whether the file closes its functions.
    TextNode* function(const Function<CA>& node) {
        Rule rule(*this);
        takeFunctionUpToEnd(node, rule);
        if (peekType() == TokenType::End) {
            rule.token();
        }
        return rule.container();
    }

    /// `global a b` and `persistent a b`. A closing semicolon is part of the separator after it.
    TextNode* declaration(const SyntaxList& names) {
        Rule rule(*this);
        rule.token();
        for (const SyntaxNode* name : names) {
            rule.necessary().child(name);
        }
        return rule.container();
    }

    /// A dotted name is one node and several tokens. The class that a property may name after an `@` is in
    /// the tokens only.
    TextNode* identifier(const Identifier<CA>& node) {
        Rule rule(*this);
        auto dots = std::count(node.text.begin(), node.text.end(), u'.');
        if (peekType() == TokenType::Dot) {
            rule.token().unnecessary();
            --dots;
        }
        rule.token();
        for (; dots > 0; --dots) {
            rule.unnecessary().token().unnecessary().token();
        }
        if (node.parent->kind == NodeKind::PropertyDefinition && peekType() == TokenType::At) {
            takePropertyClass(rule);
        }
        return rule.container();
    }

    void takePropertyClass(Rule& rule) {
        rule.unnecessary().token().unnecessary().token();
        while (peekType() == TokenType::Dot) {
            rule.unnecessary().token().unnecessary().token();
        }
    }

    TextNode* ifStatement(const IfStatement<CA>& node) {
        Rule rule(*this);
        rule.token().necessary().child(node.condition).block(node).separator();
        for (const SyntaxNode* branch : node.elseifBlocks) {
            const auto& elseifBlock = as<ElseifBlock>(*branch);
            rule.token().necessary().child(elseifBlock.condition).block(elseifBlock).separator();
        }
        if (node.elseBlock != nullptr) {
            rule.token().block(as<ElseBlock>(*node.elseBlock)).separator();
        }
        return rule.token().container(ContainerKind::If);
    }

    TextNode* importStatement(const ImportStatement<CA>& node) {
        Rule rule(*this);
        rule.token();
        takeWords(node.words, rule);
        takeTerminator(node, rule);
        return rule.container();
    }

    TextNode* inputArgument(const InputArgument<CA>& node) {
        if (node.identifier != nullptr) {
            return dispatch(node.identifier);
        }
        if (node.ignored != nullptr) {
            return dispatch(node.ignored);
        }
        throw std::logic_error("InputArgument has neither an Identifier nor an Ignored");
    }

    TextNode* matrixLiteral(const MatrixLiteral<CA>& node) {
        return literal(node.rows, ContainerKind::BracketList);
    }

    /// A method always has its `end`.
    TextNode* methodDefinition(const MethodDefinition<CA>& node) {
        Rule rule(*this);
        takeFunctionUpToEnd(node, rule);
        return rule.token().container();
    }

    /// The blocks of a class or function. They open no level: their members are at the level of the block.
    TextNode* memberBlock(const MemberBlock<CA>& node) {
        Rule rule(*this);
        rule.token();
        takeAttributeList(node.attributes, rule);
        return rule.statements(node.members).separator().token().container();
    }

    TextNode* multipleAssignment(const MultipleAssignment<CA>& node) {
        Rule rule(*this);
        takeBracketedOutputs(node.outputs, rule);
        rule.unnecessary().token().unnecessary().child(node.value);
        takeTerminator(node, rule);
        return rule.container();
    }

    TextNode* namedArgument(const NamedArgument<CA>& node) {
        Rule rule(*this);
        return rule.child(node.name).unnecessary().token().unnecessary().child(node.value).container();
    }

    TextNode* otherwiseBlock(const OtherwiseBlock<CA>& node) {
        return Rule(*this).token().block(node).container(ContainerKind::Case);
    }

    TextNode* parenthesisIndexing(const ParenthesisIndexing<CA>& node) {
        return indexing(node.target, node.arguments, ContainerKind::ParenthesisList);
    }

    TextNode* parenthesizedExpression(const ParenthesizedExpression<CA>& node) {
        Rule rule(*this);
        rule.token().unnecessary().child(node.inner).unnecessary().token();
        return rule.container(ContainerKind::ParenthesisList);
    }

    /// Parentheses round the header are in the tokens only.
    TextNode* parforStatement(const ParforStatement<CA>& node) {
        Rule rule(*this);
        rule.token().necessary();
        if (peekType() == TokenType::OpenParenthesis) {
            rule.token().unnecessary();
        }
        rule.child(node.variable).unnecessary().token().unnecessary().child(node.range);
        for (const SyntaxNode* option : node.options) {
            rule.unnecessary().token().unnecessary().child(option);
        }
        if (peekType() == TokenType::CloseParenthesis) {
            rule.unnecessary().token();
        }
        return rule.block(node).separator().token().container(ContainerKind::Parfor);
    }

    TextNode* propertyDefinition(const PropertyDefinition<CA>& node) {
        Rule rule(*this);
        rule.child(node.name);
        takeValidation(node.validation, rule);
        takeDefaultValue(node.defaultValue, rule);
        return rule.container();
    }

    TextNode* matrixRow(const MatrixRow<CA>& node) {
        Rule rule(*this);
        takeRowElements(node.elements, rule);
        return rule.container();
    }

    /// Stamped `None`, not `Spmd`: the options of that kind have no effect on a tree, and that is meant.
    TextNode* spmdStatement(const SpmdStatement<CA>& node) {
        Rule rule(*this);
        rule.token();
        if (peekType() == TokenType::OpenParenthesis) {
            rule.unnecessary();
            takeCommaList(node.arguments, rule);
        }
        return rule.block(node).separator().token().container();
    }

    /// All cases are in one level, the statements of each in one of their own. A case has no gap after it:
    /// that is the separator before the next one, or of the `end`.
    TextNode* switchStatement(const SwitchStatement<CA>& node) {
        Rule rule(*this);
        rule.token().necessary().child(node.subject);
        enterIndent<SwitchContentsIndentNode>();
        for (const SyntaxNode* selection : node.cases) {
            rule.separator().child(selection);
        }
        if (node.otherwise != nullptr) {
            rule.separator().child(node.otherwise);
        }
        leaveIndent();
        return rule.separator().token().container(ContainerKind::Switch);
    }

    TextNode* tryStatement(const TryStatement<CA>& node) {
        Rule rule(*this);
        rule.token().block(node).separator();
        if (node.catchBlock != nullptr) {
            const auto& catchBlock = as<CatchBlock>(*node.catchBlock);
            rule.token();
            if (catchBlock.identifier != nullptr) {
                rule.necessary().child(catchBlock.identifier);
            }
            rule.block(catchBlock).separator();
        }
        return rule.token().container(ContainerKind::Try);
    }

    TextNode* unaryOperation(const UnaryOperation<CA>& node) {
        Rule rule(*this);
        if (isPrefixOperation(node.operatorNumber)) {
            return rule.token().unnecessary().child(node.operand).container();
        }
        return rule.child(node.operand).unnecessary().token().container();
    }

    TextNode* whileStatement(const WhileStatement<CA>& node) {
        Rule rule(*this);
        rule.token().necessary().child(node.condition);
        return rule.block(node).separator().token().container(ContainerKind::While);
    }

    // Operations with an operator between two operands. Between two brackets one can be inside of another for
    // each level of operators, so there are far more of them than levels of nesting, and those that are open
    // are kept here and not on the call stack.

    struct OpenOperation {
        const SyntaxNode* node;
        std::size_t firstOperand; ///< in `operands`, of which the last ones are its own
        std::size_t nextOperand;
        std::size_t firstChild; ///< of its rule
    };

    static bool isOperation(const SyntaxNode* node) {
        return node->kind == NodeKind::BinaryOperation || node->kind == NodeKind::ColonExpression;
    }

    TextNode* operation(const SyntaxNode& outermost) {
        const std::size_t bottom = operations.size();
        openOperation(outermost);
        for (;;) {
            OpenOperation& open = operations.back();
            if (open.nextOperand == operands.size()) {
                TextNode* whole = closeOperation();
                if (operations.size() == bottom) {
                    return whole;
                }
                children.push_back(whole);
                continue;
            }
            if (open.nextOperand > open.firstOperand) {
                takeOperator(open);
            }
            const SyntaxNode* operand = operands[open.nextOperand++];
            if (isOperation(operand)) {
                openOperation(*operand);
            } else {
                children.push_back(dispatch(operand));
            }
        }
    }

    void openOperation(const SyntaxNode& node) {
        operations.push_back({&node, operands.size(), operands.size(), children.size()});
        if (node.kind == NodeKind::ColonExpression) {
            const auto& range = as<ColonExpression>(node);
            operands.push_back(range.first);
            if (range.step != nullptr) {
                operands.push_back(range.step);
            }
            operands.push_back(range.last);
            return;
        }
        const auto& operation = as<BinaryOperation>(node);
        appendOperands(operation);
        enterIndent<ExpressionIndentNode>(operation);
    }

    /// The operands of a chain in source order: the tree may associate it either way.
    void appendOperands(const BinaryOperation<CA>& top) {
        const int group = getOperatorClass(top.operatorNumber).group;
        const auto first = static_cast<std::ptrdiff_t>(operands.size());
        chain.push_back(&top);
        while (!chain.empty()) {
            const SyntaxNode* node = chain.back();
            chain.pop_back();
            if (node->kind == NodeKind::BinaryOperation) {
                const auto& operation = as<BinaryOperation>(*node);
                if (getOperatorClass(operation.operatorNumber).group == group) {
                    chain.push_back(operation.left);
                    chain.push_back(operation.right);
                    continue;
                }
            }
            operands.push_back(node);
        }
        std::sort(operands.begin() + first, operands.end(),
                  [](const SyntaxNode* a, const SyntaxNode* b) { return a->position < b->position; });
    }

    void takeOperator(const OpenOperation& open) {
        Rule rule(*this, open.firstChild);
        if (open.node->kind == NodeKind::ColonExpression) {
            rule.unnecessary().token().unnecessary();
            return;
        }
        const ContainerKind kind = getOperatorClass(as<BinaryOperation>(*open.node).operatorNumber).kind;
        rule.operatorGap(kind, Side::Before).token().operatorGap(kind, Side::After);
    }

    TextNode* closeOperation() {
        const SyntaxNode* node = operations.back().node;
        Rule rule(*this, operations.back().firstChild);
        operands.resize(operations.back().firstOperand);
        operations.pop_back();
        if (node->kind == NodeKind::ColonExpression) {
            return rule.container(ContainerKind::Colon);
        }
        leaveIndent();
        return rule.container(getOperatorClass(as<BinaryOperation>(*node).operatorNumber).kind);
    }

    // What several rules have in common.

    /// `target(arguments)` and `target{arguments}`: the list is a container of its own.
    TextNode* indexing(const SyntaxNode* target, const SyntaxList& arguments, ContainerKind kind) {
        Rule rule(*this);
        rule.child(target).unnecessary();
        Rule list(*this);
        takeCommaList(arguments, list);
        ContainerNode* listNode = list.container(kind);
        return rule.append(listNode).container();
    }

    TextNode* literal(const SyntaxList& rows, ContainerKind kind) {
        Rule rule(*this);
        rule.token();
        takeMatrixRows(rows, rule);
        return rule.token().container(kind);
    }

    /// A function or method but for its `end`.
    template <class FunctionClass>
    void takeFunctionUpToEnd(const FunctionClass& node, Rule& rule) {
        rule.token().necessary().append(takeSignature(node));
        enterIndent<FunctionContentsIndentNode>(node);
        rule.statements(node.argumentsBlocks).statements(node.body);
        leaveIndent();
        rule.separator();
    }

    /// The text node of a syntax node and of everything under it. Null for the kinds that their parent's rule
    /// reads; they are never asked for.
    TextNode* dispatch(const SyntaxNode* node) {
        switch (node->kind) {
        case NodeKind::AnonymousFunction:
            return anonymousFunction(as<AnonymousFunction>(*node));
        case NodeKind::ArgumentDefinition:
            return argumentDefinition(as<ArgumentDefinition>(*node));
        case NodeKind::Assignment:
            return assignment(as<Assignment>(*node));
        case NodeKind::Attribute:
            return attribute(as<Attribute>(*node));
        case NodeKind::BinaryOperation:
            return operation(*node);
        case NodeKind::BraceIndexing:
            return braceIndexing(as<BraceIndexing>(*node));
        case NodeKind::CaseSelection:
            return caseSelection(as<CaseSelection>(*node));
        case NodeKind::CellLiteral:
            return cellLiteral(as<CellLiteral>(*node));
        case NodeKind::ClassDefinition:
            return classDefinition(as<ClassDefinition>(*node));
        case NodeKind::ColonExpression:
            return operation(*node);
        case NodeKind::CommandSyntax:
            return commandSyntax(as<CommandSyntax>(*node));
        case NodeKind::FieldAccess:
            return fieldAccess(as<FieldAccess>(*node));
        case NodeKind::DynamicFieldAccess:
            return dynamicFieldAccess(as<DynamicFieldAccess>(*node));
        case NodeKind::EnumerationMember:
            return enumerationMember(as<EnumerationMember>(*node));
        case NodeKind::EventDefinition:
            return eventDefinition(as<EventDefinition>(*node));
        case NodeKind::ExpressionStatement:
            return expressionStatement(as<ExpressionStatement>(*node));
        case NodeKind::ForStatement:
            return forStatement(as<ForStatement>(*node));
        case NodeKind::Function:
            return function(as<Function>(*node));
        case NodeKind::GlobalDeclaration:
            return declaration(as<GlobalDeclaration>(*node).names);
        case NodeKind::Identifier:
            return identifier(as<Identifier>(*node));
        case NodeKind::IfStatement:
            return ifStatement(as<IfStatement>(*node));
        case NodeKind::ImportStatement:
            return importStatement(as<ImportStatement>(*node));
        case NodeKind::InputArgument:
            return inputArgument(as<InputArgument>(*node));
        case NodeKind::MatrixLiteral:
            return matrixLiteral(as<MatrixLiteral>(*node));
        case NodeKind::MethodDeclaration:
            return takeSignature(as<MethodDeclaration>(*node));
        case NodeKind::MethodDefinition:
            return methodDefinition(as<MethodDefinition>(*node));
        case NodeKind::MultipleAssignment:
            return multipleAssignment(as<MultipleAssignment>(*node));
        case NodeKind::NamedArgument:
            return namedArgument(as<NamedArgument>(*node));
        case NodeKind::OtherwiseBlock:
            return otherwiseBlock(as<OtherwiseBlock>(*node));
        case NodeKind::ParenthesisIndexing:
            return parenthesisIndexing(as<ParenthesisIndexing>(*node));
        case NodeKind::ParenthesizedExpression:
            return parenthesizedExpression(as<ParenthesizedExpression>(*node));
        case NodeKind::ParforStatement:
            return parforStatement(as<ParforStatement>(*node));
        case NodeKind::PersistentDeclaration:
            return declaration(as<PersistentDeclaration>(*node).names);
        case NodeKind::PrintingStatement:
            return dispatch(as<PrintingStatement>(*node).statement);
        case NodeKind::ProgramFile:
            return programFile(as<ProgramFile>(*node));
        case NodeKind::PropertyDefinition:
            return propertyDefinition(as<PropertyDefinition>(*node));
        case NodeKind::MatrixRow:
            return matrixRow(as<MatrixRow>(*node));
        case NodeKind::SpmdStatement:
            return spmdStatement(as<SpmdStatement>(*node));
        case NodeKind::SwitchStatement:
            return switchStatement(as<SwitchStatement>(*node));
        case NodeKind::TryStatement:
            return tryStatement(as<TryStatement>(*node));
        case NodeKind::UnaryOperation:
            return unaryOperation(as<UnaryOperation>(*node));
        case NodeKind::WhileStatement:
            return whileStatement(as<WhileStatement>(*node));
        case NodeKind::ArgumentsBlock:
        case NodeKind::EnumerationBlock:
        case NodeKind::EventsBlock:
        case NodeKind::MethodsBlock:
        case NodeKind::PropertiesBlock:
            return memberBlock(as<MemberBlock>(*node));
        case NodeKind::TokenLeaf2:
        case NodeKind::TokenLeaf7:
        case NodeKind::TokenLeaf10:
        case NodeKind::TokenLeaf14:
        case NodeKind::TokenLeaf16:
        case NodeKind::TokenLeaf19:
        case NodeKind::TokenLeaf27:
        case NodeKind::TokenLeaf33:
        case NodeKind::Ignored:
        case NodeKind::NumberLiteral:
        case NodeKind::TokenLeaf58:
        case NodeKind::TokenLeaf61:
            return takeToken();
        case NodeKind::CatchBlock:
        case NodeKind::ElseBlock:
        case NodeKind::ElseifBlock:
        case NodeKind::NullKind24:
        case NodeKind::NullKind25:
        case NodeKind::NullKind26:
        case NodeKind::NullKind65:
            return nullptr;
        case NodeKind::InvalidNodeKind:
            break;
        }
        throw std::logic_error("Unhandled node kind encountered in AstDispatcher");
    }

    std::vector<TextNode*> children;         ///< of all rules that are at work, the innermost last
    std::vector<OpenOperation> operations;   ///< of all expressions that are at work, the innermost last
    std::vector<const SyntaxNode*> operands; ///< of all of them, those of the innermost last
    std::vector<const SyntaxNode*> chain;    ///< parts of an operation that are still to be taken apart
};

} // namespace

ParsedNodes parseNodes(const ProgramFile<CA>& program, const FilePart& part,
                       const std::vector<ca::lexer::Token>& tokens, CommentLines commentLines,
                       NodeHome& home) {
    FormattingParser parser(home, tokens, commentLines);
    ParsedNodes result;
    result.rootText = parser.filePart(program, part);
    result.rootIndent = parser.getProgramIndentNode();
    result.firstLeaf = parser.getFirstLeaf();
    result.lastLeaf = parser.getLastLeaf();
    result.tokenCount = parser.getTokenCount();
    return result;
}

FilePart getWhole(const ProgramFile<CA>& program) {
    return {0, program.statements.size(), true};
}

} // namespace ca::formatting
