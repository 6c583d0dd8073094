// Tables of texts and their tokens. Each token is written as its lexeme, a colon and its number; blanks and
// the end of the input are left out, and a line end is written as it is escaped.

#include "support/TokenContractChecker.h"

#include <ca/lexer/lex.h>

#include <gtest/gtest.h>

#include <random>

namespace {

using ca::lexer::Token;
using ca::lexer::TokenType;

std::u16string widen(std::string_view text) {
    return {text.begin(), text.end()};
}

std::string describe(const Token& token) {
    std::string text;
    for (const char16_t c : token.escapeLexeme()) {
        text += c < 0x80 ? static_cast<char>(c) : '?';
    }
    return token.isEndOfLine() ? text : text + ":" + std::to_string(static_cast<int>(token.type));
}

std::string describe(const std::u16string& text) {
    std::string all;
    const std::vector<Token> tokens = ca::lexer::lex(text);
    for (const std::string& fault : checkTokenContract(text, tokens)) {
        all += "FAULT " + fault + "\n";
    }
    for (const Token& token : tokens) {
        if (token.type != TokenType::Whitespace && token.type != TokenType::EndOfInput) {
            all += (all.empty() ? "" : " ") + describe(token);
        }
    }
    return all;
}

struct Row {
    std::string_view text;
    std::string_view tokens;
};

void expectTokens(std::initializer_list<Row> rows) {
    for (const Row& row : rows) {
        EXPECT_EQ(describe(widen(row.text)), row.tokens) << row.text;
    }
}

} // namespace

TEST(Lexer, CutsNumbersAtTheLongestMatch) {
    expectTokens({
        {"1 1.5 .5 1. 1e3 2.5E-3 1d4", "1:29 1.5:29 .5:29 1.:29 1e3:29 2.5E-3:29 1d4:29"},
        {"3i 1.J 1e2j 1.5ix", "3i:30 1.J:30 1e2j:30 1.5i:30 x:27"},
        {"0x1F 0XaBu8 0x1s64 0x1u5 0b101s16 0b12 0x",
         "0x1F:99 0XaBu8:99 0x1s64:99 0x1:99 u5:27 0b101s16:100 0b1:100 2:29 "
         "0:29 x:27"},
        {"1.*2 1./2 1.\\2 1.^2 3.' 1..2 1...",
         "1:29 .*:59 2:29 1:29 ./:60 2:29 1:29 .\\:61 2:29 1:29 .^:62 2:29 3:29 "
         ".':44 1:29 .:58 .2:29 1:29 ...:84"},
        {"1e 1e+ a.5", "1:29 e:27 1:29 e:27 +:51 a:27 .5:29"},
    });
}

TEST(Lexer, TellsTransposesFromStrings) {
    expectTokens({
        {"a' b.' 2' x{1}' (c)'' [d]'.'",
         "a:27 ':43 b:27 .':44 2:29 ':43 x:27 {:41 1:29 }:42 ':43 (:37 c:27 ):38 ':43 ':43 "
         "[:39 d:27 ]:40 ':43 .':44"},
        {"[a' b'];", "[:39 a:27 ':43 b:27 ':43 ]:40 ;:35"},
        {"[a 'b'];[a ' b'];", "[:39 a:27 'b':31 ]:40 ;:35 [:39 a:27 ' b':31 ]:40 ;:35"},
        {"x(end)' + s.end'' \"q\"\"\"'",
         "x:27 (:37 end:86 ):38 ':43 +:51 s:27 .:58 end:28 ':43 ':43 \"q\"\"\":32 ':43"},
        {"= 'it''s' \"a\"\"b\"' 'open  ", "=:47 'it''s':31 \"a\"\"b\":32 ':43 'open:87"},
        {"= \"open\nif'", "=:47 \"open:87 \\n if:4 ':87"},
    });
}

