#include "ca/formatting/LegacyFormatter.h"

#include "ca/formatting/lineWalk.h"
#include "tokens/TokenContract.h"

namespace ca::formatting::legacy {

bool LegacyFormatter::isALineEnding(TokenType type) const {
    return isLineEnding(type);
}

bool LegacyFormatter::isAnOpeningKeyword(TokenType type) const {
    return opensNesting(type);
}

bool LegacyFormatter::isASecondaryKeyword(TokenType type) const {
    return type == TokenType::SecondaryKeyword9 || type == TokenType::SecondaryKeyword10 ||
           type == TokenType::SecondaryKeyword16;
}

bool LegacyFormatter::isASecondaryIndentedKeyword(TokenType type) const {
    return type == TokenType::SecondaryIndentedKeyword18 || type == TokenType::SecondaryIndentedKeyword19;
}

} // namespace ca::formatting::legacy
