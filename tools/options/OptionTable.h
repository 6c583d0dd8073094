#pragma once

#include <ca/formatting/TreeOptions.h>

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ombrel {

using ca::formatting::TreeOptionType;
using Construct = ca::formatting::TreeConstruct;

/// One option of the program. What the library says about those of the tree formatter is in its own table;
/// this one adds what people need to know. Reading, checking, help, schema and starter file all go by the
/// table of these.
///
/// The library's tree formatter does nothing by default. Here indentation is on by default, since whoever
/// chooses the tree engine expects a formatted file.
struct Option {
    std::string_view section; ///< the object of the options file that it is in; empty for the top level
    std::string_view key;
    TreeOptionType type;
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

/// The words as a sentence has them: "all, classic or mixed".
std::string joinWords(std::span<const std::string_view> words);

} // namespace ombrel
