#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace ca::formatting {

/// A grid of strings that draws a tree sideways: leaves at the left, each parent as a bracket to the right of
/// what it holds.
///
///     a      "a" -+ Container
///     gap     "" |
///     b      "b" -+
///
/// Rows may differ in length until padRows() has run. Memory is proportional to the number of rows and
/// brackets: the cells of a bracket, and the empty ones, exist only in the text.
class DebugTable {
public:
    using Row = std::vector<std::u16string>;

    std::size_t getRowCount() const;

    void appendRow(const Row& row);

    /// Adds copies of all rows of another table at the bottom.
    void appendRows(const DebugTable& other);

    /// The same without copying.
    void appendRows(DebugTable&& other);

    /// Appends empty cells until all rows are as long as the longest one.
    void padRows();

    /// Adds a column that joins all rows under a label. One row gets the label alone, no rows get nothing.
    void addBracket(std::u16string_view label);

    /// One line for each row, each ending in a line feed: cells are right-aligned in columns that are two
    /// characters wider than their longest cell.
    std::u16string toString() const;

private:
    /// What is in one column, from row `first` to row `last`.
    struct Bracket {
        std::size_t column;
        std::size_t first;
        std::size_t last;
        std::u16string label;

        std::u16string getCell(std::size_t row) const;
    };
    using Columns = std::vector<std::vector<const Bracket*>>; ///< in each, brackets by rows

    Columns sortBrackets() const;
    std::vector<std::size_t> measureColumns() const;

    std::vector<Row> rows;
    std::vector<Bracket> brackets;
    std::size_t columnCount = 0; ///< length of the longest row
};

} // namespace ca::formatting
