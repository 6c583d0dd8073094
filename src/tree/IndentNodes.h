#pragma once

#include "tree/IndentNode.h"

#include <boost/optional.hpp>

namespace ca::astapi {
struct CA;
}

namespace lf::astapi {
template <class Language>
struct Node;
template <class Language>
struct BinaryOperation;
template <class Language>
struct CaseSelection;
template <class Language>
struct CatchBlock;
template <class Language>
struct ElseBlock;
template <class Language>
struct ElseifBlock;
template <class Language>
struct ForStatement;
template <class Language>
struct Function;
template <class Language>
struct IfStatement;
template <class Language>
struct MethodDefinition;
template <class Language>
struct OtherwiseBlock;
template <class Language>
struct ParforStatement;
template <class Language>
struct SpmdStatement;
template <class Language>
struct TryStatement;
template <class Language>
struct WhileStatement;
} // namespace lf::astapi

namespace ca::formatting {

/// The outermost level, which adds nothing: its indentation is empty.
class ProgramIndentNode : public IndentNode {
public:
    ProgramIndentNode();

    DebugTable getDebugTable() const override;
    IndentChange getIndentChange(std::shared_ptr<FormattingConfig> config) const override;
};

/// The lines after the first of a binary operation that is broken.
class ExpressionIndentNode : public IndentNode {
public:
    ExpressionIndentNode(IndentNode* parent, const lf::astapi::BinaryOperation<ca::astapi::CA>& operation);

    DebugTable getDebugTable() const override;
    IndentChange getIndentChange(std::shared_ptr<FormattingConfig> config) const override;
};

/// What is inside a block statement, or inside one of its branches.
class StatementBlockIndentNode : public IndentNode {
    template <template <class> class Block>
    using BlockNode = const Block<ca::astapi::CA>&;

public:
    StatementBlockIndentNode(IndentNode* parent, BlockNode<lf::astapi::IfStatement> block);
    StatementBlockIndentNode(IndentNode* parent, BlockNode<lf::astapi::ElseifBlock> block);
    StatementBlockIndentNode(IndentNode* parent, BlockNode<lf::astapi::ElseBlock> block);
    StatementBlockIndentNode(IndentNode* parent, BlockNode<lf::astapi::ForStatement> block);
    StatementBlockIndentNode(IndentNode* parent, BlockNode<lf::astapi::ParforStatement> block);
    StatementBlockIndentNode(IndentNode* parent, BlockNode<lf::astapi::WhileStatement> block);
    StatementBlockIndentNode(IndentNode* parent, BlockNode<lf::astapi::SpmdStatement> block);
    StatementBlockIndentNode(IndentNode* parent, BlockNode<lf::astapi::TryStatement> block);
    StatementBlockIndentNode(IndentNode* parent, BlockNode<lf::astapi::CatchBlock> block);
    StatementBlockIndentNode(IndentNode* parent, BlockNode<lf::astapi::CaseSelection> block);
    StatementBlockIndentNode(IndentNode* parent, BlockNode<lf::astapi::OtherwiseBlock> block);

    DebugTable getDebugTable() const override;
    IndentChange getIndentChange(std::shared_ptr<FormattingConfig> config) const override;
};

/// The cases of a `switch`.
class SwitchContentsIndentNode : public IndentNode {
public:
    explicit SwitchContentsIndentNode(IndentNode* parent);

    DebugTable getDebugTable() const override;
    IndentChange getIndentChange(std::shared_ptr<FormattingConfig> config) const override;
};

/// The body of a function or method, against its header. Works as a pair with NestedFunctionIndentNode:
///
///     style          nested header, against    body of a function    body of a nested
///                    the body around it        that isn't nested     function
///     Classic        one deeper                same as its header    same as its header
///     IndentNested   same                      same as its header    one deeper
///     IndentAll      same                      one deeper            one deeper
class FunctionContentsIndentNode : public IndentNode {
public:
    FunctionContentsIndentNode(IndentNode* parent, const lf::astapi::Function<ca::astapi::CA>& function);
    FunctionContentsIndentNode(IndentNode* parent,
                               const lf::astapi::MethodDefinition<ca::astapi::CA>& method);

    DebugTable getDebugTable() const override;
    IndentChange getIndentChange(std::shared_ptr<FormattingConfig> config) const override;

private:
    bool isNested;
};

/// A whole nested function, with the gap before it, against the body around it.
class NestedFunctionIndentNode : public IndentNode {
public:
    using FunctionReference = boost::optional<const lf::astapi::Function<ca::astapi::CA>&>;

    /// Throws boost::bad_optional_access if there is no function.
    NestedFunctionIndentNode(IndentNode* parent, const FunctionReference& function);

    DebugTable getDebugTable() const override;
    IndentChange getIndentChange(std::shared_ptr<FormattingConfig> config) const override;

private:
    bool isNested;
};

template <>
inline constexpr ExactClass exactClassOf<ProgramIndentNode> = ExactClass::Indent;
template <>
inline constexpr ExactClass exactClassOf<ExpressionIndentNode> = ExactClass::Indent;
template <>
inline constexpr ExactClass exactClassOf<StatementBlockIndentNode> = ExactClass::Indent;
template <>
inline constexpr ExactClass exactClassOf<SwitchContentsIndentNode> = ExactClass::Indent;
template <>
inline constexpr ExactClass exactClassOf<FunctionContentsIndentNode> = ExactClass::Indent;
template <>
inline constexpr ExactClass exactClassOf<NestedFunctionIndentNode> = ExactClass::Indent;

} // namespace ca::formatting
