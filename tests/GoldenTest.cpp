#include "support/GoldenSuite.h"
#include "support/LineFormatting.h"
#include "support/TokenContractChecker.h"

#include <ca/lexer/lex.h>

#include <gtest/gtest.h>

// Every case runs more checks than it states: the rules of the token list, a second run, and what the
// formatter may change at all.

using ca::lexer::Token;

namespace ca::lexer {

static bool operator==(const Token& a, const Token& b) {
    return a.type == b.type && a.lexeme == b.lexeme && a.line == b.line && a.column == b.column;
}

static void PrintTo(const Token& token, std::ostream* stream) {
    *stream << getTokenTypeName(token.type) << " at " << token.line << ':' << token.column << " '"
            << showGoldenText(token.lexeme) << '\'';
}

} // namespace ca::lexer

namespace {

std::u16string produceLines(const std::u16string& input, const GoldenOptions& options) {
    return formatLines(input, readLineOptions(options));
}

/// The end of a text after a block comment without a line end is a line of its own for the formatter, so its
/// column doesn't follow the comment's whitespace. Nothing reads it.
std::vector<Token> withoutEndColumn(std::vector<Token> tokens) {
    tokens.back().column = 0;
    return tokens;
}

class LineCase : public testing::TestWithParam<GoldenCase> {};

void checkLineResult(const GoldenCase& golden, const GoldenResult& wanted) {
    SCOPED_TRACE(getGoldenPlace(golden, wanted.line));
    const LineOptions options = readLineOptions(wanted.options);

    const std::u16string once = formatLines(golden.input, options);
    EXPECT_EQ(showGoldenText(wanted.text), showGoldenText(once));
    if (!golden.isUnstable) {
        EXPECT_EQ(showGoldenText(once), showGoldenText(formatLines(once, options))) << "in the second run";
    }

    const std::vector<Token> tokens = ca::lexer::lex(golden.input);
    EXPECT_EQ(checkTokenContract(golden.input, tokens), std::vector<std::string>());
    EXPECT_EQ(withoutEndColumn(ca::lexer::lex(once)), withoutEndColumn(indentTokens(tokens, options)))
        << "the formatted list is not that of its text";
    EXPECT_EQ(findForeignChange(golden.input, once, options), "");
}

TEST_P(LineCase, Formats) {
    for (const GoldenResult& wanted : GetParam().results) {
        checkLineResult(GetParam(), wanted);
    }
}

INSTANTIATE_TEST_SUITE_P(Golden, LineCase, testing::ValuesIn(loadGoldenCases("line", produceLines)),
                         getGoldenName);

} // namespace
