#include "tree/IndentNodes.h"

#include <ca/astapi/CA.h>
#include <lf/astapi/Nodes.h>

namespace ca::formatting {

using ca::astapi::CA;

namespace {

using Style = FormattingConfig::FunctionIndentStyle;

LevelLabel makeLabel(const char16_t* text, const lf::astapi::Node<CA>& node) {
    return {text, static_cast<std::uint32_t>(node.getLine()), static_cast<std::uint32_t>(node.getColumn())};
}

LevelLabel makeContentsLabel(const lf::astapi::Node<CA>& function) {
    return makeLabel(u"FunctionContentsIndent", function);
}

IndentChange addLevelIf(bool condition) {
    return condition ? IndentChange::AddLevel : IndentChange::Inherit;
}

} // namespace

ProgramIndentNode::ProgramIndentNode() : IndentNode(LevelLabel{u"ProgramIndent"}) {}

DebugTable ProgramIndentNode::getDebugTable() const {
    return makeGroupTable(getMembers(), u"Program");
}

IndentChange ProgramIndentNode::getIndentChange(std::shared_ptr<FormattingConfig>) const {
    return IndentChange::Inherit;
}

ExpressionIndentNode::ExpressionIndentNode(IndentNode* parent,
                                           const lf::astapi::BinaryOperation<CA>& operation)
    : IndentNode(parent, makeLabel(u"ExpressionIndent", operation)) {}

DebugTable ExpressionIndentNode::getDebugTable() const {
    return makeGroupTable(getMembers(), u"Expression");
}

IndentChange ExpressionIndentNode::getIndentChange(std::shared_ptr<FormattingConfig>) const {
    return IndentChange::AddLevel;
}

StatementBlockIndentNode::StatementBlockIndentNode(IndentNode* parent,
                                                   BlockNode<lf::astapi::IfStatement> block)
    : IndentNode(parent, makeLabel(u"StatementBlockIndent", block)) {}

StatementBlockIndentNode::StatementBlockIndentNode(IndentNode* parent,
                                                   BlockNode<lf::astapi::ElseifBlock> block)
    : IndentNode(parent, makeLabel(u"StatementBlockIndent", block)) {}

StatementBlockIndentNode::StatementBlockIndentNode(IndentNode* parent, BlockNode<lf::astapi::ElseBlock> block)
    : IndentNode(parent, makeLabel(u"StatementBlockIndent", block)) {}

StatementBlockIndentNode::StatementBlockIndentNode(IndentNode* parent,
                                                   BlockNode<lf::astapi::ForStatement> block)
    : IndentNode(parent, makeLabel(u"StatementBlockIndent", block)) {}

StatementBlockIndentNode::StatementBlockIndentNode(IndentNode* parent,
                                                   BlockNode<lf::astapi::ParforStatement> block)
    : IndentNode(parent, makeLabel(u"StatementBlockIndent", block)) {}

StatementBlockIndentNode::StatementBlockIndentNode(IndentNode* parent,
                                                   BlockNode<lf::astapi::WhileStatement> block)
    : IndentNode(parent, makeLabel(u"StatementBlockIndent", block)) {}

StatementBlockIndentNode::StatementBlockIndentNode(IndentNode* parent,
                                                   BlockNode<lf::astapi::SpmdStatement> block)
    : IndentNode(parent, makeLabel(u"StatementBlockIndent", block)) {}

StatementBlockIndentNode::StatementBlockIndentNode(IndentNode* parent,
                                                   BlockNode<lf::astapi::TryStatement> block)
    : IndentNode(parent, makeLabel(u"StatementBlockIndent", block)) {}

StatementBlockIndentNode::StatementBlockIndentNode(IndentNode* parent,
                                                   BlockNode<lf::astapi::CatchBlock> block)
    : IndentNode(parent, makeLabel(u"StatementBlockIndent", block)) {}

StatementBlockIndentNode::StatementBlockIndentNode(IndentNode* parent,
                                                   BlockNode<lf::astapi::CaseSelection> block)
    : IndentNode(parent, makeLabel(u"StatementBlockIndent", block)) {}

StatementBlockIndentNode::StatementBlockIndentNode(IndentNode* parent,
                                                   BlockNode<lf::astapi::OtherwiseBlock> block)
    : IndentNode(parent, makeLabel(u"StatementBlockIndent", block)) {}

DebugTable StatementBlockIndentNode::getDebugTable() const {
    return makeGroupTable(getMembers(), u"StatementBlock");
}

IndentChange StatementBlockIndentNode::getIndentChange(std::shared_ptr<FormattingConfig>) const {
    return IndentChange::AddLevel;
}

SwitchContentsIndentNode::SwitchContentsIndentNode(IndentNode* parent)
    : IndentNode(parent, LevelLabel{u""}) {}

/// This label, alone of the six, is the whole name of the class.
DebugTable SwitchContentsIndentNode::getDebugTable() const {
    return makeGroupTable(getMembers(), u"SwitchContentsIndentNode");
}

IndentChange SwitchContentsIndentNode::getIndentChange(std::shared_ptr<FormattingConfig> config) const {
    return addLevelIf(config->getIndentCaseBlocks());
}

FunctionContentsIndentNode::FunctionContentsIndentNode(IndentNode* parent,
                                                       const lf::astapi::Function<CA>& function)
    : IndentNode(parent, makeContentsLabel(function)), isNested(ca::astapi::isNestedFunction(&function)) {}

FunctionContentsIndentNode::FunctionContentsIndentNode(IndentNode* parent,
                                                       const lf::astapi::MethodDefinition<CA>& method)
    : IndentNode(parent, makeContentsLabel(method)), isNested(false) {}

DebugTable FunctionContentsIndentNode::getDebugTable() const {
    return makeGroupTable(getMembers(), u"FunctionContents");
}

IndentChange FunctionContentsIndentNode::getIndentChange(std::shared_ptr<FormattingConfig> config) const {
    switch (config->getFunctionIndentStyle()) {
    case Style::Classic:
        return IndentChange::Inherit;
    case Style::IndentNested:
        return addLevelIf(isNested);
    case Style::IndentAll:
        return IndentChange::AddLevel;
    }
    return IndentChange::Inherit;
}

NestedFunctionIndentNode::NestedFunctionIndentNode(IndentNode* parent, const FunctionReference& function)
    : IndentNode(parent, makeLabel(u"NestedFunctionIndent", function.value())),
      isNested(ca::astapi::isNestedFunction(function.get_ptr())) {}

DebugTable NestedFunctionIndentNode::getDebugTable() const {
    return makeGroupTable(getMembers(), u"NestedFunction");
}

IndentChange NestedFunctionIndentNode::getIndentChange(std::shared_ptr<FormattingConfig> config) const {
    switch (config->getFunctionIndentStyle()) {
    case Style::Classic:
        return IndentChange::AddLevel;
    case Style::IndentNested:
        return addLevelIf(!isNested);
    case Style::IndentAll:
        return IndentChange::Inherit;
    }
    return IndentChange::Inherit;
}

} // namespace ca::formatting
