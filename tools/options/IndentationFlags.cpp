#include "options/IndentationFlags.h"

#include <algorithm>

namespace ombrel {

namespace {

Setting makeSetting(std::string_view name, const std::string& text) {
    const Option& option = *findOption(name);
    return {&option, parseValue(option, text).value()};
}

bool isAboutWidth(const std::string& name) {
    return name == "line.indentSize" || name == "line.tabSize" || name == "line.useTabs";
}

} // namespace

std::uint32_t countTabs(double columns, double tabSize) {
    return columns == 0 ? 0 : std::max(1U, static_cast<std::uint32_t>(columns / tabSize));
}

void IndentationFlags::note(const Setting& setting) {
    const std::string name = setting.option->getName();
    if (name == "line.indentSize") {
        indentSize = setting.value.getNumber();
    } else if (name == "line.tabSize") {
        tabSize = setting.value.getNumber();
    } else if (name == "formatting.indentCharacter") {
        usesTabs = setting.value.getString() == u"Tab";
    } else if (name == "formatting.indentWidth") {
        isAsked = false;
    }
}

std::vector<Setting> IndentationFlags::translate(const CommandLineSetting& command) {
    const std::string name = command.setting.option->getName();
    isAsked = isAsked || command.isForBothEngines;
    if (!isAsked || !isAboutWidth(name)) {
        return {};
    }
    std::vector<Setting> settings;
    if (command.isForBothEngines && name == "line.useTabs") {
        settings.push_back(makeSetting("formatting.indentCharacter", "Tab"));
        usesTabs = true;
    }
    const std::uint32_t width =
        usesTabs ? countTabs(indentSize, tabSize) : static_cast<std::uint32_t>(indentSize);
    settings.push_back(makeSetting("formatting.indentWidth", std::to_string(width)));
    return settings;
}

} // namespace ombrel
