#include "support/TreeProperties.h"

#include "entry/formatInParts.h"
#include "format/SpanReader.h"
#include "support/ClaimChecker.h"
#include "support/TreeBuilder.h"
#include "support/TreeInvariantChecker.h"
#include "tree/LeafNode.h"

#include <ca/Analyzer.h>
#include <ca/formatting/TreeFormat.h>
#include <ca/lexer/lex.h>

#include <stdexcept>

using namespace ca::formatting;

namespace {

/// The text with each of its line ends as LF.
std::u16string normalizeLineEnds(const std::u16string& text) {
    std::u16string normal;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != u'\r') {
            normal += text[i];
        } else if (i + 1 == text.size() || text[i + 1] != u'\n') {
            normal += u'\n';
        }
    }
    return normal;
}

std::u16string withoutLeadingBlanks(const std::u16string& text) {
    std::u16string stripped;
    for (const char16_t c : normalizeLineEnds(text)) {
        const bool isLineStart = stripped.empty() || stripped.back() == u'\n';
        if (!isLineStart || (c != u' ' && c != u'\t')) {
            stripped += c;
        }
    }
    return stripped;
}

std::size_t countLeaves(const FormatTree& tree) {
    std::size_t count = 0;
    for (auto leaf = tree.getFirstLeaf(); leaf; leaf = (*leaf)->getNext()) {
        ++count;
    }
    return count;
}

/// The shortest part is a statement.
std::u16string formatByStatements(const std::u16string& text, const TestOptions& options) {
    const auto analysis = ca::createSingleFileAnalyzer()->parseSourceCode(text);
    ombrel::SpanReader reader(text, *analysis->getTokenSpans());
    return formatInParts(*analysis, reader, CommentLines::AsWritten, makeConfig(options), 1);
}

std::string findFaultOfTree(const std::u16string& text, const FormatTree& tree) {
    const auto analysis = ca::createSingleFileAnalyzer()->parseSourceCode(text);
    try {
        if (countClaims(*analysis->getProgramFile(), ca::lexer::lex(text)) != countLeaves(tree)) {
            return "the tree has another number of leaves than the walk has claims";
        }
    } catch (const std::runtime_error& fault) {
        return fault.what();
    }
    const auto faults = checkTreeInvariants(text, tree);
    return faults.empty() ? "" : faults.front();
}

} // namespace

std::u16string getCode(std::u16string text) {
    std::erase_if(text, [](char16_t c) {
        return std::u16string_view(u" \t\r\n;,.").find(c) != std::u16string_view::npos;
    });
    return text;
}

std::string findTreeFault(const std::u16string& text, const TestOptions& options) {
    const auto tree = std::make_shared<FormatTree>(text);
    if (std::string fault = findFaultOfTree(text, *tree); !fault.empty()) {
        return fault;
    }
    if (normalizeLineEnds(formatTree(tree, makeConfig({}))) != normalizeLineEnds(text)) {
        return "more than line ends changes with nothing switched on";
    }
    const TestOptions indentation{.indentation = true, .functionStyle = options.functionStyle};
    if (withoutLeadingBlanks(formatTree(tree, makeConfig(indentation))) != withoutLeadingBlanks(text)) {
        return "indentation changes more than line starts";
    }
    const std::u16string formatted = formatTree(tree, makeConfig(options));
    if (formatByStatements(text, options) != formatted) {
        return "statement by statement it comes out as another text";
    }
    if (getCode(formatted) != getCode(text)) {
        return "code or comments change";
    }
    return {};
}
