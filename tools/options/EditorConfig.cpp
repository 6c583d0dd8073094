#include "options/EditorConfig.h"

#include "diagnostics/Suggestion.h"
#include "options/IndentationFlags.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <map>
#include <memory>
#include <new>

#include <editorconfig/editorconfig.h>
#include <fmt/format.h>
#include <fmt/ranges.h>

namespace ombrel {

namespace {

using Properties = std::map<std::string, std::string>;

struct HandleDeleter {
    void operator()(void* handle) const { editorconfig_handle_destroy(handle); }
};

using Handle = std::unique_ptr<void, HandleDeleter>;

Properties getProperties(const Handle& handle) {
    Properties properties;
    const int count = editorconfig_handle_get_name_value_count(handle.get());
    for (int i = 0; i < count; ++i) {
        const char* name = nullptr;
        const char* value = nullptr;
        editorconfig_handle_get_name_value(handle.get(), i, &name, &value);
        properties[name] = value;
    }
    return properties;
}

std::string getProperty(const Properties& properties, const char* name) {
    const auto found = properties.find(name);
    return found == properties.end() ? std::string() : found->second;
}

/// Tabs that make a level, as text.
std::string describeTabs(const Properties& properties) {
    const Option& size = *findOption("line.tabSize");
    const auto columns = parseValue(size, getProperty(properties, "indent_size"));
    const auto tab = parseValue(size, getProperty(properties, "tab_width"));
    if (!columns || !tab) {
        return "1";
    }
    return std::to_string(countTabs(columns->getNumber(), tab->getNumber()));
}

class SettingList {
public:
    void addSetting(std::string_view name, const std::string& text) {
        const Option& option = *findOption(name);
        if (auto value = parseValue(option, text)) {
            settings.push_back({&option, *std::move(value)});
        }
    }

    std::vector<Setting> settings;
};

std::vector<Setting> makeSettings(const Properties& properties) {
    const std::string style = getProperty(properties, "indent_style");
    std::string size = getProperty(properties, "indent_size");
    size = findValueFault("indent_size", size).empty() ? size : "";
    SettingList list;
    list.addSetting("line.indentSize", size);
    list.addSetting("line.tabSize", getProperty(properties, "tab_width"));
    if (style == "tab" || style == "space") {
        list.addSetting("line.useTabs", style == "tab" ? "true" : "false");
        list.addSetting("formatting.indentCharacter", style == "tab" ? "Tab" : "Space");
    }
    list.addSetting("formatting.indentWidth", style == "tab" ? describeTabs(properties) : size);
    list.addSetting("formatting.columnLimit", getProperty(properties, "max_line_length"));
    return std::move(list.settings);
}

/// A property as EditorConfig defines it. `unset` is a value of all of them.
struct Property {
    std::string_view name;
    std::vector<std::string> words;
    std::string_view option; ///< whose numbers it can have; empty if it has only words
};

const Property* findProperty(std::string_view name) {
    static const Property properties[] = {
        {"indent_style", {"tab", "space"}, ""},
        {"indent_size", {"tab"}, "line.indentSize"},
        {"tab_width", {}, "line.tabSize"},
        {"max_line_length", {"off"}, "formatting.columnLimit"},
    };
    const auto* found = std::find_if(std::begin(properties), std::end(properties),
                                     [&](const Property& property) { return property.name == name; });
    return found == std::end(properties) ? nullptr : found;
}

bool isNumberOf(const Property& property, const std::string& value) {
    return !property.option.empty() && parseValue(*findOption(property.option), value);
}

/// Of the lines that apply to one file.
class LastLines {
public:
    explicit LastLines(const std::vector<EditorConfigProperty>& lines) : lines(lines) {}

    const EditorConfigProperty* find(std::string_view name) const {
        const auto found =
            std::find_if(lines.rbegin(), lines.rend(),
                         [&](const EditorConfigProperty& property) { return property.name == name; });
        return found == lines.rend() ? nullptr : &*found;
    }

    bool isNumber(std::string_view name) const {
        const EditorConfigProperty* line = find(name);
        return line != nullptr && isNumberOf(*findProperty(name), line->value);
    }

private:
    const std::vector<EditorConfigProperty>& lines;
};

bool isSame(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](unsigned char x, unsigned char y) { return std::tolower(x) == std::tolower(y); });
}

/// A tab is as wide as a level unless it is told otherwise.
std::vector<std::string_view> getSources(const Option& option, const LastLines& lines) {
    const std::string name = option.getName();
    if (name == "line.useTabs" || name == "formatting.indentCharacter") {
        return {"indent_style"};
    }
    if (name == "formatting.columnLimit") {
        return {"max_line_length"};
    }
    if (name == "line.tabSize") {
        return {lines.find("tab_width") != nullptr ? "tab_width" : "indent_size"};
    }
    const std::string_view size = lines.isNumber("indent_size") ? "indent_size" : "tab_width";
    const EditorConfigProperty* style = lines.find("indent_style");
    if (name == "line.indentSize" || style == nullptr || !isSame(style->value, "tab")) {
        return {size};
    }
    if (!lines.isNumber(size)) {
        return {"indent_style"};
    }
    return size == "indent_size" && lines.isNumber("tab_width")
               ? std::vector<std::string_view>{size, "tab_width"}
               : std::vector<std::string_view>{size};
}

} // namespace

std::variant<std::vector<Setting>, EditorConfigFault> readEditorConfig(const std::string& path) {
    const Handle handle(editorconfig_handle_init());
    const int result =
        handle == nullptr ? EDITORCONFIG_PARSE_MEMORY_ERROR : editorconfig_parse(path.c_str(), handle.get());
    if (result == EDITORCONFIG_PARSE_MEMORY_ERROR) {
        throw std::bad_alloc();
    }
    if (result > 0) {
        return EditorConfigFault{editorconfig_handle_get_err_file(handle.get()),
                                 static_cast<std::uint32_t>(result)};
    }
    return makeSettings(getProperties(handle));
}

std::string findValueFault(const std::string& property, const std::string& value) {
    const Property* known = findProperty(property);
    if (known == nullptr || isSame(value, "unset") || isNumberOf(*known, value) ||
        std::any_of(known->words.begin(), known->words.end(),
                    [&](const std::string& word) { return isSame(word, value); })) {
        return {};
    }
    std::vector<std::string> expected = known->words;
    if (const Option* option = findOption(known->option)) {
        expected.insert(expected.begin(), fmt::format("a number from {} to {}", option->low, option->high));
    }
    return fmt::format("expected {} or unset{}", fmt::join(expected, ", "), suggest(value, known->words));
}

std::vector<const EditorConfigProperty*> findSources(const Option& option,
                                                     const std::vector<EditorConfigProperty>& lines) {
    const LastLines last(lines);
    std::vector<const EditorConfigProperty*> sources;
    for (const std::string_view name : getSources(option, last)) {
        if (const EditorConfigProperty* line = last.find(name)) {
            sources.push_back(line);
        }
    }
    return sources;
}

} // namespace ombrel
