// The line formatter and the tokenizer under it, stage by stage, on ordinary programs and on nasty texts.

#include "BenchText.h"
#include "Measure.h"

#include <ca/formatting/LegacyFormatter.h>
#include <ca/formatting/ca_format.h>
#include <ca/lexer/lex.h>

#include <limits>

namespace {

using namespace ca::formatting::legacy;

constexpr std::uint32_t allLines = std::numeric_limits<std::uint32_t>::max();

void runLex(const std::u16string& text) {
    benchmark::DoNotOptimize(ca::lexer::lex(text));
}

void runFormat(const std::u16string& text) {
    benchmark::DoNotOptimize(ca_format(text, 1, allLines, true, 4, u"", 4, u""));
}

void benchLex(benchmark::State& state, const std::string& family, const std::u16string& text) {
    measure(state, "lex " + family, text, [&text] { runLex(text); });
}

void benchIndentCode(benchmark::State& state, const std::string& family, const std::u16string& text) {
    const std::vector<ca::lexer::Token> tokens = ca::lexer::lex(text);
    measure(state, "indentCode " + family, text, [&tokens] {
        LegacyFormatter formatter({1, allLines, 1, 4, 4, FunctionStyle::All, BlankLineStyle::Trim});
        benchmark::DoNotOptimize(formatter.indentCode(tokens));
    });
}

void benchFormat(benchmark::State& state, const std::string& family, const std::u16string& text) {
    measure(state, "ca_format " + family, text, [&text] { runFormat(text); });
}

using Bench = void (*)(benchmark::State&, const std::string&, const std::u16string&);

void registerStages(const std::string& family, const std::string& label,
                    const std::function<std::u16string()>& makeText) {
    const std::pair<const char*, Bench> stages[] = {
        {"lex", benchLex}, {"indentCode", benchIndentCode}, {"ca_format", benchFormat}};
    for (const auto& [stage, bench] : stages) {
        benchmark::RegisterBenchmark(
            (std::string(stage) + "/" + label).c_str(),
            [family, makeText, bench = bench](benchmark::State& state) { bench(state, family, makeText()); })
            ->Unit(benchmark::kMillisecond)
            ->Iterations(3);
    }
}

const bool registered = [] {
    for (const std::size_t megabytes : {1, 10, 20, 40}) {
        registerStages("ordinary", "ordinary/" + std::to_string(megabytes) + "MB",
                       [megabytes] { return makeOrdinaryText(megabytes * 1'000'000); });
    }
    for (const NastyFamily& family : getNastyFamilies()) {
        for (const std::size_t scale : {1, 2, 4}) {
            registerStages(family.name, family.name + std::string("/x") + std::to_string(scale),
                           [&family, scale] { return family.make(scale); });
        }
    }
    return true;
}();

} // namespace
