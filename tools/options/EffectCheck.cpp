#include "options/EffectCheck.h"

#include <algorithm>
#include <string_view>

#include <fmt/format.h>

namespace ombrel {

namespace {

/// What the tree engine has in place of an option of the line engine.
struct Counterpart {
    std::string_view line;
    std::string_view tree;
};

constexpr Counterpart counterparts[] = {
    {"line.indentSize", "formatting.indentWidth"},
    {"line.tabSize", "formatting.indentWidth, which counts tabs if formatting.indentCharacter is Tab"},
    {"line.useTabs", "formatting.indentCharacter"},
    {"line.functionStyle", "formatting.functionIndentStyle"},
    {"line.blankLines", "formatting.indentBlankLines"},
};

/// Options of the tree engine that need another one.
struct Dependence {
    std::string_view key;
    std::string_view needed;
};

constexpr Dependence dependences[] = {
    {"functionIndentStyle", "formatting.indentationEnabled"},
    {"indentCaseBlocks", "formatting.indentationEnabled"},
    {"indentBlankLines", "formatting.indentationEnabled"},
    {"indentCharacter", "formatting.indentationEnabled"},
    {"indentWidth", "formatting.indentationEnabled"},
    {"columnLimit", "formatting.lineBreakingEnabled"},
    {"lineBreakBehavior", "formatting.lineBreakingEnabled"},
    {"separatorPlacement", "formatting.lineBreakingEnabled"},
};

/// All settings for one file.
class Settings {
public:
    explicit Settings(const SettingsInForce& settings) : settings(settings) {}

    const SettingInForce& get(std::string_view name) const {
        return settings[static_cast<std::size_t>(findOption(name) - getOptions().data())];
    }

    bool isOn(std::string_view name) const { return get(name).value.getBoolean(); }

    /// Why a setting does nothing, with what to do about it; empty if it does something.
    std::string explain(const SettingInForce& setting) const {
        const bool isTree = get("engine").value.getString() == u"tree";
        if (setting.option->section == "line") {
            return isTree ? explainLineOption(setting) : "";
        }
        if (setting.option->section == ca::formatting::treeOptionSection) {
            return isTree ? explainTreeOption(setting) : explainUnusedTreeOption(setting);
        }
        return {};
    }

private:
    std::string explainLineOption(const SettingInForce& setting) const {
        const bool isShared = std::any_of(settings.begin(), settings.end(), [](const SettingInForce& other) {
            return other.command != nullptr && other.command->isForBothEngines;
        });
        const std::string name = setting.option->getName();
        const bool isUsed = setting.command != nullptr && setting.command->isForBothEngines;
        if (isUsed || (isShared && name == "line.tabSize")) {
            return {};
        }
        const auto* found = std::find_if(std::begin(counterparts), std::end(counterparts),
                                         [&](const Counterpart& row) { return row.line == name; });
        return fmt::format("has no effect with the tree engine; set {}", found->tree);
    }

    /// Hosts of the library read these options of a file too, so that it may have them beside "engine":
    /// "line".
    std::string explainUnusedTreeOption(const SettingInForce& setting) const {
        if (setting.layer != nullptr) {
            return get("engine").isDefault
                       ? "has no effect with the line engine; set \"engine\": \"tree\", or "
                         "\"line\" if that is meant"
                       : "";
        }
        return "has no effect with the line engine; add --engine tree";
    }

    std::string explainTreeOption(const SettingInForce& setting) const {
        const std::string_view key = setting.option->key;
        if (key == "indentationEnabled" && !setting.value.getBoolean() &&
            !isOn("formatting.trimUnnecessaryWhitespace") && !isOn("formatting.lineBreakingEnabled")) {
            return "leaves nothing for the tree engine to do; set it to true, or turn on "
                   "formatting.trimUnnecessaryWhitespace or formatting.lineBreakingEnabled";
        }
        const auto* found = std::find_if(std::begin(dependences), std::end(dependences),
                                         [&](const Dependence& row) { return row.key == key; });
        return found == std::end(dependences) || isOn(found->needed)
                   ? ""
                   : fmt::format("has no effect; set {}", found->needed);
    }

    const SettingsInForce& settings;
};

/// Flags for both engines set options of the other engine besides their own.
bool isOwn(const SettingInForce& setting) {
    return setting.command == nullptr || setting.command->setting.option == setting.option;
}

bool isFactory(const SettingInForce& setting) {
    return setting.option->key == "enabled" ||
           getJson(setting.value) == getJson(parseValue(*setting.option, setting.option->factory).value());
}

/// What a message calls the setting.
std::string getShownName(const SettingInForce& setting) {
    const std::string name = setting.option->getName();
    if (setting.command == nullptr) {
        return name;
    }
    return setting.command->flag == "--set" ? "--set " + name : setting.command->flag;
}

} // namespace

void EffectCheck::add(const SettingsInForce& settings, const OptionsLayer* nearest) {
    const Settings all(settings);
    for (const SettingInForce& setting : settings) {
        const bool isLookedAt =
            setting.command != nullptr || (setting.layer != nullptr && setting.layer == nearest);
        if (!isLookedAt || !isOwn(setting) || isFactory(setting)) {
            continue;
        }
        const std::string reason = all.explain(setting);
        const void* const setter = setting.layer != nullptr ? static_cast<const void*>(setting.layer)
                                                            : static_cast<const void*>(setting.command);
        const auto [known, isNew] = numbers.try_emplace({setter, setting.option}, findings.size());
        if (isNew) {
            const std::optional<ca::utils::JsonSpan> span =
                setting.layer != nullptr ? setting.value.getSpan() : std::nullopt;
            Problem problem =
                makeProblem(Code::OptionWithoutEffect, span, getShownName(setting) + ' ' + reason);
            findings.push_back({{setting.layer, std::move(problem)}, reason.empty()});
        } else {
            Finding& finding = findings[known->second];
            finding.hasEffect = finding.hasEffect || reason.empty();
        }
    }
}

std::vector<EffectCheck::Remark> EffectCheck::getRemarks() const {
    std::vector<Remark> remarks;
    for (const Finding& finding : findings) {
        if (!finding.hasEffect) {
            remarks.push_back(finding.remark);
        }
    }
    return remarks;
}

} // namespace ombrel
