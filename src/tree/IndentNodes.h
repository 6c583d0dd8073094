#pragma once

#include "tree/IndentNode.h"

#include <boost/optional.hpp>

namespace ca::astapi {
struct CA;
}

namespace lf::astapi {
template <class Language>
struct BinaryOperation;
template <class Language>
struct Function;
template <class Language>
struct MethodDefinition;
template <class Language>
struct Node;
} // namespace lf::astapi

namespace ca::formatting {

/// The outermost level, which adds nothing: its indentation is empty.
class ProgramIndentNode : public IndentNode {
public:
    ProgramIndentNode();

    DebugTable getDebugTable() const override;
    IndentChange getIndentChange(std::shared_ptr<FormattingConfig> config) const override;
};

/// The lines behind the first of a binary operation that is broken.
class ExpressionIndentNode : public IndentNode {
public:
    ExpressionIndentNode(IndentNode* parent, const lf::astapi::BinaryOperation<ca::astapi::CA>& operation);

    DebugTable getDebugTable() const override;
    IndentChange getIndentChange(std::shared_ptr<FormattingConfig> config) const override;
};

/// What stands inside a block statement, or inside one of its branches.
class StatementBlockIndentNode : public IndentNode {
public:
    /// `block` is any of the statements and blocks with a body; functions and methods aren't.
    StatementBlockIndentNode(IndentNode* parent, const lf::astapi::Node<ca::astapi::CA>& block);

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

/// A whole nested function, with the gap in front of it, against the body around it.
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

} // namespace ca::formatting
