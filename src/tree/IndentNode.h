#pragma once

#include "config/FormattingConfig.h"
#include "tree/FormatNode.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace lf::astapi {
class AstNodeAllocator;
}

namespace ca::formatting {

class LeafNode;

/// What a level does to the indentation of the level around it.
enum class IndentChange : std::uint32_t {
    Inherit = 0,  ///< the same indentation
    AddLevel = 1, ///< one level more
};

/// The name of a level as long as nobody asks for it: the text, and the place in the source unless the line
/// is 0.
struct LevelLabel {
    const char16_t* text;
    std::uint32_t line = 0;   ///< from 1
    std::uint32_t column = 0; ///< 16-bit characters, from 1
};

/// One potential level of indentation. The levels of a tree are a tree of their own beside the text: each
/// leaf belongs to a level, each level to its parent.
///
/// A level computes one string, all that a rewritten line start at this level consists of. It knows nothing
/// of lines and columns, and doesn't ask whether indentation is enabled: whoever prints the string does.
class IndentNode : public FormatNode {
public:
    ~IndentNode() override;

    std::unordered_set<FormatNode*> getDependencies() const override;
    void format(FormatPass& pass) override;
    std::u16string getName() const override;

    /// Whether this level adds one under the given options. The rule of each subclass.
    virtual IndentChange getIndentChange(std::shared_ptr<FormattingConfig> config) const = 0;

    /// The level around this one; empty for the outermost.
    std::optional<IndentNode*> getParent() const {
        return parent != nullptr ? std::optional(parent) : std::nullopt;
    }

    /// What belongs to this level directly, levels and leaves mixed, in order of creation.
    std::vector<FormatNode*> getMembers() const;

    /// Lists a node as a member; levels and leaves do that by themselves when they are made.
    void appendMember(FormatNode* member);

    /// The same for a node that is at hand and certainly there.
    void appendMember(FormatNode& member);

    /// The arena that the level was made in and that doesn't destroy it unless it is told to.
    void setArena(lf::astapi::AstNodeAllocator& allocator) { arena = &allocator; }

protected:
    /// The outermost level.
    explicit IndentNode(std::u16string name);
    explicit IndentNode(const LevelLabel& label);

    /// A level inside `parent`, which lists it as a member from now on.
    IndentNode(IndentNode* parent, std::u16string name);
    IndentNode(IndentNode* parent, const LevelLabel& label);

private:
    friend class LeafNode;

    /// What only few levels have.
    struct Extras {
        std::optional<std::u16string> name;
        std::optional<std::vector<FormatNode*>> members; ///< all of them, in place of the linked list
    };

    Extras& makeExtras();
    void linkMember(FormatNode* member);
    static FormatNode*& getNextMember(FormatNode* member);

    IndentNode* parent = nullptr;
    FormatNode* nextMember = nullptr; ///< of the parent
    FormatNode* firstMember = nullptr;
    FormatNode* lastMember = nullptr;
    LevelLabel label;
    std::unique_ptr<Extras> extras;
    lf::astapi::AstNodeAllocator* arena = nullptr;
};

} // namespace ca::formatting
