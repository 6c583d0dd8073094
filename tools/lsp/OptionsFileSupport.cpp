#include "lsp/OptionsFileSupport.h"

#include "lsp/OptionsText.h"
#include "options/OptionTable.h"
#include "options/OptionsFile.h"
#include "options/VersionRange.h"
#include "text/TextEncoding.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>

namespace ombrel::lsp {

namespace {

struct Choice {
    std::string text; ///< as it is written in the file
    std::string description;
    int kind; ///< CompletionItemKind
};

constexpr int propertyKind = 10;
constexpr int valueKind = 12;
constexpr int enumMemberKind = 20;

std::string quote(std::string_view word) {
    return fmt::format("\"{}\"", word);
}

Choice makeKey(std::string_view name, std::string_view description) {
    return {quote(name), std::string(description), propertyKind};
}

std::string describeDefault(const Option& option) {
    const bool isWord = option.type == TreeOptionType::Word || option.type == TreeOptionType::PerConstruct;
    return isWord ? quote(option.factory) : std::string(option.factory);
}

/// The keys around a place, seen from the object that has options: the file or one of its overrides.
struct OptionsPath {
    std::vector<std::string> keys;
    bool isOverride;

    explicit OptionsPath(const OptionsPlace& place)
        : keys(place.keys), isOverride(!keys.empty() && keys.front() == "overrides") {
        if (isOverride) {
            keys.erase(keys.begin());
        }
    }

    std::string getSection() const { return keys.empty() ? std::string() : keys.front(); }
};

std::vector<Choice> listTopLevelKeys(bool isOverride) {
    std::vector<Choice> choices;
    if (isOverride) {
        choices.push_back(makeKey(getFilesKey().name, getFilesKey().description));
    } else {
        for (const FileKey& key : getFileKeys()) {
            choices.push_back(makeKey(key.name, key.description));
        }
    }
    for (const Section& section : getSections()) {
        choices.push_back(makeKey(section.name, section.description));
    }
    return choices;
}

/// The group of constructs that keys below an option lead to; null if they lead nowhere.
const Construct* findGroup(const std::vector<std::string>& keys) {
    const Construct* group = &ca::formatting::treeConstructs;
    for (std::size_t i = 2; i < keys.size(); ++i) {
        const auto child = std::find_if(group->children.begin(), group->children.end(),
                                        [&](const Construct& c) { return c.name == keys[i]; });
        if (child == group->children.end()) {
            return nullptr;
        }
        group = &*child;
    }
    return group;
}

/// The option that a value inside of these keys belongs to; null if there is none.
const Option* findOptionOf(const OptionsPath& path, const std::string& key) {
    return path.keys.size() < 2 ? findOption(path.getSection(), key) : findOption(path.keys[0], path.keys[1]);
}

std::vector<Choice> listKeys(const OptionsPath& path) {
    std::vector<Choice> choices;
    if (path.keys.size() >= 2) {
        const Option* option = findOption(path.keys[0], path.keys[1]);
        const Construct* group = findGroup(path.keys);
        if (option != nullptr && option->type == TreeOptionType::PerConstruct && group != nullptr) {
            for (const Construct& child : group->children) {
                choices.push_back(makeKey(child.name, option->description));
            }
        }
        return choices;
    }
    if (path.keys.empty()) {
        choices = listTopLevelKeys(path.isOverride);
    }
    for (const Option& option : getOptions()) {
        if (option.section == path.getSection()) {
            choices.push_back(makeKey(option.key, option.description));
        }
    }
    return choices;
}

std::vector<Choice> listValues(const OptionsPath& path, const std::string& key) {
    const Option* option = findOptionOf(path, key);
    const bool isBoolean = (option != nullptr && option->type == TreeOptionType::Boolean) ||
                           (path.keys.empty() && !path.isOverride && key == "root");
    if (isBoolean) {
        return {{"true", "", valueKind}, {"false", "", valueKind}};
    }
    std::vector<Choice> choices;
    if (path.keys.empty() && !path.isOverride && key == "requiredVersion") {
        const std::string version = ombrel::describe(getProgramVersion());
        return {{quote("^" + version), "this version and those that are compatible with it", valueKind},
                {quote(version), "this version only", valueKind}};
    }
    if (option == nullptr) {
        return choices;
    }
    for (const std::string_view word : option->words) {
        choices.push_back({quote(word), std::string(option->description), enumMemberKind});
    }
    if (option->type == TreeOptionType::Number) {
        choices.push_back({std::string(option->factory), "the default", valueKind});
    }
    return choices;
}

std::string describe(const Option& option) {
    std::string text = fmt::format("**{}**\n\n{}.\n\nDefault: `{}`", option.getName(), option.description,
                                   describeDefault(option));
    if (!option.words.empty()) {
        text += "; possible: " + joinWords(option.words);
    } else if (option.type == TreeOptionType::Number) {
        text += fmt::format("; from {} to {}", option.low, option.high);
    }
    return text;
}

/// Empty if nothing is known of the key.
std::string describeKey(const OptionsPath& path, const std::string& key) {
    if (const Option* option = findOptionOf(path, key)) {
        return describe(*option);
    }
    if (path.keys.empty()) {
        for (const Choice& choice : listTopLevelKeys(path.isOverride)) {
            if (choice.text == quote(key)) {
                return fmt::format("**{}**\n\n{}.", key, choice.description);
            }
        }
    }
    return {};
}

std::optional<OptionsPlace> findPlace(const Question& question) {
    const Document& document = question.getDocument();
    if (document.kind != DocumentKind::OptionsFile) {
        return std::nullopt;
    }
    return findOptionsPlace(document.text, document.findOffset(readPosition(question.params.at("position"))));
}

} // namespace

Json completeOptions(const Question& question) {
    const auto place = findPlace(question);
    if (!place) {
        return {};
    }
    const Document& document = question.getDocument();
    const std::size_t offset = document.findOffset(readPosition(question.params.at("position")));
    const TextSpan replaced = place->text.value_or(TextSpan{offset, offset});
    const Json range = document.makeFinder().writeRange(replaced.begin, replaced.end);
    const OptionsPath path(*place);
    Json items = Json::array();
    for (const Choice& choice : place->isKey ? listKeys(path) : listValues(path, place->key)) {
        const std::string text = choice.text + (place->isKey && !place->hasColon ? ": " : "");
        items.push_back({{"label", choice.text},
                         {"kind", choice.kind},
                         {"documentation", choice.description},
                         {"textEdit", {{"range", range}, {"newText", text}}}});
    }
    return items;
}

Json describeOption(const Question& question) {
    const auto place = findPlace(question);
    if (!place || !place->text) {
        return {};
    }
    const std::string text = describeKey(OptionsPath(*place), place->key);
    if (text.empty()) {
        return {};
    }
    const Document& document = question.getDocument();
    return {{"contents", {{"kind", "markdown"}, {"value", text}}},
            {"range", document.makeFinder().writeRange(place->text->begin, place->text->end)}};
}

} // namespace ombrel::lsp
