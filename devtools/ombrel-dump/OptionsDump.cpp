#include "OptionsDump.h"

#include "text/TextEncoding.h"
#include <ca/config/Config.h>
#include <ca/config/ConfigManager.h>
#include <ca/formatting/TreeOptions.h>
#include <config/FormattingSection.h>
#include <fl/i18n/MessageCatalog.h>

#include <algorithm>
#include <memory>
#include <ostream>
#include <string_view>
#include <tuple>
#include <vector>

#include <nlohmann/json.hpp>

namespace ombrel {

namespace {

using ca::config::Config;
using ca::config::ConfigIssue;
using ca::config::JsonConfigSource;
using ca::formatting::FormattingConfig;
using Json = nlohmann::ordered_json;
using Path = std::optional<fl::filesystem::path>;

/// The word of an enumerator.
template <class Enumeration>
std::string_view getWord(std::string_view key, Enumeration value) {
    return ca::formatting::getTreeOption(key).words[static_cast<std::size_t>(value)];
}

template <class Getter>
Json collectForEachKind(const FormattingConfig& config, std::string_view key, Getter getter) {
    Json object;
    for (std::int32_t i = 0; i < static_cast<std::int32_t>(FormattingConfig::ContainerKind::None); ++i) {
        const auto kind = static_cast<FormattingConfig::ContainerKind>(i);
        object[ca::formatting::constructWords[i]] = getWord(key, (config.*getter)(kind));
    }
    return object;
}

Json makeOptions(const FormattingConfig& config) {
    return {
        {"enabled", config.getEnabled()},
        {"trimUnnecessaryWhitespace", config.getTrimUnnecessaryWhitespace()},
        {"indentationEnabled", config.getIndentationEnabled()},
        {"functionIndentStyle", getWord("functionIndentStyle", config.getFunctionIndentStyle())},
        {"indentCaseBlocks", config.getIndentCaseBlocks()},
        {"indentBlankLines", config.getIndentBlankLines()},
        {"indentCharacter", getWord("indentCharacter", config.getIndentCharacter())},
        {"indentWidth", config.getIndentWidth()},
        {"lineBreakingEnabled", config.getLineBreakingEnabled()},
        {"columnLimit", config.getColumnLimit()},
        {"lineBreakBehavior",
         collectForEachKind(config, "lineBreakBehavior", &FormattingConfig::getLineBreakBehavior)},
        {"separatorPlacement",
         collectForEachKind(config, "separatorPlacement", &FormattingConfig::getSeparatorPlacement)},
    };
}

Json makeIssue(const ConfigIssue& issue, const Path& ownPath) {
    Json object = {{"message", encodeLossy(fl::i18n::MessageCatalog::get_message(
                                   *issue.message, fl::i18n::QrLocale::global()))}};
    if (issue.start) {
        object["line"] = issue.start->line;
        object["column"] = issue.start->column;
    }
    if (issue.path && issue.path != ownPath) {
        object["file"] = encodeLossy(issue.path->string());
    }
    return object;
}

/// The issues of the source, which has those of all sources that it extends, and of the sections of all
/// layers.
std::vector<ConfigIssue> collectIssues(const std::shared_ptr<Config>& config) {
    auto all = config->getSourceIssues();
    for (auto layer = config; layer != nullptr;) {
        all.merge(layer->get<FormattingConfig>()->getIssues());
        const auto source = std::dynamic_pointer_cast<JsonConfigSource>(layer->getSource());
        layer = source == nullptr ? nullptr : source->getBaseConfig();
    }
    return {all.begin(), all.end()};
}

Json makeIssues(const std::shared_ptr<Config>& config, const Path& ownPath) {
    std::vector<Json> issues;
    for (const ConfigIssue& issue : collectIssues(config)) {
        issues.push_back(makeIssue(issue, ownPath));
    }
    const auto getKey = [](const Json& issue) {
        return std::tuple(issue.value("file", ""), issue.value("line", 0U), issue.value("column", 0U),
                          issue.value("message", ""));
    };
    std::sort(issues.begin(), issues.end(),
              [&](const Json& left, const Json& right) { return getKey(left) < getKey(right); });
    return issues;
}

} // namespace

void dumpOptions(std::ostream& stream, const StageInput& input) {
    const Path path = input.path == "-" ? Path() : Path(fl::filesystem::path(decodeLossy(input.path)));
    const auto manager = std::make_shared<ca::config::ConfigManager>();
    const auto config =
        std::make_shared<Config>(std::make_shared<JsonConfigSource>(path, input.text, manager));
    const Json result = {{"options", makeOptions(*config->get<FormattingConfig>())},
                         {"issues", makeIssues(config, path)}};
    stream << result.dump(2) << '\n';
}

} // namespace ombrel
