#include "format/EditAdoption.h"

#include "format/GapEditor.h"
#include "format/TreeSafetyCheck.h"
#include "text/LineEdgeEditor.h"

#include <algorithm>
#include <utility>

namespace ombrel {

namespace {

Edits adoptLineEdges(const std::u16string& text, std::vector<Edit> edits) {
    LineEdgeEditor editor(text);
    for (Edit& edit : edits) {
        editor.add(std::move(edit));
    }
    return editor.take();
}

Result<Edits> adoptGaps(const ParsedText& source, std::vector<Edit> edits) {
    const GapList gaps(source.text, source.getTokens());
    GapEditor editor(gaps);
    editor.enter(0);
    std::size_t entered = 0;
    for (Edit& edit : edits) {
        const std::size_t gap = gaps.find(edit.getEnd());
        if (gap != entered) {
            editor.enter(entered = gap);
        }
        if (!editor.accepts(edit)) {
            return fail(Code::UnsafeResult, "the edits would change more than whitespace and separators");
        }
        editor.add(std::move(edit));
    }
    return editor.take();
}

} // namespace

Result<Edits> adoptEdits(const std::u16string& text, std::vector<Edit> edits) {
    const auto isLineEdge = [&](const Edit& edit) { return LineEdgeEditor::accepts(text, edit); };
    if (std::all_of(edits.begin(), edits.end(), isLineEdge)) {
        return adoptLineEdges(text, std::move(edits));
    }
    const ParsedText source(text);
    if (!source.parsed.errors.empty()) {
        return fail(Code::SyntaxError, "it doesn't parse");
    }
    auto adopted = adoptGaps(source, std::move(edits));
    if (!adopted) {
        return adopted;
    }
    const ProgramDifferences differences = findDifferences(source, applyEdits(text, *adopted), *adopted);
    if (!differences.places.empty()) {
        return fail(Code::UnsafeResult, "the edits would change its program");
    }
    return adopted;
}

} // namespace ombrel
