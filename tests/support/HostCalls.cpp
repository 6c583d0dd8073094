#include "support/HostCalls.h"

#include <ca/Analyzer.h>
#include <ca/lexer/lex.h>

#include <atomic>
#include <dlfcn.h>

namespace {

std::atomic<std::size_t> parsed;
std::atomic<std::size_t> tokenized;

/// The host's own operation, which this program's hides.
template <class Function>
Function* findNext(const char* mangledName) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, mangledName));
}

class CountingAnalyzer final : public ca::Analyzer {
public:
    explicit CountingAnalyzer(std::unique_ptr<ca::Analyzer> analyzer) : analyzer(std::move(analyzer)) {}

    std::shared_ptr<ca::AnalysisResult> parse(const ca::CodeInput& input,
                                              const ca::AnalysisOptions& options) override {
        ++parsed;
        return analyzer->parse(input, options);
    }

    std::shared_ptr<ca::AnalysisResult> parseSourceCode(const std::u16string& sourceCode) override {
        ++parsed;
        return analyzer->parseSourceCode(sourceCode);
    }

private:
    std::unique_ptr<ca::Analyzer> analyzer;
};

} // namespace

std::unique_ptr<ca::Analyzer> ca::createSingleFileAnalyzer() {
    static const auto create =
        findNext<decltype(createSingleFileAnalyzer)>("_ZN2ca24createSingleFileAnalyzerEv");
    return std::make_unique<CountingAnalyzer>(create());
}

std::vector<ca::lexer::Token> ca::lexer::lex(const std::u16string& text) {
    static const auto next =
        findNext<decltype(lex)>("_ZN2ca5lexer3lexERKNSt7__cxx1112basic_stringIDsSt11char_traitsIDsESaIDsEEE");
    ++tokenized;
    return next(text);
}

HostCalls getHostCalls() {
    return {parsed, tokenized};
}

void resetHostCalls() {
    parsed = tokenized = 0;
}
