#include <ca/formatting/LegacyFormatter.h>
#include <ca/formatting/ca_format.h>
#include <ca/formatting/lineWalk.h>

#include <gtest/gtest.h>

#include <optional>
#include <stdexcept>

using namespace ca::formatting::legacy;
using ca::lexer::Token;
using ca::lexer::TokenType;
using Line = std::vector<Token>;

namespace {

constexpr auto lf = TokenType::LineEnding75;
constexpr auto crlf = TokenType::LineEnding76;
constexpr auto name = TokenType::NameToken27;
constexpr auto space = TokenType::Whitespace;
constexpr auto comment = TokenType::LineComment;

Settings spaces() {
    return {1, 99, 1, 4, 4, FunctionStyle::All, BlankLineStyle::Trim};
}

Settings tabs() {
    Settings settings = spaces();
    settings.useSpaces = 0;
    return settings;
}

struct Part {
    TokenType type;
    std::u16string lexeme;
};

/// A line of tokens with the columns that they have in a text.
Line makeLine(std::initializer_list<Part> parts) {
    Line line;
    std::uint32_t column = 1;
    for (const Part& part : parts) {
        line.push_back({part.type, part.lexeme, 7, column});
        column += static_cast<std::uint32_t>(part.lexeme.size());
    }
    return line;
}

std::string describe(const Line& line) {
    std::string text;
    for (const Token& token : line) {
        text += std::to_string(static_cast<int>(token.type)) + "'" +
                std::string(token.lexeme.begin(), token.lexeme.end()) + "'" + std::to_string(token.line) +
                ":" + std::to_string(token.column) + " ";
    }
    return text;
}

} // namespace

TEST(LegacyFormatter, MeasuresTabsUpToTheNextStop) {
    const LegacyFormatter formatter(spaces());
    struct Row {
        std::u16string run;
        unsigned int width;
    };
    for (const Row& row : {Row{u"", 0}, Row{u"  \t ", 5}, Row{u"     \t", 8}, Row{u"\t\t", 8},
                           Row{u"    \t", 8}, Row{u" x \t", 4}}) {
        EXPECT_EQ(formatter.calculateIndentationSize(row.run), row.width);
    }
}

TEST(LegacyFormatter, WritesTabsBeforeSpaces) {
    EXPECT_EQ(LegacyFormatter(tabs()).buildWhitespaceLexeme(10), u"\t\t  ");
    EXPECT_EQ(LegacyFormatter(tabs()).calculateNumOfWhitespaceChar(10), 4);
    EXPECT_EQ(LegacyFormatter(spaces()).buildWhitespaceLexeme(3), u"   ");
    EXPECT_EQ(LegacyFormatter(spaces()).calculateNumOfWhitespaceChar(3), 3);
}

TEST(LegacyFormatter, SplitsLinesAfterLineEndsAndBlockCommentLines) {
    const LegacyFormatter formatter(spaces());
    EXPECT_TRUE(formatter.getLines({}).empty());
    const auto lines = formatter.getLines(makeLine({{name, u"a"},
                                                    {TokenType::Continuation, u"..."},
                                                    {crlf, u"\r\n"},
                                                    {TokenType::BlockCommentOpen, u"%{\n"},
                                                    {TokenType::BlockCommentBody, u"x\n"},
                                                    {TokenType::BlockCommentClose, u"%}\n"},
                                                    {TokenType::LineTail, u"t"},
                                                    {TokenType::EndOfInput, u""}}));
    ASSERT_EQ(lines.size(), 5);
    EXPECT_EQ(lines.front().size(), 3);
    EXPECT_EQ(lines.back().size(), 2);
}

TEST(LegacyFormatter, FindsBlankLinesByTheirNumberOfTokens) {
    const LegacyFormatter formatter(spaces());
    EXPECT_TRUE(formatter.isBlankLine(makeLine({{lf, u"\n"}})));
    EXPECT_TRUE(formatter.isBlankLine(makeLine({{TokenType::EndOfInput, u""}})));
    EXPECT_TRUE(formatter.isBlankLine(makeLine({{space, u" "}, {name, u"a"}})));
    EXPECT_FALSE(formatter.isBlankLine(makeLine({{TokenType::BlockCommentBody, u"  \n"}})));
    EXPECT_FALSE(formatter.isBlankLine(makeLine({{comment, u"  "}, {lf, u"\n"}})));
    EXPECT_FALSE(formatter.isBlankLine(makeLine({{space, u" "}, {name, u"a"}, {lf, u"\n"}})));
}

