// The two ways to the tokenizer: the whole list at once, and line by line.

#include "ca/lexer/lex.h"

#include "Lexer.h"
#include "ca/lexer/LineTokenizer.h"

#include <algorithm>

namespace ca::lexer {

namespace {

/// The token list of one text, to which line after line is added.
class TokenList {
public:
    explicit TokenList(const std::u16string& text) : text(text) {}

    void addLine(std::span<const TokenSpan> spans) {
        ++line;
        const std::size_t lineStart = position;
        for (const TokenSpan& span : spans) {
            if (tokens.size() == tokens.capacity()) {
                reserve();
            }
            tokens.push_back({span.type, text.substr(position, span.length), line,
                              static_cast<std::uint32_t>(position - lineStart + 1)});
            position += span.length;
        }
    }

    std::vector<Token> take() { return std::move(tokens); }

private:
    /// Makes room for the tokens of the whole text, should the rest be like what has been read, and a
    /// twentieth more. Half as much again is the least, so that growing stays cheap when the guess is bad,
    /// and a token for each character left is the most. The first few thousand characters are too few to
    /// guess from.
    void reserve() {
        const std::size_t size = text.size();
        const std::size_t sample = std::max<std::size_t>(4096, size / 32);
        const std::size_t atMost = tokens.size() + (size - position) + 1;
        const std::size_t atLeast = std::max<std::size_t>(64, tokens.size() + tokens.size() / 2);
        const double density =
            static_cast<double>(tokens.size()) / static_cast<double>(std::max(position, sample));
        const auto expected = static_cast<std::size_t>(1.05 * density * static_cast<double>(size));
        const std::size_t guess = position < sample ? std::min(size, sample) / 2 : expected;
        tokens.reserve(std::min(atMost, std::max(atLeast, guess)));
    }

    const std::u16string& text;
    std::vector<Token> tokens;
    std::size_t position = 0;
    std::uint32_t line = 0;
};

} // namespace

std::vector<Token> lex(const std::u16string& text) {
    Lexer lexer(text);
    TokenList list(text);
    for (auto line = lexer.nextLine(); !line.empty(); line = lexer.nextLine()) {
        list.addLine(line);
    }
    return list.take();
}

LineTokenizer::LineTokenizer(const std::u16string& text) : lexer(std::make_unique<Lexer>(text)) {}

LineTokenizer::~LineTokenizer() = default;

std::span<const TokenSpan> LineTokenizer::next() {
    return lexer->nextLine();
}

} // namespace ca::lexer
