// One walk over the tree finds what is assigned and collects the names whose role isn't known from their
// place, and then each of these is looked up in its scope. It takes both, since a name may be used before it
// is assigned:
//
//     while more
//         x(1)            a variable, and not a call of a function,
//         x = [1 2];      because of this line
//     end

#include "lsp/NameRoles.h"

#include <lf/astapi/visitFields.h>

#include <optional>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace ombrel::lsp {

namespace {

using namespace lf::astapi;
using ca::astapi::CA;
using ca::lexer::TokenType;

/// The names that a function, a script or an anonymous function assigns.
struct Scope {
    std::optional<std::size_t> outer; ///< of an anonymous function
    std::unordered_map<std::u16string_view, NameRole> names;
};

/// Where a node is found, if that says what its name is.
enum class Place : std::uint8_t { Expression, Target, Known };

struct Step {
    const Node<CA>* node;
    std::size_t scope;
    Place place;
    NameUse use; ///< of a known name
};

/// A name whose role is known once all assignments of its scope are.
struct OpenName {
    const Identifier<CA>* identifier;
    std::size_t scope;
};

constexpr std::int32_t handleOperator = 5; // `@`
constexpr std::int32_t classOperator = 6;  // `?`
constexpr std::int32_t superclassOperator = 20;

std::u16string_view getFirstPart(std::u16string_view name) {
    return name.substr(0, name.find(u'.'));
}

/// Walks over the tree with a list of its own, since trees can be deeper than the call stack.
class Walk {
public:
    Walk(const Analysis& analysis, const TokenList& tokens) : tokens(tokens), uses(tokens.size()) {
        scopes.emplace_back();
        push(analysis.parsed.analysis->getProgramFile(), 0);
    }

    std::vector<NameUse> run() {
        while (!steps.empty()) {
            const Step step = steps.back();
            steps.pop_back();
            visit(step);
        }
        for (const OpenName& name : openNames) {
            resolve(name);
        }
        return std::move(uses);
    }

private:
    void push(const Node<CA>* node, std::size_t scope, Place place = Place::Expression, NameUse use = {}) {
        if (node != nullptr) {
            steps.push_back({node, scope, place, use});
        }
    }

    void pushKnown(const Node<CA>* node, std::size_t scope, NameRole role, bool isDeclaration = false) {
        push(node, scope, Place::Known, {role, isDeclaration});
    }

    void pushAll(NodeList<CA> nodes, std::size_t scope, Place place = Place::Expression) {
        for (const Node<CA>* node : nodes) {
            push(node, scope, place);
        }
    }

    void pushAllKnown(NodeList<CA> nodes, std::size_t scope, NameRole role, bool isDeclaration = false) {
        for (const Node<CA>* node : nodes) {
            pushKnown(node, scope, role, isDeclaration);
        }
    }

    /// Everything in a node that has no names of its own.
    struct FieldPusher {
        Walk& walk;
        std::size_t scope;

        void child(const char*, const Node<CA>* node) { walk.push(node, scope); }
        void list(const char*, NodeList<CA> nodes) { walk.pushAll(nodes, scope); }
        void words(const char*, NodeList<CA>) {}
        void number(const char*, std::int32_t) {}
        void flag(const char*, bool) {}
        void text(const char*, std::u16string_view) {}
        void validation(const char*, const ValidationSpec<CA>* spec) {
            if (spec != nullptr) {
                walk.pushAll(spec->dimensions, scope);
                walk.pushKnown(spec->classType, scope, NameRole::Class);
                walk.pushAll(spec->validators, scope);
            }
        }
    };

    void visitFieldsOf(const Step& step) { visitFields(*step.node, FieldPusher{*this, step.scope}); }

    void visit(const Step& step) {
        const Node<CA>& node = *step.node;
        switch (node.kind) {
        case NodeKind::Identifier:
            visitIdentifier(step);
            break;
        case NodeKind::ParenthesisIndexing:
            push(as<ParenthesisIndexing>(node).target, step.scope, step.place, step.use);
            pushAll(as<ParenthesisIndexing>(node).arguments, step.scope);
            break;
        case NodeKind::BraceIndexing:
            push(as<BraceIndexing>(node).target, step.scope, step.place, step.use);
            pushAll(as<BraceIndexing>(node).arguments, step.scope);
            break;
        case NodeKind::FieldAccess:
            push(as<FieldAccess>(node).object, step.scope, step.place, step.use);
            pushKnown(as<FieldAccess>(node).field, step.scope, NameRole::Property);
            break;
        case NodeKind::DynamicFieldAccess:
            push(as<DynamicFieldAccess>(node).object, step.scope, step.place, step.use);
            push(as<DynamicFieldAccess>(node).expression, step.scope);
            break;
        case NodeKind::UnaryOperation:
            visitUnary(step);
            break;
        case NodeKind::BinaryOperation:
            visitBinary(as<BinaryOperation>(node), step.scope);
            break;
        default:
            visitDeclaration(step);
            break;
        }
    }

