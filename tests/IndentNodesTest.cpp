#include "tree/IndentNodes.h"

#include "pass/FormatPass.h"
#include "support/TestConfig.h"
#include "support/TreeBuilder.h"

#include <ca/astapi/CA.h>
#include <lf/astapi/Nodes.h>

#include <gtest/gtest.h>

using namespace ca::formatting;
using ca::astapi::CA;
using Kind = FormattingConfig::ContainerKind;
using Style = FormattingConfig::FunctionIndentStyle;

namespace {

template <class SyntaxNode>
SyntaxNode makeSyntax(std::uint32_t line, std::uint32_t column) {
    SyntaxNode node{};
    if constexpr (requires { SyntaxNode::nodeKind; }) {
        node.kind = SyntaxNode::nodeKind;
    }
    node.line = line;
    node.column = column;
    return node;
}

/// Two functions, the second nested in the first.
struct NestedFunctions {
    NestedFunctions() { inner.parent = &outer; }

    lf::astapi::Function<CA> outer = makeSyntax<lf::astapi::Function<CA>>(1, 1);
    lf::astapi::Function<CA> inner = makeSyntax<lf::astapi::Function<CA>>(2, 1);
};

/// A level below a program of its own: a parent has pointers to all its children, so they live as long as it
/// does.
template <class Level>
struct BelowProgram {
    template <class... Syntax>
    explicit BelowProgram(const Syntax&... syntax) : level(&program, syntax...) {}

    ProgramIndentNode program;
    Level level;
};

/// The string of a level inside a level, both adding one.
std::u16string getSecondLevel(const TestOptions& options) {
    TreeBuilder builder(u"");
    const auto block = makeSyntax<lf::astapi::WhileStatement<CA>>(1, 1);
    auto* outer = builder.make<StatementBlockIndentNode>(builder.getLevel(), block);
    auto* inner = builder.make<SwitchContentsIndentNode>(outer);
    FormatPass pass(builder.finish(builder.container(Kind::None, "T")), makeConfig(options));
    pass.run();
    return pass.getIndentation(*inner);
}

} // namespace

/// What golden files can't show: a program has no nested function outside of a function, and no file has
/// these numbers.
TEST(IndentNodes, IndentFunctionsByStyleAndNesting) {
    const NestedFunctions functions;
    const auto method = makeSyntax<lf::astapi::MethodDefinition<CA>>(3, 5);
    const auto getChanges = [&](Style style) {
        const auto config = makeConfig({.functionStyle = style});
        const IndentChange changes[] = {
            BelowProgram<NestedFunctionIndentNode>(functions.outer).level.getIndentChange(config),
            BelowProgram<NestedFunctionIndentNode>(functions.inner).level.getIndentChange(config),
            BelowProgram<FunctionContentsIndentNode>(functions.outer).level.getIndentChange(config),
            BelowProgram<FunctionContentsIndentNode>(functions.inner).level.getIndentChange(config),
            BelowProgram<FunctionContentsIndentNode>(method).level.getIndentChange(config)};
        std::string digits;
        for (const IndentChange change : changes) {
            digits += change == IndentChange::AddLevel ? '1' : '0';
        }
        return digits;
    };
    EXPECT_EQ(getChanges(Style::Classic), "11000");
    EXPECT_EQ(getChanges(Style::IndentNested), "10010");
    EXPECT_EQ(getChanges(Style::IndentAll), "00111");
    EXPECT_EQ(getChanges(static_cast<Style>(3)), "00000");
}

TEST(IndentNodes, BuildLevelsFromCharacterAndWidth) {
    using Character = FormattingConfig::IndentCharacter;
    EXPECT_EQ(getSecondLevel({.indentWidth = 2, .indentCharacter = Character::Tab}), u"\t\t\t\t");
    EXPECT_EQ(getSecondLevel({.indentWidth = 1, .indentCharacter = static_cast<Character>(2)}),
              std::u16string(2, u'\0'));
    EXPECT_EQ(getSecondLevel({.indentWidth = 0}), u"");
}

TEST(IndentNodes, AreNamedByClassAndPlace) {
    const auto function = makeSyntax<lf::astapi::Function<CA>>(1200, 7);
    const auto method = makeSyntax<lf::astapi::MethodDefinition<CA>>(3, 5);
    EXPECT_EQ(ProgramIndentNode().getName(), u"ProgramIndent");
    EXPECT_EQ(BelowProgram<SwitchContentsIndentNode>().level.getName(), u"");
    EXPECT_EQ(BelowProgram<ExpressionIndentNode>(makeSyntax<lf::astapi::BinaryOperation<CA>>(2, 10))
                  .level.getName(),
              u"ExpressionIndent_L2_C10");
    EXPECT_EQ(BelowProgram<StatementBlockIndentNode>(makeSyntax<lf::astapi::OtherwiseBlock<CA>>(1, 1))
                  .level.getName(),
              u"StatementBlockIndent_L1_C1");
    EXPECT_EQ(BelowProgram<FunctionContentsIndentNode>(function).level.getName(),
              u"FunctionContentsIndent_L1200_C7");
    EXPECT_EQ(BelowProgram<FunctionContentsIndentNode>(method).level.getName(),
              u"FunctionContentsIndent_L3_C5");
    EXPECT_EQ(BelowProgram<NestedFunctionIndentNode>(function).level.getName(),
              u"NestedFunctionIndent_L1200_C7");
}

TEST(IndentNodes, RefuseANestedFunctionThatIsNone) {
    ProgramIndentNode program;
    try {
        const NestedFunctionIndentNode node(&program, boost::none);
        FAIL();
    } catch (const boost::bad_optional_access& error) {
        EXPECT_STREQ(error.what(), "Attempted to access the value of an uninitialized optional object.");
    }
}
