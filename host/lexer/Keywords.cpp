#include "Keywords.h"

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
    {u"arguments", {TokenType::OpeningKeyword26, FunctionStart}},
    {u"break", {TokenType::Break, Anywhere}},
    {u"case", {TokenType::SecondaryIndentedKeyword18, Anywhere}},
    {u"catch", {TokenType::SecondaryKeyword16, Anywhere}},
    {u"classdef", {TokenType::ClassLevelKeyword20, Anywhere}},
    {u"continue", {TokenType::Continue, Anywhere}},
    {u"else", {TokenType::SecondaryKeyword9, Anywhere}},
    {u"elseif", {TokenType::SecondaryKeyword10, Anywhere}},
    {u"end", {TokenType::End, Anywhere}},
    {u"enumeration", {TokenType::OpeningKeyword24, ClassMember}},
    {u"events", {TokenType::OpeningKeyword23, ClassMember}},
    {u"for", {TokenType::OpeningKeyword3, Anywhere}},
    {u"function", {TokenType::Function, Anywhere}},
    {u"global", {TokenType::Global, Anywhere}},
    {u"if", {TokenType::OpeningKeyword4, Anywhere}},
    {u"import", {TokenType::Import, ImportStatement}},
    {u"methods", {TokenType::ClassLevelKeyword22, ClassMember}},
    {u"otherwise", {TokenType::SecondaryIndentedKeyword19, Anywhere}},
    {u"parfor", {TokenType::OpeningKeyword5, Anywhere}},
    {u"persistent", {TokenType::Persistent, Anywhere}},
    {u"properties", {TokenType::OpeningKeyword21, ClassMember}},
    {u"return", {TokenType::Return, Anywhere}},
    {u"spmd", {TokenType::OpeningKeyword25, Anywhere}},
    {u"switch", {TokenType::OpeningKeyword6, Anywhere}},
    {u"try", {TokenType::OpeningKeyword13, Anywhere}},
    {u"while", {TokenType::OpeningKeyword7, Anywhere}},
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
        if (rows[row].word == word) {
            return rows[row].keyword;
        }
    }
    return std::nullopt;
}

bool isStatementKeyword(TokenType type) {
    switch (type) {
    case TokenType::Function:
    case TokenType::ClassLevelKeyword20:
    case TokenType::OpeningKeyword3:
    case TokenType::OpeningKeyword4:
    case TokenType::OpeningKeyword5:
    case TokenType::OpeningKeyword6:
    case TokenType::OpeningKeyword7:
    case TokenType::OpeningKeyword13:
    case TokenType::OpeningKeyword25:
        return true;
    default:
        return dividesBlock(type);
    }
}

bool opensBlock(TokenType type) {
    switch (type) {
    case TokenType::Function:
    case TokenType::OpeningKeyword3:
    case TokenType::OpeningKeyword4:
    case TokenType::OpeningKeyword5:
    case TokenType::OpeningKeyword6:
    case TokenType::OpeningKeyword7:
    case TokenType::OpeningKeyword13:
    case TokenType::ClassLevelKeyword20:
    case TokenType::OpeningKeyword21:
    case TokenType::ClassLevelKeyword22:
    case TokenType::OpeningKeyword23:
    case TokenType::OpeningKeyword24:
    case TokenType::OpeningKeyword25:
    case TokenType::OpeningKeyword26:
        return true;
    default:
        return false;
    }
}

bool dividesBlock(TokenType type) {
    switch (type) {
    case TokenType::SecondaryKeyword9:
    case TokenType::SecondaryKeyword10:
    case TokenType::SecondaryKeyword16:
    case TokenType::SecondaryIndentedKeyword18:
    case TokenType::SecondaryIndentedKeyword19:
        return true;
    default:
        return false;
    }
}

std::vector<std::u16string_view> listKeywords() {
    std::vector<std::u16string_view> words;
    for (const Row& row : rows) {
        words.push_back(row.word);
    }
    return words;
}

} // namespace ca::lexer
