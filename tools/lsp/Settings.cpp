#include "lsp/Settings.h"

#include "diagnostics/Suggestion.h"
#include "options/OptionsFile.h"
#include "text/Printable.h"

#include <iterator>
#include <string>
#include <utility>

#include <fmt/format.h>

namespace ombrel::lsp {

namespace {

class SettingsReader {
public:
    Settings read(const Json& json) {
        if (json.is_null()) {
            return std::move(settings);
        }
        if (!json.is_object()) {
            add(Code::InvalidValue, "the settings of ombrel have to be an object");
            return std::move(settings);
        }
        for (const auto& [key, value] : json.items()) {
            readSetting(key, value);
        }
        return std::move(settings);
    }

private:
    void readSetting(const std::string& key, const Json& value) {
        if (value.is_null()) {
            return;
        }
        if (key == "engine") {
            readOptions(Json{{"engine", value}});
        } else if (key == "options") {
            readOptions(value);
        } else if (key == "formatOnSave") {
            if (value.is_boolean()) {
                settings.formatsOnSave = value;
            } else {
                add(Code::InvalidValue, "ombrel.formatOnSave: expected true or false");
            }
        } else if (isForServer(key)) {
            add(Code::UnknownOption, fmt::format("unknown setting ombrel.{}{}", getPrintableName(key),
                                                 suggest(key, {"engine", "options", "formatOnSave"})));
        }
    }

    /// Extensions keep settings of their own beside ours: how to start the server, what to trace.
    static bool isForServer(const std::string& key) { return key != "server" && key != "trace"; }

    void readOptions(const Json& value) {
        OptionsFile file = readOptionsFile(value.dump(-1, ' ', false, Json::error_handler_t::replace));
        for (const Problem& problem : file.problems) {
            add(problem.code, "ombrel settings: " + problem.text);
        }
        if (!file.extensions.empty() || !file.overrides.empty()) {
            add(Code::InvalidValue, "ombrel.options: \"extends\" and \"overrides\" need an options file");
        }
        settings.options.insert(settings.options.end(), std::move_iterator(file.settings.begin()),
                                std::move_iterator(file.settings.end()));
    }

    void add(Code code, std::string text) { settings.problems.push_back(Problem(code, std::move(text))); }

    Settings settings;
};

class SettingList {
public:
    void add(std::string_view name, const std::string& text) {
        const Option& option = *findOption(name);
        if (auto value = parseValue(option, text)) {
            settings.push_back({&option, *std::move(value)});
        }
    }

    std::vector<Setting> settings;
};

} // namespace

Settings readSettings(const Json& json) {
    return SettingsReader().read(json);
}

std::vector<Setting> readFormattingOptions(const Json& json) {
    SettingList list;
    const auto tabSize = json.find("tabSize");
    const auto insertSpaces = json.find("insertSpaces");
    const bool usesTabs = insertSpaces != json.end() && insertSpaces->is_boolean() && *insertSpaces == false;
    if (tabSize != json.end() && tabSize->is_number_unsigned()) {
        const std::string size = tabSize->dump();
        list.add("line.indentSize", size);
        list.add("line.tabSize", size);
        list.add("formatting.indentWidth", usesTabs ? "1" : size);
    }
    list.add("line.useTabs", usesTabs ? "true" : "false");
    list.add("formatting.indentCharacter", usesTabs ? "Tab" : "Space");
    return std::move(list.settings);
}

} // namespace ombrel::lsp
