#include "support/HostCalls.h"

#include <ca/Analyzer.h>
#include <ca/lexer/LineTokenizer.h>
#include <ca/lexer/lex.h>

#include <atomic>
#include <dlfcn.h>

namespace {

std::atomic<std::size_t> parsed;
std::atomic<std::size_t> tokenized;
thread_local bool isParsing = false; ///< the parser's own tokenization isn't counted, whoever it goes through

/// The host's own operation, which this program's hides.
template <class Function>
Function* findNext(const char* mangledName) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, mangledName));
}

/// Counts one parse while it lives.
class ParseCount {
public:
    ParseCount() {
        ++parsed;
        isParsing = true;
    }
    ParseCount(const ParseCount&) = delete;
    ParseCount& operator=(const ParseCount&) = delete;
    ~ParseCount() { isParsing = false; }
};

class CountingAnalyzer final : public ca::Analyzer {
public:
    explicit CountingAnalyzer(std::unique_ptr<ca::Analyzer> analyzer) : analyzer(std::move(analyzer)) {}

    std::shared_ptr<ca::AnalysisResult> parse(const ca::CodeInput& input,
                                              const ca::AnalysisOptions& options) override {
        const ParseCount count;
        return analyzer->parse(input, options);
    }

    std::shared_ptr<ca::AnalysisResult> parseSourceCode(const std::u16string& sourceCode) override {
        const ParseCount count;
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
    tokenized += isParsing ? 0 : 1;
    return next(text);
}

/// A text counts when its last line is delivered.
std::span<const ca::lexer::TokenSpan> ca::lexer::LineTokenizer::next() {
    using Next = std::span<const TokenSpan>(LineTokenizer*);
    static const auto next = findNext<Next>("_ZN2ca5lexer13LineTokenizer4nextEv");
    const auto line = next(this);
    tokenized += !line.empty() && line.back().type == TokenType::EndOfInput ? 1 : 0;
    return line;
}

HostCalls getHostCalls() {
    return {parsed, tokenized};
}

void resetHostCalls() {
    parsed = tokenized = 0;
}
