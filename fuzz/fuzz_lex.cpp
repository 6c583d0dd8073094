#include "FuzzText.h"

#include "support/TokenContractChecker.h"

#include <ca/lexer/lex.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::u16string text = makeText(data, size);
    for (const std::string& fault : checkTokenContract(text, ca::lexer::lex(text))) {
        fail(fault);
    }
    return 0;
}
