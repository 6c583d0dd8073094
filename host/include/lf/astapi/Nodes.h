#pragma once

#include "lf/astapi/Node.h"

#include <cstdint>
#include <string_view>

/// The node classes of a syntax tree, one for each kind that has fields.
///
/// A child is a pointer that is never null unless the field says so. The kind says the class: a node of kind
/// `IfStatement` is an `IfStatement<Language>`, see `as`.
namespace lf::astapi {

/// The parts of a property or argument after its name: `(dimensions) classType {validators}`. No node: it
/// has no kind, and the property or argument is the parent of what is in it.
template <class Language>
struct ValidationSpec {
    NodeList<Language> dimensions;
    const Node<Language>* classType; ///< may be null
    NodeList<Language> validators;
};

/// What the five blocks with members have in common.
template <class Language>
struct MemberBlock : Node<Language> {
    NodeList<Language> attributes;
    NodeList<Language> members;
};

/// `arguments (attributes)`, `ArgumentDefinition`s and `end`.
template <class Language>
struct ArgumentsBlock : MemberBlock<Language> {
    static constexpr NodeKind nodeKind = NodeKind::ArgumentsBlock;
};

/// `enumeration (attributes)`, `EnumerationMember`s and `end`.
template <class Language>
struct EnumerationBlock : MemberBlock<Language> {
    static constexpr NodeKind nodeKind = NodeKind::EnumerationBlock;
};

/// `events (attributes)`, `EventDefinition`s and `end`.
template <class Language>
struct EventsBlock : MemberBlock<Language> {
    static constexpr NodeKind nodeKind = NodeKind::EventsBlock;
};

/// `methods (attributes)`, `MethodDefinition`s, `MethodDeclaration`s and `end`.
template <class Language>
struct MethodsBlock : MemberBlock<Language> {
    static constexpr NodeKind nodeKind = NodeKind::MethodsBlock;
};

/// `properties (attributes)`, `PropertyDefinition`s and `end`.
template <class Language>
struct PropertiesBlock : MemberBlock<Language> {
    static constexpr NodeKind nodeKind = NodeKind::PropertiesBlock;
};

/// `[outputs] = name(parameters)`: what functions, methods and their declarations have in common. An output
/// is an `Identifier`, a parameter an `InputArgument`.
template <class Language>
struct Signature : Node<Language> {
    NodeList<Language> outputs;
    const Node<Language>* name;
    NodeList<Language> parameters;
};

/// A method whose body is in another file.
template <class Language>
struct MethodDeclaration : Signature<Language> {
    static constexpr NodeKind nodeKind = NodeKind::MethodDeclaration;
};

/// What functions and methods have in common.
template <class Language>
struct FunctionBody : Signature<Language> {
    NodeList<Language> argumentsBlocks;
    NodeList<Language> body;
};

/// A function of a script, a function file or another function's body. Only the tokens tell whether an `end`
/// closes it.
template <class Language>
struct Function : FunctionBody<Language> {
    static constexpr NodeKind nodeKind = NodeKind::Function;
};

/// A function directly inside a methods block.
template <class Language>
struct MethodDefinition : FunctionBody<Language> {
    static constexpr NodeKind nodeKind = NodeKind::MethodDefinition;
};

/// `@(parameters) body`.
template <class Language>
struct AnonymousFunction : Node<Language> {
    static constexpr NodeKind nodeKind = NodeKind::AnonymousFunction;

    NodeList<Language> parameters;
    const Node<Language>* body;
};

/// `name (1,1) double {validator} = v`, `name.member …` or `name.?metaClassName` in an arguments block.
template <class Language>
struct ArgumentDefinition : Node<Language> {
    static constexpr NodeKind nodeKind = NodeKind::ArgumentDefinition;

