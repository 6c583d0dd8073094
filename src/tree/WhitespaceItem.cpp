#include "tree/WhitespaceItem.h"

namespace ca::formatting {

using ca::lexer::Token;
using ca::lexer::TokenType;

namespace {

class Classifier {
public:
    Classifier(const std::vector<const Token*>& run, std::vector<WhitespaceItem>& items)
        : run(run), items(items) {}

    void classify() {
        items.clear();
        for (index = 0; index < run.size(); ++index) {
            addToken();
        }
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
            addWhitespace();
            return;
        default:
            return;
        }
    }

    /// A line that holds something isn't blank, so its line start, if it has no whitespace, is made here.
    void addVisible(WhitespaceItemKind kind) {
        blankCarry = false;
        if (atLineStart) {
            items.push_back({nullptr, WhitespaceItemKind::LineStartItem, false});
        }
        items.push_back({run[index], kind, blankCarry});
        atLineStart = false;
    }

    void addLineEnding() {
        items.push_back({run[index], WhitespaceItemKind::LineEndingItem, blankCarry});
        if (isLast() || isNextEndOfLine()) {
            items.push_back({nullptr, WhitespaceItemKind::LineStartItem, !isLast()});
        }
        blankCarry = true;
        atLineStart = true;
    }

    void addWhitespace() {
        if (atLineStart) {
            blankCarry = !isLast() && isNextEndOfLine();
            items.push_back({run[index], WhitespaceItemKind::LineStartItem, blankCarry});
        } else {
            items.push_back({run[index], WhitespaceItemKind::InlineWhitespaceItem, blankCarry});
        }
        atLineStart = false;
    }

    bool isLast() const { return index + 1 == run.size(); }
    bool isNextEndOfLine() const { return run[index + 1]->isEndOfLine(); }

    const std::vector<const Token*>& run;
    std::vector<WhitespaceItem>& items;
    std::size_t index = 0;
    bool atLineStart = false;
    bool blankCarry = false;
};

} // namespace

void classifyRun(const std::vector<const Token*>& run, std::vector<WhitespaceItem>& items) {
    Classifier(run, items).classify();
}

} // namespace ca::formatting