    void visitBinary(const BinaryOperation<CA>& operation, std::size_t scope) {
        if (operation.operatorNumber == superclassOperator) {
            pushKnown(operation.left, scope, NameRole::Method);
            pushKnown(operation.right, scope, NameRole::Class);
        } else {
            push(operation.left, scope);
            push(operation.right, scope);
        }
    }

    void visitUnary(const Step& step) {
        const auto& operation = as<UnaryOperation>(*step.node);
        if (operation.operatorNumber == handleOperator) {
            pushKnown(operation.operand, step.scope, NameRole::Function);
        } else if (operation.operatorNumber == classOperator) {
            pushKnown(operation.operand, step.scope, NameRole::Class);
        } else {
            push(operation.operand, step.scope, step.place); // the parentheses of a `for` header, too
        }
    }

    void visitDeclaration(const Step& step) {
        const Node<CA>& node = *step.node;
        const std::size_t scope = step.scope;
        switch (node.kind) {
        case NodeKind::Function:
            visitFunction(as<Function>(node), scope, NameRole::Function);
            break;
        case NodeKind::MethodDefinition:
            visitFunction(as<MethodDefinition>(node), scope, NameRole::Method);
            break;
        case NodeKind::MethodDeclaration:
            visitSignature(as<MethodDeclaration>(node), addScope(), scope, NameRole::Method);
            break;
        case NodeKind::AnonymousFunction: {
            const std::size_t inner = addScope(scope);
            pushAll(as<AnonymousFunction>(node).parameters, inner);
            push(as<AnonymousFunction>(node).body, inner);
            break;
        }
        case NodeKind::InputArgument:
            push(as<InputArgument>(node).identifier, scope, Place::Target, {NameRole::Parameter, true});
            break;
        case NodeKind::Assignment:
            push(as<Assignment>(node).target, scope, Place::Target, {NameRole::Variable, false});
            push(as<Assignment>(node).value, scope);
            break;
        case NodeKind::MultipleAssignment:
            for (const Node<CA>* output : as<MultipleAssignment>(node).outputs) {
                push(output, scope, Place::Target, {NameRole::Variable, false});
            }
            push(as<MultipleAssignment>(node).value, scope);
            break;
        case NodeKind::ForStatement:
            visitLoop(as<ForStatement>(node), scope);
            break;
        case NodeKind::ParforStatement:
            visitLoop(as<ParforStatement>(node), scope);
            pushAll(as<ParforStatement>(node).options, scope);
            break;
        case NodeKind::CatchBlock:
            push(as<CatchBlock>(node).identifier, scope, Place::Target, {NameRole::Variable, false});
            pushAll(as<CatchBlock>(node).body, scope);
            break;
        case NodeKind::GlobalDeclaration:
            pushTargets(as<GlobalDeclaration>(node).names, scope);
            break;
        case NodeKind::PersistentDeclaration:
            pushTargets(as<PersistentDeclaration>(node).names, scope);
            break;
        default:
            visitMember(step);
            break;
        }
    }

    void visitMember(const Step& step) {
        const Node<CA>& node = *step.node;
        const std::size_t scope = step.scope;
        switch (node.kind) {
        case NodeKind::ClassDefinition:
            pushKnown(as<ClassDefinition>(node).name, scope, NameRole::Class, true);
            pushAll(as<ClassDefinition>(node).attributes, scope);
            pushAllKnown(as<ClassDefinition>(node).superclasses, scope, NameRole::Class);
            pushAll(as<ClassDefinition>(node).members, scope);
            break;
        case NodeKind::Attribute:
            pushKnown(as<Attribute>(node).name, scope, NameRole::Attribute);
            push(as<Attribute>(node).value, scope);
            break;
        case NodeKind::PropertyDefinition:
            visitFieldsOf(step);
            pushKnown(as<PropertyDefinition>(node).name, scope, NameRole::Property, true);
            break;
        case NodeKind::ArgumentDefinition:
            visitFieldsOf(step);
            pushKnown(as<ArgumentDefinition>(node).name, scope, NameRole::Parameter);
            pushKnown(as<ArgumentDefinition>(node).member, scope, NameRole::Property);
            pushKnown(as<ArgumentDefinition>(node).metaClassName, scope, NameRole::Class);
            break;
        case NodeKind::EventDefinition:
            pushKnown(as<EventDefinition>(node).name, scope, NameRole::Event, true);
            break;
        case NodeKind::EnumerationMember:
            pushKnown(as<EnumerationMember>(node).name, scope, NameRole::EnumMember, true);
            pushAll(as<EnumerationMember>(node).arguments, scope);
            break;
        case NodeKind::NamedArgument:
            pushKnown(as<NamedArgument>(node).name, scope, NameRole::Parameter);
            push(as<NamedArgument>(node).value, scope);
            break;
        case NodeKind::CommandSyntax:
            pushKnown(as<CommandSyntax>(node).command, scope, NameRole::Function);
            break;
        default:
            visitFieldsOf(step);
            break;
        }
    }