TEST(LegacyFormatter, TrimsLinesAndMovesTheirEnd) {
    struct Row {
        Line before;
        Line after;
    };
    const Row rows[] = {
        {makeLine({{name, u"a"}, {space, u"   "}, {lf, u"\n"}}), makeLine({{name, u"a"}, {lf, u"\n"}})},
        {makeLine({{comment, u" %a  \t"}, {crlf, u"\r\n"}}), makeLine({{comment, u" %a"}, {crlf, u"\r\n"}})},
        {makeLine({{comment, u" \t"}, {lf, u"\n"}}), makeLine({{lf, u"\n"}})},
        {makeLine({{name, u"a "}, {lf, u"\n"}}), makeLine({{name, u"a "}, {lf, u"\n"}})},
        {makeLine({{comment, u"%a\v\f "}, {lf, u"\n"}}), makeLine({{comment, u"%a\v\f"}, {lf, u"\n"}})},
        {makeLine({{TokenType::BlockCommentBody, u"  a\v\f   \r\n"}}),
         makeLine({{TokenType::BlockCommentBody, u"  a\v\f\r\n"}})},
        {makeLine({{TokenType::BlockCommentBody, u"   \n"}}),
         makeLine({{TokenType::BlockCommentBody, u"\n"}})},
        {makeLine({{TokenType::BlockCommentBody, u"\n"}}), makeLine({{TokenType::BlockCommentBody, u"\n"}})},
        {makeLine({{space, u"  "}}), makeLine({{space, u"  "}})},
    };
    for (const Row& row : rows) {
        Line line = row.before;
        LegacyFormatter(spaces()).removeTrailingWhitespaceInPlace(line);
        EXPECT_EQ(describe(line), describe(row.after));
    }
}

TEST(LegacyFormatter, IndentsLinesAndMovesTheirTokens) {
    struct Row {
        std::uint32_t width;
        Line before;
        Line after;
    };
    const Row rows[] = {
        {8, makeLine({{name, u"a"}, {lf, u"\n"}}),
         makeLine({{space, u"        "}, {name, u"a"}, {lf, u"\n"}})},
        {4, makeLine({{space, u"      "}, {name, u"a"}, {lf, u"\n"}}),
         makeLine({{space, u"    "}, {name, u"a"}, {lf, u"\n"}})},
        {0, makeLine({{space, u"  "}, {name, u"a"}, {lf, u"\n"}}), makeLine({{name, u"a"}, {lf, u"\n"}})},
        {0, makeLine({{comment, u"      %"}, {lf, u"\n"}}), makeLine({{comment, u"%"}, {lf, u"\n"}})},
        {2, makeLine({{comment, u"%"}, {lf, u"\n"}}), makeLine({{comment, u"  %"}, {lf, u"\n"}})},
        {3, makeLine({{lf, u"\n"}}), makeLine({{space, u"   "}, {lf, u"\n"}})},
        {3, makeLine({{TokenType::EndOfInput, u""}}), makeLine({{TokenType::EndOfInput, u""}})},
        {3, makeLine({{TokenType::BlockCommentOpen, u"\t%{\n"}}),
         makeLine({{TokenType::BlockCommentOpen, u"   %{\n"}})},
        {3, makeLine({{TokenType::BlockCommentBody, u"\tx\n"}}),
         makeLine({{TokenType::BlockCommentBody, u"\tx\n"}})},
    };
    for (const Row& row : rows) {
        LegacyFormatter formatter(spaces());
        formatter.currentIndentation = row.width;
        Line line = row.before;
        formatter.indentLineInPlace(line);
        EXPECT_EQ(describe(line), describe(row.after));
    }
    Line noComment = makeLine({{TokenType::BlockCommentOpen, u"  "}});
    EXPECT_THROW(LegacyFormatter(spaces()).indentLineInPlace(noComment), std::out_of_range);
}