    const Node<Language>* name;
    const Node<Language>* member;               ///< may be null
    const Node<Language>* metaClassName;        ///< may be null
    const ValidationSpec<Language>* validation; ///< may be null
    const Node<Language>* defaultValue;         ///< may be null
};

/// `target = value`.
template <class Language>
struct Assignment : Node<Language> {
    static constexpr NodeKind nodeKind = NodeKind::Assignment;

    const Node<Language>* target;
    const Node<Language>* value;
};

/// `name`, `name = value` or `~name` in the parentheses of a class or block.
template <class Language>
struct Attribute : Node<Language> {
    static constexpr NodeKind nodeKind = NodeKind::Attribute;

    const Node<Language>* name;
    const Node<Language>* value; ///< may be null
    bool negated;
};

/// One operator between two operands. All operators associate to the left: a chain of a hundred thousand is a
/// tree of that depth along `left`, so walk it with a loop.
///
/// The numbers: `+` 0, `-` 1, `*` 2, `/` 3, `\` 4, `^` 5, `.*` 6, `./` 7, `.\` 8, `.^` 9, `==` 10, `~=` 11,
/// `<` 12, `<=` 13,
/// `>` 14, `>=` 15, `&&` 16, `&` 17, `||` 18, `|` 19, `@` between names 20.
template <class Language>
struct BinaryOperation : Node<Language> {
    static constexpr NodeKind nodeKind = NodeKind::BinaryOperation;

    std::int32_t operatorNumber;
    const Node<Language>* left;
    const Node<Language>* right;
};

/// `target{arguments}`.
template <class Language>
struct BraceIndexing : Node<Language> {
    static constexpr NodeKind nodeKind = NodeKind::BraceIndexing;

    const Node<Language>* target;
    NodeList<Language> arguments;
};

/// `case value` and the statements after it.
template <class Language>
struct CaseSelection : Node<Language> {
    static constexpr NodeKind nodeKind = NodeKind::CaseSelection;

    const Node<Language>* value;
    NodeList<Language> body;
};

/// `catch identifier` and the statements after it.
template <class Language>
struct CatchBlock : Node<Language> {
    static constexpr NodeKind nodeKind = NodeKind::CatchBlock;

    const Node<Language>* identifier; ///< may be null
    NodeList<Language> body;
};

/// `{rows}`, each row a `MatrixRow`.
template <class Language>
struct CellLiteral : Node<Language> {
    static constexpr NodeKind nodeKind = NodeKind::CellLiteral;

    NodeList<Language> rows;
};

/// `classdef (attributes) name < superclass & superclass`, members and `end`.
template <class Language>
struct ClassDefinition : Node<Language> {
    static constexpr NodeKind nodeKind = NodeKind::ClassDefinition;

    NodeList<Language> attributes;
    const Node<Language>* name;
    NodeList<Language> superclasses;
    NodeList<Language> members;
};

/// `first:last` or `first:step:last`.
template <class Language>
struct ColonExpression : Node<Language> {
    static constexpr NodeKind nodeKind = NodeKind::ColonExpression;

    const Node<Language>* first;
    const Node<Language>* step; ///< may be null
    const Node<Language>* last;
};

/// `command word word`. Each word is an `Identifier` that stands for one token.
template <class Language>
struct CommandSyntax : Node<Language> {
    static constexpr NodeKind nodeKind = NodeKind::CommandSyntax;

    const Node<Language>* command;
    NodeList<Language> words;
};

/// `object.(expression)`.
template <class Language>
struct DynamicFieldAccess : Node<Language> {
    static constexpr NodeKind nodeKind = NodeKind::DynamicFieldAccess;

    const Node<Language>* object;
    const Node<Language>* expression;
};

/// `else` and the statements after it.
template <class Language>
struct ElseBlock : Node<Language> {
    static constexpr NodeKind nodeKind = NodeKind::ElseBlock;

    NodeList<Language> body;
};

/// `elseif condition` and the statements after it.
template <class Language>
struct ElseifBlock : Node<Language> {
    static constexpr NodeKind nodeKind = NodeKind::ElseifBlock;

