#include "tree/WhitespaceItem.h"

namespace ca::formatting {

using ca::lexer::Token;
using ca::lexer::TokenType;

namespace {

class Classifier {
public:
    Classifier(const std::vector<const Token*>& run, std::pmr::memory_resource* memory)
        : run(run), items(memory) {}

    std::pmr::vector<WhitespaceItem> classify() {
        items.reserve(run.size() + countBareLineStarts());
        for (index = 0; index < run.size(); ++index) {
            addToken();
        }
        return std::move(items);
    }

private:
    void addToken() {
        switch (run[index]->type) {
        case TokenType::Semicolon:
        case TokenType::Comma:
        case TokenType::Continuation:
            addVisible(WhitespaceItemKind::SeparatorItem);
            return;
        case TokenType::LineTail:
        case TokenType::BlockCommentOpen:
        case TokenType::BlockCommentBody:
        case TokenType::BlockCommentClose:
        case TokenType::LineComment:
        case TokenType::TrailingComment:
            addVisible(WhitespaceItemKind::CommentItem);
            return;
        case TokenType::LineEnding75:
        case TokenType::LineEnding76:
        case TokenType::LineEnding77:
            addLineEnding();
            return;
        case TokenType::Whitespace:
            addBlanks();
            return;
        default:
            return;
        }
    }

    /// A line that holds something isn't blank, so its line start, if it has no blanks, is made here.
    void addVisible(WhitespaceItemKind kind) {
        blankCarry = false;
        if (atLineStart) {
            items.push_back({WhitespaceItemKind::LineStartItem, std::nullopt, false});
        }
        items.push_back({kind, run[index], blankCarry});
        atLineStart = false;
    }

    void addLineEnding() {
        items.push_back({WhitespaceItemKind::LineEndingItem, run[index], blankCarry});
        if (isLast() || isNextEndOfLine()) {
            items.push_back({WhitespaceItemKind::LineStartItem, std::nullopt, !isLast()});
        }
        blankCarry = true;
        atLineStart = true;
    }

    void addBlanks() {
        if (atLineStart) {
            blankCarry = !isLast() && isNextEndOfLine();
            items.push_back({WhitespaceItemKind::LineStartItem, run[index], blankCarry});
        } else {
            items.push_back({WhitespaceItemKind::InlineWhitespaceItem, run[index], blankCarry});
        }
        atLineStart = false;
    }

    /// Lines that begin without blanks. Their line starts are the items that have no token.
    std::size_t countBareLineStarts() const {
        std::size_t count = 0;
        for (std::size_t i = 0; i < run.size(); ++i) {
            const bool areBlanksNext = i + 1 < run.size() && run[i + 1]->type == TokenType::Whitespace;
            count += run[i]->isEndOfLine() && !areBlanksNext ? 1 : 0;
        }
        return count;
    }

    bool isLast() const { return index + 1 == run.size(); }
    bool isNextEndOfLine() const { return run[index + 1]->isEndOfLine(); }

    const std::vector<const Token*>& run;
    std::pmr::vector<WhitespaceItem> items;
    std::size_t index = 0;
    bool atLineStart = false;
    bool blankCarry = false;
};

} // namespace

std::pmr::vector<WhitespaceItem> classifyRun(const std::vector<const Token*>& run,
                                             std::pmr::memory_resource* memory) {
    return Classifier(run, memory).classify();
}

} // namespace ca::formatting
