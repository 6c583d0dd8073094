#include "format/TreeEngine.h"

#include "format/EditSelection.h"
#include "format/Escalation.h"
#include "format/GapAlignment.h"
#include "format/GapEdits.h"
#include "format/GapRules.h"
#include "format/LineRanges.h"
#include "format/RowIndentation.h"
#include "format/SpanReader.h"
#include "format/SyntaxCheck.h"
#include "format/SyntaxContext.h"
#include "format/TreeSafetyCheck.h"
#include "text/TextEncoding.h"

#include <ca/config/ConfigManager.h>
#include <ca/config/ConfigSource.h>
#include <fl/i18n/MessageCatalog.h>
#include <fl/i18n/QrLocale.h>

#include <exception>
#include <mutex>
#include <new>
#include <optional>
#include <unordered_map>
#include <utility>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace ombrel {

namespace {

using Config = std::shared_ptr<const ca::config::Config>;
using Outcome = Result<TreeResult>;
using Formatted = Result<std::u16string>;

Problem makeProblem(const ca::config::ConfigIssue& issue) {
    const std::u16string message =
        issue.message == nullptr
            ? std::u16string()
            : fl::i18n::MessageCatalog::get_message(*issue.message, fl::i18n::QrLocale::global());
    return {Code::RefusedOptions,
            fmt::format("the tree formatter doesn't take these options: {}", encodeLossy(message))};
}

/// What the formatter makes of the text, or why it makes nothing of it.
Formatted callFormatter(const ParsedText& source, const Config& config, const TreeFormatter& formatter) {
    using ca::config::ConfigIssue;
    try {
        SpanReader reader(source.text, source.getTokens());
        auto result = formatter({source.parsed, config, ca::formatting::CommentLines::Aligned, &reader});
        if (const auto* issues = std::get_if<std::vector<ConfigIssue>>(&result)) {
            return fail(makeProblem(issues->front()));
        }
        if (const auto* errors = std::get_if<std::vector<ca::SyntaxError>>(&result)) {
            return fail(makeProblems(*errors));
        }
        return std::get<std::u16string>(std::move(result));
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& error) {
        return fail(Code::InternalError, fmt::format("the tree formatter failed: {}", error.what()));
    }
}

/// Why a formatted text can't be aligned with its source: it isn't the same program.
Failure explainMismatch(const ParsedText& source, const std::u16string& formatted) {
    if (auto problem = checkSameProgram(source, formatted)) {
        return fail(*std::move(problem));
    }
    return fail(Code::UnsafeResult, "the formatter's text doesn't match the source; nothing was written");
}

/// The formatting of one text.
class Run {
public:
    Run(const ParsedText& source, const TreeOptions& options, const TreeFormatter& formatter,
        const EditSelection& selection, FormatRecord* record)
        : source(source), options(options), formatter(formatter), selection(selection), record(record),
          gaps(source.text, source.getTokens()) {}

    Outcome run() {
        Formatted formatted = callFormatter(source, options.config, formatter);
        if (!formatted) {
            return fail(std::move(formatted.error()));
        }
        if (*formatted == source.text) {
            return TreeResult();
        }
        const auto alignment = GapAlignment::make(gaps, *formatted);
        return alignment ? choose(*alignment) : reject(explainMismatch(source, *formatted), *formatted);
    }

private:
    /// Rounds after which nothing more is tried. Two have always been enough.
    static constexpr int lastRound = 8;

    Outcome choose(const GapAlignment& alignment) {
        GapChoices choices(gaps, alignment);
        if (!choices.isAnyChanged()) { // but for the kinds of line ends
            return TreeResult();
        }
        const SyntaxContext syntax(gaps, *source.parsed.analysis->getProgramFile());
        const GapRuleInput input{gaps, syntax, options.isTrimming, options.isIndenting,
                                 [&] { return getUnbroken(alignment); }};
        repairGaps(input, choices);
        if (options.config == options.unbrokenConfig) { // else lines would be broken in another way next time
            moveRows(input, selection, choices);
        }
        Escalation escalation(input, choices);
        for (int round = 1;; ++round) {
            Edits edits = makeEdits(gaps, choices, selection);
            if (edits.empty()) {
                return TreeResult{{}, makeNotes(escalation), listExceptions(choices)};
            }
            const ProgramDifferences differences = compare(edits);
            if (differences.places.empty()) {
                return TreeResult{std::move(edits), makeNotes(escalation), listExceptions(choices)};
            }
            if (round == lastRound || !escalation.raise(differences.places)) {
                return reject(fail(*differences.first), applyEdits(source.text, edits));
            }
        }
    }

