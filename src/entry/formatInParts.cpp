// A part is some statements of the outermost level. It can be formatted for itself, since the outermost
// container decides nothing about the gaps in it, and the outermost level indents nothing. What is left is
// the column in which the part begins:
//
//     x = 1; y = 2;      one part could be x = 1; and the next one, which begins in column 6, y = 2;
//
// The gap after a part belongs to the next one, as the gap before its first statement.

#include "entry/formatInParts.h"

#include "parser/FormattingParser.h"
#include "pass/FormatPass.h"
#include "tree/FormatTree.h"

#include <ca/Analyzer.h>
#include <ca/formatting/TreeFormat.h>

#include <stdexcept>

namespace ca::formatting {

namespace {

using Program = lf::astapi::ProgramFile<ca::astapi::CA>;

/// Ends before the first statement that begins so many characters after the first one of the part.
FilePart getPart(const Program& program, std::size_t firstStatement, std::size_t partLength) {
    const auto& statements = program.statements;
    std::size_t end = firstStatement;
    while (end < statements.size() &&
           (end == firstStatement ||
            statements[end]->position - statements[firstStatement]->position < partLength)) {
        ++end;
    }
    return {firstStatement, end, end == statements.size()};
}

/// Reads what the part needs: its own tokens and, since it may ask what comes next, the first of the next
/// part.
void readTokens(const Program& program, const FilePart& part, TokenReader& reader, Tokens& tokens) {
    const std::size_t end = part.isLast ? SIZE_MAX : program.statements[part.endStatement]->position;
    reader.read(end, tokens);
}

} // namespace

std::u16string formatInParts(const ca::AnalysisResult& analysis, TokenReader& reader,
                             CommentLines commentLines, const std::shared_ptr<FormattingConfig>& config,
                             std::size_t partLength) {
    const Program& program = *analysis.getProgramFile();
    const auto tokens = std::make_shared<Tokens>(); // those that are in no tree yet
    std::u16string text;
    std::uint64_t column = 0;
    for (FilePart part = {0, 0, false}; !part.isLast;) {
        part = getPart(program, part.endStatement, partLength);
        readTokens(program, part, reader, *tokens);
        const auto tree = std::make_shared<FormatTree>(analysis, part, tokens, commentLines);
        FormatPass pass(tree, config, column);
        text += pass.run();
        column = pass.getEndColumn(*tree->getLastLeaf());
        // Nothing asks the tree for its tokens any more.
        tokens->erase(tokens->begin(), tokens->begin() + static_cast<std::ptrdiff_t>(tree->getTokenCount()));
    }
    return text;
}

std::u16string formatSource(const TreeFormatRequest& request,
                            const std::shared_ptr<FormattingConfig>& config) {
    const ParsedSource& source = request.source;
    if (request.reader != nullptr) {
        return formatInParts(*source.analysis, *request.reader, request.commentLines, config);
    }
    if (source.tokens == nullptr) {
        throw std::invalid_argument("neither tokens nor a reader of tokens");
    }
    return FormatPass(std::make_shared<FormatTree>(source, request.commentLines), config).run();
}

} // namespace ca::formatting
