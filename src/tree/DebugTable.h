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
/// Rows may differ in length until padRows() has run.
class DebugTable {
public:
    using Row = std::vector<std::u16string>;

    std::size_t getRowCount() const;

    void appendRow(const Row& row);

    /// Adds copies of all rows of another table at the bottom.
    void appendRows(const DebugTable& other);

    /// Appends empty cells until all rows are as long as the longest one.
    void padRows();

    /// Adds a column that joins all rows under a label. One row gets the label alone, no rows get nothing.
    void addBracket(std::u16string_view label);

    /// One line for each row, each ending in a line feed: cells are right-aligned in columns that are two
    /// characters wider than their longest cell.
    std::u16string toString() const;

private:
    std::vector<Row> rows;
    std::size_t columnCount = 0; ///< valid after padRows()
};

} // namespace ca::formatting
