#include "lf/astapi/NodeKind.h"

#include <iterator>
#include <ostream>

namespace lf::astapi {

namespace {

constexpr const char* kindNames[] = {
    "InvalidNodeKind",     "AnonymousFunction",
    "TokenLeaf2",          "ArgumentDefinition",
    "ArgumentsBlock",      "Assignment",
    "Attribute",           "TokenLeaf7",
    "BinaryOperation",     "BraceIndexing",
    "TokenLeaf10",         "CaseSelection",
    "CatchBlock",          "CellLiteral",
    "TokenLeaf14",         "ClassDefinition",
    "TokenLeaf16",         "ColonExpression",
    "CommandSyntax",       "TokenLeaf19",
    "ElseBlock",           "ElseifBlock",
    "FieldAccess",         "DynamicFieldAccess",
    "NullKind24",          "NullKind25",
    "NullKind26",          "TokenLeaf27",
    "EnumerationBlock",    "EnumerationMember",
    "EventDefinition",     "EventsBlock",
    "ExpressionStatement", "TokenLeaf33",
    "ForStatement",        "Function",
    "GlobalDeclaration",   "Identifier",
    "IfStatement",         "Ignored",
    "ImportStatement",     "InputArgument",
    "MatrixLiteral",       "MethodDeclaration",
    "MethodDefinition",    "MethodsBlock",
    "MultipleAssignment",  "NamedArgument",
    "NumberLiteral",       "OtherwiseBlock",
    "ParenthesisIndexing", "ParenthesizedExpression",
    "ParforStatement",     "PersistentDeclaration",
    "PrintingStatement",   "ProgramFile",
    "PropertiesBlock",     "PropertyDefinition",
    "TokenLeaf58",         "MatrixRow",
    "SpmdStatement",       "TokenLeaf61",
    "SwitchStatement",     "TryStatement",
    "UnaryOperation",      "NullKind65",
    "WhileStatement",
};
constexpr std::size_t kindCount = std::size(kindNames);
static_assert(kindCount == static_cast<std::size_t>(NodeKind::WhileStatement) + 1);

} // namespace

const char* getNodeKindName(NodeKind kind) {
    const auto number = static_cast<std::size_t>(kind);
    return kindNames[number < kindCount ? number : 0];
}

std::ostream& operator<<(std::ostream& stream, const NodeKind& kind) {
    return stream << getNodeKindName(kind);
}

} // namespace lf::astapi
