#include "support/TreeFormatting.h"

#include "entry/formatInParts.h"

#include "pass/FormatPass.h"

#include <ca/lexer/lex.h>

#include <map>
#include <sstream>
#include <stdexcept>

using namespace ca::formatting;
using Behavior = FormattingConfig::LineBreakBehavior;
using Character = FormattingConfig::IndentCharacter;
using Kind = FormattingConfig::ContainerKind;
using Placement = FormattingConfig::SeparatorPlacement;
using Style = FormattingConfig::FunctionIndentStyle;

namespace {

template <class Value>
using Words = std::map<std::string, Value>;

/// The enumerators that have a text, by that.
template <class Enumeration>
Words<Enumeration> makeWords() {
    Words<Enumeration> words;
    for (int number = 0; number < static_cast<int>(Kind::None); ++number) {
        std::ostringstream text;
        text << static_cast<Enumeration>(number);
        words.emplace(text.str(), static_cast<Enumeration>(number));
    }
    words.erase("");
    return words;
}

const Words<bool TestOptions::*> flags = {{"trimUnnecessaryWhitespace", &TestOptions::trim},
                                          {"indentationEnabled", &TestOptions::indentation},
                                          {"indentBlankLines", &TestOptions::indentBlankLines},
                                          {"indentCaseBlocks", &TestOptions::indentCaseBlocks},
                                          {"lineBreakingEnabled", &TestOptions::lineBreaking}};
const Words<std::uint32_t TestOptions::*> numbers = {{"indentWidth", &TestOptions::indentWidth},
                                                     {"columnLimit", &TestOptions::columnLimit}};
const Words<bool> flagWords = {{"true", true}, {"false", false}};
const Words<Style> styles = {
    {"Classic", Style::Classic}, {"IndentNested", Style::IndentNested}, {"IndentAll", Style::IndentAll}};
const Words<Character> characters = {{"Space", Character::Space}, {"Tab", Character::Tab}};
const Words<Kind> kinds = makeWords<Kind>();
const Words<Behavior> behaviors = makeWords<Behavior>();
const Words<Placement> placements = makeWords<Placement>();

/// Throws std::out_of_range for a key or value that there isn't.
void setOption(TestOptions& options, const std::string& key, const std::string& value) {
    if (const auto flag = flags.find(key); flag != flags.end()) {
        options.*flag->second = flagWords.at(value);
    } else if (const auto number = numbers.find(key); number != numbers.end()) {
        options.*number->second = static_cast<std::uint32_t>(std::stoul(value));
    } else if (key == "functionIndentStyle") {
        options.functionStyle = styles.at(value);
    } else if (key == "indentCharacter") {
        options.indentCharacter = characters.at(value);
    } else if (behaviors.contains(value)) {
        (key == "lineBreakBehavior" ? options.lineBreakBehavior : options.behaviors[kinds.at(key)]) =
            behaviors.at(value);
    } else if (key != "formatter") {
        (key == "separatorPlacement" ? options.separatorPlacement : options.placements[kinds.at(key)]) =
            placements.at(value);
    }
}

} // namespace

TestOptions readTreeOptions(const GoldenOptions& options) {
    TestOptions result{.functionStyle = Style::IndentAll,
                       .lineBreakBehavior = Behavior::AllowMultiplePerLine};
    for (const auto& [key, value] : options) {
        try {
            setOption(result, key, value);
        } catch (const std::out_of_range&) {
            throw std::runtime_error("no option of the tree formatter: " + key + ": " + value);
        }
    }
    return result;
}

std::u16string prepareText(const std::u16string& text, const TestOptions& options) {
    if (!options.indentation) {
        return text;
    }
    std::u16string prepared;
    for (const ca::lexer::Token& token : ca::lexer::lex(text)) {
        const bool isLine = token.type == ca::lexer::TokenType::LineComment ||
                            token.type == ca::lexer::TokenType::BlockCommentOpen;
        prepared.append(token.lexeme, isLine ? token.lexeme.find_first_not_of(u" \t") : 0);
    }
    return prepared;
}

std::u16string formatText(const std::u16string& text, const TestOptions& options) {
    return FormatPass(std::make_shared<FormatTree>(text), makeConfig(options)).run();
}

std::u16string formatParsed(const TreeFormatRequest& request, const TestOptions& options) {
    return formatSource(request, makeConfig(options));
}
