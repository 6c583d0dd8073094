// Compares two programs in two steps: the tokens of code and the comments, which are called marks here, and
// then the syntax trees, node by node. A mark of one text is paired with the mark of the other text that has
// the same number or, if the edits are known, with the one at the place where the edits put it:
//
//     x = [1; 2]     marks   x = [ 1 2 ]       A separator is no mark. That two rows have become one shows
//     x = [1 2]      marks   x = [ 1 2 ]       in the trees.

#include "format/TreeSafetyCheck.h"

#include "format/TreeComparison.h"

#include <algorithm>

#include <fmt/format.h>

namespace ombrel {

namespace {

/// Both texts side by side, with all that is different.
class Comparison {
public:
    Comparison(const ParsedText& before, const std::u16string& after, const Edits* edits)
        : before(before), after(after), beforeMarks(before.text, before.getTokens()),
          afterMarks(makeMarks(this->after)) {
        const Pairing pairing = edits == nullptr ? Pairing(beforeMarks, afterMarks, differences)
                                                 : Pairing(beforeMarks, afterMarks, *edits, differences);
        if (const ca::AnalysisResult* analysis = this->after.parsed.analysis.get()) {
            compareTrees({before.text, beforeMarks, *before.parsed.analysis->getProgramFile()},
                         {this->after.text, afterMarks, *analysis->getProgramFile()}, pairing, differences);
        }
        for (const ca::SyntaxError& error : this->after.parsed.errors) {
            differences.push_back({Difference::Kind::Unparsable, pairing.getBefore(afterMarks.find(error))});
        }
    }

    std::optional<Problem> getFirst() const {
        const auto first = std::min_element(differences.begin(), differences.end(),
                                            [](const auto& a, const auto& b) { return a.mark < b.mark; });
        return first == differences.end() ? std::nullopt : std::optional(makeProblem(*first));
    }

    std::vector<std::size_t> getPlaces() const {
        std::vector<std::size_t> places;
        places.reserve(differences.size());
        for (const Difference& difference : differences) {
            places.push_back(beforeMarks.getPosition(getMark(difference)));
        }
        std::sort(places.begin(), places.end());
        return places;
    }

private:
    std::size_t getMark(const Difference& difference) const {
        return std::min(difference.mark, beforeMarks.getCount() - 1);
    }

    static Marks makeMarks(const ParsedText& parsed) {
        return parsed.parsed.analysis != nullptr ? Marks(parsed.text, parsed.getTokens())
                                                 : Marks(parsed.text, ca::lexer::lexSpans(parsed.text));
    }

    Problem makeProblem(Difference difference) const {
        difference.mark = getMark(difference);
        const std::size_t offset = beforeMarks.getPosition(difference.mark);
        const std::size_t lastLineEnd = before.text.find_last_of(u"\r\n", offset - 1);
        const std::size_t lineStart = offset == 0 || lastLineEnd == before.text.npos ? 0 : lastLineEnd + 1;
        return {Code::UnsafeResult,
                fmt::format("the formatter would {}; nothing was written",
                            describe(difference, beforeMarks, afterMarks, after.parsed.errors)),
                findLine(before.text, offset), static_cast<std::uint32_t>(offset - lineStart + 1)};
    }

    const ParsedText& before;
    ParsedText after;
    Marks beforeMarks;
    Marks afterMarks;
    std::vector<Difference> differences;
};

} // namespace

std::optional<Problem> checkSameProgram(const ParsedText& before, const std::u16string& after) {
    return Comparison(before, after, nullptr).getFirst();
}

ProgramDifferences findDifferences(const ParsedText& before, const std::u16string& after,
                                   const Edits& edits) {
    const Comparison comparison(before, after, &edits);
    return {comparison.getPlaces(), comparison.getFirst()};
}

} // namespace ombrel
