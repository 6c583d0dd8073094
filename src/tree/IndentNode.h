#pragma once

#include "config/FormattingConfig.h"
#include "tree/FormatNode.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ca::formatting {

struct NodeHome;

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

    /// Lists a node as a member after those that are members already. Levels and leaves do that by themselves
    /// when they are made, unless the level is open.
    void appendMember(FormatNode* member);

    /// The same for a node that is at hand and certainly there.
    void appendMember(FormatNode& member);

    /// Where the level was made. Nothing destroys it there unless the arena is told to.
    void setHome(NodeHome& home) { this->home = &home; }

    /// Null for a level that was made nowhere.
    NodeHome* getHome() const { return home; }

    /// Whoever builds a whole tree opens each level when it is made and closes it when no more comes into it.
    /// Each node that is made meanwhile belongs to the level or to one inside it, and leaves are made in the
    /// order of the text: so the list of nodes says all that they would have to keep.
    void open() { listEnd = openEnd; }
    void close();
    bool isOpen() const { return listEnd == openEnd; }

protected:
    /// The outermost level.
    explicit IndentNode(std::u16string name);
    explicit IndentNode(const LevelLabel& label);

    /// A level inside `parent`, which lists it as a member from now on.
    IndentNode(IndentNode* parent, std::u16string name);
    IndentNode(IndentNode* parent, const LevelLabel& label);

private:
    static constexpr std::uint32_t openEnd = UINT32_MAX;

    /// What only few levels have.
    struct Extras {
        std::optional<std::u16string> name;
        std::vector<FormatNode*> members; ///< those that weren't made while the level was open
    };

    void enter(IndentNode* outer);
    Extras& makeExtras();

    IndentNode* parent = nullptr;
    NodeHome* home = nullptr;
    std::unique_ptr<Extras> extras;
    LevelLabel label;
    std::uint32_t listEnd = 0; ///< number of the node after the last one that was made while it was open
};

} // namespace ca::formatting
