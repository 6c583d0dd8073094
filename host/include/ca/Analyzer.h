#pragma once

#include "ca/AnalysisOptions.h"
#include "ca/CodeInput.h"
#include "ca/SyntaxError.h"
#include "ca/astapi/CA.h"
#include "ca/lexer/Token.h"
#include "lf/astapi/Nodes.h"
#include "ombrel/api.h"

#include <memory>
#include <string>
#include <vector>

namespace ca {

namespace lexer {
struct TokenSpan;
}

/// A parsed file. Owns the syntax tree and the text that its identifiers point into.
class OMBREL_HOST_API AnalysisResult {
public:
    virtual ~AnalysisResult();

    /// The root of the tree. Never null.
    virtual const lf::astapi::ProgramFile<astapi::CA>* getProgramFile() const = 0;

    /// The tokens of the text as `lexer::lex` gives them, for whoever needs both. In this host they are
    /// always there. Null if the analysis keeps none: then the text has to be tokenized again.
    virtual std::shared_ptr<const std::vector<lexer::Token>> getTokens() const;

    /// The same tokens by type and length, for whoever needs no texts. Valid as long as this object. Null if
    /// the analysis keeps none.
    virtual const std::vector<lexer::TokenSpan>* getTokenSpans() const;
};

/// Parses single files. Holds no state between calls; any number of threads may use one at once.
///
/// Both operations need time and memory in proportion to the text and throw SyntaxErrorException if it
/// doesn't parse. Nesting deeper than 500 levels is such a fault, so that no text can exhaust the stack.
class OMBREL_HOST_API Analyzer {
public:
    virtual ~Analyzer();

    /// Parses the input's source code; an input without any is an empty file.
    virtual std::shared_ptr<AnalysisResult> parse(const CodeInput& input, const AnalysisOptions& options) = 0;

    /// Parses a text with default options.
    virtual std::shared_ptr<AnalysisResult> parseSourceCode(const std::u16string& sourceCode) = 0;
};

/// Makes an analyzer. The caller owns it.
OMBREL_HOST_API std::unique_ptr<Analyzer> createSingleFileAnalyzer();

} // namespace ca
