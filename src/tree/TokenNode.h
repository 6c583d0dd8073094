#pragma once

#include "tree/LeafNode.h"

#include <ca/lexer/Token.h>

namespace ca::formatting {

/// One token, whose text is never changed.
class TokenNode : public LeafNode {
public:
    /// `token` is owned by the tree and must outlive the node.
    TokenNode(IndentNode* indent, const ca::lexer::Token* token);

    void format(FormatPass& pass) override;
    std::u16string getName() const override;
    DebugTable getDebugTable() const override;
    std::optional<std::uint64_t> getInlineWidth(std::shared_ptr<FormattingConfig> config) const override;
    std::u16string getText(FormatPass& pass) const override;

    /// The same as getInlineWidth(), whose options a token doesn't ask.
    std::optional<std::uint64_t> getWidth() const {
        return token->type == ca::lexer::TokenType::Unmeasured33
                   ? std::nullopt
                   : std::optional(std::uint64_t{token->lexeme.size()});
    }

    const ca::lexer::Token& getToken() const { return *token; }

private:
    const ca::lexer::Token* token;
};

template <>
inline constexpr ExactClass exactClassOf<TokenNode> = ExactClass::Token;

} // namespace ca::formatting