TEST(Lexer, TellsBlockEndsFromIndices) {
    expectTokens({
        {"end\nif a, end, end", "end:86 \\n if:4 a:27 ,:36 end:8 ,:36 end:86"},
        {"if x(end), y{end}(end), [end], end",
         "if:4 x:27 (:37 end:86 ):38 ,:36 y:27 {:41 end:86 }:42 (:37 end:86 ):38 ,:36 "
         "[:39 end:86 ]:40 ,:36 end:8"},
        {"[if x] end", "[:39 if:4 x:27 ]:40 end:8"},
        {"function end\nend\nend", "function:1 end:28 \\n end:8 \\n end:86"},
        {"function n = end(o, k)\nend", "function:1 n:27 =:47 end:28 (:37 o:27 ,:36 k:27 ):38 \\n end:8"},
        {"function [a] = if % c", "function:1 [:39 a:27 ]:40 =:47 if:28 % c:83"},
        {"classdef c\nmethods\nn = end(o)\nend\nend",
         "classdef:20 c:27 \\n methods:22 \\n n:27 =:47 end:28 (:37 o:27 ):38 "
         "\\n end:8 \\n end:8"},
        {"x = end(1)\nif a x = end\n", "x:27 =:47 end:86 (:37 1:29 ):38 \\n if:4 a:27 x:27 =:47 end:8 \\n"},
    });
}

TEST(Lexer, TellsCommandsFromExpressions) {
    expectTokens({
        {"hold on, close all; format long g",
         "hold:27 on:85 ,:36 close:27 all:85 ;:35 format:27 long:85 g:85"},
        {"disp 'two words' \"a\"b % c", "disp:27 'two words':85 \"a\"b:85 % c:83"},
        {"echo don't; cd ..", "echo:27 don't:85 ;:35 cd:27 ..:85"},
        {"load data -ascii ...x\n  more, y", "load:27 data:85 -ascii:85 ...:84 x:78 \\n more:85 ,:36 y:27"},
        {"a -b\na - b\na = 1;\na -b\na .5",
         "a:27 -b:85 \\n a:27 -:52 b:27 \\n a:27 =:47 1:29 ;:35 \\n a:27 -:52 b:27 \\n a:27 "
         ".5:85"},
        {"a && b\nx (1)\nx {1}\nx = 1\nx == 1\nx ...\n y",
         "a:27 &&:65 b:27 \\n x:27 (:37 1:29 ):38 \\n x:27 {:41 1:29 }:42 \\n "
         "x:27 =:47 1:29 \\n x:27 ==:67 1:29 \\n x:27 ...:84 \\n y:27"},
        {"if a, b end, b endless, end", "if:4 a:27 ,:36 b:27 end:8 ,:36 b:27 endless:85 ,:36 end:86"},
        {"a end", "a:27 end:85"},
        {"[p, q.r(s)] = f\np -x\nq -x\ns -x\nr -x",
         "[:39 p:27 ,:36 q:27 .:58 r:27 (:37 s:27 ):38 ]:40 =:47 f:27 \\n p:27 -:52 x:27 "
         "\\n q:27 -:52 x:27 \\n s:27 -x:85 \\n r:27 -x:85"},
        {"for (i = 1), i -x, end, j -x",
         "for:3 (:37 i:27 =:47 1:29 ):38 ,:36 i:27 -:52 x:27 ,:36 end:8 ,:36 j:27 -x:85"},
        {"global g h\nh -x\ntry, catch e, e -x, end",
         "global:12 g:27 h:27 \\n h:27 -:52 x:27 \\n try:13 ,:36 catch:16 e:27 ,:36 e:27 "
         "-:52 x:27 ,:36 end:8"},
        {"function o = f(i)\no -x\ni -x\nf -x\nfunction g\no -x\nend\no -x",
         "function:1 o:27 =:47 f:27 (:37 i:27 ):38 \\n o:27 -:52 x:27 \\n i:27 -:52 x:27 \\n f:27 -x:85 \\n "
         "function:1 g:27 \\n "
         "o:27 -x:85 \\n end:8 \\n o:27 -:52 x:27"},
        {"if (a) hold on, end", "if:4 (:37 a:27 ):38 hold:27 on:85 ,:36 end:8"},
        {"if (a) + hold on, else hold on\nend hold on",
         "if:4 (:37 a:27 ):38 +:51 hold:27 on:27 ,:36 else:9 hold:27 on:85 \\n "
         "end:8 hold:27 on:85"},
        {"try x y\ncatch x y\nend", "try:13 x:27 y:85 \\n catch:16 x:27 y:85 \\n end:8"},
        {"...\nhold on", "...:84 \\n hold:27 on:85"},
        {"classdef c\nproperties\nhold on\nend",
         "classdef:20 c:27 \\n properties:21 \\n hold:27 on:27 \\n end:8"},
    });
    EXPECT_EQ(describe(u"a \u00E9"), "a:27 ?:85");
    EXPECT_EQ(describe(u"a \u00D7"), "a:27 ?:87");
}

