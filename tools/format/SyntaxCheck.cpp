#include "format/SyntaxCheck.h"

#include "text/TextEncoding.h"

#include <ca/Analyzer.h>

namespace ombrel {

Problems makeProblems(const std::vector<ca::SyntaxError>& errors) {
    Problems problems;
    problems.reserve(errors.size());
    for (const ca::SyntaxError& error : errors) {
        problems.push_back(
            {getSyntaxCode(error.identifier), encodeLossy(error.message), error.line, error.column});
    }
    return problems;
}

Problems findSyntaxErrors(const std::u16string& text) {
    try {
        ca::createSingleFileAnalyzer()->parseSourceCode(text);
    } catch (const ca::SyntaxErrorException& exception) {
        return makeProblems(exception.getErrors());
    }
    return {};
}

} // namespace ombrel
