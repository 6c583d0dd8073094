#include "config/FormattingJsonConfig.h"

#include "config/FormattingSection.h"
#include "config/GetHierarchicalOption.h"
#include "config/GetMappedValue.h"

#include <ca/config/getIssueSeverity.h>
#include <ca/utils/JsonStages.h>
#include <resource_core/caConfig.h>

#include <string>
#include <utility>

namespace ca::formatting {

using ca::utils::IsBool;
using ca::utils::IsUnsignedInteger;

namespace {

template <class T>
using Strings = std::unordered_map<std::u16string, T>;

std::shared_ptr<resource_core::BaseMsgID> makeMessage(const char16_t* text) {
    return std::make_shared<CodeAnalyzer::caConfig::PlaceholderError>(text);
}

/// What a stage makes of a field of the section; empty if the field is absent or refused.
template <class Stage>
auto readField(ca::utils::JsonReader& reader, const char16_t* name, Stage stage) {
    return (reader.getRoot() | ca::utils::GetOptionalField{name} | std::move(stage)).value;
}

std::optional<ca::config::ConfigPosition> toPosition(const std::optional<ca::utils::JsonPosition>& position) {
    using ca::config::ConfigPosition;
    return position ? std::optional(ConfigPosition(position->first, position->second)) : std::nullopt;
}

} // namespace

FormattingJsonConfig::FormattingJsonConfig(const std::shared_ptr<ca::config::JsonConfigSource>& source)
    : base(source->getBaseConfig()->get<FormattingConfig>()) {
    const std::optional<ca::utils::JsonValue> section = source->getSection(u"formatting");
    if (!section) {
        return;
    }
    ca::utils::JsonReader reader(source->getFilePath(), *section);
    readOptions(reader);
    takeIssues(reader);
}

void FormattingJsonConfig::readOptions(ca::utils::JsonReader& reader) {
    const Strings<FunctionIndentStyle> styles = {{u"Classic", FunctionIndentStyle::Classic},
                                                 {u"IndentNested", FunctionIndentStyle::IndentNested},
                                                 {u"IndentAll", FunctionIndentStyle::IndentAll}};
    const Strings<IndentCharacter> characters = {{u"Space", IndentCharacter::Space},
                                                 {u"Tab", IndentCharacter::Tab}};
    const Strings<LineBreakBehavior> behaviors = {
        {u"SeparateLines", LineBreakBehavior::SeparateLines},
        {u"AllowSingleLine", LineBreakBehavior::AllowSingleLine},
        {u"AllowMultiplePerLine", LineBreakBehavior::AllowMultiplePerLine}};
    const Strings<SeparatorPlacement> placements = {{u"StartOfLine", SeparatorPlacement::StartOfLine},
                                                    {u"EndOfLine", SeparatorPlacement::EndOfLine}};
    const HierarchyNode hierarchy = makeHierarchy();

    enabled = readField(reader, u"enabled", IsBool{});
    trimUnnecessaryWhitespace = readField(reader, u"trimUnnecessaryWhitespace", IsBool{});
    indentationEnabled = readField(reader, u"indentationEnabled", IsBool{});
    functionIndentStyle =
        readField(reader, u"functionIndentStyle",
                  GetMappedValue<FunctionIndentStyle>{styles, makeMessage(u"invalid functionIndentStyle")});
    indentCaseBlocks = readField(reader, u"indentCaseBlocks", IsBool{});
    indentBlankLines = readField(reader, u"indentBlankLines", IsBool{});
    indentCharacter =
        readField(reader, u"indentCharacter",
                  GetMappedValue<IndentCharacter>{characters, makeMessage(u"invalid indentCharacter")});
    indentWidth = readField(reader, u"indentWidth", IsUnsignedInteger{});
    lineBreakingEnabled = readField(reader, u"lineBreakingEnabled", IsBool{});
    columnLimit = readField(reader, u"columnLimit", IsUnsignedInteger{});
    lineBreakBehavior = readField(reader, u"lineBreakBehavior",
                                  GetHierarchicalOption<LineBreakBehavior>{
                                      hierarchy, behaviors, makeMessage(u"invalid lineBreakBehavior")});
    separatorPlacement = readField(reader, u"separatorPlacement",
                                   GetHierarchicalOption<SeparatorPlacement>{
                                       hierarchy, placements, makeMessage(u"invalid separatorPlacement")});
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
