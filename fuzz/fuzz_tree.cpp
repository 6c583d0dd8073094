// The tree formatter: whatever parses has a sound tree, and formatting it under any options changes nothing
// but whitespace, line ends, separators and continuations.

#include "FuzzText.h"

#include "support/TreeProperties.h"

#include <ca/Analyzer.h>

namespace {

using ca::formatting::FormattingConfig;

TestOptions makeOptions(const std::uint8_t* bytes) {
    const auto isSet = [bytes](int bit) { return (bytes[0] >> bit & 1) != 0; };
    TestOptions options{.trim = isSet(0),
                        .indentation = isSet(1),
                        .indentBlankLines = isSet(2),
                        .lineBreaking = isSet(3),
                        .indentCaseBlocks = isSet(4),
                        .indentWidth = bytes[1] % 9U,
                        .columnLimit = bytes[2]};
    options.functionStyle = static_cast<FormattingConfig::FunctionIndentStyle>(bytes[1] / 9 % 3);
    options.lineBreakBehavior = static_cast<FormattingConfig::LineBreakBehavior>(bytes[1] / 27 % 3);
    options.separatorPlacement = static_cast<FormattingConfig::SeparatorPlacement>(isSet(5));
    options.indentCharacter = static_cast<FormattingConfig::IndentCharacter>(isSet(6));
    return options;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 3) {
        return 0;
    }
    try {
        const std::string fault = findTreeFault(makeText(data + 3, size - 3), makeOptions(data));
        if (!fault.empty()) {
            fail(fault);
        }
    } catch (const ca::SyntaxErrorException&) {
    }
    return 0;
}
