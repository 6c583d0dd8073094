#pragma once

#include "config/FormattingConfig.h"

#include <ca/config/ConfigSource.h>
#include <ca/utils/JsonReader.h>

#include <memory>
#include <optional>
#include <unordered_map>
#include <unordered_set>

namespace ca::formatting {

/// The options in the section "formatting" of a JSON text. What the section doesn't set, or sets to something
/// wrong, is answered by the base configuration: option by option, and an option with a value for each
/// construct as a whole. A wrong value is an issue and nothing worse; an unknown key isn't even that.
///
/// The base is private, since these objects are handed around as `std::shared_ptr<void>` only. It has to stay
/// the first and only one: the pointer is cast back without a conversion.
class FormattingJsonConfig : FormattingConfig {
public:
    /// Reads the section, and has the base configurations make theirs. The source isn't kept.
    explicit FormattingJsonConfig(const std::shared_ptr<ca::config::JsonConfigSource>& source);

    /// The issues of this section, without those of the base configurations.
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

    LineBreakBehavior getLineBreakBehavior(ContainerKind kind) const override;
    SeparatorPlacement getSeparatorPlacement(ContainerKind kind) const override;

private:
    void readOptions(ca::utils::JsonReader& reader);
    void takeIssues(const ca::utils::JsonReader& reader);

    std::shared_ptr<FormattingConfig> base; ///< never empty
    std::unordered_set<ca::config::ConfigIssue> issues;
    std::optional<bool> enabled;
    std::optional<bool> trimUnnecessaryWhitespace;
    std::optional<bool> indentationEnabled;
    std::optional<FunctionIndentStyle> functionIndentStyle;
    std::optional<bool> indentCaseBlocks;
    std::optional<bool> indentBlankLines;
    std::optional<IndentCharacter> indentCharacter;
    std::optional<std::uint32_t> indentWidth;
    std::optional<bool> lineBreakingEnabled;
    std::optional<std::uint32_t> columnLimit;

    // A table that is present has all kinds but `None`.
    std::optional<std::unordered_map<ContainerKind, LineBreakBehavior>> lineBreakBehavior;
    std::optional<std::unordered_map<ContainerKind, SeparatorPlacement>> separatorPlacement;
};

} // namespace ca::formatting
