#include "config/FormattingFactoryConfig.h"

#include <ca/formatting/TreeOptions.h>

namespace ca::formatting {

namespace {

/// The default of the option with this key.
template <class Value>
consteval Value getFactory(std::string_view key) {
    return static_cast<Value>(getFactoryNumber(getTreeOption(key)));
}

} // namespace

FormattingFactoryConfig::FormattingFactoryConfig(const std::shared_ptr<ca::config::FactoryConfigSource>&) {}

FormattingFactoryConfig::FormattingFactoryConfig(const std::shared_ptr<ca::config::LegacyConfigSource>&) {}

FormattingFactoryConfig::FormattingFactoryConfig(const std::shared_ptr<ca::config::PreferenceConfigSource>&) {
}

std::unordered_set<ca::config::ConfigIssue> FormattingFactoryConfig::getIssues() const {
    return {};
}

bool FormattingFactoryConfig::getEnabled() const {
    return getFactory<bool>("enabled");
}

bool FormattingFactoryConfig::getTrimUnnecessaryWhitespace() const {
    return getFactory<bool>("trimUnnecessaryWhitespace");
}

bool FormattingFactoryConfig::getIndentationEnabled() const {
    return getFactory<bool>("indentationEnabled");
}

FormattingConfig::FunctionIndentStyle FormattingFactoryConfig::getFunctionIndentStyle() const {
    return getFactory<FunctionIndentStyle>("functionIndentStyle");
}

bool FormattingFactoryConfig::getIndentCaseBlocks() const {
    return getFactory<bool>("indentCaseBlocks");
}

bool FormattingFactoryConfig::getIndentBlankLines() const {
    return getFactory<bool>("indentBlankLines");
}

FormattingConfig::IndentCharacter FormattingFactoryConfig::getIndentCharacter() const {
    return getFactory<IndentCharacter>("indentCharacter");
}

std::uint32_t FormattingFactoryConfig::getIndentWidth() const {
    return getFactory<std::uint32_t>("indentWidth");
}

bool FormattingFactoryConfig::getLineBreakingEnabled() const {
    return getFactory<bool>("lineBreakingEnabled");
}

std::uint32_t FormattingFactoryConfig::getColumnLimit() const {
    return getFactory<std::uint32_t>("columnLimit");
}

FormattingConfig::LineBreakBehavior FormattingFactoryConfig::getLineBreakBehavior(ContainerKind) const {
    return getFactory<LineBreakBehavior>("lineBreakBehavior");
}

FormattingConfig::SeparatorPlacement FormattingFactoryConfig::getSeparatorPlacement(ContainerKind) const {
    return getFactory<SeparatorPlacement>("separatorPlacement");
}

} // namespace ca::formatting
