// The bridge: for any two texts it gives either the formatted text or one of the two lists of reasons. The
// input is cut at its first U+001E into the source and the options; without one the options turn all features
// on.

#include "FuzzText.h"

#include "config/FormattingSection.h"
#include "entry/FormattingExplorerBridgeImpl.h"
#include "support/TreeProperties.h"

#include <ca/Analyzer.h>
#include <ca/config/Config.h>
#include <ca/config/ConfigManager.h>
#include <ca/config/ConfigSource.h>
#include <ca/lexer/lex.h>

#include <memory>
#include <vector>

using ca::formatting::FormattingConfig;
using ca::lexer::Token;

static const std::u16string allOn =
    uR"({"formatting": {"trimUnnecessaryWhitespace": true, "indentationEnabled": true,
"lineBreakingEnabled": true, "columnLimit": 40, "lineBreakBehavior": "AllowMultiplePerLine"}})";

/// How many syntax errors a text has.
static std::size_t countErrors(const std::u16string& source) {
    try {
        ca::createSingleFileAnalyzer()->parseSourceCode(source);
        return 0;
    } catch (const ca::SyntaxErrorException& exception) {
        return exception.getErrors().size();
    }
}

static std::size_t count(const std::u16string& text, const std::u16string& part) {
    std::size_t found = 0;
    for (std::size_t at = 0; (at = text.find(part, at)) != std::u16string::npos; at += part.size()) {
        ++found;
    }
    return found;
}

static std::vector<std::u16string> getCodeTokens(const std::u16string& text) {
    std::vector<std::u16string> lexemes;
    for (const Token& token : ca::lexer::lex(text)) {
        if (!token.isWhitespace() && !token.isComment()) {
            lexemes.emplace_back(token.lexeme);
        }
    }
    return lexemes;
}

/// Joining, breaking and trimming may make other tokens of the same characters; without them all stay.
static void checkFormatted(const std::u16string& source, const FormattingConfig& config,
                           const std::u16string& result) {
    if (getCode(source) != getCode(result)) {
        fail("code or comments change");
    }
    const bool keepsTokens = !config.getTrimUnnecessaryWhitespace() && !config.getLineBreakingEnabled();
    if (keepsTokens && getCodeTokens(source) != getCodeTokens(result)) {
        fail("indentation changes tokens");
    }
}

static void checkSyntaxErrors(std::size_t errorCount, const std::u16string& result) {
    if (!result.starts_with(u"Syntax errors:\n   ") || !result.ends_with(u'\n') ||
        count(result, u" line: ") < errorCount || count(result, u" column: ") < errorCount) {
        fail("syntax errors aren't all there");
    }
}

static void checkIssues(std::size_t issueCount, const std::u16string& result) {
    if (!result.ends_with(u'\n') || count(result, u"\n  line: ") < issueCount ||
        count(result, u"\n  column: ") < issueCount) {
        fail("issues of the options aren't all there");
    }
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::u16string text = makeText(data, size);
    const std::size_t cut = text.find(u'\x1E');
    const std::u16string source = text.substr(0, cut);
    const std::u16string json = cut == std::u16string::npos ? allOn : text.substr(cut + 1);
    const std::u16string result = FormattingExplorerBridgeImpl().format(source, json);
    if (const std::size_t errorCount = countErrors(source); errorCount != 0) {
        checkSyntaxErrors(errorCount, result);
        return 0;
    }
    const ca::config::Config config(std::make_shared<ca::config::JsonConfigSource>(
        std::nullopt, json, std::make_shared<ca::config::ConfigManager>()));
    const auto section = config.get<FormattingConfig>();
    const std::size_t issueCount = config.getSourceIssues().size() + section->getIssues().size();
    if (issueCount != 0) {
        checkIssues(issueCount, result);
    } else {
        checkFormatted(source, *section, result);
    }
    return 0;
}
