// The format pass over synthetic trees: statements of ten leaves in blocks of one level, all features on.
// The tree is built beforehand and not measured.

#include "Measure.h"

#include "support/TestConfig.h"
#include "support/TreeBuilder.h"

#include "pass/FormatPass.h"

namespace {

using namespace ca::formatting;
using Kind = FormattingConfig::ContainerKind;

constexpr std::size_t leavesOfStatement = 10;
constexpr std::size_t statementsOfBlock = 20;

struct Sample {
    std::u16string text;
    std::shared_ptr<FormatTree> tree;
};

/// A right side with two groups of operators, and before them the gap to the previous statement.
void takeStatement(TreeBuilder& builder, TreeBuilder::TextNodes& children) {
    children.push_back(builder.take("L").front());
    auto sum = builder.take("TBTA", Kind::PlusMinus);
    sum.push_back(builder.container(Kind::MultiplyDivide, "TBTAT"));
    children.push_back(builder.container(Kind::PlusMinus, sum));
}

Sample makeSample(std::size_t leaves) {
    const std::size_t statements = leaves / leavesOfStatement;
    std::u16string text;
    for (std::size_t i = 0; i < statements; ++i) {
        text += u"   alpha+beta  * gamma;\n";
    }
    TreeBuilder builder(text);
    TreeBuilder::TextNodes file;
    while (file.size() < statements / statementsOfBlock) {
        TreeBuilder::TextNodes block;
        builder.enterLevel();
        for (std::size_t i = 0; i < statementsOfBlock; ++i) {
            takeStatement(builder, block);
        }
        builder.leaveLevel();
        file.push_back(builder.container(Kind::None, block));
    }
    auto* root = builder.container(Kind::None, file);
    return {std::move(text), builder.finish(root)};
}

void benchPass(benchmark::State& state) {
    const Sample sample = makeSample(static_cast<std::size_t>(state.range(0)));
    const auto config =
        makeConfig({.trim = true,
                    .indentation = true,
                    .lineBreaking = true,
                    .lineBreakBehavior = FormattingConfig::LineBreakBehavior::AllowMultiplePerLine});
    measure(state, "pass", sample.text, [&] { benchmark::DoNotOptimize(formatTree(sample.tree, config)); });
    const auto nodes = static_cast<double>(sample.tree->getNodes().size());
    const auto characters = static_cast<double>(sample.text.size());
    state.counters["nodes/s"] = state.counters["chars/s"] / characters * nodes;
    state.counters["bytes/node"] = state.counters["bytes/char"] * characters / nodes;
}

BENCHMARK(benchPass)
    ->Name("FormatPass/leaves")
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3)
    ->Arg(10'000)
    ->Arg(100'000)
    ->Arg(250'000)
    ->Arg(500'000)
    ->Arg(1'000'000);

} // namespace
