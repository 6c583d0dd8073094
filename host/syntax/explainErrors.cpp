// Finds out which errors follow from one mistake, by putting the mistake right: a guess of what was meant
// changes the text, the text is parsed again, and if it has fewer errors then the guess was good. The error
// with its advice replaces all that are gone, and the search continues in the changed text:
//
//     swicth x        3 errors: 'case' and 'otherwise' have no 'switch', 'end' closes nothing
//     case 1
//     otherwise       'switch' instead of 'swicth' leaves none of them, so the one error to report is that
//     end             'swicth' is not a keyword
//
// A changed text has the same lines, so only columns have to be translated back.

#include "syntax/explainErrors.h"

#include "syntax/Parser.h"
#include "syntax/Slips.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <tuple>
#include <utility>

namespace ca::syntax {

namespace {

constexpr std::size_t maximalGuesses = 50;
constexpr std::size_t maximalCharacters = 2 * 1024 * 1024; // in all guesses together

/// A text with some mistakes corrected, and the errors that are left.
struct Draft {
    std::u16string text;
    std::vector<CodeToken> codes;
    std::vector<SyntaxError> errors;
};

std::vector<CodeToken> listCodes(const std::u16string& text) {
    return TokenCursor(text, lexer::lexSpans(text)).getCodes();
}

Draft parseDraft(std::u16string text) {
    const std::vector<TokenSpan> tokens = lexer::lexSpans(text);
    Arena arena;
    SyntaxErrors errors;
    Parser(text, tokens, arena, errors).parseFile();
    std::vector<CodeToken> codes = TokenCursor(text, tokens).getCodes();
    return {std::move(text), std::move(codes), errors.take()};
}

std::u16string applyTo(const std::u16string& text, const std::vector<Replacement>& replacements) {
    std::u16string changed;
    std::size_t position = 0;
    for (const Replacement& replacement : replacements) {
        changed.append(text, position, replacement.position - position);
        changed += replacement.text;
        position = replacement.position + replacement.length;
    }
    return changed.append(text, position);
}

/// Moves an error of the changed text to its place in the text before.
void translateBack(SyntaxError& error, const std::vector<Replacement>& replacements) {
    for (auto change = replacements.rbegin(); change != replacements.rend(); ++change) {
        if (error.line != change->line || error.column <= change->column) {
            continue;
        }
        const std::size_t offset = error.column - change->column;
        const std::size_t size = change->text.size();
        error.column =
            change->column + static_cast<std::uint32_t>(offset < size ? std::min(offset, change->length)
                                                                      : offset - size + change->length);
    }
}

bool isBefore(const SyntaxError& left, const SyntaxError& right) {
    return std::tie(left.line, left.column) < std::tie(right.line, right.column);
}

/// Whether the first list is of fewer errors. Two full lists end before the end of the text, the better one
/// later.
bool isBetter(const std::vector<SyntaxError>& left, const std::vector<SyntaxError>& right) {
    return left.size() < right.size() ||
           (left.size() == SyntaxErrors::limit && isBefore(right.back(), left.back()));
}

class Explanation {
public:
    Explanation(const std::u16string& text, std::vector<SyntaxError> errors)
        : draft{text, listCodes(text), std::move(errors)},
          doubtful(findDoubtfulWords(draft.text, draft.codes)) {}

    std::vector<SyntaxError> collectErrors() {
        for (std::size_t next = 0; next < draft.errors.size() && canGuess();) {
            next += explain(next) ? 0 : 1;
        }
        for (SyntaxError& error : draft.errors) {
            addError(std::move(error));
        }
        std::stable_sort(explained.begin(), explained.end(), isBefore);
        explained.resize(std::min(explained.size(), SyntaxErrors::limit));
        return std::move(explained);
    }

private:
    bool canGuess() const {
        return guesses < maximalGuesses && characters + draft.text.size() <= maximalCharacters;
    }

    /// Puts right what the error at `index` comes from, if that can be told.
    bool explain(std::size_t index) {
        const FaultyText faulty{draft.text, draft.codes, doubtful};
        for (Correction& slip : findSlips(faulty, draft.errors[index])) {
            if (!canGuess()) {
                return false;
            }
            ++guesses;
            characters += draft.text.size();
            Draft better = parseDraft(applyTo(draft.text, slip.replacements));
            if (isBetter(better.errors, draft.errors)) {
                addError(std::move(slip.error));
                draft = std::move(better);
                doubtful = findDoubtfulWords(draft.text, draft.codes);
                corrections.push_back(std::move(slip.replacements));
                return true;
            }
        }
        return false;
    }

    void addError(SyntaxError error) {
        for (auto change = corrections.rbegin(); change != corrections.rend(); ++change) {
            translateBack(error, *change);
        }
        explained.push_back(std::move(error));
    }

    Draft draft;
    std::vector<DoubtfulWord> doubtful; ///< of the draft
    std::vector<std::vector<Replacement>> corrections;
    std::vector<SyntaxError> explained;
    std::size_t guesses = 0;
    std::size_t characters = 0;
};

} // namespace

std::vector<SyntaxError> explainErrors(const std::u16string& text, std::vector<SyntaxError> errors) {
    if (errors.empty() || text.size() > maximalCharacters) {
        return errors;
    }
    return Explanation(text, std::move(errors)).collectErrors();
}

} // namespace ca::syntax
