#pragma once

#include "lf/astapi/Nodes.h"

namespace lf::astapi {

/// Calls the visitor once for each field of the node, in the order of the fields, with the field's name and
/// value:
///
///     visitor.child(const char*, const Node<Language>*)      null for an optional child that is absent
///     visitor.list(const char*, NodeList<Language>)
///     visitor.words(const char*, NodeList<Language>)         identifiers that stand for one token each
///     visitor.number(const char*, std::int32_t)              an operator
///     visitor.flag(const char*, bool)
///     visitor.text(const char*, std::u16string_view)
///     visitor.validation(const char*, const ValidationSpec<Language>*)     null if absent
///
/// A node without fields, of any kind, calls nothing.
template <class Language, class Visitor>
void visitFields(const Node<Language>& node, Visitor&& visitor) {
    switch (node.kind) {
    case NodeKind::AnonymousFunction: {
        const auto& it = as<AnonymousFunction>(node);
        visitor.list("parameters", it.parameters);
        visitor.child("body", it.body);
        return;
    }
    case NodeKind::ArgumentDefinition: {
        const auto& it = as<ArgumentDefinition>(node);
        visitor.child("name", it.name);
        visitor.child("member", it.member);
        visitor.child("metaClassName", it.metaClassName);
        visitor.validation("validation", it.validation);
        visitor.child("defaultValue", it.defaultValue);
        return;
    }
    case NodeKind::ArgumentsBlock: {
        const auto& it = as<ArgumentsBlock>(node);
        visitor.list("attributes", it.attributes);
        visitor.list("members", it.members);
        return;
    }
    case NodeKind::Assignment: {
        const auto& it = as<Assignment>(node);
        visitor.child("target", it.target);
        visitor.child("value", it.value);
        return;
    }
    case NodeKind::Attribute: {
        const auto& it = as<Attribute>(node);
        visitor.child("name", it.name);
        visitor.child("value", it.value);
        visitor.flag("negated", it.negated);
        return;
    }
    case NodeKind::BinaryOperation: {
        const auto& it = as<BinaryOperation>(node);
        visitor.number("operator", it.operatorNumber);
        visitor.child("left", it.left);
        visitor.child("right", it.right);
        return;
    }
    case NodeKind::BraceIndexing: {
        const auto& it = as<BraceIndexing>(node);
        visitor.child("target", it.target);
        visitor.list("arguments", it.arguments);
        return;
    }
    case NodeKind::CaseSelection: {
        const auto& it = as<CaseSelection>(node);
        visitor.child("value", it.value);
        visitor.list("body", it.body);
        return;
    }
    case NodeKind::CatchBlock: {
        const auto& it = as<CatchBlock>(node);
        visitor.child("identifier", it.identifier);
        visitor.list("body", it.body);
        return;
    }
    case NodeKind::CellLiteral: {
        const auto& it = as<CellLiteral>(node);
        visitor.list("rows", it.rows);
        return;
    }
    case NodeKind::ClassDefinition: {
        const auto& it = as<ClassDefinition>(node);
        visitor.list("attributes", it.attributes);
        visitor.child("name", it.name);
        visitor.list("superclasses", it.superclasses);
        visitor.list("members", it.members);
        return;
    }
    case NodeKind::ColonExpression: {
        const auto& it = as<ColonExpression>(node);
        visitor.child("first", it.first);
        visitor.child("step", it.step);
        visitor.child("last", it.last);
        return;
    }
    case NodeKind::CommandSyntax: {
        const auto& it = as<CommandSyntax>(node);
        visitor.child("command", it.command);
        visitor.words("words", it.words);
        return;
    }
    case NodeKind::ElseBlock: {
        const auto& it = as<ElseBlock>(node);
        visitor.list("body", it.body);
        return;
    }
    case NodeKind::ElseifBlock: {
        const auto& it = as<ElseifBlock>(node);
        visitor.child("condition", it.condition);
        visitor.list("body", it.body);
        return;
    }
    case NodeKind::FieldAccess: {
        const auto& it = as<FieldAccess>(node);
        visitor.child("object", it.object);
        visitor.child("field", it.field);
        return;
    }
    case NodeKind::DynamicFieldAccess: {
        const auto& it = as<DynamicFieldAccess>(node);
        visitor.child("object", it.object);
        visitor.child("expression", it.expression);
        return;
    }
    case NodeKind::EnumerationBlock: {
        const auto& it = as<EnumerationBlock>(node);
        visitor.list("attributes", it.attributes);
        visitor.list("members", it.members);
        return;
    }
    case NodeKind::EnumerationMember: {
        const auto& it = as<EnumerationMember>(node);
        visitor.child("name", it.name);
        visitor.list("arguments", it.arguments);
        return;
    }
    case NodeKind::EventDefinition: {
        const auto& it = as<EventDefinition>(node);
        visitor.child("name", it.name);
        visitor.child("value", it.value);
        return;
    }
    case NodeKind::EventsBlock: {
        const auto& it = as<EventsBlock>(node);
        visitor.list("attributes", it.attributes);
        visitor.list("members", it.members);
        return;
    }
    case NodeKind::ExpressionStatement: {
        const auto& it = as<ExpressionStatement>(node);
        visitor.child("expression", it.expression);
        return;
    }
    case NodeKind::ForStatement: {
        const auto& it = as<ForStatement>(node);
        visitor.child("variable", it.variable);
        visitor.child("range", it.range);
        visitor.list("body", it.body);
        return;
    }
    case NodeKind::Function: {
        const auto& it = as<Function>(node);
        visitor.list("outputs", it.outputs);
        visitor.child("name", it.name);
        visitor.list("parameters", it.parameters);
        visitor.list("argumentsBlocks", it.argumentsBlocks);
        visitor.list("body", it.body);
        return;
    }
    case NodeKind::GlobalDeclaration: {
        const auto& it = as<GlobalDeclaration>(node);
        visitor.list("names", it.names);
        return;
    }
    case NodeKind::Identifier: {
        const auto& it = as<Identifier>(node);
        visitor.text("text", it.text);
        return;
    }
    case NodeKind::IfStatement: {
        const auto& it = as<IfStatement>(node);
        visitor.child("condition", it.condition);
        visitor.list("body", it.body);
        visitor.list("elseifBlocks", it.elseifBlocks);
        visitor.child("elseBlock", it.elseBlock);
        return;
    }
    case NodeKind::ImportStatement: {
        const auto& it = as<ImportStatement>(node);
        visitor.words("words", it.words);
        return;
    }
    case NodeKind::InputArgument: {
        const auto& it = as<InputArgument>(node);
        visitor.child("identifier", it.identifier);
        visitor.child("ignored", it.ignored);
        return;
    }
    case NodeKind::MatrixLiteral: {
        const auto& it = as<MatrixLiteral>(node);
        visitor.list("rows", it.rows);
        return;
    }
    case NodeKind::MethodDeclaration: {
        const auto& it = as<MethodDeclaration>(node);
        visitor.list("outputs", it.outputs);
        visitor.child("name", it.name);
        visitor.list("parameters", it.parameters);
        return;
    }
    case NodeKind::MethodDefinition: {
        const auto& it = as<MethodDefinition>(node);
        visitor.list("outputs", it.outputs);
        visitor.child("name", it.name);
        visitor.list("parameters", it.parameters);
        visitor.list("argumentsBlocks", it.argumentsBlocks);
        visitor.list("body", it.body);
        return;
    }
    case NodeKind::MethodsBlock: {
        const auto& it = as<MethodsBlock>(node);
        visitor.list("attributes", it.attributes);
        visitor.list("members", it.members);
        return;
    }
    case NodeKind::MultipleAssignment: {
        const auto& it = as<MultipleAssignment>(node);
        visitor.list("outputs", it.outputs);
        visitor.child("value", it.value);
        return;
    }
    case NodeKind::NamedArgument: {
        const auto& it = as<NamedArgument>(node);
        visitor.child("name", it.name);
        visitor.child("value", it.value);
        return;
    }
    case NodeKind::OtherwiseBlock: {
        const auto& it = as<OtherwiseBlock>(node);
        visitor.list("body", it.body);
        return;
    }
    case NodeKind::ParenthesisIndexing: {
        const auto& it = as<ParenthesisIndexing>(node);
        visitor.child("target", it.target);
        visitor.list("arguments", it.arguments);
        return;
    }
    case NodeKind::ParenthesizedExpression: {
        const auto& it = as<ParenthesizedExpression>(node);
        visitor.child("inner", it.inner);
        return;
    }
    case NodeKind::ParforStatement: {
        const auto& it = as<ParforStatement>(node);
        visitor.child("variable", it.variable);
        visitor.child("range", it.range);
        visitor.list("body", it.body);
        visitor.list("options", it.options);
        return;
    }
    case NodeKind::PersistentDeclaration: {
        const auto& it = as<PersistentDeclaration>(node);
        visitor.list("names", it.names);
        return;
    }
    case NodeKind::PrintingStatement: {
        const auto& it = as<PrintingStatement>(node);
        visitor.child("statement", it.statement);
        return;
    }
    case NodeKind::ProgramFile: {
        const auto& it = as<ProgramFile>(node);
        visitor.list("statements", it.statements);
        return;
    }
    case NodeKind::PropertiesBlock: {
        const auto& it = as<PropertiesBlock>(node);
        visitor.list("attributes", it.attributes);
        visitor.list("members", it.members);
        return;
    }
    case NodeKind::PropertyDefinition: {
        const auto& it = as<PropertyDefinition>(node);
        visitor.child("name", it.name);
        visitor.validation("validation", it.validation);
        visitor.child("defaultValue", it.defaultValue);
        return;
    }
    case NodeKind::MatrixRow: {
        const auto& it = as<MatrixRow>(node);
        visitor.list("elements", it.elements);
        return;
    }
    case NodeKind::SpmdStatement: {
        const auto& it = as<SpmdStatement>(node);
        visitor.list("arguments", it.arguments);
        visitor.list("body", it.body);
        return;
    }
    case NodeKind::SwitchStatement: {
        const auto& it = as<SwitchStatement>(node);
        visitor.child("subject", it.subject);
        visitor.list("cases", it.cases);
        visitor.child("otherwise", it.otherwise);
        return;
    }
    case NodeKind::TryStatement: {
        const auto& it = as<TryStatement>(node);
        visitor.list("body", it.body);
        visitor.child("catchBlock", it.catchBlock);
        return;
    }
    case NodeKind::UnaryOperation: {
        const auto& it = as<UnaryOperation>(node);
        visitor.number("operator", it.operatorNumber);
        visitor.child("operand", it.operand);
        return;
    }
    case NodeKind::WhileStatement: {
        const auto& it = as<WhileStatement>(node);
        visitor.child("condition", it.condition);
        visitor.list("body", it.body);
        return;
    }
    default:
        return;
    }
}

} // namespace lf::astapi
