#include "options/OptionTable.h"

#include <algorithm>
#include <iterator>

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace ombrel {

namespace {

constexpr std::string_view engines[] = {"line", "tree"};
constexpr std::string_view functionStyles[] = {"all", "classic", "mixed"};
constexpr std::string_view blankLines[] = {"trim", "ignore", "indent"};
using enum TreeOptionType;

/// An option of the tree formatter. `factory` is for those that have another default here than in the
/// library.
constexpr Option makeTreeOption(std::string_view key, std::string_view description,
                                std::string_view factory = {}) {
    const ca::formatting::TreeOption& option = ca::formatting::getTreeOption(key);
    return {ca::formatting::treeOptionSection,
            key,
            option.type,
            factory.empty() ? option.factory : factory,
            description,
            "",
            option.words,
            option.low,
            option.high};
}

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
    makeTreeOption("enabled", "For hosts that format while people type; ombrel-format doesn't look at it"),
    makeTreeOption("trimUnnecessaryWhitespace",
                   "Remove spaces between tokens, or reduce them to one where one is needed"),
    makeTreeOption("indentationEnabled", "Indent lines by their level", "true"),
    makeTreeOption("functionIndentStyle",
                   "Function bodies that are indented: none, those of nested functions, or all"),
    makeTreeOption("indentCaseBlocks", "Indent the cases of a switch by a level"),
    makeTreeOption("indentBlankLines", "Indent blank lines too"),
    makeTreeOption("indentCharacter", "What indentation is made of"),
    makeTreeOption("indentWidth", "Characters that make a level: 4 with Tab are four tabs"),
    makeTreeOption("lineBreakingEnabled", "Break and join lines"),
    makeTreeOption("columnLimit", "Column that broken lines keep within"),
    makeTreeOption("lineBreakBehavior", "Items of a construct when lines are broken: each on its own, all on "
                                        "one if they fit, or as many as fit"),
    makeTreeOption("separatorPlacement", "Side of a line break on which an operator stays"),
};

constexpr Section sections[] = {
    {"line", "What the line engine does"},
    {"formatting", "What the tree engine does; hosts of the formatter library read this section too"},
};

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

std::string joinWords(std::span<const std::string_view> words) {
    return fmt::format("{} or {}", fmt::join(words.first(words.size() - 1), ", "), words.back());
}

} // namespace ombrel
