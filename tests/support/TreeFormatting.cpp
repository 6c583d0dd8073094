#include "support/TreeFormatting.h"

#include "pass/FormatPass.h"

#include <ca/lexer/lex.h>

#include <functional>
#include <optional>
#include <sstream>
#include <stdexcept>

using namespace ca::formatting;
using Behavior = FormattingConfig::LineBreakBehavior;
using Character = FormattingConfig::IndentCharacter;
using Kind = FormattingConfig::ContainerKind;
using Placement = FormattingConfig::SeparatorPlacement;
using Style = FormattingConfig::FunctionIndentStyle;

namespace {

/// The enumerator that is written as `text`.
template <class Enumeration>
std::optional<Enumeration> findEnumerator(const std::string& text) {
    for (int number = 0; number < static_cast<int>(Kind::None); ++number) {
        std::ostringstream name;
        name << static_cast<Enumeration>(number);
        if (name.str() == text) {
            return static_cast<Enumeration>(number);
        }
    }
    return std::nullopt;
}

template <class Value>
std::optional<Value> find(const std::map<std::string, Value>& values, const std::string& text) {
    const auto value = values.find(text);
    return value == values.end() ? std::nullopt : std::optional(value->second);
}

/// Each sets one option and throws std::bad_optional_access for a value that isn't one of its own.
using Setter = std::function<void(TestOptions&, const std::string&)>;

Setter makeSetter(bool TestOptions::*option) {
    return [option](TestOptions& options, const std::string& text) {
        options.*option = find<bool>({{"true", true}, {"false", false}}, text).value();
    };
}

Setter makeSetter(std::uint32_t TestOptions::*option) {
    return [option](TestOptions& options, const std::string& text) {
        options.*option = static_cast<std::uint32_t>(std::stoul(text));
    };
}

const std::map<std::string, Setter>& getSetters() {
    static const std::map<std::string, Setter> setters = {
        {"formatter", [](TestOptions&, const std::string&) {}},
        {"trimUnnecessaryWhitespace", makeSetter(&TestOptions::trim)},
        {"indentationEnabled", makeSetter(&TestOptions::indentation)},
        {"indentBlankLines", makeSetter(&TestOptions::indentBlankLines)},
        {"indentCaseBlocks", makeSetter(&TestOptions::indentCaseBlocks)},
        {"lineBreakingEnabled", makeSetter(&TestOptions::lineBreaking)},
        {"indentWidth", makeSetter(&TestOptions::indentWidth)},
        {"columnLimit", makeSetter(&TestOptions::columnLimit)},
        {"functionIndentStyle",
         [](TestOptions& options, const std::string& text) {
             options.functionStyle = find<Style>({{"Classic", Style::Classic},
                                                  {"IndentNested", Style::IndentNested},
                                                  {"IndentAll", Style::IndentAll}},
                                                 text)
                                         .value();
         }},
        {"indentCharacter",
         [](TestOptions& options, const std::string& text) {
             options.indentCharacter =
                 find<Character>({{"Space", Character::Space}, {"Tab", Character::Tab}}, text).value();
         }},
        {"lineBreakBehavior",
         [](TestOptions& options, const std::string& text) {
             options.lineBreakBehavior = findEnumerator<Behavior>(text).value();
         }},
        {"separatorPlacement",
         [](TestOptions& options, const std::string& text) {
             options.separatorPlacement = findEnumerator<Placement>(text).value();
         }},
    };
    return setters;
}

void setOption(TestOptions& options, const std::string& key, const std::string& value) {
    const auto setter = getSetters().find(key);
    if (setter != getSetters().end()) {
        setter->second(options, value);
    } else if (const auto behavior = findEnumerator<Behavior>(value)) {
        options.behaviors[findEnumerator<Kind>(key).value()] = *behavior;
    } else {
        options.placements[findEnumerator<Kind>(key).value()] = findEnumerator<Placement>(value).value();
    }
}

} // namespace

TestOptions readTreeOptions(const GoldenOptions& options) {
    TestOptions result{.functionStyle = Style::IndentAll,
                       .lineBreakBehavior = Behavior::AllowMultiplePerLine};
    for (const auto& [key, value] : options) {
        try {
            setOption(result, key, value);
        } catch (const std::bad_optional_access&) {
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
