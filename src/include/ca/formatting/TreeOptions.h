#pragma once

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <limits>
#include <span>
#include <string_view>

// The options of the tree formatter as a table: what they are called in a JSON text, which values they have
// and which one they come with. The option set of the library, its dumps and the tools around it all read
// this table.

namespace ca::formatting {

enum class TreeOptionType {
    Boolean,
    Number,       ///< a whole number from `low` to `high`
    Word,         ///< one of `words`
    PerConstruct, ///< one of `words` for all constructs, or an object with one for each child of
                  ///< treeConstructs
};

struct TreeOption {
    std::string_view key;
    TreeOptionType type;
    std::string_view factory;                     ///< the default, as it is written in a JSON text
    std::span<const std::string_view> words = {}; ///< in the order of their numbers, from 0
    std::uint32_t low = 0;
    std::uint32_t high = std::numeric_limits<std::uint32_t>::max();
};

/// The object of a JSON text that has the options.
inline constexpr std::string_view treeOptionSection = "formatting";

inline constexpr std::string_view functionIndentStyleWords[] = {"Classic", "IndentNested", "IndentAll"};
inline constexpr std::string_view indentCharacterWords[] = {"Space", "Tab"};
inline constexpr std::string_view lineBreakBehaviorWords[] = {"SeparateLines", "AllowSingleLine",
                                                              "AllowMultiplePerLine"};
inline constexpr std::string_view separatorPlacementWords[] = {"StartOfLine", "EndOfLine"};

/// In the order of the interface of the option set, in which they are read too.
inline constexpr TreeOption treeOptions[] = {
    {"enabled", TreeOptionType::Boolean, "false"},
    {"trimUnnecessaryWhitespace", TreeOptionType::Boolean, "false"},
    {"indentationEnabled", TreeOptionType::Boolean, "false"},
    {"functionIndentStyle", TreeOptionType::Word, "IndentAll", functionIndentStyleWords},
    {"indentCaseBlocks", TreeOptionType::Boolean, "true"},
    {"indentBlankLines", TreeOptionType::Boolean, "false"},
    {"indentCharacter", TreeOptionType::Word, "Space", indentCharacterWords},
    {"indentWidth", TreeOptionType::Number, "4"},
    {"lineBreakingEnabled", TreeOptionType::Boolean, "false"},
    {"columnLimit", TreeOptionType::Number, "80"},
    {"lineBreakBehavior", TreeOptionType::PerConstruct, "AllowMultiplePerLine", lineBreakBehaviorWords},
    {"separatorPlacement", TreeOptionType::PerConstruct, "StartOfLine", separatorPlacementWords},
};

/// The option with this key, which has to be there: a constant expression doesn't compile otherwise.
constexpr const TreeOption& getTreeOption(std::string_view key) {
    return *std::find_if(std::begin(treeOptions), std::end(treeOptions),
                         [key](const TreeOption& option) { return option.key == key; });
}

/// The number of a word; as many as there are words if it is none of them.
constexpr std::uint32_t getWordNumber(std::span<const std::string_view> words, std::string_view word) {
    return static_cast<std::uint32_t>(std::find(words.begin(), words.end(), word) - words.begin());
}

/// The default as a number: 0 or 1 for a boolean, the number of the word for words.
constexpr std::uint32_t getFactoryNumber(const TreeOption& option) {
    if (option.type == TreeOptionType::Boolean) {
        return option.factory == "true" ? 1 : 0;
    }
    if (option.type != TreeOptionType::Number) {
        return getWordNumber(option.words, option.factory);
    }
    std::uint32_t number = 0;
    for (const char digit : option.factory) {
        number = 10 * number + static_cast<std::uint32_t>(digit - '0');
    }
    return number;
}

/// The constructs that have options of their own, in the order of their numbers, from 0.
inline constexpr std::string_view constructWords[] = {
    "If",          "While",      "For",        "Parfor",   "Switch",
    "Case",        "Try",        "Spmd",       "Exponent", "MultiplyDivide",
    "PlusMinus",   "Comparison", "Logical",    "Colon",    "ParenthesisList",
    "BracketList", "BraceList",  "Inheritance"};

/// A name in the tree of constructs that a PerConstruct option can be given for: a group, or one construct.
struct TreeConstruct {
    std::string_view name;
    std::span<const TreeConstruct> children = {}; ///< empty for one construct

    constexpr bool isGroup() const { return !children.empty(); }

    /// The number of a construct.
    constexpr std::uint32_t getNumber() const { return getWordNumber(constructWords, name); }
};

inline constexpr TreeConstruct loopConstructs[] = {{"For"}, {"Parfor"}};
inline constexpr TreeConstruct statementConstructs[] = {
    {"If"}, {"While"}, {"ForParfor", loopConstructs}, {"Switch"}, {"Case"}, {"Try"}, {"Spmd"}};
inline constexpr TreeConstruct expressionConstructs[] = {{"Exponent"},   {"MultiplyDivide"}, {"PlusMinus"},
                                                         {"Comparison"}, {"Logical"},        {"Colon"}};
inline constexpr TreeConstruct listConstructs[] = {{"ParenthesisList"}, {"BracketList"}, {"BraceList"}};
inline constexpr TreeConstruct topLevelConstructs[] = {{"Statements", statementConstructs},
                                                       {"Expressions", expressionConstructs},
                                                       {"Lists", listConstructs},
                                                       {"Inheritance"}};

/// The group of all constructs, which has no name.
inline constexpr TreeConstruct treeConstructs{"", topLevelConstructs};

} // namespace ca::formatting