TEST(LegacyFormatter, NeverMovesTheFirstToken) {
    Line line = makeLine({{name, u"a"}, {name, u"b"}, {lf, u"\n"}});
    LegacyFormatter(spaces()).adjustLineOffsetInPlace(line, -1);
    EXPECT_EQ(describe(line), "27'a'7:1 27'b'7:1 75'\n'7:2 ");
}

TEST(LegacyFormatter, PlacesKeywordsByTheEntryOnTopOfTheStack) {
    struct Row {
        TokenType top;
        std::uint32_t column;
        TokenType first;
        std::uint32_t width;
    };
    constexpr auto opening = TokenType::OpeningKeyword4;
    const Row rows[] = {
        {opening, 8, TokenType::SecondaryKeyword9, 4},
        {opening, 4, TokenType::SecondaryIndentedKeyword18, 4},
        {opening, 2, TokenType::End, 0},
        {TokenType::OpenBrace, 8, TokenType::End, 4},
        {TokenType::BlockCommentOpen, 8, TokenType::End, 20},
        {TokenType::OpenBrace, 8, TokenType::CloseBrace, 20},
        {TokenType::Function, 8, TokenType::End, 8},
        {TokenType::Function, 8, TokenType::Function, 24},
    };
    Settings classic = spaces();
    classic.functionIndentStyle = FunctionStyle::Classic;
    for (const Row& row : rows) {
        LegacyFormatter formatter(classic);
        formatter.currentIndentation = 20;
        formatter.nestingStack.push_back({row.top, u"", 1, row.column});
        const Line line = makeLine({{space, u" "}, {row.first, u"x"}, {lf, u"\n"}});
        EXPECT_EQ(formatter.calculateIndentationOfLine(line), row.width) << describe(line);
    }
    LegacyFormatter formatter(spaces());
    formatter.currentIndentation = 20;
    formatter.nestingStack.push_back({opening, u"", 1, 8});
    EXPECT_EQ(formatter.calculateIndentationOfLine(makeLine({{TokenType::BlockCommentClose, u"%}\n"}})), 8);
    EXPECT_EQ(formatter.calculateIndentationOfLine(makeLine({{TokenType::EndOfInput, u""}})), 0);
}

// Lists that this tokenizer never delivers, but another one may.
TEST(LegacyFormatter, TracksUnbalancedLines) {
    LegacyFormatter formatter(spaces());
    formatter.trackIndentationCausedByLine(makeLine({{TokenType::End, u"end"}, {lf, u"\n"}}));
    formatter.trackIndentationCausedByLine(makeLine({{TokenType::CloseBrace, u"}"}, {lf, u"\n"}}));
    EXPECT_EQ(formatter.currentIndentation, 0);
    EXPECT_EQ(formatter.bracketDepth, 0);

    formatter.trackIndentationCausedByLine(makeLine({{TokenType::OpenBrace, u"{"}, {lf, u"\n"}}));
    formatter.trackIndentationCausedByLine(makeLine({{TokenType::OpenBrace, u"{"}, {lf, u"\n"}}));
    formatter.trackIndentationCausedByLine(makeLine({{TokenType::End, u"end"}, {lf, u"\n"}}));
    EXPECT_EQ(formatter.currentIndentation, std::uint32_t{0} - 4) << "not held at 0";
    EXPECT_EQ(formatter.bracketDepth, 2) << "an end removes a bracket from the stack, but not from the depth";
    EXPECT_EQ(formatter.nestingStack.size(), 1);

    formatter.trackIndentationCausedByLine(makeLine({{TokenType::BlockCommentClose, u"   %}\n"}}));
    EXPECT_EQ(formatter.currentIndentation, 0) << "a stray closing line counts as not indented";
}

TEST(LegacyFormatter, FormatsListsOfOtherTokenizers) {
    LegacyFormatter formatter(spaces());
    Line tokens = makeLine({{TokenType::Function, u"function"}, {lf, u"\n"}, {TokenType::EndOfInput, u"e"}});
    tokens.back().line = UINT32_MAX;
    EXPECT_EQ(formatter.getFormattedText(formatter.indentCode(tokens)), u"function\ne");
    EXPECT_EQ(formatter.functionsHaveEnds, 0);

    tokens[2] = {TokenType::End, u"end", 1, 1};
    formatter.settings.lastLine = 0;
    formatter.indentCode(tokens);
    EXPECT_EQ(formatter.functionsHaveEnds, 1) << "found out for each list";
    EXPECT_EQ(formatter.currentIndentation, 4) << "lines after the range are not tracked";
}

