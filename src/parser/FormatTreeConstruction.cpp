// How a tree is made of a text: it is parsed and tokenized, and its syntax tree and tokens become nodes.

#include "parser/FormattingParser.h"
#include "tree/FormatTree.h"

#include <ca/Analyzer.h>
#include <ca/formatting/TreeFormat.h>
#include <lf/astapi/getPageSize.h>

#include <utility>

namespace ca::formatting {

namespace {

std::shared_ptr<ca::AnalysisResult> parse(ca::Analyzer& analyzer, const std::u16string& sourceText) {
    const ca::AnalysisOptions options{
        .codeGenerationSupport = std::make_shared<ca::CodeGenerationSupport>(),
        .userData = nullptr,
        .flags = 0,
        .config = std::make_shared<ca::config::Config>(std::make_shared<ca::config::FactoryConfigSource>()),
        .searchPath = {},
    };
    return analyzer.parse(ca::CodeInput::createFromSourceCode(sourceText), options);
}

} // namespace

FormatTree::FormatTree(const std::u16string& sourceText) : FormatTree(lf::astapi::internal::getPageSize()) {
    const auto analyzer = ca::createSingleFileAnalyzer(); // outlives the syntax tree that it made
    const auto analysis = parse(*analyzer, sourceText);
    tokens = getTokens(*analysis, sourceText);
    build(*analysis, getWhole(*analysis->getProgramFile()), CommentLines::AsWritten);
}

FormatTree::FormatTree(const ParsedSource& source, CommentLines commentLines)
    : FormatTree(lf::astapi::internal::getPageSize()) {
    tokens = source.tokens;
    build(*source.analysis, getWhole(*source.analysis->getProgramFile()), commentLines);
}

FormatTree::FormatTree(const ca::AnalysisResult& analysis, const FilePart& part,
                       std::shared_ptr<const Tokens> tokensOfPart, CommentLines commentLines)
    : FormatTree(lf::astapi::internal::getPageSize()) {
    tokens = std::move(tokensOfPart);
    build(analysis, part, commentLines);
}

void FormatTree::build(const ca::AnalysisResult& analysis, const FilePart& part, CommentLines commentLines) {
    const ParsedNodes parsed = parseNodes(*analysis.getProgramFile(), part, *tokens, commentLines, home);
    rootText = parsed.rootText;
    rootIndent = parsed.rootIndent;
    firstLeaf = parsed.firstLeaf;
    lastLeaf = parsed.lastLeaf;
    tokenCount = parsed.tokenCount;
}

} // namespace ca::formatting
