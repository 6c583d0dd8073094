#pragma once

#include "ca/SyntaxError.h"
#include "syntax/TokenCursor.h"

#include <string>
#include <string_view>
#include <vector>

namespace ca::syntax {

/// Collects the faults of one text.
class SyntaxErrors {
public:
    /// More faults than this are not reported.
    static constexpr std::size_t limit = 100;

    void report(std::u16string_view identifier, std::u16string message, const Token& token);

    /// As above, at another place than the token's first character.
    void reportAt(std::u16string_view identifier, std::u16string message, std::uint32_t line,
                  std::uint32_t column, std::uint32_t length);

    bool isFull() const { return errors.size() >= limit; }
    bool isEmpty() const { return errors.empty(); }

    /// Moves all faults out, in the order of the text.
    std::vector<SyntaxError> take();

private:
    std::vector<SyntaxError> errors;
};

/// The token as a message shows it: `'lexeme'`, shortened and with escapes, or "the end of the line".
std::u16string quoteToken(const Token& token);

std::u16string toText(std::uint32_t number);

} // namespace ca::syntax
