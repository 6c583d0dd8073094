#include "ca/formatting/LegacyFormatter.h"
#include "tokens/TokenContract.h"

#include <cstdint>
#include <initializer_list>

namespace ca::formatting::legacy {

namespace {

/// A set of token types below 64, one bit each.
class TokenSet {
public:
    constexpr TokenSet(std::initializer_list<TokenType> types) {
        for (const TokenType type : types) {
            bits |= std::uint64_t{1} << static_cast<unsigned int>(type);
        }
    }

    constexpr bool has(TokenType type) const {
        const auto number = static_cast<unsigned int>(type);
        return number < 64 && (bits >> number & 1) != 0;
    }

private:
    std::uint64_t bits = 0;
};

constexpr TokenSet openingKeywords = {
    TokenType::Function,          TokenType::OpeningKeyword3,
    TokenType::OpeningKeyword4,   TokenType::OpeningKeyword5,
    TokenType::OpeningKeyword6,   TokenType::OpeningKeyword7,
    TokenType::OpeningKeyword13,  TokenType::ClassLevelKeyword20,
    TokenType::OpeningKeyword21,  TokenType::ClassLevelKeyword22,
    TokenType::OpeningKeyword23,  TokenType::OpeningKeyword24,
    TokenType::OpeningKeyword25,  TokenType::OpeningKeyword26,
    TokenType::OpenSquareBracket, TokenType::OpenBrace,
};

} // namespace

bool LegacyFormatter::isALineEnding(TokenType type) const {
    return isLineEnding(type);
}

bool LegacyFormatter::isAnOpeningKeyword(TokenType type) const {
    return openingKeywords.has(type);
}

bool LegacyFormatter::isASecondaryKeyword(TokenType type) const {
    return type == TokenType::SecondaryKeyword9 || type == TokenType::SecondaryKeyword10 ||
           type == TokenType::SecondaryKeyword16;
}

bool LegacyFormatter::isASecondaryIndentedKeyword(TokenType type) const {
    return type == TokenType::SecondaryIndentedKeyword18 || type == TokenType::SecondaryIndentedKeyword19;
}

} // namespace ca::formatting::legacy
