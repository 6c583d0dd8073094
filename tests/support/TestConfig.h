#pragma once

#include "config/FormattingConfig.h"

#include <map>
#include <memory>

/// Options that a test sets one by one: `TestConfig{.trim = true}`. All features are off unless asked for.
struct TestOptions {
    template <class Value>
    using ByKind = std::map<ca::formatting::FormattingConfig::ContainerKind, Value>;

    bool trim = false;
    bool indentation = false;
    bool indentBlankLines = false;
    bool lineBreaking = false;
    bool indentCaseBlocks = true;
    std::uint32_t indentWidth = 4;
    std::uint32_t columnLimit = 80;
    ca::formatting::FormattingConfig::FunctionIndentStyle functionStyle = {};
    ca::formatting::FormattingConfig::IndentCharacter indentCharacter = {};
    ca::formatting::FormattingConfig::LineBreakBehavior lineBreakBehavior = {};
    ca::formatting::FormattingConfig::SeparatorPlacement separatorPlacement = {};
    ByKind<ca::formatting::FormattingConfig::LineBreakBehavior> behaviors = {};   ///< over lineBreakBehavior
    ByKind<ca::formatting::FormattingConfig::SeparatorPlacement> placements = {}; ///< over separatorPlacement
};

class TestConfig : public ca::formatting::FormattingConfig {
public:
    explicit TestConfig(const TestOptions& options) : options(options) {}

    std::unordered_set<ca::config::ConfigIssue> getIssues() const override { return {}; }
    bool getEnabled() const override { return true; }
    bool getTrimUnnecessaryWhitespace() const override { return options.trim; }
    bool getIndentationEnabled() const override { return options.indentation; }
    FunctionIndentStyle getFunctionIndentStyle() const override { return options.functionStyle; }
    bool getIndentCaseBlocks() const override { return options.indentCaseBlocks; }
    bool getIndentBlankLines() const override { return options.indentBlankLines; }
    IndentCharacter getIndentCharacter() const override { return options.indentCharacter; }
    std::uint32_t getIndentWidth() const override { return options.indentWidth; }
    bool getLineBreakingEnabled() const override { return options.lineBreaking; }
    std::uint32_t getColumnLimit() const override { return options.columnLimit; }
    LineBreakBehavior getLineBreakBehavior(ContainerKind kind) const override {
        return look(options.behaviors, kind, options.lineBreakBehavior);
    }
    SeparatorPlacement getSeparatorPlacement(ContainerKind kind) const override {
        return look(options.placements, kind, options.separatorPlacement);
    }

private:
    template <class Value>
    static Value look(const TestOptions::ByKind<Value>& table, ContainerKind kind, Value otherwise) {
        const auto entry = table.find(kind);
        return entry == table.end() ? otherwise : entry->second;
    }

    TestOptions options;
};

inline std::shared_ptr<TestConfig> makeConfig(const TestOptions& options) {
    return std::make_shared<TestConfig>(options);
}