    std::size_t addScope(std::optional<std::size_t> outer = std::nullopt) {
        scopes.push_back({outer, {}});
        return scopes.size() - 1;
    }

    void visitFunction(const FunctionBody<CA>& function, std::size_t outer, NameRole role) {
        const std::size_t scope = addScope();
        visitSignature(function, scope, outer, role);
        pushAll(function.argumentsBlocks, scope);
        pushAll(function.body, scope);
    }

    void visitSignature(const Signature<CA>& signature, std::size_t scope, std::size_t outer, NameRole role) {
        pushKnown(signature.name, outer, role, true);
        for (const Node<CA>* output : signature.outputs) {
            push(output, scope, Place::Target, {NameRole::Variable, true});
        }
        pushAll(signature.parameters, scope);
    }

    template <class Loop>
    void visitLoop(const Loop& loop, std::size_t scope) {
        push(loop.variable, scope, Place::Target, {NameRole::Variable, false});
        push(loop.range, scope);
        pushAll(loop.body, scope);
    }

    void pushTargets(NodeList<CA> names, std::size_t scope) {
        for (const Node<CA>* name : names) {
            push(name, scope, Place::Target, {NameRole::Variable, true});
        }
    }

    void visitIdentifier(const Step& step) {
        const auto& identifier = as<Identifier>(*step.node);
        const std::size_t token = tokens.find(identifier.position);
        if (step.place == Place::Known) {
            mark(token, step.use);
            return;
        }
        if (step.place == Place::Target) {
            const NameRole role = step.use.role == NameRole::None ? NameRole::Variable : step.use.role;
            auto& names = scopes[step.scope].names;
            NameRole& known = names[getFirstPart(identifier.text)];
            known = known == NameRole::Parameter ? known : role; // an assigned parameter is one all the same
            uses[token].isDeclaration = step.use.isDeclaration;
        }
        openNames.push_back({&identifier, step.scope});
    }

    /// The parts of a name with dots: the last one is what the name is, the others are what it is in.
    void mark(std::size_t token, NameUse use) {
        std::size_t last = token;
        while (last + 2 < tokens.size() && tokens[last + 1].type == TokenType::Dot) {
            last += 2;
        }
        const bool isInstance =
            use.role == NameRole::Property || use.role == NameRole::Parameter || use.role == NameRole::Method;
        for (std::size_t i = token; i < last; i += 2) {
            uses[i].role = isInstance ? use.role : NameRole::Namespace;
        }
        uses[last] = use;
    }

    void resolve(const OpenName& name) {
        const std::size_t token = tokens.find(name.identifier->position);
        if (uses[token].role != NameRole::None) {
            return; // its place has told already
        }
        const NameRole role = findRole(getFirstPart(name.identifier->text), name.scope);
        const auto dots = name.identifier->text.find(u'.');
        if (role == NameRole::None) {
            mark(token, {NameRole::Function, false});
            return;
        }
        uses[token].role = role;
        if (dots != std::u16string_view::npos) {
            mark(token + 2, {NameRole::Property, false});
        }
    }

    NameRole findRole(std::u16string_view name, std::size_t scope) const {
        for (std::optional<std::size_t> place = scope; place; place = scopes[*place].outer) {
            const auto found = scopes[*place].names.find(name);
            if (found != scopes[*place].names.end()) {
                return found->second;
            }
        }
        return NameRole::None;
    }

    const TokenList& tokens;
    std::vector<NameUse> uses;
    std::vector<Scope> scopes;
    std::vector<OpenName> openNames;
    std::vector<Step> steps;
};

} // namespace

std::vector<NameUse> findNameUses(const Analysis& analysis, const TokenList& tokens) {
    return Walk(analysis, tokens).run();
}

} // namespace ombrel::lsp
