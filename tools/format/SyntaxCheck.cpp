#include "format/SyntaxCheck.h"

#include "text/TextEncoding.h"

#include <ca/Analyzer.h>

namespace ombrel {

std::vector<Problem> describe(const std::vector<ca::SyntaxError>& errors) {
    std::vector<Problem> problems;
    problems.reserve(errors.size());
    for (const ca::SyntaxError& error : errors) {
        problems.push_back({ExitStatus::Unparsable, encodeLossy(error.message), error.line, error.column});
    }
    return problems;
}

std::vector<Problem> findSyntaxErrors(const std::u16string& text) {
    try {
        ca::createSingleFileAnalyzer()->parseSourceCode(text);
    } catch (const ca::SyntaxErrorException& exception) {
        return describe(exception.getErrors());
    }
    return {};
}

} // namespace ombrel
