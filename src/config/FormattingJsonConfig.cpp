#include "config/FormattingJsonConfig.h"

#include "config/FormattingSection.h"
#include "config/GetHierarchicalOption.h"
#include "config/GetMappedValue.h"

#include <ca/config/getIssueSeverity.h>
#include <ca/formatting/TreeOptions.h>
#include <ca/utils/JsonStages.h>
#include <resource_core/caConfig.h>

#include <string>
#include <string_view>
#include <utility>

namespace ca::formatting {

using ca::utils::IsBool;
using ca::utils::IsUnsignedInteger;

namespace {

template <class T>
using Strings = std::unordered_map<std::u16string, T>;

std::u16string widen(std::string_view ascii) {
    return {ascii.begin(), ascii.end()};
}

/// The words of an option with their values, which are numbered in order.
template <class T>
Strings<T> makeStrings(const TreeOption& option) {
    Strings<T> strings;
    for (std::size_t i = 0; i < option.words.size(); ++i) {
        strings.emplace(widen(option.words[i]), static_cast<T>(i));
    }
    return strings;
}

/// What is recorded for a word that an option doesn't have.
std::shared_ptr<resource_core::BaseMsgID> makeMessage(const TreeOption& option) {
    return std::make_shared<CodeAnalyzer::caConfig::PlaceholderError>(u"invalid " + widen(option.key));
}

/// What a stage makes of a field of the section; empty if the field is absent or refused.
template <class Stage>
auto readField(ca::utils::JsonReader& reader, const TreeOption& option, Stage stage) {
    return (reader.getRoot() | ca::utils::GetOptionalField{widen(option.key)} | std::move(stage)).value;
}

std::optional<ca::config::ConfigPosition> toPosition(const std::optional<ca::utils::JsonPosition>& position) {
    using ca::config::ConfigPosition;
    return position ? std::optional(ConfigPosition(position->first, position->second)) : std::nullopt;
}

} // namespace

FormattingJsonConfig::FormattingJsonConfig(const std::shared_ptr<ca::config::JsonConfigSource>& source)
    : base(source->getBaseConfig()->get<FormattingConfig>()) {
    const std::optional<ca::utils::JsonValue> section = source->getSection(widen(treeOptionSection));
    if (!section) {
        return;
    }
    ca::utils::JsonReader reader(source->getFilePath(), *section);
    readOptions(reader);
    takeIssues(reader);
}

/// In the order of the table.
void FormattingJsonConfig::readOptions(ca::utils::JsonReader& reader) {
    const HierarchyNode hierarchy = makeHierarchy();
    const auto readBoolean = [&](const TreeOption& option) { return readField(reader, option, IsBool{}); };
    const auto readNumber = [&](const TreeOption& option) {
        return readField(reader, option, IsUnsignedInteger{});
    };
    const auto readWord = [&]<class T>(const TreeOption& option, std::optional<T>& value) {
        const Strings<T> strings = makeStrings<T>(option);
        value = readField(reader, option, GetMappedValue<T>{strings, makeMessage(option)});
    };
    const auto readOfKinds = [&]<class T>(const TreeOption& option, std::optional<ConstructTable<T>>& value) {
        value = readField(reader, option,
                          GetHierarchicalOption<T>{hierarchy, makeStrings<T>(option), makeMessage(option)});
    };
    enabled = readBoolean(getTreeOption("enabled"));
    trimUnnecessaryWhitespace = readBoolean(getTreeOption("trimUnnecessaryWhitespace"));
    indentationEnabled = readBoolean(getTreeOption("indentationEnabled"));
    readWord(getTreeOption("functionIndentStyle"), functionIndentStyle);
    indentCaseBlocks = readBoolean(getTreeOption("indentCaseBlocks"));
    indentBlankLines = readBoolean(getTreeOption("indentBlankLines"));
    readWord(getTreeOption("indentCharacter"), indentCharacter);
    indentWidth = readNumber(getTreeOption("indentWidth"));
    lineBreakingEnabled = readBoolean(getTreeOption("lineBreakingEnabled"));
    columnLimit = readNumber(getTreeOption("columnLimit"));
    readOfKinds(getTreeOption("lineBreakBehavior"), lineBreakBehavior);
    readOfKinds(getTreeOption("separatorPlacement"), separatorPlacement);
}

void FormattingJsonConfig::takeIssues(const ca::utils::JsonReader& reader) {
    for (const ca::utils::JsonIssue& issue : reader.getIssues()) {
        issues.emplace(issue.message, ca::config::getIssueSeverity(issue.message), issue.path,
                       toPosition(issue.start), toPosition(issue.end));
    }
}

std::unordered_set<ca::config::ConfigIssue> FormattingJsonConfig::getIssues() const {
    return issues;
}

bool FormattingJsonConfig::getEnabled() const {
    return enabled ? *enabled : base->getEnabled();
}

bool FormattingJsonConfig::getTrimUnnecessaryWhitespace() const {
    return trimUnnecessaryWhitespace ? *trimUnnecessaryWhitespace : base->getTrimUnnecessaryWhitespace();
}

bool FormattingJsonConfig::getIndentationEnabled() const {
    return indentationEnabled ? *indentationEnabled : base->getIndentationEnabled();
}

FormattingConfig::FunctionIndentStyle FormattingJsonConfig::getFunctionIndentStyle() const {
    return functionIndentStyle ? *functionIndentStyle : base->getFunctionIndentStyle();
}

bool FormattingJsonConfig::getIndentCaseBlocks() const {
    return indentCaseBlocks ? *indentCaseBlocks : base->getIndentCaseBlocks();
}

bool FormattingJsonConfig::getIndentBlankLines() const {
    return indentBlankLines ? *indentBlankLines : base->getIndentBlankLines();
}

FormattingConfig::IndentCharacter FormattingJsonConfig::getIndentCharacter() const {
    return indentCharacter ? *indentCharacter : base->getIndentCharacter();
}

std::uint32_t FormattingJsonConfig::getIndentWidth() const {
    return indentWidth ? *indentWidth : base->getIndentWidth();
}

bool FormattingJsonConfig::getLineBreakingEnabled() const {
    return lineBreakingEnabled ? *lineBreakingEnabled : base->getLineBreakingEnabled();
}

std::uint32_t FormattingJsonConfig::getColumnLimit() const {
    return columnLimit ? *columnLimit : base->getColumnLimit();
}

FormattingConfig::LineBreakBehavior FormattingJsonConfig::getLineBreakBehavior(ContainerKind kind) const {
    return lineBreakBehavior ? lineBreakBehavior->find(kind)->second : base->getLineBreakBehavior(kind);
}

FormattingConfig::SeparatorPlacement FormattingJsonConfig::getSeparatorPlacement(ContainerKind kind) const {
    return separatorPlacement ? separatorPlacement->find(kind)->second : base->getSeparatorPlacement(kind);
}

} // namespace ca::formatting