    ProgramDifferences compare(const Edits& edits) const {
        const Stopwatch::Lap lap(record == nullptr ? nullptr : &record->checking);
        return findDifferences(source, applyEdits(source.text, edits), edits);
    }

    Outcome reject(Failure failure, std::u16string result) const {
        if (record != nullptr) {
            record->rejected = std::move(result);
        }
        return failure;
    }

    std::vector<ExceptionalGap> listExceptions(const GapChoices& choices) const {
        std::vector<ExceptionalGap> exceptions;
        for (const std::size_t gap : choices.getExceptions()) {
            exceptions.push_back({gaps.getBegin(gap), gaps.getEnd(gap), !choices.isChanged(gap)});
        }
        return exceptions;
    }

    static Problems makeNotes(const Escalation& escalation) {
        Problems notes;
        for (const LineRange& lines : escalation.getKeptLines()) {
            const std::string place =
                lines.first == lines.last
                    ? "this line keeps its text"
                    : fmt::format("lines {} to {} keep their text", lines.first, lines.last);
            notes.emplace_back(Code::KeptStatement, place + ": formatting it would change the program",
                               lines.first, 1);
            notes.back().lastLine = lines.last;
        }
        return notes;
    }

    /// The text without line breaking, which is needed rarely.
    const GapAlignment* getUnbroken(const GapAlignment& formattedGaps) {
        if (options.config == options.unbrokenConfig) {
            return &formattedGaps;
        }
        if (!isUnbrokenKnown && options.unbrokenConfig != nullptr) {
            Formatted formatted = callFormatter(source, options.unbrokenConfig, formatter);
            if (formatted) {
                unbroken = GapAlignment::make(gaps, *std::move(formatted));
            }
        }
        isUnbrokenKnown = true;
        return unbroken ? &*unbroken : nullptr;
    }

    const ParsedText& source;
    const TreeOptions& options;
    const TreeFormatter& formatter;
    const EditSelection& selection;
    FormatRecord* record;
    GapList gaps;
    std::optional<GapAlignment> unbroken;
    bool isUnbrokenKnown = false;
};

Config makeConfig(const std::u16string& json) {
    const auto manager = std::make_shared<ca::config::ConfigManager>();
    return std::make_shared<const ca::config::Config>(
        std::make_shared<ca::config::JsonConfigSource>(std::nullopt, json, manager));
}

TreeOptions makeOptions(const std::u16string& json) {
    TreeOptions options{makeConfig(json), nullptr, false, false};
    auto values = nlohmann::json::parse(encodeLossy(json), nullptr, false, true);
    if (values.is_object() && values["formatting"].is_object()) {
        auto& formatting = values["formatting"];
        options.isTrimming = formatting.value("trimUnnecessaryWhitespace", nlohmann::json()) == true;
        options.isIndenting = formatting.value("indentationEnabled", nlohmann::json()) == true;
        const bool isBreaking = formatting.value("lineBreakingEnabled", nlohmann::json()) == true;
        formatting["lineBreakingEnabled"] = false;
        options.unbrokenConfig = isBreaking ? makeConfig(decodeLossy(values.dump())) : options.config;
    }
    return options;
}

} // namespace

Outcome formatTree(const std::u16string& text, const TreeOptions& options, const TreeFormatter& formatter,
                   const std::vector<LineRange>& ranges, const Suppression& suppression,
                   FormatRecord* record) {
    if (text.size() > maximalTreeTextLength) {
        return fail(Code::TooLarge,
                    fmt::format("this text is too large for the tree engine: {} Mi characters is the limit; "
                                "use the line engine (--engine line)",
                                maximalTreeTextLength >> 20));
    }
    if (auto checked = checkRanges(text, ranges); !checked) {
        return fail(std::move(checked.error()));
    }
    const ParsedText source(text);
    if (!source.parsed.errors.empty()) {
        return fail(makeProblems(source.parsed.errors));
    }
    return Run(source, options, formatter, EditSelection(text, ranges, suppression), record).run();
}

TreeOptions getTreeOptions(const std::u16string& json) {
    constexpr std::size_t mostKnown = 64;
    static std::mutex lock;
    static std::unordered_map<std::u16string, TreeOptions> known;
    const std::lock_guard guard(lock);
    if (const auto found = known.find(json); found != known.end()) {
        return found->second;
    }
    if (known.size() == mostKnown) { // a process that runs for days sees many, few of them again
        known.clear();
    }
    return known.emplace(json, makeOptions(json)).first->second;
}

} // namespace ombrel
