#include "tree/DebugTable.h"

#include <algorithm>
#include <iterator>
#include <numeric>
#include <utility>

namespace ca::formatting {

namespace {

constexpr std::size_t columnGap = 2;

} // namespace

/// All cells of a bracket that joins rows have the same length.
std::u16string DebugTable::Bracket::getCell(std::size_t row) const {
    if (first == last) {
        return u"] " + label;
    }
    if (row == first) {
        return u"-+ " + label;
    }
    return (row == last ? u"-+" : u" |") + std::u16string(label.size() + 1, u' ');
}

std::size_t DebugTable::getRowCount() const {
    return rows.size();
}

void DebugTable::appendRow(const Row& row) {
    rows.push_back(row);
    columnCount = std::max(columnCount, row.size());
}

void DebugTable::appendRows(const DebugTable& other) {
    appendRows(DebugTable(other));
}

void DebugTable::appendRows(DebugTable&& other) {
    if (rows.empty()) {
        std::swap(*this, other);
        return;
    }
    for (Bracket& bracket : other.brackets) {
        bracket.first += rows.size();
        bracket.last += rows.size();
    }
    std::move(other.rows.begin(), other.rows.end(), std::back_inserter(rows));
    std::move(other.brackets.begin(), other.brackets.end(), std::back_inserter(brackets));
    columnCount = std::max(columnCount, other.columnCount);
}

void DebugTable::padRows() {
    for (Row& row : rows) {
        row.resize(columnCount);
    }
}

void DebugTable::addBracket(std::u16string_view label) {
    if (!rows.empty()) {
        brackets.push_back({columnCount++, 0, rows.size() - 1, std::u16string(label)});
    }
}

DebugTable::Columns DebugTable::sortBrackets() const {
    Columns columns(columnCount);
    for (const Bracket& bracket : brackets) {
        columns[bracket.column].push_back(&bracket);
    }
    for (auto& column : columns) {
        std::sort(column.begin(), column.end(),
                  [](const Bracket* a, const Bracket* b) { return a->first < b->first; });
    }
    return columns;
}

std::vector<std::size_t> DebugTable::measureColumns() const {
    std::vector<std::size_t> widths(columnCount, columnGap);
    for (const Row& row : rows) {
        for (std::size_t column = 0; column < row.size(); ++column) {
            widths[column] = std::max(widths[column], row[column].size() + columnGap);
        }
    }
    for (const Bracket& bracket : brackets) {
        std::size_t& width = widths[bracket.column];
        width = std::max(width, bracket.getCell(bracket.first).size() + columnGap);
    }
    return widths;
}

std::u16string DebugTable::toString() const {
    const std::vector<std::size_t> widths = measureColumns();
    const Columns columns = sortBrackets();
    std::vector<std::size_t> next(columnCount, 0); // in each column, the first bracket that isn't over

    std::u16string text;
    text.reserve(rows.size() * (std::accumulate(widths.begin(), widths.end(), std::size_t{1})));
    for (std::size_t i = 0; i < rows.size(); ++i) {
        for (std::size_t column = 0; column < columnCount; ++column) {
            std::size_t& current = next[column];
            const auto& others = columns[column];
            const Bracket* bracket = current < others.size() ? others[current] : nullptr;
            std::u16string mark;
            std::u16string_view cell = column < rows[i].size() ? rows[i][column] : mark;
            if (bracket != nullptr && bracket->first <= i) {
                cell = mark = bracket->getCell(i);
                current += bracket->last == i ? 1 : 0;
            }
            text.append(widths[column] - cell.size(), u' ').append(cell);
        }
        text += u'\n';
    }
    return text;
}

} // namespace ca::formatting
