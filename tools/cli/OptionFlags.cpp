#include "cli/OptionFlags.h"

#include "diagnostics/Suggestion.h"
#include "options/OptionTable.h"
#include "options/OptionsResolver.h"

#include <algorithm>
#include <utility>

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <fmt/ranges.h>

namespace ombrel {

namespace {

/// --set changes exactly one option, and these flags what they say, whatever the engine.
bool isForBothEngines(std::string_view flag) {
    return flag == "--indent-size" || flag == "--use-tabs";
}

/// `given` is what the user wrote after the flag.
void addSetting(OptionsRequest& request, const Option& option, const std::string& flag,
                const std::string& given, const std::string& text) {
    auto value = parseValue(option, text);
    if (!value) {
        throw CLI::ValidationError(fmt::format("{} {}: {}", flag, given, value.error().front().text));
    }
    CommandLineSetting& added = request.settings.emplace_back();
    added.flag = flag;
    added.isForBothEngines = isForBothEngines(flag);
    added.setting.option = &option;
    added.setting.value = *std::move(value);
}

std::string getTypeName(const Option& option) {
    return option.type == TreeOptionType::Number ? "N" : fmt::format("{}", fmt::join(option.words, "|"));
}

std::string getHelp(const Option& option) {
    const std::string range =
        option.type == TreeOptionType::Number ? fmt::format(", {} to {}", option.low, option.high) : "";
    const char* engine = option.section.empty() || isForBothEngines(option.flag) ? "" : " (line engine)";
    const std::string factory =
        option.type == TreeOptionType::Boolean ? "" : fmt::format(" [{}]", option.factory);
    return fmt::format("{}{}{}{}", option.description, range, engine, factory);
}

/// Callbacks run in the order of the command line, so that later settings win.
void addFlag(CLI::App& app, OptionsRequest& request, const Option& option) {
    const std::string flag(option.flag);
    if (option.type == TreeOptionType::Boolean) {
        const auto store = [&request, &option, flag] { addSetting(request, option, flag, "", "true"); };
        app.add_flag_callback(flag, store, getHelp(option))->trigger_on_parse();
        return;
    }
    const auto store = [&request, &option, flag](const std::string& text) {
        addSetting(request, option, flag, text, text);
    };
    app.add_option_function<std::string>(flag, store, getHelp(option))
        ->type_name(getTypeName(option))
        ->trigger_on_parse();
}

std::vector<std::string> getNames() {
    std::vector<std::string> names;
    for (const Option& option : getOptions()) {
        names.push_back(option.getName());
    }
    return names;
}

void addAssignment(OptionsRequest& request, const std::string& text) {
    const std::size_t equals = text.find('=');
    const std::string name = text.substr(0, equals);
    if (equals == std::string::npos) {
        throw CLI::ValidationError("--set " + text + ": expected KEY=VALUE, such as line.indentSize=2");
    }
    const Option* option = findOption(name);
    if (option == nullptr) {
        throw CLI::ValidationError(
            fmt::format("--set {}: unknown option {}{}", text, name, suggest(name, getNames())));
    }
    addSetting(request, *option, "--set", text, text.substr(equals + 1));
}

} // namespace

void addOptionFlags(CLI::App& app, OptionsRequest& request) {
    for (const Option& option : getOptions()) {
        if (!option.flag.empty()) {
            addFlag(app, request, option);
        }
    }
    const auto assign = [&request](const std::string& text) { addAssignment(request, text); };
    app.add_option_function<std::string>("--set", assign,
                                         "One option as the options file calls it, such as line.indentSize=2 "
                                         "or formatting.columnLimit=100; repeatable")
        ->type_name("KEY=VALUE")
        ->trigger_on_parse();
    app.add_option("--config", request.file,
                   "Options file, instead of the nearest .ombrel-format.json of each file")
        ->type_name("FILE");
    app.add_flag("--no-config", request.ignoresFiles, "Read neither options files nor .editorconfig");
}

} // namespace ombrel
