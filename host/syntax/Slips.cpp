// Everyday slips: small mistakes that make the parser stumble somewhere else than where they were made, or
// more than once. Each has one function, which looks at one error and adds what could explain it:
//
//     plot(x,              the parser misses a ')' on the first line, and finds one too many on the second;
//         y)               with '...' at the end of the first line nothing is wrong
//
// A function may guess wrong, since each guess is tried before anybody sees it (see explainErrors).

#include "syntax/Slips.h"

#include "lexer/Keywords.h"
#include "lexer/Nesting.h"
#include "syntax/SyntaxErrors.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <tuple>
#include <utility>

namespace ca::syntax {

namespace {

using Corrections = std::vector<Correction>;
using Codes = std::vector<CodeToken>;

SyntaxError makeError(std::u16string_view identifier, std::u16string message, const Token& at) {
    return {std::u16string(identifier), std::move(message), at.line, at.column,
            static_cast<std::uint32_t>(at.lexeme.size())};
}

/// Replaces the token at `place` and as many characters after it as `length` is longer than it is.
Replacement replace(const FaultyText& faulty, std::size_t place, std::size_t length, std::u16string text) {
    const CodeToken& code = faulty.codes[place];
    return {code.position, code.line, code.column, length, std::move(text)};
}

Replacement insertAfter(const FaultyText& faulty, std::size_t place, std::u16string text) {
    const CodeToken& code = faulty.codes[place];
    return {code.position + code.length, code.line, code.column + code.length, 0, std::move(text)};
}

/// The place of the token that the error points at.
std::size_t findPlace(const FaultyText& faulty, const SyntaxError& error) {
    const auto isBefore = [](const CodeToken& code, const SyntaxError& wanted) {
        return std::tie(code.line, code.column) < std::tie(wanted.line, wanted.column);
    };
    const auto found = std::lower_bound(faulty.codes.begin(), faulty.codes.end() - 1, error, isBefore);
    return static_cast<std::size_t>(found - faulty.codes.begin());
}

bool startsStatement(const Codes& codes, std::size_t place) {
    if (place == 0) {
        return true;
    }
    const TokenType previous = codes[place - 1].type;
    return previous == lineEnd || previous == TokenType::Comma || previous == TokenType::Semicolon;
}

std::size_t findLineStart(const FaultyText& faulty, std::size_t place) {
    while (place > 0 && faulty.getType(place - 1) != lineEnd) {
        --place;
    }
    return place;
}

/// Whether no list goes on at such a token.
bool endsLists(TokenType type) {
    return type == TokenType::EndOfInput || type == TokenType::End || opensBlock(type) || dividesBlock(type);
}

/// By how many levels the lexeme nests deeper. A word of a command may hold brackets that were meant as such.
int countBrackets(const FaultyText& faulty, std::size_t place) {
    int levels = 0;
    const TokenType type = faulty.getType(place);
    const bool isText = type == TokenType::CharacterLiteral || type == TokenType::StringLiteral ||
                        type == TokenType::Unrecognized;
    for (const char16_t c : isText ? std::u16string_view() : faulty.getLexeme(place)) {
        if (const auto bracket = lexer::findBracket(c)) {
            levels += lexer::isOpening(*bracket) ? 1 : -1;
        }
    }
    return levels;
}

/// The brackets of the line up to `place` that are still open there.
std::vector<std::size_t> findOpenBrackets(const FaultyText& faulty, std::size_t place) {
    std::vector<std::size_t> open;
    for (std::size_t i = findLineStart(faulty, place); i < place; ++i) {
        const auto bracket = lexer::findBracket(faulty.getLexeme(i).front());
        if (bracket && lexer::isOpening(*bracket)) {
            open.push_back(i);
        } else if (bracket && !open.empty()) {
            open.pop_back();
        }
    }
    return open;
}

/// `...` after each line from `place` on, up to the line that closes so many brackets; empty if none does.
std::vector<Replacement> continueLines(const FaultyText& faulty, std::size_t place,
                                       std::size_t openBrackets) {
    constexpr std::size_t maximalLines = 100;
    std::vector<Replacement> continuations;
    for (auto open = static_cast<int>(openBrackets); open > 0; ++place) {
        if (endsLists(faulty.getType(place)) || continuations.size() == maximalLines) {
            return {};
        }
        if (faulty.getType(place) == lineEnd) {
            continuations.push_back(insertAfter(faulty, place - 1, u" ..."));
        } else {
            open += countBrackets(faulty, place);
        }
    }
    return continuations;
}

/// A list in parentheses goes on in the next line, and nothing says so.
void findMissingContinuation(const FaultyText& faulty, const SyntaxError& error, Corrections& found) {
    const std::size_t place = findPlace(faulty, error);
    if (faulty.getType(place) != lineEnd) {
        return;
    }
    const std::vector<std::size_t> open = findOpenBrackets(faulty, place);
    auto continuations = continueLines(faulty, place, open.size());
    if (!continuations.empty()) {
        const Token bracket = faulty.getToken(open.back());
        found.push_back(
            {std::move(continuations),
             makeError(u"UnclosedBracket",
                       quoteToken(bracket) + u" is not closed on its line; did you forget '...' at " +
                           u"the end of line " + toText(error.line) + u"?",
                       bracket)});
    }
}

/// Whether the `if` at `place` has an `end` of its own, and another one right after it closes what is around.
bool hasOwnEnd(const FaultyText& faulty, std::size_t place) {
    int depth = 0;
    do {
        depth += opensBlock(faulty.getType(place)) ? 1 : 0;
        depth -= faulty.getType(place) == TokenType::End ? 1 : 0;
        ++place;
    } while (depth > 0 && faulty.getType(place) != TokenType::EndOfInput);
    while (faulty.getType(place) == lineEnd) {
        ++place;
    }
    return depth == 0 && faulty.getType(place) == TokenType::End;
}

/// `else if` opens a block inside the `else`, which needs an `end` of its own.
void findSplitElseif(const FaultyText& faulty, const SyntaxError& error, Corrections& found) {
    constexpr std::size_t maximalDistance = 10'000;
    if (error.identifier != u"UnclosedBlock") {
        return;
    }
    const std::size_t last = findPlace(faulty, error);
    const std::size_t first = last - std::min(last, maximalDistance);
    for (std::size_t place = first + 1; place < last; ++place) {
        const CodeToken& branch = faulty.codes[place - 1];
        const bool isSplit = faulty.getType(place) == keyword::If && branch.type == keyword::Else &&
                             branch.line == faulty.codes[place].line;
        if (!isSplit || hasOwnEnd(faulty, place)) {
            continue;
        }
        const std::size_t length = faulty.codes[place].position + 2 - faulty.codes[place - 1].position;
        SyntaxError advice =
            makeError(u"UnclosedBlock", u"'else if' opens a new block: did you mean 'elseif'?",
                      faulty.getToken(place - 1));
        advice.length = static_cast<std::uint32_t>(length);
        found.push_back({{replace(faulty, place - 1, length, u"elseif")}, std::move(advice)});
    }
}

char16_t toLower(char16_t c) {
    return u'A' <= c && c <= u'Z' ? static_cast<char16_t>(c + 32) : c;
}

/// Whether the two words differ by one letter more, less or other, or by two that are swapped. In short words
/// a letter may only be doubled or missing its double, or too many of them would be alike.
bool differByOneSlip(std::u16string_view word, std::u16string_view keyword) {
    while (!word.empty() && !keyword.empty() && word.front() == keyword.front()) {
        word.remove_prefix(1);
        keyword.remove_prefix(1);
    }
    while (!word.empty() && !keyword.empty() && word.back() == keyword.back()) {
        word.remove_suffix(1);
        keyword.remove_suffix(1);
    }
    const bool isSwapped =
        word.size() == 2 && keyword.size() == 2 && word[0] == keyword[1] && word[1] == keyword[0];
    return isSwapped || (word.size() <= 1 && keyword.size() <= 1);
}

/// Whether somebody who writes the word may mean the keyword: `whiel`, `While`, `endwhile`. Both are in small
/// letters.
bool isSlipOf(std::u16string_view word, std::u16string_view keyword) {
    if (keyword == u"end" && word.size() > keyword.size() && word.starts_with(keyword)) {
        const std::u16string_view block = word.substr(word[keyword.size()] == u'_' ? 4 : 3);
        return !block.empty() && lexer::findKeyword(block).has_value();
    }
    const auto [shorter, longer] = std::minmax({word.size(), keyword.size()});
    return longer - shorter <= 1 && differByOneSlip(word, keyword) &&
           (shorter >= 4 || std::is_permutation(word.begin(), word.end(), keyword.begin(), keyword.end()));
}

std::vector<std::u16string_view> listBlockKeywords() {
    std::vector<std::u16string_view> words = lexer::listKeywords();
    std::erase_if(words, [](std::u16string_view word) {
        const TokenType type = lexer::findKeyword(word)->type;
        return !opensBlock(type) && !dividesBlock(type) && type != TokenType::End;
    });
    return words;
}

/// The keywords of blocks that may be meant by the word.
std::vector<std::u16string_view> findMeantKeywords(std::u16string_view word) {
    static const std::vector<std::u16string_view> keywords = listBlockKeywords();
    std::u16string lower(word);
    std::transform(lower.begin(), lower.end(), lower.begin(), toLower);
    std::vector<std::u16string_view> meant;
    std::copy_if(keywords.begin(), keywords.end(), std::back_inserter(meant),
                 [&](std::u16string_view keyword) { return keyword != word && isSlipOf(lower, keyword); });
    return meant;
}

/// A keyword is misspelled, and what it should begin, divide or end has no other side: `swicth x`, `whiel a`.
void findMisspelledKeyword(const FaultyText& faulty, const SyntaxError& error, Corrections& found) {
    constexpr std::size_t maximalDistance = 10'000;
    constexpr std::size_t maximalGuesses = 4;
    const std::size_t last = findPlace(faulty, error);
    const std::size_t first = last - std::min(last, maximalDistance);
    const auto isAfter = [](std::size_t place, const DoubtfulWord& word) { return place < word.place; };
    auto next = std::upper_bound(faulty.doubtful.begin(), faulty.doubtful.end(), last, isAfter);
    while (next != faulty.doubtful.begin() && (--next)->place >= first && found.size() < maximalGuesses) {
        const Token word = faulty.getToken(next->place);
        for (const std::u16string_view keyword : next->keywords) {
            found.push_back({{replace(faulty, next->place, word.lexeme.size(), std::u16string(keyword))},
                             makeError(u"MisspelledKeyword",
                                       quoteToken(word) + u" is not a keyword: did you mean '" +
                                           std::u16string(keyword) + u"'?",
                                       word)});
        }
    }
}

/// The text of the tokens from `first` to `last` as spaces and line ends.
std::u16string blankOut(const FaultyText& faulty, std::size_t first, std::size_t last) {
    const std::size_t begin = faulty.codes[first].position;
    const std::size_t end = faulty.codes[last].position + faulty.codes[last].length;
    std::u16string blank(faulty.text.substr(begin, end - begin));
    std::replace_if(
        blank.begin(), blank.end(), [](char16_t c) { return c != u'\n' && c != u'\r'; }, u' ');
    return blank;
}

/// A block of arguments is no block for the tokenizer, since its header has a fault (`arguments ('abc)`) or
/// it comes after another statement. Neither its lines nor its `end` are further faults.
void findArgumentsWithoutBlock(const FaultyText& faulty, const SyntaxError& error, Corrections& found) {
    const auto isEnd = [&](std::size_t place) {
        return startsStatement(faulty.codes, place) && faulty.getLexeme(place) == u"end";
    };
    const std::size_t place = findPlace(faulty, error);
    std::size_t first = place;
    while (first > 0 && !(faulty.getLexeme(first) == u"arguments" && startsStatement(faulty.codes, first))) {
        if (faulty.getType(first) == TokenType::Function || first + 1000 < place) {
            return;
        }
        --first;
    }
    if (faulty.getType(first) != TokenType::NameToken28) {
        return;
    }
    std::size_t last = first;
    while (!isEnd(last)) {
        if (faulty.getType(last) == TokenType::EndOfInput) {
            return;
        }
        ++last;
    }
    std::u16string blank = blankOut(faulty, first, last);
    const std::size_t length = blank.size();
    const bool isHeaderFaulty = error.line == faulty.codes[first].line;
    found.push_back(
        {{replace(faulty, first, length, std::move(blank))},
         isHeaderFaulty
             ? error
             : makeError(u"MisplacedBlock",
                         u"an 'arguments' block has to come before the first statement of its function",
                         faulty.getToken(first))});
}

/// A branch without its block: the `end` that would have closed the block is no further fault.
void findBranchWithEnd(const FaultyText& faulty, const SyntaxError& error, Corrections& found) {
    if (error.identifier != u"MisplacedBranch") {
        return;
    }
    const std::size_t place = findPlace(faulty, error);
    std::u16string block = u"if 0, ";
    switch (faulty.getType(place)) {
    case keyword::Catch:
        block = u"try, ";
        break;
    case keyword::Case:
    case keyword::Otherwise:
        block = u"switch 0, ";
        break;
    default:
        break;
    }
    found.push_back({{replace(faulty, place, 0, std::move(block))}, error});
}

/// `if x = 1` and `while x = 1`.
void findAssignmentInCondition(const FaultyText& faulty, const SyntaxError& error, Corrections& found) {
    const std::size_t place = findPlace(faulty, error);
    if (faulty.getType(place) != TokenType::Assign) {
        return;
    }
    const TokenType header = faulty.getType(findLineStart(faulty, place));
    if (header == keyword::If || header == keyword::Elseif || header == keyword::While) {
        found.push_back({{replace(faulty, place, 1, u"==")},
                         makeError(u"UnexpectedText", u"a condition can't assign: did you mean '=='?",
                                   faulty.getToken(place))});
    }
}

/// `a != b`, as other languages write it.
void findForeignOperator(const FaultyText& faulty, const SyntaxError& error, Corrections& found) {
    const std::size_t place = findPlace(faulty, error);
    const std::size_t position = faulty.codes[place].position;
    if (faulty.getType(place) == TokenType::Unrecognized && faulty.text.substr(position, 2) == u"!=") {
        SyntaxError advice = makeError(u"UnrecognizedText", u"'!=' is not an operator: did you mean '~='?",
                                       faulty.getToken(place));
        advice.length = 2;
        found.push_back({{replace(faulty, place, 2, u"~=")}, std::move(advice)});
    }
}

} // namespace

std::vector<DoubtfulWord> findDoubtfulWords(std::u16string_view text, const Codes& codes) {
    std::vector<DoubtfulWord> words;
    for (std::size_t place = 0; place < codes.size(); ++place) {
        const TokenType type = codes[place].type;
        const bool isName = type == TokenType::NameToken27 || type == TokenType::NameToken28;
        if (!isName || !startsStatement(codes, place)) {
            continue;
        }
        if (auto keywords = findMeantKeywords(text.substr(codes[place].position, codes[place].length));
            !keywords.empty()) {
            words.push_back({place, std::move(keywords)});
        }
    }
    return words;
}

std::vector<Correction> findSlips(const FaultyText& faulty, const SyntaxError& error) {
    Corrections found;
    for (const auto find :
         {findMissingContinuation, findAssignmentInCondition, findForeignOperator, findSplitElseif,
          findArgumentsWithoutBlock, findMisspelledKeyword, findBranchWithEnd}) {
        find(faulty, error, found);
    }
    return found;
}

} // namespace ca::syntax
