// The three ways to the tokenizer: the whole list at once, with texts or without, and line by line.

#include "ca/lexer/lex.h"

#include "Lexer.h"
#include "ca/lexer/LineTokenizer.h"

#include <algorithm>

namespace ca::lexer {

namespace {

/// How many spans to make room for when there is none left: as many as the whole text has, should the rest be
/// like what has been read, and a twentieth more. Half as much again is the least, so that growing stays
/// cheap when the guess is bad, and a token for each character left is the most. The first few thousand
/// characters are too few to guess from.
std::size_t guessCount(std::size_t count, std::size_t position, std::size_t size) {
    const std::size_t sample = std::max<std::size_t>(4096, size / 32);
    const std::size_t atMost = count + (size - position) + 1;
    const std::size_t atLeast = std::max<std::size_t>(64, count + count / 2);
    const double density = static_cast<double>(count) / static_cast<double>(std::max(position, sample));
    const auto expected = static_cast<std::size_t>(1.05 * density * static_cast<double>(size));
    const std::size_t guess = position < sample ? std::min(size, sample) / 2 : expected;
    return std::min(atMost, std::max(atLeast, guess));
}

} // namespace

std::vector<TokenSpan> lexSpans(const std::u16string& text) {
    Lexer lexer(text);
    std::vector<TokenSpan> spans;
    std::size_t position = 0;
    for (auto line = lexer.nextLine(); !line.empty(); line = lexer.nextLine()) {
        for (const TokenSpan& span : line) {
            if (spans.size() == spans.capacity()) {
                spans.reserve(guessCount(spans.size(), position, text.size()));
            }
            spans.push_back(span);
            position += span.length;
        }
    }
    return spans;
}

std::vector<Token> makeTokens(std::u16string_view text, std::span<const TokenSpan> spans) {
    std::vector<Token> tokens;
    tokens.reserve(spans.size());
    for (TokenPlace place; const TokenSpan& span : spans) {
        tokens.push_back(makeToken(text, span, place));
        place.pass(text, span);
    }
    return tokens;
}

std::vector<Token> lex(const std::u16string& text) {
    return makeTokens(text, lexSpans(text));
}

LineTokenizer::LineTokenizer(const std::u16string& text, TokenFilter filter)
    : lexer(std::make_unique<Lexer>(text, filter)) {}

LineTokenizer::~LineTokenizer() = default;

std::span<const TokenSpan> LineTokenizer::next() {
    return lexer->nextLine();
}

} // namespace ca::lexer