TEST(LegacyFormatter, FindsFunctionEndsAfterBracketsOfTheSameKindOnly) {
    const LegacyFormatter formatter(spaces());
    const auto closesFunction = [&](TokenType open, TokenType close) {
        return formatter.checkForFunctionEnds(
            makeLine({{TokenType::Function, u""}, {open, u""}, {close, u""}, {TokenType::End, u""}}));
    };
    EXPECT_TRUE(closesFunction(TokenType::OpenBrace, TokenType::CloseBrace));
    EXPECT_FALSE(closesFunction(TokenType::OpenBrace, TokenType::CloseSquareBracket));
    EXPECT_FALSE(closesFunction(TokenType::OpenSquareBracket, TokenType::CloseBrace));
    EXPECT_TRUE(closesFunction(TokenType::OpeningKeyword4, TokenType::End));
    EXPECT_FALSE(closesFunction(TokenType::OpeningKeyword4, name));
}

/// The nesting after an opening token on its line, and a line with a token of the type in its middle.
std::string trackMiddle(TokenType opening, std::optional<TokenType> middle) {
    LegacyFormatter formatter(spaces());
    formatter.trackIndentationCausedByLine(makeLine({{opening, u"o"}, {lf, u"\n"}}));
    Line line(3, {name, u"a", 1, 1});
    if (middle) {
        line.push_back({*middle, u"m", 1, 1});
    }
    line.insert(line.end(), 3, {name, u"a", 1, 1});
    formatter.trackIndentationCausedByLine(line);
    const Line stack(formatter.nestingStack.begin(), formatter.nestingStack.end());
    return describe(stack) + std::to_string(formatter.currentIndentation) +
           (formatter.inContinuation ? " continued" : "");
}

TEST(LineWalk, LeavesOutTokensWithoutEffectOnly) {
    for (int number = 0; number <= 100; ++number) {
        const auto type = static_cast<TokenType>(number);
        bool hasEffect = false;
        for (const TokenType opening : {TokenType::OpeningKeyword4, TokenType::OpenBrace}) {
            hasEffect = hasEffect || trackMiddle(opening, type) != trackMiddle(opening, std::nullopt);
        }
        EXPECT_EQ(changesNesting(type), hasEffect) << number;
    }
}

TEST(CaFormat, ReturnsARowOfCharacters) {
    auto empty = ca_format(u"", 1, 9, true, 4, u"", 4, u"");
    EXPECT_EQ(empty->classID, 4);
    EXPECT_EQ(empty->complexity, 0);
    ASSERT_EQ(empty->numberOfDimensions, 2);
    EXPECT_EQ(empty->dimensions[0], 1);
    EXPECT_EQ(empty->dimensions[1], 0);

    const auto* const before = empty.get();
    ca_format(1, &empty, -1, nullptr);
    EXPECT_EQ(empty.get(), before) << "the other overload does nothing";
}

TEST(CaFormat, ReadsStyleWordsToTheLetter) {
    const std::u16string text = u"function f\nx\n \nend";
    const auto format = [&](std::u16string_view functionStyle, std::u16string_view blankStyle) {
        const auto array = ca_format(text, 1, 9, true, 4, functionStyle, 2, blankStyle);
        const auto* const data = static_cast<const char16_t*>(array->data);
        return std::u16string(data, array->dimensions[1]);
    };
    const std::u16string all = u"function f\n  x\n\nend";
    for (const std::u16string_view word :
         {u"", u"All", u"classicFunctionIndent", u"ClassicFunctionIndent ", u"MixedFunctionInden"}) {
        EXPECT_EQ(format(word, u"Trim"), all);
    }
    for (const std::u16string_view word : {u"", u"ignore", u"Indent ", u"IgnoreX"}) {
        EXPECT_EQ(format(u"", word), all);
    }
    EXPECT_EQ(format(u"ClassicFunctionIndent", u"Ignore"), text);
    EXPECT_EQ(format(u"MixedFunctionIndent", u"Ignore"), text);
    EXPECT_EQ(format(u"", u"Indent"), u"function f\n  x\n  \nend");
}
