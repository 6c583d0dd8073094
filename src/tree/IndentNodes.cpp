#include "tree/IndentNodes.h"

#include "tree/DebugText.h"

#include <ca/astapi/CA.h>
#include <lf/astapi/Nodes.h>

namespace ca::formatting {

using ca::astapi::CA;

namespace {

using Style = FormattingConfig::FunctionIndentStyle;

std::u16string makeName(std::u16string_view prefix, const lf::astapi::Node<CA>& node) {
    auto stream = makeDebugStream();
    stream << prefix;
    writePlace(stream, node.getLine(), node.getColumn());
    return stream.str();
}

std::u16string makeContentsName(const lf::astapi::Node<CA>& function) {
    return makeName(u"FunctionContentsIndent", function);
}

IndentChange addLevelIf(bool condition) {
    return condition ? IndentChange::AddLevel : IndentChange::Inherit;
}

} // namespace

ProgramIndentNode::ProgramIndentNode() : IndentNode(u"ProgramIndent") {}

DebugTable ProgramIndentNode::getDebugTable() const {
    return makeGroupTable(getMembers(), u"Program");
}

IndentChange ProgramIndentNode::getIndentChange(std::shared_ptr<FormattingConfig>) const {
    return IndentChange::Inherit;
}

ExpressionIndentNode::ExpressionIndentNode(IndentNode* parent,
                                           const lf::astapi::BinaryOperation<CA>& operation)
    : IndentNode(parent, makeName(u"ExpressionIndent", operation)) {}

DebugTable ExpressionIndentNode::getDebugTable() const {
    return makeGroupTable(getMembers(), u"Expression");
}

IndentChange ExpressionIndentNode::getIndentChange(std::shared_ptr<FormattingConfig>) const {
    return IndentChange::AddLevel;
}

StatementBlockIndentNode::StatementBlockIndentNode(IndentNode* parent, const lf::astapi::Node<CA>& block)
    : IndentNode(parent, makeName(u"StatementBlockIndent", block)) {}

DebugTable StatementBlockIndentNode::getDebugTable() const {
    return makeGroupTable(getMembers(), u"StatementBlock");
}

IndentChange StatementBlockIndentNode::getIndentChange(std::shared_ptr<FormattingConfig>) const {
    return IndentChange::AddLevel;
}

SwitchContentsIndentNode::SwitchContentsIndentNode(IndentNode* parent) : IndentNode(parent, u"") {}

/// This label, alone of the six, is the whole name of the class.
DebugTable SwitchContentsIndentNode::getDebugTable() const {
    return makeGroupTable(getMembers(), u"SwitchContentsIndentNode");
}

IndentChange SwitchContentsIndentNode::getIndentChange(std::shared_ptr<FormattingConfig> config) const {
    return addLevelIf(config->getIndentCaseBlocks());
}

FunctionContentsIndentNode::FunctionContentsIndentNode(IndentNode* parent,
                                                       const lf::astapi::Function<CA>& function)
    : IndentNode(parent, makeContentsName(function)), isNested(ca::astapi::isNestedFunction(&function)) {}

FunctionContentsIndentNode::FunctionContentsIndentNode(IndentNode* parent,
                                                       const lf::astapi::MethodDefinition<CA>& method)
    : IndentNode(parent, makeContentsName(method)), isNested(false) {}

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
    : IndentNode(parent, makeName(u"NestedFunctionIndent", function.value())),
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