TEST(Lexer, KnowsKeywordsByTheirPlace) {
    expectTokens({
        {"properties = 1\nmethods = events", "properties:28 =:47 1:29 \\n methods:28 =:47 events:28"},
        {"classdef c\nevents, end, enumeration\nmethods\nend\nend\nend",
         "classdef:20 c:27 \\n events:23 ,:36 end:8 ,:36 "
         "enumeration:24 \\n methods:28 \\n end:8 \\n end:8 \\n end:86"},
        {"function f\n% c\narguments (In) % c\nend\narguments\nend\nx\narguments\n",
         "function:1 f:27 \\n % c:82 \\n arguments:26 (:37 In:27 ):38 % c:83 \\n end:8 \\n arguments:26 \\n "
         "end:8 \\n x:27 \\n "
         "arguments:28 \\n"},
        {"function f\n(x)\narguments\nend", "function:1 f:27 \\n (:37 x:27 ):38 \\n arguments:26 \\n end:8"},
        {"function f\narguments = 1\narguments\n",
         "function:1 f:27 \\n arguments:28 =:47 1:29 \\n arguments:28 \\n"},
        {"function f\narguments (A = \")\", B') % )\n",
         "function:1 f:27 \\n arguments:26 (:37 A:27 =:47 \")\":32 ,:36 B:27 ':43 "
         "):38 % ):83 \\n"},
        {"function f\narguments ('(') + 3\n",
         "function:1 f:27 \\n arguments:28 (:37 '(':31 ):38 +:51 3:29 \\n"},
        {"function f\narguments (A ...\n% ) x\n)\n",
         "function:1 f:27 \\n arguments:26 (:37 A:27 ...:84 \\n % ) x:82 \\n ):38 \\n"},
        {"function f\narguments ...\n (A)\n",
         "function:1 f:27 \\n arguments:26 ...:84 \\n (:37 A:27 ):38 \\n"},
        {"function end ...\n(x)\nend", "function:1 end:28 ...:84 \\n (:37 x:27 ):38 \\n end:8"},
        {"function y =\nif (a)\nend\nend",
         "function:1 y:27 =:47 \\n if:4 (:37 a:27 ):38 \\n end:8 \\n end:8"},
        {"function f(a)\narguments\nb = 3\nend\nb -c\nend",
         "function:1 f:27 (:37 a:27 ):38 \\n arguments:26 \\n b:27 =:47 3:29 \\n "
         "end:8 \\n b:27 -c:85 \\n end:8"},
        {"import ...\n a.b c", "import:17 ...:84 \\n a.b:85 c:85"},
        {"import a.b.* 'c'; import = 1", "import:17 a.b.*:85 'c':85 ;:35 import:28 =:47 1:29"},
        {"s.if.end = s . while", "s:27 .:58 if:28 .:58 end:28 =:47 s:27 .:58 while:7"},
        {"spmd\n(2) x y\nend", "spmd:25 \\n (:37 2:29 ):38 x:27 y:85 \\n end:8"},
    });
}

TEST(Lexer, KeepsCommentsOfEveryKindWhole) {
    expectTokens({
        {"  % a \nx % b \n ... c \r", "  % a :82 \\n x:27 % b :83 \\n ...:84 c :78 \\r"},
        {" %{ \n%{ x\n %{\n %}\n\n %} \ny",
         " %{ \\n:79 %{ x\\n:80  %{\\n:79  %}\\n:81 \\n:80  %} \\n:81 y:27"},
        {"%{\nopen\n %} x", "%{\\n:79 open\\n:80  %} x:80"},
        {"%}\n[1 %{\n2", "%}:82 \\n [:39 1:29 %{:83 \\n 2:29"},
        {"x = [1 ...\n%{\n%}\n2\n]", "x:27 =:47 [:39 1:29 ...:84 \\n %{\\n:79 %}\\n:81 2:29 \\n ]:40"},
        {"a ...\n% c\nb", "a:27 ...:84 \\n % c:82 \\n b:27"},
    });
}

