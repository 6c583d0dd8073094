// Parsing, tokenizing included, on ordinary programs and on chains that a recursive parser falls over.

#include "BenchText.h"
#include "Measure.h"

#include <ca/Analyzer.h>

namespace {

void benchParse(benchmark::State& state, const std::string& family, const std::u16string& text) {
    const auto analyzer = ca::createSingleFileAnalyzer();
    measure(state, "parse " + family, text,
            [&] { benchmark::DoNotOptimize(analyzer->parseSourceCode(text)); });
}

std::u16string repeat(std::u16string_view head, std::u16string_view piece, std::size_t size) {
    std::u16string text(head);
    while (text.size() < size) {
        text += piece;
    }
    return text;
}

void registerParse(const std::string& family, std::function<std::u16string(std::size_t)> makeText) {
    for (const std::size_t megabytes : {1, 2, 4}) {
        benchmark::RegisterBenchmark(("parse/" + family + "/" + std::to_string(megabytes) + "MB").c_str(),
                                     [family, makeText, megabytes](benchmark::State& state) {
                                         benchParse(state, family, makeText(megabytes * 1'000'000));
                                     })
            ->Unit(benchmark::kMillisecond)
            ->Iterations(3);
    }
}

const bool registered = [] {
    registerParse("ordinary", makeScriptText);
    registerParse("chain", [](std::size_t size) { return repeat(u"x = a", u" + b", size); });
    registerParse("elseif", [](std::size_t size) { return repeat(u"if a\n", u"elseif b\n", size) + u"end"; });
    registerParse("matrix", [](std::size_t size) { return repeat(u"x = [1", u" 2, 3;", size) + u"];"; });
    return true;
}();

} // namespace
