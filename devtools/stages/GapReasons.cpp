#include "stages/GapReasons.h"

#include "text/TextEncoding.h"

#include <ca/formatting/TreeOptions.h>
#include <pass/FormatPass.h>
#include <tree/ContainerNode.h>
#include <tree/IndentNode.h>

#include <string_view>

namespace ombrel {

namespace {

using namespace ca::formatting;
using ContainerKind = FormattingConfig::ContainerKind;

/// The path of a construct in the tree of an option: "Expressions.Logical".
std::string findPath(const TreeConstruct& group, std::string_view name) {
    for (const TreeConstruct& child : group.children) {
        if (child.name == name) {
            return std::string(name);
        }
        if (const std::string path = findPath(child, name); !path.empty()) {
            return std::string(child.name) + "." + path;
        }
    }
    return {};
}

std::string getConstruct(ContainerKind kind) {
    return kind == ContainerKind::None ? std::string()
                                       : std::string(constructWords[static_cast<std::size_t>(kind)]);
}

DecidingOption makeOption(std::string_view key, std::string value) {
    return {std::string(treeOptionSection) + "." + std::string(key), std::move(value)};
}

DecidingOption makeSwitch(std::string_view key, bool value) {
    return makeOption(key, value ? "true" : "false");
}

/// The value that an option has for one construct.
template <class Value>
DecidingOption makeConstructOption(std::string_view key, ContainerKind kind, Value value) {
    const std::string path = std::string(key) + "." + findPath(treeConstructs, getConstruct(kind));
    const std::string_view word = getTreeOption(key).words[static_cast<std::size_t>(value)];
    return makeOption(path, "\"" + std::string(word) + "\"");
}

/// Collects the reasons for one gap.
class Explanation {
public:
    Explanation(const WhitespaceNode& gap, const FormatPass& pass, GapDecision& decision)
        : config(*pass.getConfig()), kind((*gap.getParent())->getKind()), decision(decision) {}

    void explain(const WhitespaceNode& gap) {
        switch (gap.getExactClass()) {
        case ExactClass::BinaryOperationWhitespace:
            return config.getLineBreakingEnabled() ? explainOperator() : explainKept("beside an operator");
        case ExactClass::LineSeparatorWhitespace:
            return config.getLineBreakingEnabled() && kind != ContainerKind::None ? explainBreak()
                                                                                  : explainSeparator();
        case ExactClass::NecessaryWhitespace:
            return explainTrimmed("Two words would run together without it: one space is left",
                                  "Two words would run together without it; trimming is off");
        case ExactClass::UnnecessaryWhitespace:
            return explainTrimmed("The program is the same without it: trimmed",
                                  "The program is the same without it; trimming is off");
        default:
            return explainComment();
        }
    }

private:
    void add(DecidingOption option) { decision.options.push_back(std::move(option)); }

    void addLayoutOptions() {
        add(makeSwitch("trimUnnecessaryWhitespace", config.getTrimUnnecessaryWhitespace()));
        add(makeSwitch("indentationEnabled", config.getIndentationEnabled()));
    }

    void explainKept(const std::string& place) {
        decision.reason = "Line breaking is off, so the gap " + place + " keeps its line breaks";
        add(makeSwitch("lineBreakingEnabled", false));
        addLayoutOptions();
    }

    void explainSeparator() {
        if (!config.getLineBreakingEnabled()) {
            return explainKept("between two statements");
        }
        decision.reason = "It belongs to no construct that lines are broken for, so it keeps its line breaks";
        add(makeSwitch("lineBreakingEnabled", true));
        addLayoutOptions();
    }

    void explainOperator() {
        if (decision.isCandidate) {
            return explainBreak();
        }
        if (kind == ContainerKind::None) {
            decision.reason = "No line is broken at this operator: one space";
            add(makeSwitch("lineBreakingEnabled", true));
            return;
        }
        decision.reason = "The line may break on the other side of the operator only: one space";
        addPlacement();
    }

