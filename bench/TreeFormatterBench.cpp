// The tree formatter: parsing, building the tree, the pass over it and the whole call, on ordinary programs
// and on programs that a careless implementation falls over.
//
// `tree` holds parsing and tokenizing. The whole call frees tree and tables too, as its callers do.

#include "BenchText.h"
#include "Measure.h"

#include "support/TestConfig.h"

#include "entry/formatInParts.h"
#include "format/SpanReader.h"
#include "pass/FormatPass.h"

#include <ca/Analyzer.h>
#include <ca/formatting/TreeFormat.h>

namespace {

using namespace ca::formatting;
using Behavior = FormattingConfig::LineBreakBehavior;
using MakeText = std::function<std::u16string(std::size_t size)>;

const TestOptions nothing{};
const TestOptions indentation{.indentation = true};
const TestOptions everything{.trim = true,
                             .indentation = true,
                             .lineBreaking = true,
                             .lineBreakBehavior = Behavior::AllowMultiplePerLine};
const TestOptions singleLines{
    .trim = true, .indentation = true, .lineBreaking = true, .lineBreakBehavior = Behavior::AllowSingleLine};

void measureParse(benchmark::State& state, const std::string& family, const std::u16string& text) {
    const auto analyzer = ca::createSingleFileAnalyzer();
    measure(state, family, text, [&] { benchmark::DoNotOptimize(analyzer->parseSourceCode(text)); });
}

void measureTree(benchmark::State& state, const std::string& family, const std::u16string& text) {
    measure(state, family, text, [&] { benchmark::DoNotOptimize(std::make_shared<FormatTree>(text)); });
}

void measurePass(benchmark::State& state, const std::string& family, const std::u16string& text) {
    const auto tree = std::make_shared<FormatTree>(text);
    const auto config = makeConfig(everything);
    measure(state, family, text, [&] { benchmark::DoNotOptimize(FormatPass(tree, config).run()); });
}

template <const TestOptions& options>
void measureWhole(benchmark::State& state, const std::string& family, const std::u16string& text) {
    const auto config = makeConfig(options);
    measure(state, family, text,
            [&] { benchmark::DoNotOptimize(FormatPass(std::make_shared<FormatTree>(text), config).run()); });
}

/// What the tools do: the text is parsed once and formatted in parts, and comment lines are aligned.
void measureTyped(benchmark::State& state, const std::string& family, const std::u16string& text) {
    const auto config = makeConfig(everything);
    measure(state, family, text, [&] {
        const ParsedSource source = parseProgram(text);
        ombrel::SpanReader reader(text, *source.analysis->getTokenSpans());
        benchmark::DoNotOptimize(formatSource({source, nullptr, CommentLines::Aligned, &reader}, config));
    });
}

struct Stage {
    const char* name;
    void (*run)(benchmark::State& state, const std::string& family, const std::u16string& text);
};

constexpr Stage ordinaryStages[] = {
    {"parse", measureParse},
    {"tree", measureTree},
    {"pass", measurePass},
    {"whole_nothing", measureWhole<nothing>},
    {"whole_indentation", measureWhole<indentation>},
    {"whole_everything", measureWhole<everything>},
    {"typed_everything", measureTyped},
};

constexpr Stage nastyStages[] = {
    {"whole_everything", measureWhole<everything>},
    {"typed_everything", measureTyped},
    {"whole_single_lines", measureWhole<singleLines>},
};

/// A text of `size` with the pieces in the middle.
MakeText between(std::u16string head, std::u16string piece, std::u16string tail) {
    return [=](std::size_t size) { return head + repeat(piece, size / piece.size()) + tail; };
}

/// Units nearly as deep as a program may nest, one after the other.
MakeText nested(const std::u16string& head, std::u16string_view open, const std::u16string& middle,
                std::u16string_view close) {
    constexpr std::size_t depth = 250;
    return between(u"", head + repeat(open, depth) + middle + repeat(close, depth) + u";\n", u"");
}

struct Family {
    const char* name;
    MakeText make;
};

const std::vector<Family>& getFamilies() {
    static const std::vector<Family> families = {
        {"chain", between(u"x = a", u" + b", u";")},
        {"matrix", between(u"x = [", u"1 2 3 4 5 6 7 8 9 10, 11;\n", u"];")},
        {"matrix_row", between(u"x = [1", u" 2", u"];")},
        {"arguments", between(u"x = f(1", u", a", u");")},
        {"fields", between(u"x = a", u".b", u";")},
        {"calls", nested(u"x = a", u"(1)", u"", u"")},
        {"transposes", nested(u"x = a", u"'", u"", u"")},
        {"blocks", nested(u"", u"if a\n", u"b;\n", u"end\n")},
        {"parentheses", nested(u"x = ", u"(", u"a", u")")},
        {"sums", nested(u"x = ", u"(a + ", u"a", u")")},
        {"lists", nested(u"x = ", u"f(a, ", u"a", u")")},
        {"functions", between(u"", u"function f\nend\n", u"")},
        {"blank_lines", between(u"", u"\n", u"")},
        {"comment", between(u"%{\n", u"what the next line is for\n", u"%}\n")},
        {"statements", between(u"", u"a\n", u"")},
    };
    return families;
}

void registerStage(const Stage& stage, const std::string& family, MakeText makeText, std::size_t size) {
    const std::string name = std::string(stage.name) + "/" + family;
    const std::string label =
        size < 1'000'000 ? std::to_string(size / 1000) + "KB" : std::to_string(size / 1'000'000) + "MB";
    benchmark::RegisterBenchmark(
        (name + "/" + label).c_str(),
        [=, run = stage.run](benchmark::State& state) { run(state, name, makeText(size)); })
        ->Unit(benchmark::kMillisecond)
        ->Iterations(3);
}

const bool registered = [] {
    const MakeText makeDenseText =
        between(u"", u"x=1+2*3;", u""); // as many nodes a character as there can be
    for (const Stage& stage : ordinaryStages) {
        for (const std::size_t kilobytes : {100, 1'000, 2'000, 4'000, 10'000}) {
            registerStage(stage, "script", makeScriptText, kilobytes * 1'000);
        }
        for (const std::size_t kilobytes : {500, 1'000}) {
            registerStage(stage, "dense", makeDenseText, kilobytes * 1'000);
        }
    }
    for (const Stage& stage : nastyStages) {
        for (const Family& family : getFamilies()) {
            for (const std::size_t kilobytes : {250, 500, 1'000}) {
                registerStage(stage, family.name, family.make, kilobytes * 1'000);
            }
        }
    }
    return true;
}();

} // namespace
