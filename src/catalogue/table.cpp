#include "catalogue/table.h"

#include <cctype>

namespace catalogue {
namespace {

bool IsTrimmed(char c) { return c == ' ' || c == '\t' || c == '\0' || c == '\r' || c == '\n'; }

// The end (exclusive) of the field that starts at `start`: the next comma, or
// for a quoted field the first comma after the closing quote. A quote that is
// never closed runs to the end of the line.
std::size_t FieldEnd(std::string_view line, std::size_t start) {
    std::size_t from = start;
    if (start < line.size() && line[start] == '"') {
        const std::size_t close = line.find('"', start + 1);
        if (close == std::string_view::npos) return line.size();
        from = close + 1;
    }
    const std::size_t comma = line.find(',', from);
    return comma == std::string_view::npos ? line.size() : comma;
}

std::string_view TrimView(std::string_view text) {
    std::size_t first = 0;
    std::size_t last = text.size();
    while (first < last && IsTrimmed(text[first])) ++first;
    while (last > first && IsTrimmed(text[last - 1])) --last;
    return text.substr(first, last - first);
}

// Calls visit(index, trimmedField) for each field until it returns false.
template <typename Visit>
void WalkFields(std::string_view line, Visit visit) {
    std::size_t start = 0;
    for (int index = 0;; ++index) {
        const std::size_t end = FieldEnd(line, start);
        if (!visit(index, TrimView(line.substr(start, end - start)))) return;
        if (end >= line.size()) return;
        start = end + 1;
    }
}

}  // namespace

std::string TrimAll(std::string_view text) { return std::string(TrimView(text)); }

std::string UpperCase(std::string_view text) {
    std::string upper(text);
    for (char& c : upper)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    return upper;
}

int FindColumn(std::string_view header, std::string_view key) {
    const std::string upperHeader = UpperCase(header);
    const std::string upperKey = UpperCase(key);
    int found = -1;
    WalkFields(upperHeader, [&](int index, std::string_view field) {
        if (field.empty() || field == upperKey) {
            found = index;
            return false;
        }
        return true;
    });
    return found;
}

std::string GetField(std::string_view line, int n) {
    if (n < 0) return "";
    std::string result;
    WalkFields(line, [&](int index, std::string_view field) {
        if (index < n) return true;
        result = std::string(field);
        return false;
    });
    return result;
}

RowFields::RowFields(std::string_view line) {
    WalkFields(line, [&](int, std::string_view field) {
        fields_.push_back(field);
        return true;
    });
}

std::string RowFields::Get(int n) const {
    if (n < 0 || static_cast<std::size_t>(n) >= fields_.size()) return "";
    return std::string(fields_[static_cast<std::size_t>(n)]);
}

bool StartsWithAny(std::string_view line, std::string_view marks) {
    return !line.empty() && marks.find(line.front()) != std::string_view::npos;
}

}  // namespace catalogue
