#include "ca/Analyzer.h"

#include "ca/lexer/TokenSpan.h"
#include "syntax/Parser.h"
#include "syntax/explainErrors.h"

#include <mutex>
#include <utility>

namespace ca {

namespace {

using Tokens = std::vector<lexer::Token>;

/// The tree's identifiers point into the text, so the two stay together.
class ParsedFile final : public AnalysisResult {
public:
    explicit ParsedFile(const std::u16string& sourceCode) : text(sourceCode), spans(lexer::lexSpans(text)) {
        syntax::SyntaxErrors errors;
        root = syntax::Parser(text, spans, arena, errors).parseFile();
        if (!errors.isEmpty()) {
            throw SyntaxErrorException(syntax::explainErrors(text, errors.take()));
        }
    }

    const lf::astapi::ProgramFile<astapi::CA>* getProgramFile() const override { return root; }

    /// Made when they are asked for: a token with its text takes six times the memory of one without.
    std::shared_ptr<const Tokens> getTokens() const override {
        std::call_once(areTokensMade,
                       [this] { tokens = std::make_shared<const Tokens>(lexer::makeTokens(text, spans)); });
        return tokens;
    }

    const std::vector<lexer::TokenSpan>* getTokenSpans() const override { return &spans; }

private:
    std::u16string text;
    std::vector<lexer::TokenSpan> spans;
    mutable std::once_flag areTokensMade;
    mutable std::shared_ptr<const Tokens> tokens;
    syntax::Arena arena;
    const lf::astapi::ProgramFile<astapi::CA>* root = nullptr;
};

class SingleFileAnalyzer final : public Analyzer {
public:
    std::shared_ptr<AnalysisResult> parse(const CodeInput& input, const AnalysisOptions&) override {
        return std::make_shared<ParsedFile>(input.getSourceCode().value_or(std::u16string()));
    }

    std::shared_ptr<AnalysisResult> parseSourceCode(const std::u16string& sourceCode) override {
        return std::make_shared<ParsedFile>(sourceCode);
    }
};

} // namespace

AnalysisResult::~AnalysisResult() = default;

std::shared_ptr<const Tokens> AnalysisResult::getTokens() const {
    return nullptr;
}

const std::vector<lexer::TokenSpan>* AnalysisResult::getTokenSpans() const {
    return nullptr;
}

Analyzer::~Analyzer() = default;

std::unique_ptr<Analyzer> createSingleFileAnalyzer() {
    return std::make_unique<SingleFileAnalyzer>();
}

CodeGenerationSupport::CodeGenerationSupport() = default;

CodeInput CodeInput::createFromSourceCode(std::u16string sourceCode) {
    CodeInput input;
    input.sourceCode = std::move(sourceCode);
    return input;
}

SyntaxErrorException::SyntaxErrorException(std::vector<SyntaxError> errors) : errors(std::move(errors)) {}

const char* SyntaxErrorException::what() const noexcept {
    return "the text has syntax errors";
}

} // namespace ca
