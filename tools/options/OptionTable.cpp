#include "options/OptionTable.h"

#include <algorithm>
#include <iterator>
#include <limits>

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace ombrel {

namespace {

constexpr std::uint32_t largestNumber = std::numeric_limits<std::uint32_t>::max();

constexpr std::string_view engines[] = {"line", "tree"};
constexpr std::string_view functionStyles[] = {"all", "classic", "mixed"};
constexpr std::string_view blankLines[] = {"trim", "ignore", "indent"};
constexpr std::string_view functionIndentStyles[] = {"Classic", "IndentNested", "IndentAll"};
constexpr std::string_view indentCharacters[] = {"Space", "Tab"};
constexpr std::string_view lineBreakBehaviors[] = {"SeparateLines", "AllowSingleLine",
                                                   "AllowMultiplePerLine"};
constexpr std::string_view separatorPlacements[] = {"StartOfLine", "EndOfLine"};

using enum OptionType;

constexpr Option options[] = {
    {"", "engine", Word, "line", "Reindent lines, or lay out the syntax tree", "--engine", engines},
    {"line", "indentSize", Number, "4", "Columns of one level", "--indent-size", {}, 0, 64},
    {"line", "tabSize", Number, "4", "Columns between tab stops", "--tab-size", {}, 1, 64},
    {"line", "useTabs", Boolean, "false", "Indent with tabs, then spaces", "--use-tabs", {}},
    {"line", "functionStyle", Word, "all",
     "Function bodies that are indented: all, none, or those of nested functions", "--function-style",
     functionStyles},
    {"line", "blankLines", Word, "trim",
     "Blank lines lose their whitespace, stay as they are, or are indented", "--blank-lines", blankLines},
    {"formatting",
     "enabled",
     Boolean,
     "false",
     "For hosts that format while people type; ombrel-format doesn't look at it",
     "",
     {}},
    {"formatting",
     "trimUnnecessaryWhitespace",
     Boolean,
     "false",
     "Remove spaces between tokens, or reduce them to one where one is needed",
     "",
     {}},
    {"formatting", "indentationEnabled", Boolean, "false", "Indent lines by their level", "", {}},
    {"formatting", "functionIndentStyle", Word, "IndentAll",
     "Function bodies that are indented: none, those of nested functions, or all", "", functionIndentStyles},
    {"formatting", "indentCaseBlocks", Boolean, "true", "Indent the cases of a switch by a level", "", {}},
    {"formatting", "indentBlankLines", Boolean, "false", "Indent blank lines too", "", {}},
    {"formatting", "indentCharacter", Word, "Space", "What indentation is made of", "", indentCharacters},
    {"formatting",
     "indentWidth",
     Number,
     "4",
     "Characters that make a level: 4 with Tab are four tabs",
     "",
     {},
     0,
     largestNumber},
    {"formatting", "lineBreakingEnabled", Boolean, "false", "Break and join lines", "", {}},
    {"formatting",
     "columnLimit",
     Number,
     "80",
     "Column that broken lines keep within",
     "",
     {},
     0,
     largestNumber},
    {"formatting", "lineBreakBehavior", PerConstruct, "AllowMultiplePerLine",
     "Items of a construct when lines are broken: each on its own, all on one if they fit, or as many as fit",
     "", lineBreakBehaviors},
    {"formatting", "separatorPlacement", PerConstruct, "StartOfLine",
     "Side of a line break on which an operator stays", "", separatorPlacements},
};

constexpr Section sections[] = {
    {"line", "What the line engine does"},
    {"formatting", "What the tree engine does; hosts of the formatter library read this section too"},
};

constexpr Construct loops[] = {{"For", {}}, {"Parfor", {}}};
constexpr Construct statements[] = {{"If", {}},   {"While", {}}, {"ForParfor", loops}, {"Switch", {}},
                                    {"Case", {}}, {"Try", {}},   {"Spmd", {}}};
constexpr Construct expressions[] = {{"Exponent", {}},   {"MultiplyDivide", {}}, {"PlusMinus", {}},
                                     {"Comparison", {}}, {"Logical", {}},        {"Colon", {}}};
constexpr Construct lists[] = {{"ParenthesisList", {}}, {"BracketList", {}}, {"BraceList", {}}};
constexpr Construct topLevel[] = {
    {"Statements", statements}, {"Expressions", expressions}, {"Lists", lists}, {"Inheritance", {}}};
constexpr Construct allConstructs{"", topLevel};

} // namespace

std::string Option::getName() const {
    return section.empty() ? std::string(key) : fmt::format("{}.{}", section, key);
}

std::span<const Option> getOptions() {
    return options;
}

const Option* findOption(std::string_view section, std::string_view key) {
    const auto* found = std::find_if(std::begin(options), std::end(options), [&](const Option& option) {
        return option.section == section && option.key == key;
    });
    return found == std::end(options) ? nullptr : found;
}

const Option* findOption(std::string_view name) {
    const std::size_t dot = name.find('.');
    return dot == std::string_view::npos ? findOption("", name)
                                         : findOption(name.substr(0, dot), name.substr(dot + 1));
}

std::span<const Section> getSections() {
    return sections;
}

const Construct& getConstructs() {
    return allConstructs;
}

std::string joinWords(std::span<const std::string_view> words) {
    return fmt::format("{} or {}", fmt::join(words.first(words.size() - 1), ", "), words.back());
}

} // namespace ombrel
