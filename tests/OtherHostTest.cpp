// What the contract of the syntax tree allows and the reference host never delivers: trees of real programs
// in which one node is changed by hand, with the tokens of another text.

#include "support/TestConfig.h"
#include "support/TreeFormatting.h"

#include <ca/lexer/lex.h>
#include <lf/astapi/visitFields.h>

#include <stdexcept>

#include <gtest/gtest.h>

using namespace ca::formatting;
using ca::astapi::CA;
using lf::astapi::NodeKind;
using Kind = FormattingConfig::ContainerKind;
using SyntaxNode = lf::astapi::Node<CA>;

namespace {

/// Finds the last node of a kind.
struct NodeFinder {
    void visit(const SyntaxNode& node) {
        found = node.kind == wanted ? &node : found;
        lf::astapi::visitFields(node, *this);
    }
    void child(const char*, const SyntaxNode* node) {
        if (node != nullptr) {
            visit(*node);
        }
    }
    void list(const char*, const lf::astapi::NodeList<CA>& nodes) {
        for (const SyntaxNode* node : nodes) {
            visit(*node);
        }
    }
    void words(const char*, const lf::astapi::NodeList<CA>&) {}
    void number(const char*, std::int32_t) {}
    void flag(const char*, bool) {}
    void text(const char*, std::u16string_view) {}
    void validation(const char*, const lf::astapi::ValidationSpec<CA>*) {}

    NodeKind wanted;
    const SyntaxNode* found = nullptr;
};

template <class Class>
Class& find(const ParsedSource& source, NodeKind kind) {
    NodeFinder finder{kind};
    finder.visit(*source.analysis->getProgramFile());
    return const_cast<Class&>(static_cast<const Class&>(*finder.found));
}

void setTokens(ParsedSource& source, const std::u16string& text) {
    source.tokens = std::make_shared<const Tokens>(ca::lexer::lex(text));
}

} // namespace

TEST(OtherHost, MayKnowMoreOperators) {
    for (const std::int32_t number : {-1, 21, 127}) {
        const ParsedSource source = parseSource(u"x = a+b;\n");
        find<lf::astapi::BinaryOperation<CA>>(source, NodeKind::BinaryOperation).operatorNumber = number;
        using Behavior = FormattingConfig::LineBreakBehavior;
        TestOptions options{.lineBreaking = true, .lineBreakBehavior = Behavior::AllowSingleLine};
        options.behaviors[Kind::Logical] = Behavior::SeparateLines;
        EXPECT_EQ(formatParsed({source, nullptr}, options), u"x = a ...\n    + b;\n") << number;
    }
}

TEST(OtherHost, MayDeliverNamesWithALeadingDotAndEventsWithAValue) {
    ParsedSource name = parseSource(u"x = a;\n");
    find<lf::astapi::Identifier<CA>>(name, NodeKind::Identifier).text = u".a.b";
    setTokens(name, u"x = . a . b ;\n");
    EXPECT_EQ(formatParsed({name, nullptr}, {.trim = true}), u"x=.a.b;\n");

    ParsedSource event = parseSource(u"classdef A\nevents\nE\nend\nend\n");
    auto& definition = find<lf::astapi::EventDefinition<CA>>(event, NodeKind::EventDefinition);
    definition.value = definition.name;
    setTokens(event, u"classdef A\nevents\nE  =  E  )\nend\nend\n");
    EXPECT_EQ(formatParsed({event, nullptr}, {.trim = true}), u"classdef A\nevents\nE=E)\nend\nend\n");
}

TEST(OtherHost, MustNotInventKinds) {
    for (const int kind : {0, 67, 255}) {
        const ParsedSource source = parseSource(u"x = a;\n");
        find<SyntaxNode>(source, NodeKind::Identifier).kind = static_cast<NodeKind>(kind);
        EXPECT_THROW(formatParsed({source, nullptr}, {}), std::logic_error) << kind;
    }
}

/// Words are counted, and nobody asks what they are.
TEST(OtherHost, MayGiveWordsAnyKind) {
    for (const int kind : {0, 24, 25, 26, 65}) {
        const ParsedSource source = parseSource(u"hold  on off;\n");
        for (const SyntaxNode* word :
             find<lf::astapi::CommandSyntax<CA>>(source, NodeKind::CommandSyntax).words) {
            const_cast<SyntaxNode*>(word)->kind = static_cast<NodeKind>(kind);
        }
        EXPECT_EQ(formatParsed({source, nullptr}, {.trim = true}), u"hold on off;\n") << kind;
    }
}