    const Node<Language>* condition;
    NodeList<Language> body;
};

/// `name` or `name (arguments)`.
template <class Language>
struct EnumerationMember : Node<Language> {
    static constexpr NodeKind nodeKind = NodeKind::EnumerationMember;

    const Node<Language>* name;
    NodeList<Language> arguments;
};

/// `name`; `value` is never delivered.
template <class Language>
struct EventDefinition : Node<Language> {
    static constexpr NodeKind nodeKind = NodeKind::EventDefinition;

    const Node<Language>* name;
    const Node<Language>* value; ///< may be null
};

/// An expression as a statement.
template <class Language>
struct ExpressionStatement : Node<Language> {
    static constexpr NodeKind nodeKind = NodeKind::ExpressionStatement;

    const Node<Language>* expression;
};

/// `object.field`, where the object is more than a name directly before the dot.
template <class Language>
struct FieldAccess : Node<Language> {
    static constexpr NodeKind nodeKind = NodeKind::FieldAccess;

    const Node<Language>* object;
    const Node<Language>* field;
};

/// `for variable = range`, body and `end`. Parentheses round the header reach over the `=`: the opening one
/// is then a prefix operation (number 0) round the variable, the closing one a postfix operation (number 7)
/// round the range.
template <class Language>
struct ForStatement : Node<Language> {
    static constexpr NodeKind nodeKind = NodeKind::ForStatement;

    const Node<Language>* variable;
    const Node<Language>* range;
    NodeList<Language> body;
};

/// `global name name`.
template <class Language>
struct GlobalDeclaration : Node<Language> {
    static constexpr NodeKind nodeKind = NodeKind::GlobalDeclaration;

    NodeList<Language> names;
};

/// A name or several joined by dots, `pkg.Class`.
template <class Language>
struct Identifier : Node<Language> {
    static constexpr NodeKind nodeKind = NodeKind::Identifier;

    std::u16string_view text; ///< part of the source text, with its dots
};

/// `if condition`, body, `ElseifBlock`s, `ElseBlock` and `end`.
template <class Language>
struct IfStatement : Node<Language> {
    static constexpr NodeKind nodeKind = NodeKind::IfStatement;

    const Node<Language>* condition;
    NodeList<Language> body;
    NodeList<Language> elseifBlocks;
    const Node<Language>* elseBlock; ///< may be null
};

/// `import word word`. Each word is an `Identifier` that stands for one token.
template <class Language>
struct ImportStatement : Node<Language> {
    static constexpr NodeKind nodeKind = NodeKind::ImportStatement;

    NodeList<Language> words;
};

/// One parameter: an `Identifier`, or `Ignored` for `~`. One of the two is set.
template <class Language>
struct InputArgument : Node<Language> {
    static constexpr NodeKind nodeKind = NodeKind::InputArgument;

    const Node<Language>* identifier; ///< may be null
    const Node<Language>* ignored;    ///< may be null
};

/// `[rows]`, each row a `MatrixRow`.
template <class Language>
struct MatrixLiteral : Node<Language> {
    static constexpr NodeKind nodeKind = NodeKind::MatrixLiteral;

    NodeList<Language> rows;
};

/// The elements of one row, at least one.
template <class Language>
struct MatrixRow : Node<Language> {
    static constexpr NodeKind nodeKind = NodeKind::MatrixRow;

    NodeList<Language> elements;
};

/// `[output, ~] = value`.
template <class Language>
struct MultipleAssignment : Node<Language> {
    static constexpr NodeKind nodeKind = NodeKind::MultipleAssignment;

    NodeList<Language> outputs;
    const Node<Language>* value;
};

/// `name=value` among the arguments of a call.
template <class Language>
struct NamedArgument : Node<Language> {
    static constexpr NodeKind nodeKind = NodeKind::NamedArgument;

