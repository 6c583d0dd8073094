#pragma once

#include "config/FormattingConfig.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace ca::formatting {

/// Asks a configuration for each option once at most: when somebody needs it for the first time. An option
/// set answers the same each time, and there are millions of nodes that ask.
///
/// Serves one thread. The configuration has to outlive it.
class OptionCache {
public:
    using ContainerKind = FormattingConfig::ContainerKind;

    explicit OptionCache(const FormattingConfig& config) : config(config) {}

    bool getTrimUnnecessaryWhitespace() {
        return get(trim, [this] { return config.getTrimUnnecessaryWhitespace(); });
    }
    bool getIndentationEnabled() {
        return get(indentationEnabled, [this] { return config.getIndentationEnabled(); });
    }
    bool getIndentBlankLines() {
        return get(indentBlankLines, [this] { return config.getIndentBlankLines(); });
    }
    std::uint32_t getIndentWidth() {
        return get(indentWidth, [this] { return config.getIndentWidth(); });
    }
    bool getLineBreakingEnabled() {
        return get(lineBreakingEnabled, [this] { return config.getLineBreakingEnabled(); });
    }
    std::uint32_t getColumnLimit() {
        return get(columnLimit, [this] { return config.getColumnLimit(); });
    }
    FormattingConfig::LineBreakBehavior getLineBreakBehavior(ContainerKind kind) {
        return getOfKind(behaviors, kind, [this, kind] { return config.getLineBreakBehavior(kind); });
    }
    FormattingConfig::SeparatorPlacement getSeparatorPlacement(ContainerKind kind) {
        return getOfKind(placements, kind, [this, kind] { return config.getSeparatorPlacement(kind); });
    }

private:
    template <class Value>
    using OfKind = std::array<std::optional<Value>, static_cast<std::size_t>(ContainerKind::None)>;

    template <class Value, class Ask>
    static Value get(std::optional<Value>& answer, Ask ask) {
        if (!answer) {
            answer = ask();
        }
        return *answer;
    }

    /// A number that is no kind is the configuration's affair.
    template <class Value, class Ask>
    static Value getOfKind(OfKind<Value>& answers, ContainerKind kind, Ask ask) {
        const auto index = static_cast<std::size_t>(kind);
        return index < answers.size() ? get(answers[index], ask) : ask();
    }

    const FormattingConfig& config;
    std::optional<bool> trim;
    std::optional<bool> indentationEnabled;
    std::optional<bool> indentBlankLines;
    std::optional<std::uint32_t> indentWidth;
    std::optional<bool> lineBreakingEnabled;
    std::optional<std::uint32_t> columnLimit;
    OfKind<FormattingConfig::LineBreakBehavior> behaviors;
    OfKind<FormattingConfig::SeparatorPlacement> placements;
};

} // namespace ca::formatting
