// A gap keeps its run as items, and prints or measures them one by one. Gaps of a tree have a name that can
// be made of two numbers; nearly all are empty, and the others have their items in the tree's arena. A gap
// that is made by hand has both on the heap.

#include "tree/WhitespaceNode.h"

#include "pass/FormatPass.h"
#include "tree/AstNodeAllocator.h"
#include "tree/CommentMover.h"
#include "tree/DebugText.h"

#include <algorithm>
#include <memory>
#include <new>
#include <optional>
#include <utility>

namespace ca::formatting {

namespace {

const std::u16string& getLexeme(const WhitespaceItem& item) {
    if (item.token == nullptr) {
        throw std::bad_optional_access();
    }
    return item.token->lexeme;
}

/// Nothing for the items that the source has nothing for.
std::u16string_view getLexemeIfAny(const WhitespaceItem& item) {
    return item.token != nullptr ? std::u16string_view(item.token->lexeme) : std::u16string_view();
}

/// The answers that decide how an item is printed.
struct Rendering {
    bool trim;
    bool indentationEnabled;
    bool indentBlankLines;
    std::u16string_view indentation;
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

/// The items follow it.
struct WhitespaceNode::KeptRun {
    std::uint32_t firstToken;
    std::uint32_t endToken;
    std::uint32_t detail;
    std::uint32_t itemCount;

    static const KeptRun* make(const ClassifiedRun& run, std::uint32_t detail) {
        static_assert(sizeof(KeptRun) % alignof(WhitespaceItem) == 0);
        void* memory = run.arena.allocate(sizeof(KeptRun) + run.items.size_bytes());
        auto* kept = new (memory)
            KeptRun{run.firstToken, run.endToken, detail, static_cast<std::uint32_t>(run.items.size())};
        std::uninitialized_copy(run.items.begin(), run.items.end(),
                                reinterpret_cast<WhitespaceItem*>(kept + 1));
        return kept;
    }

    std::span<const WhitespaceItem> getItems() const {
        return {reinterpret_cast<const WhitespaceItem*>(this + 1), itemCount};
    }
};

WhitespaceNode::WhitespaceNode(IndentNode* indent, const std::vector<const ca::lexer::Token*>& run,
                               std::u16string name, std::uint32_t detail)
    : LeafNode(indent, Family::Whitespace) {
    auto ownRun = std::make_unique<OwnRun>();
    classifyRun(run, ownRun->items);
    ownRun->name = std::move(name);
    ownRun->detail = detail;
    own = ownRun.release();
    storage.run = Own;
    storage.ownsMemory = true;
}

WhitespaceNode::WhitespaceNode(IndentNode* indent, const ClassifiedRun& run, std::uint32_t detail)
    : LeafNode(indent, Family::Whitespace), empty{run.firstToken, detail} {
    if (run.endToken != run.firstToken) {
        kept = KeptRun::make(run, detail);
        storage.run = Kept;
    }
}

WhitespaceNode::~WhitespaceNode() {
    if (storage.run == Own) {
        delete own;
    }
}

std::unordered_set<FormatNode*> WhitespaceNode::getDependencies() const {
    return LeafNode::getDependencies();
}

std::u16string WhitespaceNode::getName() const {
    if (storage.run == Own) {
        return own->name;
    }
    const bool isEmpty = storage.run == Empty;
    auto stream = makeDebugStream();
    stream << u"WhitespaceNode_T" << (isEmpty ? empty.place : kept->firstToken) << u"_T"
           << (isEmpty ? empty.place : kept->endToken);
    return stream.str();
}

std::span<const WhitespaceItem> WhitespaceNode::getItems() const {
    switch (storage.run) {
    case Kept:
        return kept->getItems();
    case Own:
        return own->items;
    default:
        return {};
    }
}

std::uint32_t WhitespaceNode::getDetail() const {
    switch (storage.run) {
    case Kept:
        return kept->detail;
    case Own:
        return own->detail;
    default:
        return empty.detail;
    }
}

std::optional<std::uint64_t> WhitespaceNode::getOriginalWidth() const {
    std::uint64_t width = 0;
    for (const WhitespaceItem& item : getItems()) {
        if (item.kind == WhitespaceItemKind::LineEndingItem || item.kind == WhitespaceItemKind::CommentItem) {
            return std::nullopt;
        }
        width += getLexemeIfAny(item).size();
    }
    return width;
}

std::u16string WhitespaceNode::getOriginalText() const {
    std::u16string text;
    appendOriginalText(text);
    return text;
}

void WhitespaceNode::appendOriginalText(std::u16string& text) const {
    for (const WhitespaceItem& item : getItems()) {
        text += getLexemeIfAny(item);
    }
}

std::uint64_t WhitespaceNode::computeEndColumn(FormatPass& pass) const {
    return computeEndColumn(pass, nullptr);
}

std::uint64_t WhitespaceNode::computeEndColumn(FormatPass& pass, CommentMover* mover) const {
    std::uint64_t column = pass.getPreviousEndColumn(*this);
    OptionCache& options = pass.getOptions();
    const bool trim = options.getTrimUnnecessaryWhitespace();
    const bool indentationEnabled = options.getIndentationEnabled();
    const std::uint64_t indentWidth = options.getIndentWidth();
    for (const WhitespaceItem& item : getItems()) {
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
    std::u16string text;
    appendItems(pass, text);
    return text;
}

void WhitespaceNode::appendItems(FormatPass& pass, std::u16string& text) const {
    appendItems(pass, nullptr, text);
}

void WhitespaceNode::appendItems(FormatPass& pass, CommentMover* mover, std::u16string& text) const {
    const std::u16string_view indentation = pass.findLeafIndentation(*this);
    OptionCache& options = pass.getOptions();
    const bool trim = options.getTrimUnnecessaryWhitespace();
    const bool indentationEnabled = options.getIndentationEnabled();
    const Rendering rendering{trim, indentationEnabled, options.getIndentBlankLines(), indentation};
    for (const WhitespaceItem& item : getItems()) {
        if (mover != nullptr) {
            mover->step(item);
        }
        if (mover != nullptr && item.kind == WhitespaceItemKind::CommentItem) {
            mover->append(text);
        } else {
            appendItem(text, item, rendering);
        }
    }
}

std::u16string WhitespaceNode::getQuotedText() const {
    std::u16string text = u"\"";
    for (const WhitespaceItem& item : getItems()) {
        if (item.token != nullptr) {
            text += item.token->escapeLexeme();
        }
    }
    return text + u"\"";
}

bool WhitespaceNode::hasComment() const {
    const auto all = getItems();
    return std::any_of(all.begin(), all.end(), [](const WhitespaceItem& item) {
        return item.kind == WhitespaceItemKind::CommentItem;
    });
}

} // namespace ca::formatting
