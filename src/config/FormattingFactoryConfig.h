#pragma once

#include "config/FormattingConfig.h"

#include <memory>

namespace ca::config {
class FactoryConfigSource;
class LegacyConfigSource;
class PreferenceConfigSource;
} // namespace ca::config

namespace ca::formatting {

/// The options of a formatter that nobody configured: every feature is off, and the other answers say what
/// applies once a configuration on top of this one switches a feature on. They differ from the defaults of
/// the line-based formatter.
class FormattingFactoryConfig : public FormattingConfig {
public:
    /// The source is ignored, whichever kind it is, and may be null.
    explicit FormattingFactoryConfig(const std::shared_ptr<ca::config::FactoryConfigSource>& source);
    explicit FormattingFactoryConfig(const std::shared_ptr<ca::config::LegacyConfigSource>& source);
    explicit FormattingFactoryConfig(const std::shared_ptr<ca::config::PreferenceConfigSource>& source);

    std::unordered_set<ca::config::ConfigIssue> getIssues() const override;
    bool getEnabled() const override;
    bool getTrimUnnecessaryWhitespace() const override;
    bool getIndentationEnabled() const override;
    FunctionIndentStyle getFunctionIndentStyle() const override;
    bool getIndentCaseBlocks() const override;
    bool getIndentBlankLines() const override;
    IndentCharacter getIndentCharacter() const override;
    std::uint32_t getIndentWidth() const override;
    bool getLineBreakingEnabled() const override;
    std::uint32_t getColumnLimit() const override;

    /// The kind doesn't matter to these two, so `None` gets an answer as well.
    LineBreakBehavior getLineBreakBehavior(ContainerKind kind) const override;
    SeparatorPlacement getSeparatorPlacement(ContainerKind kind) const override;
};

} // namespace ca::formatting
