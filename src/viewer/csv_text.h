// Comma-separated text for the exports: a few comment lines saying what the
// numbers are, a row of column names, then the rows. Standard library only,
// so that what lands in the file is checked without a window.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace viewer {

struct CsvTable {
    std::vector<std::string> header;   // written as "# " lines before the column names
    std::vector<std::string> columns;
    std::vector<std::vector<std::string>> rows;
};

// One field: quoted when it holds a comma, a quote or a line break (quotes
// inside doubled), as spreadsheets read it; otherwise as it is.
std::string CsvField(std::string_view text);

// The whole table, one line per row, each ending in "\n". A header line
// cannot break the comment: its line breaks become blanks.
std::string CsvText(const CsvTable& table);

// A value as the shortest text that reads back as the same float; "" for NaN.
std::string CsvNumber(float value);
// An x position (element or Unix seconds) likewise, as a double.
std::string CsvNumber(double value);

}  // namespace viewer
