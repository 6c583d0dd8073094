#include "tree/WhitespaceNode.h"

#include "pass/FormatPass.h"
#include "tree/CommentMover.h"

#include <algorithm>
#include <utility>

namespace ca::formatting {

namespace {

const std::u16string& getLexeme(const WhitespaceItem& item) {
    return item.token.value()->lexeme;
}

/// The shared empty string serves the items that the source has nothing for.
const std::u16string& getLexemeIfAny(const WhitespaceItem& item) {
    static const std::u16string empty;
    return item.token ? (*item.token)->lexeme : empty;
}

/// The answers that decide how an item is printed.
struct Rendering {
    bool trim;
    bool indentationEnabled;
    bool indentBlankLines;
    std::u16string indentation;
};

void appendLineStart(std::u16string& text, const WhitespaceItem& item, const Rendering& rendering) {
    if (rendering.indentationEnabled) {
        if (!item.isBlankLine || rendering.indentBlankLines) {
            text += rendering.indentation;
        }
    } else if (!rendering.trim || !item.isBlankLine) {
        text += getLexemeIfAny(item);
    }
}

void appendItem(std::u16string& text, const WhitespaceItem& item, const Rendering& rendering) {
    switch (item.kind) {
    case WhitespaceItemKind::LineEndingItem:
        text += u'\n';
        return;
    case WhitespaceItemKind::LineStartItem:
        appendLineStart(text, item, rendering);
        return;
    case WhitespaceItemKind::InlineWhitespaceItem:
        if (!rendering.trim) {
            text += getLexeme(item);
        }
        return;
    case WhitespaceItemKind::SeparatorItem:
    case WhitespaceItemKind::CommentItem:
        text += getLexeme(item);
    }
}

} // namespace

WhitespaceNode::WhitespaceNode(IndentNode* indent, const std::vector<const ca::lexer::Token*>& run,
                               std::pmr::u16string name)
    : LeafNode(indent), items(classifyRun(run, name.get_allocator().resource())), name(std::move(name)) {}

std::unordered_set<FormatNode*> WhitespaceNode::getDependencies() const {
    return LeafNode::getDependencies();
}

std::u16string WhitespaceNode::getName() const {
    return std::u16string(name);
}

std::optional<std::uint64_t> WhitespaceNode::getOriginalWidth() const {
    std::uint64_t width = 0;
    for (const WhitespaceItem& item : items) {
        if (item.kind == WhitespaceItemKind::LineEndingItem || item.kind == WhitespaceItemKind::CommentItem) {
            return std::nullopt;
        }
        width += getLexemeIfAny(item).size();
    }
    return width;
}

std::u16string WhitespaceNode::getOriginalText() const {
    std::u16string text;
    for (const WhitespaceItem& item : items) {
        text += getLexemeIfAny(item);
    }
    return text;
}

std::uint64_t WhitespaceNode::computeEndColumn(FormatPass& pass) const {
    return computeEndColumn(pass, nullptr);
}

std::uint64_t WhitespaceNode::computeEndColumn(FormatPass& pass, CommentMover* mover) const {
    std::uint64_t column = pass.getPreviousEndColumn(*this);
    const auto config = pass.getConfig();
    const bool trim = config->getTrimUnnecessaryWhitespace();
    const bool indentationEnabled = config->getIndentationEnabled();
    const std::uint64_t indentWidth = config->getIndentWidth();
    for (const WhitespaceItem& item : items) {
        if (mover != nullptr) {
            mover->step(item);
        }
        switch (item.kind) {
        case WhitespaceItemKind::LineEndingItem:
            column = 0;
            break;
        case WhitespaceItemKind::LineStartItem:
            if (!item.isBlankLine) {
                column += indentationEnabled ? indentWidth : getLexemeIfAny(item).size();
            }
            break;
        case WhitespaceItemKind::InlineWhitespaceItem:
            column += trim ? 0 : getLexeme(item).size();
            break;
        case WhitespaceItemKind::CommentItem:
            column += mover != nullptr ? mover->getWidth() : getLexeme(item).size();
            break;
        case WhitespaceItemKind::SeparatorItem:
            column += getLexeme(item).size();
        }
    }
    return column;
}

std::u16string WhitespaceNode::renderItems(FormatPass& pass) const {
    return renderItems(pass, nullptr);
}

std::u16string WhitespaceNode::renderItems(FormatPass& pass, CommentMover* mover) const {
    std::u16string indentation = pass.getLeafIndentation(*this);
    const auto config = pass.getConfig();
    const bool trim = config->getTrimUnnecessaryWhitespace();
    const bool indentationEnabled = config->getIndentationEnabled();
    const Rendering rendering{trim, indentationEnabled, config->getIndentBlankLines(),
                              std::move(indentation)};
    std::u16string text;
    for (const WhitespaceItem& item : items) {
        if (mover != nullptr) {
            mover->step(item);
        }
        if (mover != nullptr && item.kind == WhitespaceItemKind::CommentItem) {
            mover->append(text);
        } else {
            appendItem(text, item, rendering);
        }
    }
    return text;
}

std::u16string WhitespaceNode::getQuotedText() const {
    std::u16string text = u"\"";
    for (const WhitespaceItem& item : items) {
        if (item.token) {
            text += (*item.token)->escapeLexeme();
        }
    }
    return text + u"\"";
}

bool WhitespaceNode::hasComment() const {
    return std::any_of(items.begin(), items.end(), [](const WhitespaceItem& item) {
        return item.kind == WhitespaceItemKind::CommentItem;
    });
}

} // namespace ca::formatting
