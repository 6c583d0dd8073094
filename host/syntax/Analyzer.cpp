#include "ca/Analyzer.h"

#include <utility>

namespace ca {

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
