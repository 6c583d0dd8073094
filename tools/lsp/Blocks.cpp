#include "lsp/Blocks.h"

#include <ca/lexer/KeywordTypes.h>

#include <algorithm>

namespace ombrel::lsp {

namespace {

using ca::lexer::dividesBlock;
using ca::lexer::opensBlock;
using ca::lexer::TokenType;

/// Whether the functions of a file have an `end`: all of them do, or none.
bool doFunctionsHaveEnds(const TokenList& tokens) {
    std::vector<TokenType> open;
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        if (opensBlock(tokens[i].type)) {
            open.push_back(tokens[i].type);
        } else if (tokens[i].type == TokenType::End && !open.empty()) {
            if (open.back() == TokenType::Function) {
                return true;
            }
            open.pop_back();
        }
    }
    return false;
}

class BlockFinder {
public:
    explicit BlockFinder(const TokenList& tokens) : tokens(tokens), hasEnds(doFunctionsHaveEnds(tokens)) {}

    std::vector<Block> find() {
        for (std::size_t i = 0; i < tokens.size(); ++i) {
            visit(i, tokens[i].type);
        }
        std::sort(blocks.begin(), blocks.end(),
                  [](const Block& a, const Block& b) { return a.opener < b.opener; });
        return std::move(blocks);
    }

private:
    void visit(std::size_t i, TokenType type) {
        const bool isBorder = type == TokenType::Function || type == TokenType::EndOfInput;
        if (isBorder && !hasEnds) {
            closeFunction(i);
        }
        if (opensBlock(type)) {
            open.push_back({i, {}, i, false});
        } else if (dividesBlock(type) && !open.empty()) {
            open.back().branches.push_back(i);
        } else if (type == TokenType::End && !open.empty()) {
            close(i, true);
        }
    }

    /// A function without `end` reaches to the next one or to the end of the text.
    void closeFunction(std::size_t i) {
        const auto isFunction = [&](const Block& block) {
            return tokens[block.opener].type == TokenType::Function;
        };
        const auto function = std::find_if(open.begin(), open.end(), isFunction);
        if (function != open.end()) {
            open.erase(function + 1, open.end());
            close(i, false);
        }
    }

    void close(std::size_t i, bool hasEnd) {
        open.back().end = i;
        open.back().hasEnd = hasEnd;
        blocks.push_back(std::move(open.back()));
        open.pop_back();
    }

    const TokenList& tokens;
    bool hasEnds;
    std::vector<Block> open;
    std::vector<Block> blocks;
};

} // namespace

TokenList::TokenList(const Analysis& analysis)
    : tokens(*analysis.parsed.tokens), markLength(analysis.program.toDocument(0)) {
    offsets.reserve(tokens.size());
    std::size_t offset = markLength;
    for (const ca::lexer::Token& token : tokens) {
        offsets.push_back(offset);
        offset += token.lexeme.size();
    }
}

std::size_t TokenList::find(std::size_t programOffset) const {
    const auto found = std::lower_bound(offsets.begin(), offsets.end(), programOffset + markLength);
    return std::min(static_cast<std::size_t>(found - offsets.begin()), tokens.size() - 1);
}

std::size_t TokenList::skipWhitespace(std::size_t i) const {
    while (tokens[i].isWhitespace() && !tokens[i].isEndOfLine()) {
        ++i;
    }
    return i;
}

std::vector<Block> findBlocks(const TokenList& tokens) {
    return BlockFinder(tokens).find();
}

} // namespace ombrel::lsp
