#include "lsp/FoldingRanges.h"

#include "format/Suppression.h"
#include "lsp/Blocks.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace ombrel::lsp {

namespace {

using ca::lexer::TokenType;

class RangeFinder {
public:
    explicit RangeFinder(const Analysis& analysis) : analysis(analysis), tokens(analysis) {}

    Json find() {
        addBlocks();
        addBrackets();
        addBlockComments();
        addRuns(TokenType::LineComment, "comment");
        addRuns(TokenType::Import, "imports");
        addSuppressed();
        return std::move(ranges);
    }

private:
    void add(std::size_t first, std::size_t last, const char* kind = nullptr) {
        if (last <= first) {
            return;
        }
        Json range = {{"startLine", first}, {"endLine", last}};
        if (kind != nullptr) {
            range["kind"] = kind;
        }
        ranges.push_back(std::move(range));
    }

    bool isFirstOnLine(std::size_t i) const {
        while (i > 0 && tokens[i - 1].type == TokenType::Whitespace) {
            --i;
        }
        return i == 0 || tokens.getLine(i - 1) < tokens.getLine(i);
    }

    /// The last line that can be hidden if this token is to be seen.
    std::size_t getLineBefore(std::size_t i) const {
        return tokens.getLine(i) - (isFirstOnLine(i) && tokens.getLine(i) > 0 ? 1 : 0);
    }

    void addBlocks() {
        for (const Block& block : findBlocks(tokens)) {
            std::size_t first = block.opener;
            for (const std::size_t branch : block.branches) {
                add(tokens.getLine(first), getLineBefore(branch));
                first = branch;
            }
            add(tokens.getLine(first), block.hasEnd ? getLineBefore(block.end) : getLastLine(block.end));
        }
    }

    /// The last line with code or a comment before a token.
    std::size_t getLastLine(std::size_t i) const {
        while (i > 0 && (tokens[i - 1].isEndOfLine() || tokens[i - 1].type == TokenType::Whitespace)) {
            --i;
        }
        return i == 0 ? 0 : tokens.getLine(i - 1);
    }

    void addBrackets() {
        std::vector<std::size_t> open;
        for (std::size_t i = 0; i < tokens.size(); ++i) {
            switch (tokens[i].type) {
            case TokenType::OpenParenthesis:
            case TokenType::OpenSquareBracket:
            case TokenType::OpenBrace:
                open.push_back(i);
                break;
            case TokenType::CloseParenthesis:
            case TokenType::CloseSquareBracket:
            case TokenType::CloseBrace:
                if (!open.empty()) {
                    add(tokens.getLine(open.back()), getLineBefore(i));
                    open.pop_back();
                }
                break;
            default:
                break;
            }
        }
    }

    void addBlockComments() {
        std::vector<std::size_t> open;
        for (std::size_t i = 0; i < tokens.size(); ++i) {
            if (tokens[i].type == TokenType::BlockCommentOpen) {
                open.push_back(tokens.getLine(i));
            } else if (tokens[i].type == TokenType::BlockCommentClose && !open.empty()) {
                add(open.back(), tokens.getLine(i), "comment");
                open.pop_back();
            }
        }
    }

    /// Lines that follow each other and start with such a token.
    void addRuns(TokenType type, const char* kind) {
        std::optional<std::size_t> first;
        std::size_t last = 0;
        for (std::size_t i = 0; i < tokens.size(); ++i) {
            if (tokens[i].type != type || !isFirstOnLine(i)) {
                continue;
            }
            if (!first || tokens.getLine(i) != last + 1) {
                add(first.value_or(last), last, kind);
                first = tokens.getLine(i);
            }
            last = tokens.getLine(i);
        }
        add(first.value_or(last), last, kind);
    }

    void addSuppressed() {
        const Document& document = *analysis.document;
        for (const SuppressedRegion& region : findSuppression(analysis.program.get()).regions) {
            const std::size_t end = analysis.program.toDocument(region.end);
            add(region.line - 1, document.lines.findLine(end - (end > 0 ? 1 : 0)), "region");
        }
    }

    const Analysis& analysis;
    TokenList tokens;
    Json ranges = Json::array();
};

} // namespace

Json findFoldingRanges(const Question& question) {
    return question.isAboutSource() ? RangeFinder(*question.analyze()).find() : Json();
}

} // namespace ombrel::lsp
