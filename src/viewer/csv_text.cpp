#include "viewer/csv_text.h"

#include <charconv>
#include <cmath>

namespace viewer {
namespace {

template <typename T>
std::string Shortest(T value) {
    if (std::isnan(value)) return std::string();
    char buffer[64];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    return std::string(buffer, result.ptr);
}

void AppendRow(std::string& out, const std::vector<std::string>& fields) {
    for (size_t i = 0; i < fields.size(); ++i) {
        if (i > 0) out += ',';
        out += CsvField(fields[i]);
    }
    out += '\n';
}

}  // namespace

std::string CsvField(std::string_view text) {
    if (text.find_first_of(",\"\r\n") == std::string_view::npos) return std::string(text);
    std::string quoted = "\"";
    for (char c : text) {
        if (c == '"') quoted += '"';
        quoted += c;
    }
    quoted += '"';
    return quoted;
}

std::string CsvText(const CsvTable& table) {
    std::string out;
    for (std::string line : table.header) {
        for (char& c : line)
            if (c == '\n' || c == '\r') c = ' ';
        out += "# " + line + "\n";
    }
    AppendRow(out, table.columns);
    for (const std::vector<std::string>& row : table.rows) AppendRow(out, row);
    return out;
}

std::string CsvNumber(float value) { return Shortest(value); }
std::string CsvNumber(double value) { return Shortest(value); }

}  // namespace viewer
