#pragma once

#include "ombrel/api.h"

#include <cstdint>
#include <iosfwd>

namespace lf::astapi {

/// What a syntax node is. The numbers are a contract with every user of the tree and never change.
///
/// A `TokenLeaf` stands for exactly one token, and so do `Ignored` and `NumberLiteral`. The trailing comments
/// say which token; what has no comment is a class of Nodes.h. Kinds marked "not delivered" are reserved.
enum class NodeKind : std::uint8_t {
    InvalidNodeKind = 0,
    AnonymousFunction = 1,
    TokenLeaf2 = 2, ///< a separator that comes first in a matrix or cell literal
    ArgumentDefinition = 3,
    ArgumentsBlock = 4,
    Assignment = 5,
    Attribute = 6,
    TokenLeaf7 = 7, ///< not delivered
    BinaryOperation = 8,
    BraceIndexing = 9,
    TokenLeaf10 = 10, ///< break
    CaseSelection = 11,
    CatchBlock = 12,
    CellLiteral = 13,
    TokenLeaf14 = 14, ///< '...'
    ClassDefinition = 15,
    TokenLeaf16 = 16, ///< : alone as an index
    ColonExpression = 17,
    CommandSyntax = 18,
    TokenLeaf19 = 19, ///< continue
    ElseBlock = 20,
    ElseifBlock = 21,
    FieldAccess = 22,
    DynamicFieldAccess = 23,
    NullKind24 = 24,  ///< not delivered
    NullKind25 = 25,  ///< not delivered
    NullKind26 = 26,  ///< not delivered
    TokenLeaf27 = 27, ///< end as an index
    EnumerationBlock = 28,
    EnumerationMember = 29,
    EventDefinition = 30,
    EventsBlock = 31,
    ExpressionStatement = 32,
    TokenLeaf33 = 33, ///< a shell line
    ForStatement = 34,
    Function = 35,
    GlobalDeclaration = 36,
    Identifier = 37,
    IfStatement = 38,
    Ignored = 39, ///< ~ in place of an output or input
    ImportStatement = 40,
    InputArgument = 41,
    MatrixLiteral = 42,
    MethodDeclaration = 43,
    MethodDefinition = 44,
    MethodsBlock = 45,
    MultipleAssignment = 46,
    NamedArgument = 47,
    NumberLiteral = 48, ///< a number of any spelling
    OtherwiseBlock = 49,
    ParenthesisIndexing = 50,
    ParenthesizedExpression = 51,
    ParforStatement = 52,
    PersistentDeclaration = 53,
    PrintingStatement = 54,
    ProgramFile = 55,
    PropertiesBlock = 56,
    PropertyDefinition = 57,
    TokenLeaf58 = 58, ///< return
    MatrixRow = 59,
    SpmdStatement = 60,
    TokenLeaf61 = 61, ///< "..."
    SwitchStatement = 62,
    TryStatement = 63,
    UnaryOperation = 64,
    NullKind65 = 65, ///< not delivered
    WhileStatement = 66,
};

/// The enumerator's name in ASCII, "InvalidNodeKind" for a number that is no enumerator. Never null, lives
/// forever.
OMBREL_HOST_API const char* getNodeKindName(NodeKind kind);

/// Writes the enumerator's name.
OMBREL_HOST_API std::ostream& operator<<(std::ostream& stream, const NodeKind& kind);

} // namespace lf::astapi
