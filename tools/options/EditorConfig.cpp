#include "options/EditorConfig.h"

#include "options/IndentationFlags.h"
#include "text/LineSplitter.h"

#include <algorithm>
#include <cctype>
#include <map>
#include <memory>
#include <new>

#include <editorconfig/editorconfig.h>
#include <fmt/format.h>

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
    const std::string size = getProperty(properties, "indent_size");
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

/// What an option comes from. A tab is as wide as a level unless it is told otherwise.
std::vector<std::string_view> getSources(const Option& option) {
    const std::string name = option.getName();
    if (name == "line.indentSize") {
        return {"indent_size", "tab_width"};
    }
    if (name == "line.tabSize") {
        return {"tab_width", "indent_size"};
    }
    if (name == "line.useTabs" || name == "formatting.indentCharacter") {
        return {"indent_style"};
    }
    if (name == "formatting.columnLimit") {
        return {"max_line_length"};
    }
    return {"indent_size", "tab_width", "indent_style"};
}

/// The property that a line sets, in lower case; empty if it sets none.
std::string getAssigned(std::string_view line) {
    const std::size_t first = std::min(line.find_first_not_of(" \t"), line.size());
    const std::size_t end = std::min(line.find_first_of("=: \t;#[", first), line.size());
    std::string name(line.substr(first, end - first));
    std::transform(name.begin(), name.end(), name.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return name;
}

/// `*`, `*.omb`, `*.{omb,txt}`.
bool isAboutExtensions(std::string_view name) {
    if (name == "*") {
        return true;
    }
    if (!name.starts_with("*.")) {
        return false;
    }
    name.remove_prefix(2);
    const bool isList = name.size() > 1 && name.front() == '{' && name.back() == '}';
    const std::string_view words = isList ? name.substr(1, name.size() - 2) : name;
    return std::all_of(words.begin(), words.end(), [&](unsigned char c) {
        return std::isalnum(c) != 0 || c == '_' || (isList && c == ',');
    });
}

/// The steps that matching a path of ordinary length can take: the library tries all ways to divide a path
/// between stars, and all ways to choose in braces.
double estimateSteps(std::string_view name) {
    constexpr double pathLength = 100;
    double steps = 1;
    double stars = 0;
    for (std::size_t i = 0; i < name.size(); ++i) {
        if (name[i] == '*' && (i == 0 || name[i - 1] != '*')) {
            steps *= pathLength / ++stars;
        }
        steps *= name[i] == '{' ? 2 : 1;
    }
    return steps;
}

} // namespace

SectionNames classifySectionNames(std::string_view text) {
    constexpr double mostSteps = 1e7; // about a third of a second
    SectionNames names = SectionNames::Extensions;
    double steps = 0;
    while (!text.empty()) {
        const std::string_view line = takeLine(text);
        const std::size_t first = line.find_first_not_of(" \t");
        const std::size_t last = line.rfind(']');
        if (first == std::string_view::npos || line[first] != '[' || last == std::string_view::npos) {
            continue;
        }
        const std::string_view name = line.substr(first + 1, last - first - 1);
        steps += estimateSteps(name);
        names = isAboutExtensions(name) ? names : SectionNames::Paths;
    }
    return steps > mostSteps ? SectionNames::Excessive : names;
}

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

std::vector<std::uint32_t> findEditorConfigLines(const Option& option, std::string_view text) {
    const std::vector<std::string_view> sources = getSources(option);
    std::vector<std::uint32_t> numbers;
    for (std::uint32_t number = 1; !text.empty(); ++number) {
        if (std::count(sources.begin(), sources.end(), getAssigned(takeLine(text))) > 0) {
            numbers.push_back(number);
        }
    }
    return numbers;
}

} // namespace ombrel
