#include "ui/controls/block_text.h"

namespace ui {
namespace {

std::vector<std::string> SplitFields(std::string_view row) {
    std::vector<std::string> fields;
    size_t start = 0;
    for (;;) {
        const size_t tab = row.find('\t', start);
        if (tab == std::string_view::npos) {
            fields.emplace_back(row.substr(start));
            return fields;
        }
        fields.emplace_back(row.substr(start, tab - start));
        start = tab + 1;
    }
}

}  // namespace

BlockRows SplitBlock(std::string_view text) {
    BlockRows rows;
    size_t start = 0;
    while (start < text.size()) {
        const size_t end = text.find_first_of("\r\n", start);
        if (end == std::string_view::npos) {
            rows.push_back(SplitFields(text.substr(start)));
            break;
        }
        rows.push_back(SplitFields(text.substr(start, end - start)));
        // A CR LF pair is one row end, as texts written on other systems have it.
        start = end + 1;
        if (text[end] == '\r' && start < text.size() && text[start] == '\n') ++start;
    }
    return rows;
}

}  // namespace ui
