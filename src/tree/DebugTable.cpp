#include "tree/DebugTable.h"

#include "tree/DebugText.h"

#include <algorithm>
#include <iomanip>
#include <ostream>

namespace ca::formatting {

std::size_t DebugTable::getRowCount() const {
    return rows.size();
}

void DebugTable::appendRow(const Row& row) {
    rows.push_back(row);
}

void DebugTable::appendRows(const DebugTable& other) {
    rows.insert(rows.end(), other.rows.begin(), other.rows.end());
}

void DebugTable::padRows() {
    columnCount = 0;
    for (const Row& row : rows) {
        columnCount = std::max(columnCount, row.size());
    }
    for (Row& row : rows) {
        row.resize(columnCount);
    }
}

void DebugTable::addBracket(std::u16string_view label) {
    padRows();
    if (rows.empty()) {
        return;
    }
    if (rows.size() == 1) {
        rows.front().push_back(u"] " + std::u16string(label));
        return;
    }
    const std::u16string blank(label.size() + 1, u' ');
    rows.front().push_back(u"-+ " + std::u16string(label));
    for (std::size_t i = 1; i + 1 < rows.size(); ++i) {
        rows[i].push_back(u" |" + blank);
    }
    rows.back().push_back(u"-+" + blank);
}

std::u16string DebugTable::toString() const {
    DebugTable padded(*this);
    padded.padRows();

    std::vector<std::size_t> widths(padded.columnCount, 0);
    for (const Row& row : padded.rows) {
        for (std::size_t column = 0; column < row.size(); ++column) {
            widths[column] = std::max(widths[column], row[column].size() + 2);
        }
    }

    auto stream = makeDebugStream();
    for (const Row& row : padded.rows) {
        for (std::size_t column = 0; column < row.size(); ++column) {
            stream << std::setw(static_cast<int>(widths[column])) << row[column];
        }
        stream << u'\n' << std::flush;
    }
    return stream.str();
}

} // namespace ca::formatting
