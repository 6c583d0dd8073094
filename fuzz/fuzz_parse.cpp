// The parser: a text has a tree whose claims hold on its tokens, or it has faults in the order of the text.

#include "FuzzText.h"

#include "support/ClaimChecker.h"

#include <ca/Analyzer.h>
#include <ca/lexer/lex.h>

#include <algorithm>
#include <tuple>

static void checkErrors(const std::vector<ca::SyntaxError>& errors) {
    const auto isBefore = [](const ca::SyntaxError& left, const ca::SyntaxError& right) {
        return std::tie(left.line, left.column) < std::tie(right.line, right.column);
    };
    if (errors.empty() || errors.size() > 100 || !std::is_sorted(errors.begin(), errors.end(), isBefore)) {
        fail("the list of faults is empty, too long or out of order");
    }
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::u16string text = makeText(data, size);
    try {
        const auto result = ca::createSingleFileAnalyzer()->parseSourceCode(text);
        const std::string fault = checkClaims(*result->getProgramFile(), ca::lexer::lex(text));
        if (!fault.empty()) {
            fail(fault);
        }
    } catch (const ca::SyntaxErrorException& exception) {
        checkErrors(exception.getErrors());
    }
    return 0;
}
