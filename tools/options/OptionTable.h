#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ombrel {

enum class OptionType {
    Boolean,
    Number,       ///< a whole number from `low` to `high`
    Word,         ///< one of `words`
    PerConstruct, ///< one of `words` for all constructs, or an object with one for each child of
                  ///< getConstructs()
};

/// One option of the program. Reading, checking, help, schema and starter file all go by the table of these.
struct Option {
    std::string_view section; ///< the object of the options file that it stands in; empty for the top level
    std::string_view key;
    OptionType type;
    std::string_view factory; ///< its default, as text; always a possible value
    std::string_view description;
    std::string_view flag;                   ///< of the command line; empty if there is only --set
    std::span<const std::string_view> words; ///< the default first where an option has a flag
    std::uint32_t low = 0;
    std::uint32_t high = 0;

    /// What --set calls it: "line.indentSize".
    std::string getName() const;
};

/// All options, those of a section side by side.
std::span<const Option> getOptions();

/// Null if there is none.
const Option* findOption(std::string_view section, std::string_view key);
const Option* findOption(std::string_view name);

struct Section {
    std::string_view name;
    std::string_view description;
};

/// The objects of an options file that hold options.
std::span<const Section> getSections();

/// A name in the tree of constructs that a PerConstruct option can be given for: a group, or one construct.
struct Construct {
    std::string_view name;
    std::span<const Construct> children; ///< empty for one construct
};

/// The group of all constructs, which has no name.
const Construct& getConstructs();

/// The words as a sentence has them: "all, classic or mixed".
std::string joinWords(std::span<const std::string_view> words);

} // namespace ombrel
