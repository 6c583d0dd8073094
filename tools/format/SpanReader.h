#pragma once

#include <ca/formatting/TreeFormat.h>
#include <ca/lexer/TokenSpan.h>

#include <cstddef>
#include <span>
#include <string_view>

namespace ombrel {

/// Reads tokens of which types and lengths are known. Keeps the text and these by reference.
class SpanReader final : public ca::formatting::TokenReader {
public:
    SpanReader(std::u16string_view text, std::span<const ca::lexer::TokenSpan> spans)
        : text(text), rest(spans) {}

    void read(std::size_t position, ca::formatting::Tokens& tokens) override {
        const std::size_t count = countUpTo(position);
        tokens.reserve(tokens.size() + count);
        for (const ca::lexer::TokenSpan& span : rest.first(count)) {
            tokens.push_back(ca::lexer::makeToken(text, span, place));
            place.pass(text, span);
        }
        rest = rest.subspan(count);
    }

private:
    std::size_t countUpTo(std::size_t position) const {
        std::size_t count = 0;
        std::size_t begin = place.position;
        while (count < rest.size() && begin <= position) {
            begin += rest[count].length;
            ++count;
        }
        return count;
    }

    std::u16string_view text;
    std::span<const ca::lexer::TokenSpan> rest;
    ca::lexer::TokenPlace place; ///< of the first that is left
};

} // namespace ombrel