    const Node<Language>* name;
    const Node<Language>* value;
};

/// `otherwise` and the statements after it.
template <class Language>
struct OtherwiseBlock : Node<Language> {
    static constexpr NodeKind nodeKind = NodeKind::OtherwiseBlock;

    NodeList<Language> body;
};

/// `target(arguments)`.
template <class Language>
struct ParenthesisIndexing : Node<Language> {
    static constexpr NodeKind nodeKind = NodeKind::ParenthesisIndexing;

    const Node<Language>* target;
    NodeList<Language> arguments;
};

/// `(inner)`.
template <class Language>
struct ParenthesizedExpression : Node<Language> {
    static constexpr NodeKind nodeKind = NodeKind::ParenthesizedExpression;

    const Node<Language>* inner;
};

/// `parfor variable = range` or `parfor (variable = range, option)`, body and `end`.
template <class Language>
struct ParforStatement : Node<Language> {
    static constexpr NodeKind nodeKind = NodeKind::ParforStatement;

    const Node<Language>* variable;
    const Node<Language>* range;
    NodeList<Language> body;
    NodeList<Language> options;
};

/// `persistent name name`.
template <class Language>
struct PersistentDeclaration : Node<Language> {
    static constexpr NodeKind nodeKind = NodeKind::PersistentDeclaration;

    NodeList<Language> names;
};

/// A statement that no semicolon closes, so that its value is printed.
template <class Language>
struct PrintingStatement : Node<Language> {
    static constexpr NodeKind nodeKind = NodeKind::PrintingStatement;

    const Node<Language>* statement;
};

/// The root.
template <class Language>
struct ProgramFile : Node<Language> {
    static constexpr NodeKind nodeKind = NodeKind::ProgramFile;

    NodeList<Language> statements;
};

/// `name (1,:) double {validator} = v`. A class after `@` is in the tokens only.
template <class Language>
struct PropertyDefinition : Node<Language> {
    static constexpr NodeKind nodeKind = NodeKind::PropertyDefinition;

    const Node<Language>* name;
    const ValidationSpec<Language>* validation; ///< may be null
    const Node<Language>* defaultValue;         ///< may be null
};

/// `spmd (arguments)`, body and `end`.
template <class Language>
struct SpmdStatement : Node<Language> {
    static constexpr NodeKind nodeKind = NodeKind::SpmdStatement;

    NodeList<Language> arguments;
    NodeList<Language> body;
};

/// `switch subject`, `CaseSelection`s, `OtherwiseBlock` and `end`.
template <class Language>
struct SwitchStatement : Node<Language> {
    static constexpr NodeKind nodeKind = NodeKind::SwitchStatement;

    const Node<Language>* subject;
    NodeList<Language> cases;
    const Node<Language>* otherwise; ///< may be null
};

/// `try`, body, `CatchBlock` and `end`.
template <class Language>
struct TryStatement : Node<Language> {
    static constexpr NodeKind nodeKind = NodeKind::TryStatement;

    NodeList<Language> body;
    const Node<Language>* catchBlock; ///< may be null
};

/// A prefix operator: `+` 0, `-` 1, `~` 4, `@` 5, `?` 6. Or a postfix operator: `'` 2, `.'` 3, and 7 for the
/// closing parenthesis of a `for` header, whose opening one is 0.
template <class Language>
struct UnaryOperation : Node<Language> {
    static constexpr NodeKind nodeKind = NodeKind::UnaryOperation;

    std::int32_t operatorNumber;
    const Node<Language>* operand;
};

/// `while condition`, body and `end`.
template <class Language>
struct WhileStatement : Node<Language> {
    static constexpr NodeKind nodeKind = NodeKind::WhileStatement;

    const Node<Language>* condition;
    NodeList<Language> body;
};

/// The node as its class. The caller knows the kind: nothing is checked.
template <template <class> class NodeClass, class Language>
const NodeClass<Language>& as(const Node<Language>& node) {
    return static_cast<const NodeClass<Language>&>(node);
}

} // namespace lf::astapi
