// Helpers for the comma-separated configuration tables.
//
// Fields are separated by ",". A field that begins with a double quote runs to
// the next double quote, so commas inside quotes do not split it; the quotes
// stay part of the value.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace catalogue {

// Removes blanks, tabs, NUL characters, carriage returns and line feeds from
// both ends. Double quotes are kept.
std::string TrimAll(std::string_view text);

// The 0-based position of `key` in a header line, compared upper-cased after
// trimming each field; -1 when no field matches. An empty header field stops
// the search and its position is returned as if it matched: a header that
// starts with a comma finds every key at 0, and a trailing comma answers every
// missing key with the position of that empty last field.
int FindColumn(std::string_view header, std::string_view key);

// The trimmed text of field n (0-based) of a data line; "" when the line has
// fewer fields or n is negative.
std::string GetField(std::string_view line, int n);

// The fields of one data line, split once, for readers that take many
// fields of each row: Get(n) is GetField(line, n). The line must outlive it.
class RowFields {
public:
    explicit RowFields(std::string_view line);
    std::string Get(int n) const;

private:
    std::vector<std::string_view> fields_;
};

// ASCII upper case (configuration keys and flags are plain ASCII).
std::string UpperCase(std::string_view text);

// True when the line's first character is one of the given comment marks.
bool StartsWithAny(std::string_view line, std::string_view marks);

}  // namespace catalogue
