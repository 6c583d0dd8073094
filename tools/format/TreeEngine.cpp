#include "format/TreeEngine.h"

#include "format/SyntaxCheck.h"
#include "format/TreeSafetyCheck.h"
#include "text/LineSplitter.h"
#include "text/TextEncoding.h"

#include <ca/config/ConfigManager.h>
#include <ca/config/ConfigSource.h>
#include <fl/i18n/MessageCatalog.h>
#include <fl/i18n/QrLocale.h>

#include <exception>
#include <mutex>
#include <new>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <utility>

#include <fmt/format.h>

namespace ombrel {

namespace {

using Outcome = Result<std::u16string>;

const char* describe(std::u16string_view lineEnd) {
    return lineEnd == u"\n" ? "LF" : lineEnd == u"\r" ? "CR" : "CRLF";
}

/// The end of the first line, LF if the text has no other.
std::u16string_view getFirstLineEnd(std::u16string_view text) {
    const std::u16string_view end = LineSplitter(text).getNext()->end;
    return end.empty() ? u"\n" : end;
}

std::optional<Problem> checkLineEnds(std::u16string_view text) {
    const std::u16string_view first = getFirstLineEnd(text);
    LineSplitter lines(text);
    for (std::uint32_t number = 1; const auto line = lines.getNext(); ++number) {
        if (!line->end.empty() && line->end != first) {
            return Problem{
                Code::MixedLineEnds,
                fmt::format("this line ends in {} and the first one in {}: the tree engine can't "
                            "keep line ends that are mixed; --force gives all lines the first one's",
                            describe(line->end), describe(first)),
                number, static_cast<std::uint32_t>(line->content.size() + 1)};
        }
    }
    return std::nullopt;
}

std::u16string withLineEnd(std::u16string text, std::u16string_view end) {
    if (end == u"\n" && text.find(u'\r') == std::u16string::npos) {
        return text;
    }
    std::u16string result;
    LineSplitter lines(text);
    while (const auto line = lines.getNext()) {
        result += line->content;
        result += line->end.empty() ? std::u16string_view() : end;
    }
    return result;
}

Problem describe(const ca::config::ConfigIssue& issue) {
    const std::u16string message =
        issue.message == nullptr
            ? std::u16string()
            : fl::i18n::MessageCatalog::get_message(*issue.message, fl::i18n::QrLocale::global());
    return {Code::RefusedOptions,
            fmt::format("the tree formatter doesn't take these options: {}", encodeLossy(message))};
}

/// What the formatter makes of the text, or why it makes nothing of it.
Outcome callFormatter(const ParsedText& source, const TreeOptions& options, const TreeFormatter& formatter) {
    using ca::config::ConfigIssue;
    try {
        auto result = formatter({source.parsed, options.config, ca::formatting::CommentLines::Aligned});
        if (const auto* issues = std::get_if<std::vector<ConfigIssue>>(&result)) {
            return fail(describe(issues->front()));
        }
        if (const auto* errors = std::get_if<std::vector<ca::SyntaxError>>(&result)) {
            return fail(makeProblems(*errors));
        }
        return withLineEnd(std::get<std::u16string>(std::move(result)), getFirstLineEnd(source.text));
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& error) {
        return fail(Code::InternalError, fmt::format("the tree formatter failed: {}", error.what()));
    }
}

Outcome format(const ParsedText& source, const TreeOptions& options, const TreeFormatter& formatter,
               const Suppression& suppression) {
    if (options.mixedLineEnds == MixedLineEnds::Refuse) {
        if (auto problem = checkLineEnds(source.text)) {
            return fail(*problem);
        }
    }
    Outcome outcome = callFormatter(source, options, formatter);
    if (!outcome) {
        return outcome;
    }
    auto restored = restoreSuppressed(source.text, suppression, *std::move(outcome));
    if (!restored) {
        return restored;
    }
    std::u16string result = *std::move(restored);
    if (result == source.text) {
        return result;
    }
    if (auto problem = checkSameProgram(source, result)) {
        return fail(*problem);
    }
    return result;
}

} // namespace

Outcome formatTree(const std::u16string& text, const TreeOptions& options, const TreeFormatter& formatter,
                   const Suppression& suppression) {
    const ParsedText source(text);
    if (!source.parsed.errors.empty()) {
        return fail(makeProblems(source.parsed.errors));
    }
    return format(source, options, formatter, suppression);
}

std::shared_ptr<const ca::config::Config> getTreeConfig(const std::u16string& json) {
    static std::mutex lock;
    static std::unordered_map<std::u16string, std::shared_ptr<const ca::config::Config>> configs;
    const std::lock_guard guard(lock);
    auto& config = configs[json];
    if (config == nullptr) {
        const auto manager = std::make_shared<ca::config::ConfigManager>();
        config = std::make_shared<const ca::config::Config>(
            std::make_shared<ca::config::JsonConfigSource>(std::nullopt, json, manager));
    }
    return config;
}

} // namespace ombrel
