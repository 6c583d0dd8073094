#include "config/FormattingFactoryConfig.h"

namespace ca::formatting {

FormattingFactoryConfig::FormattingFactoryConfig(const std::shared_ptr<ca::config::FactoryConfigSource>&) {}

FormattingFactoryConfig::FormattingFactoryConfig(const std::shared_ptr<ca::config::LegacyConfigSource>&) {}

FormattingFactoryConfig::FormattingFactoryConfig(const std::shared_ptr<ca::config::PreferenceConfigSource>&) {
}

std::unordered_set<ca::config::ConfigIssue> FormattingFactoryConfig::getIssues() const {
    return {};
}

bool FormattingFactoryConfig::getEnabled() const {
    return false;
}

bool FormattingFactoryConfig::getTrimUnnecessaryWhitespace() const {
    return false;
}

bool FormattingFactoryConfig::getIndentationEnabled() const {
    return false;
}

FormattingConfig::FunctionIndentStyle FormattingFactoryConfig::getFunctionIndentStyle() const {
    return FunctionIndentStyle::IndentAll;
}

bool FormattingFactoryConfig::getIndentCaseBlocks() const {
    return true;
}

bool FormattingFactoryConfig::getIndentBlankLines() const {
    return false;
}

FormattingConfig::IndentCharacter FormattingFactoryConfig::getIndentCharacter() const {
    return IndentCharacter::Space;
}

std::uint32_t FormattingFactoryConfig::getIndentWidth() const {
    return 4;
}

bool FormattingFactoryConfig::getLineBreakingEnabled() const {
    return false;
}

std::uint32_t FormattingFactoryConfig::getColumnLimit() const {
    return 80;
}

FormattingConfig::LineBreakBehavior FormattingFactoryConfig::getLineBreakBehavior(ContainerKind) const {
    return LineBreakBehavior::AllowMultiplePerLine;
}

FormattingConfig::SeparatorPlacement FormattingFactoryConfig::getSeparatorPlacement(ContainerKind) const {
    return SeparatorPlacement::StartOfLine;
}

} // namespace ca::formatting
