#include "entry/FormattingExplorerBridgeImpl.h"

#include "config/FormattingConfig.h"
#include "config/FormattingSection.h"
#include "entry/formatInParts.h"
#include "pass/FormatPass.h"
#include "tree/DebugText.h"
#include "tree/FormatTree.h"

#include <ca/Analyzer.h>
#include <ca/config/Config.h>
#include <ca/config/ConfigIssue.h>
#include <ca/config/ConfigManager.h>
#include <ca/config/ConfigSource.h>
#include <fl/i18n/MessageCatalog.h>
#include <fl/i18n/QrLocale.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <tuple>
#include <unordered_set>
#include <utility>

namespace {

using ca::formatting::FormatPass;
using ca::formatting::formatSource;
using ca::formatting::FormattingConfig;
using ca::formatting::FormatTree;
using ca::formatting::makeDebugStream;
using ca::formatting::TreeFormatRequest;
using ca::formatting::TreeFormatResult;

using TextStream = std::basic_stringstream<char16_t>;
using ca::config::ConfigIssue;
using Issues = std::unordered_set<ConfigIssue>;

void write(TextStream& stream, const ConfigIssue& issue) {
    stream << fl::i18n::MessageCatalog::get_message(*issue.message, fl::i18n::QrLocale::global()) << u'\n';
    if (issue.start) {
        stream << u"  line: " << issue.start->line << u'\n' << u"  column: " << issue.start->column << u'\n';
    }
}

std::u16string listIssues(const Issues& sourceIssues, const Issues& sectionIssues) {
    auto stream = makeDebugStream();
    for (const Issues* issues : {&sourceIssues, &sectionIssues}) {
        for (const ConfigIssue& issue : *issues) {
            write(stream, issue);
        }
    }
    return stream.str();
}

std::u16string listSyntaxErrors(const std::vector<ca::SyntaxError>& errors) {
    auto stream = makeDebugStream();
    stream << u"Syntax errors:\n";
    for (const ca::SyntaxError& error : errors) {
        stream << u"   " << error.message << u" line: " << error.line << u" column: " << error.column
               << u'\n';
    }
    return stream.str();
}

/// The syntax errors of a text in words; nothing if it parses.
std::optional<std::u16string> findSyntaxErrors(ca::Analyzer& analyzer, const std::u16string& sourceText) {
    try {
        analyzer.parseSourceCode(sourceText);
        return std::nullopt;
    } catch (const ca::SyntaxErrorException& exception) {
        return listSyntaxErrors(exception.getErrors());
    }
}

bool isBefore(const ConfigIssue& a, const ConfigIssue& b) {
    const auto getKey = [](const ConfigIssue& issue) {
        return std::tuple(issue.path ? issue.path->string() : std::u16string(),
                          issue.start ? issue.start->line : 0, issue.start ? issue.start->column : 0);
    };
    return getKey(a) < getKey(b);
}

std::vector<ConfigIssue> sortByPlace(Issues sourceIssues, Issues sectionIssues) {
    sourceIssues.merge(sectionIssues);
    std::vector<ConfigIssue> sorted(sourceIssues.begin(), sourceIssues.end());
    std::sort(sorted.begin(), sorted.end(), isBefore);
    return sorted;
}

} // namespace

std::u16string FormattingExplorerBridgeImpl::format(const std::u16string& sourceText,
                                                    const std::u16string& jsonText) {
    const auto analyzer = ca::createSingleFileAnalyzer();
    if (auto errors = findSyntaxErrors(*analyzer, sourceText)) {
        return *std::move(errors);
    }
    const auto manager = std::make_shared<ca::config::ConfigManager>();
    const auto source = std::make_shared<ca::config::JsonConfigSource>(std::nullopt, jsonText, manager);
    const auto config = std::make_shared<ca::config::Config>(source);
    const auto formattingConfig = config->get<FormattingConfig>();
    if (!config->getSourceIssues().empty() || !formattingConfig->getIssues().empty()) {
        return listIssues(config->getSourceIssues(), formattingConfig->getIssues());
    }
    return FormatPass(std::make_shared<FormatTree>(sourceText), formattingConfig).run();
}

TreeFormatResult FormattingExplorerBridgeImpl::formatParsed(const TreeFormatRequest& request) {
    if (!request.source.errors.empty()) {
        return request.source.errors;
    }
    const auto config = request.config->get<FormattingConfig>();
    auto issues = sortByPlace(request.config->getSourceIssues(), config->getIssues());
    if (!issues.empty()) {
        return issues;
    }
    return formatSource(request, config);
}