TEST(Lexer, EndsStatementsAtLineEndsThatAreNotContinued) {
    expectTokens({
        {"f(1, ...\n a b\n", "f:27 (:37 1:29 ,:36 ...:84 \\n a:27 b:27 \\n"},
        {"f(1, ...\n \na b\n", "f:27 (:37 1:29 ,:36 ...:84 \\n \\n a:27 b:85 \\n"},
        {"f(1\na b\n", "f:27 (:37 1:29 \\n a:27 b:85 \\n"},
        {"[f(1\na b\n", "[:39 f:27 (:37 1:29 \\n a:27 b:27 \\n"},
    });
}

TEST(Lexer, GivesUpBracketsThatWereLeftOpen) {
    expectTokens({
        {"x = [1\nif a b\nend", "x:27 =:47 [:39 1:29 \\n if:4 a:27 b:27 \\n end:8"},
        {"if a\nx = {(1\n ; end, % c\ny z",
         "if:4 a:27 \\n x:27 =:47 {:41 (:37 1:29 \\n ;:35 end:8 ,:36 % c:83 \\n y:27 z:85"},
        {"x = {1\nend\n}", "x:27 =:47 {:41 1:29 \\n end:86 \\n }:42"},
        {"if a\nx(1, ...\nend ...\n)", "if:4 a:27 \\n x:27 (:37 1:29 ,:36 ...:84 \\n end:86 ...:84 \\n ):38"},
        {"([1)\n2]", "(:37 [:39 1:29 ):38 \\n 2:29 ]:40"},
        {"(1]\nhold on", "(:37 1:29 ]:40 \\n hold:27 on:85"},
    });
}

TEST(Lexer, TakesAnything) {
    expectTokens({
        {"", ""},
        {"!ls -la \n x !ls\n!x", "!ls -la:33 \\n x:27 !:87 ls:27 \\n !x:33"},
        {"a\r\n\r\nb\rc\n", "a:27 \\r\\n \\r\\n b:27 \\r c:27 \\n"},
        {"$#_a \x01`", "$#_:87 a:27 \\u0001`:87"},
        {"~=~ ==== <=> &&& ||| .*' ....",
         "~=:68 ~:34 ==:67 ==:67 <=:70 >:71 &&:65 &:63 ||:66 |:64 .*:59 ' ....:87"},
    });
    EXPECT_EQ(describe(std::u16string(u"\0\xD800x", 3)), "\\u0000\\uD800:87 x:27");
}

/// Any sequence of pieces keeps the token contract, and a text is cut alike in front of a line that starts
/// afresh.
TEST(Lexer, KeepsTheContractForEverySoupOfPieces) {
    static constexpr std::u16string_view pieces[] = {
        u"a", u"if", u"end", u"function", u"classdef", u"methods", u"arguments", u"catch", u"spmd", u"import",
        u" ", u"\t", u"\n",  u"\r\n",     u"\r",       u"'",       u"\"",        u"%",     u"%{\n", u"%}\n",
        u"(", u")",  u"[",   u"]",        u"{",        u"}",       u",",         u";",     u"=",    u"...",
        u".", u"-",  u"1",   u"0x",       u"!",        u"\u00E9",  u"\xD800",    u"else",  u"case", u"@",
    };
    std::minstd_rand random(20);
    for (int round = 0; round < 20000; ++round) {
        std::u16string text;
        for (auto count = random() % 14; count > 0; --count) {
            text += pieces[random() % std::size(pieces)];
        }
        const std::vector<Token> tokens = ca::lexer::lex(text);
        ASSERT_EQ(checkTokenContract(text, tokens), std::vector<std::string>()) << describe(text);
    }
}
