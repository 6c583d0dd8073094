#include "pass/FormattingExplorerBridgeImpl.h"

#include "config/FormattingConfig.h"
#include "config/FormattingSection.h"
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

#include <memory>
#include <optional>
#include <unordered_set>

namespace {

using ca::formatting::FormattingConfig;
using ca::formatting::makeDebugStream;

using TextStream = std::basic_stringstream<char16_t>;
using Issues = std::unordered_set<ca::config::ConfigIssue>;

void write(TextStream& stream, const ca::config::ConfigIssue& issue) {
    stream << fl::i18n::MessageCatalog::get_message(*issue.message, fl::i18n::QrLocale::global()) << u'\n';
    if (issue.start) {
        stream << u"  line: " << issue.start->line << u'\n' << u"  column: " << issue.start->column << u'\n';
    }
}

std::u16string describe(const Issues& sourceIssues, const Issues& sectionIssues) {
    auto stream = makeDebugStream();
    for (const Issues* issues : {&sourceIssues, &sectionIssues}) {
        for (const ca::config::ConfigIssue& issue : *issues) {
            write(stream, issue);
        }
    }
    return stream.str();
}

std::u16string describe(const std::vector<ca::SyntaxError>& errors) {
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
        return describe(exception.getErrors());
    }
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
        return describe(config->getSourceIssues(), formattingConfig->getIssues());
    }
    const auto tree = std::make_shared<ca::formatting::FormatTree>(sourceText);
    return ca::formatting::FormatPass(tree, formattingConfig).run();
}
