#pragma once

#include <ca/formatting/TreeFormat.h>
#include <ca/lexer/TokenSpan.h>

#include <span>
#include <string_view>

namespace ombrel {

/// Reads tokens of which types and lengths are known. Keeps the text and these by reference.
class SpanReader final : public ca::formatting::TokenReader {
public:
    SpanReader(std::u16string_view text, std::span<const ca::lexer::TokenSpan> spans)
        : text(text), rest(spans) {}

    void read(std::size_t position, ca::formatting::Tokens& tokens) override {
        for (; !rest.empty() && place.position <= position; rest = rest.subspan(1)) {
            tokens.push_back(ca::lexer::makeToken(text, rest.front(), place));
            place.pass(text, rest.front());
        }
    }

private:
    std::u16string_view text;
    std::span<const ca::lexer::TokenSpan> rest;
    ca::lexer::TokenPlace place; ///< of the first that is left
};

} // namespace ombrel
