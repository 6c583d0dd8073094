#include "Keywords.h"

#include "ca/lexer/KeywordTypes.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace ca::lexer {

namespace {

struct Row {
    std::u16string_view word;
    Keyword keyword;
};

using enum KeywordPlace;

constexpr Row rows[] = {
    {u"arguments", {keyword::Arguments, FunctionStart}},
    {u"break", {TokenType::Break, Anywhere}},
    {u"case", {keyword::Case, Anywhere}},
    {u"catch", {keyword::Catch, Anywhere}},
    {u"classdef", {keyword::Classdef, Anywhere}},
    {u"continue", {TokenType::Continue, Anywhere}},
    {u"else", {keyword::Else, Anywhere}},
    {u"elseif", {keyword::Elseif, Anywhere}},
    {u"end", {TokenType::End, Anywhere}},
    {u"enumeration", {keyword::Enumeration, ClassMember}},
    {u"events", {keyword::Events, ClassMember}},
    {u"for", {keyword::For, Anywhere}},
    {u"function", {TokenType::Function, Anywhere}},
    {u"global", {TokenType::Global, Anywhere}},
    {u"if", {keyword::If, Anywhere}},
    {u"import", {TokenType::Import, ImportStatement}},
    {u"methods", {keyword::Methods, ClassMember}},
    {u"otherwise", {keyword::Otherwise, Anywhere}},
    {u"parfor", {keyword::Parfor, Anywhere}},
    {u"persistent", {TokenType::Persistent, Anywhere}},
    {u"properties", {keyword::Properties, ClassMember}},
    {u"return", {TokenType::Return, Anywhere}},
    {u"spmd", {keyword::Spmd, Anywhere}},
    {u"switch", {keyword::Switch, Anywhere}},
    {u"try", {keyword::Try, Anywhere}},
    {u"while", {keyword::While, Anywhere}},
};

constexpr bool isOrdered(const Row& a, const Row& b) {
    return a.word < b.word;
}

static_assert(std::is_sorted(std::begin(rows), std::end(rows), isOrdered));

/// For each small letter the first row that starts with it or a later one, and the end of the rows.
constexpr auto makeFirstRows() {
    std::array<std::uint8_t, 27> first{};
    for (std::size_t letter = 0; letter < first.size(); ++letter) {
        while (first[letter] < std::size(rows) &&
               static_cast<std::size_t>(rows[first[letter]].word[0] - u'a') < letter) {
            ++first[letter];
        }
    }
    return first;
}

constexpr auto firstRows = makeFirstRows();

} // namespace

std::optional<Keyword> findKeyword(std::u16string_view word) {
    const auto letter = static_cast<std::size_t>(word[0] - u'a');
    if (letter >= 26 || word.size() == 1) {
        return std::nullopt;
    }
    for (std::size_t row = firstRows[letter]; row < firstRows[letter + 1]; ++row) {
        if (rows[row].word[1] == word[1] && rows[row].word == word) {
            return rows[row].keyword;
        }
    }
    return std::nullopt;
}

bool isStatementKeyword(Keyword keyword) {
    return keyword.place == Anywhere && (opensBlock(keyword.type) || dividesBlock(keyword.type));
}

std::vector<std::u16string_view> listKeywords() {
    std::vector<std::u16string_view> words;
    for (const Row& row : rows) {
        words.push_back(row.word);
    }
    return words;
}

} // namespace ca::lexer