    void explainBreak() {
        using Behavior = FormattingConfig::LineBreakBehavior;
        const Behavior behavior = config.getLineBreakBehavior(kind);
        const bool breaks = decision.decision == "LineBreak";
        switch (behavior) {
        case Behavior::SeparateLines:
            decision.reason = "Each part is on a line of its own";
            break;
        case Behavior::AllowSingleLine:
            decision.reason = breaks ? "Not all parts fit on one line, so each is on a line of its own"
                                     : "All parts fit on one line";
            break;
        case Behavior::AllowMultiplePerLine:
            decision.reason =
                breaks ? "What follows doesn't fit on the line" : "What follows fits on the line";
        }
        add(makeConstructOption("lineBreakBehavior", kind, behavior));
        if (behavior != Behavior::SeparateLines) {
            add(makeOption("columnLimit", std::to_string(config.getColumnLimit())));
        }
        if (decision.gapClass == "BinaryOperationWhitespace") {
            addPlacement();
        }
    }

    void addPlacement() {
        add(makeConstructOption("separatorPlacement", kind, config.getSeparatorPlacement(kind)));
    }

    void explainTrimmed(const char* trimmed, const char* kept) {
        const bool isTrimming = config.getTrimUnnecessaryWhitespace();
        decision.reason = isTrimming ? trimmed : kept;
        add(makeSwitch("trimUnnecessaryWhitespace", isTrimming));
    }

    void explainComment() {
        decision.reason =
            "Nothing is moved across a comment: its lines stay, and only their starts are indented";
        addLayoutOptions();
    }

    const FormattingConfig& config;
    ContainerKind kind;
    GapDecision& decision;
};

const char* getWord(WhitespaceDecision decision) {
    switch (decision) {
    case WhitespaceDecision::Preserve:
        return "Preserve";
    case WhitespaceDecision::LineBreak:
        return "LineBreak";
    case WhitespaceDecision::NoLineBreak:
        return "NoLineBreak";
    }
    return "";
}

/// An operator's gap on the side where no break may be chosen is one space while lines are broken.
WhitespaceDecision getDecision(const WhitespaceNode& gap, const FormatPass& pass) {
    const bool isOperator = gap.getExactClass() == ExactClass::BinaryOperationWhitespace;
    return isOperator && pass.getConfig()->getLineBreakingEnabled() && !pass.isCandidate(gap)
               ? WhitespaceDecision::NoLineBreak
               : pass.getBreakDecision(gap);
}

std::uint32_t countLevels(const IndentNode& level, const std::shared_ptr<FormattingConfig>& config) {
    std::uint32_t count = 0;
    for (std::optional<const IndentNode*> node = &level; node; node = (*node)->getParent()) {
        count += (*node)->getIndentChange(config) == IndentChange::AddLevel ? 1 : 0;
    }
    return count;
}

} // namespace

std::string getGapClass(const WhitespaceNode& gap) {
    switch (gap.getExactClass()) {
    case ExactClass::BinaryOperationWhitespace:
        return "BinaryOperationWhitespace";
    case ExactClass::LineSeparatorWhitespace:
        return "LineSeparatorWhitespace";
    case ExactClass::NecessaryWhitespace:
        return "NecessaryWhitespace";
    case ExactClass::UnnecessaryWhitespace:
        return "UnnecessaryWhitespace";
    default:
        return "Comment";
    }
}

GapDecision explainGap(const WhitespaceNode& gap, FormatPass& pass) {
    GapDecision decision;
    decision.gapClass = getGapClass(gap);
    decision.construct = getConstruct((*gap.getParent())->getKind());
    decision.level = encodeLossy(gap.getIndent()->getName());
    decision.depth = countLevels(*gap.getIndent(), pass.getConfig());
    decision.decision = getWord(getDecision(gap, pass));
    decision.isCandidate = pass.isCandidate(gap);
    decision.before = gap.getOriginalText();
    decision.after = gap.getText(pass);
    Explanation(gap, pass, decision).explain(gap);
    return decision;
}

} // namespace ombrel
