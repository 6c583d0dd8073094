#pragma once

#include "config/FormattingConfig.h"
#include "tree/FormatNode.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ca::formatting {

/// What a level does to the indentation of the level around it.
enum class IndentChange : std::uint32_t {
    Inherit = 0,  ///< the same indentation
    AddLevel = 1, ///< one level more
};

/// One potential level of indentation. The levels of a tree are a tree of their own beside the text: each
/// leaf belongs to a level, each level to its parent.
///
/// A level computes one string, all that a rewritten line start at this level consists of. It knows nothing
/// of lines and columns, and doesn't ask whether indentation is enabled: whoever prints the string does.
class IndentNode : public FormatNode {
public:
    std::unordered_set<FormatNode*> getDependencies() const override;
    void format(FormatPass& pass) override;
    std::u16string getName() const override;

    /// Whether this level adds one under the given options. The rule of each subclass.
    virtual IndentChange getIndentChange(std::shared_ptr<FormattingConfig> config) const = 0;

    /// The level around this one; empty for the outermost.
    std::optional<IndentNode*> getParent() const { return parent; }

    /// What belongs to this level directly, levels and leaves mixed, in order of creation.
    const std::vector<FormatNode*>& getMembers() const { return members; }

    /// Called by each level and each leaf when it is made.
    void appendMember(FormatNode* member);

    /// The same for a node that is at hand and certainly there.
    void appendMember(FormatNode& member);

protected:
    /// The outermost level.
    explicit IndentNode(std::u16string name);

    /// A level inside `parent`, which lists it as a member from now on.
    IndentNode(IndentNode* parent, std::u16string name);

private:
    std::optional<IndentNode*> parent;
    std::u16string name;
    std::vector<FormatNode*> members;
};

} // namespace ca::formatting
