#pragma once

#include "entry/TokenContract.h"

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ca::formatting::legacy {

class LegacyFormatter;
struct Settings;

/// Tokens of one line that are only read.
using LineView = std::span<const Token>;

/// A line that is being rewritten: the tokens of a list from `begin` to its end.
///
/// The driver puts each line behind the lines that are done and edits it there, so that no line is copied
/// twice. A line in a list of its own begins at 0.
class EditedLine {
public:
    explicit EditedLine(std::vector<Token>& list, std::size_t begin = 0) : list(list), begin(begin) {}

    operator LineView() const { return LineView(list).subspan(begin); }
    std::size_t size() const { return list.size() - begin; }
    Token& operator[](std::size_t index) const { return list[begin + index]; }

    void insertFirst(Token token) const { list.insert(place(0), std::move(token)); }
    void erase(std::size_t index) const { list.erase(place(index)); }

private:
    std::vector<Token>::iterator place(std::size_t index) const {
        return list.begin() + static_cast<std::ptrdiff_t>(begin + index);
    }

    std::vector<Token>& list;
    std::size_t begin;
};

/// The token that says what a line is: its first one, or its second behind blanks.
inline const Token& getFirstCodeToken(LineView line) {
    return line.size() > 1 && line[0].type == TokenType::Whitespace ? line[1] : line[0];
}

/// The tabs and spaces that a text starts with.
std::u16string_view getLeadingBlanks(std::u16string_view text);

/// Width of a run of blanks in columns.
std::uint32_t measureBlanks(std::u16string_view text, const Settings& settings);

/// Puts blanks of `width` columns in place of the first `length` characters of `text`.
void replaceBlanks(std::u16string& text, std::size_t length, std::uint32_t width, const Settings& settings);

/// `width` less one level, and never less than 0.
std::uint32_t subtractLevel(std::uint32_t width, const Settings& settings);

// The steps of the driver. Each stands behind the public member of the same meaning, which says what it does.

bool isBlank(LineView line);
void trimLine(EditedLine line);
void moveColumns(EditedLine line, long delta);
std::uint32_t getIndentation(const LegacyFormatter& formatter, LineView line);
void indentLine(const LegacyFormatter& formatter, EditedLine line);
void trackLine(LegacyFormatter& formatter, LineView line);

} // namespace ca::formatting::legacy
