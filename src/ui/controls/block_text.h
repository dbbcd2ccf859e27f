// The text block a grid takes in one paste: rows ended by a carriage return,
// fields within a row separated by tabs.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ui {

using BlockRows = std::vector<std::vector<std::string>>;

// CR, LF and CR LF each end a row; a row end at the very end of the text
// starts no further row, so "1\r2\r" is two rows. An empty row is one empty
// field. The empty text is no rows at all.
BlockRows SplitBlock(std::string_view text);

}  // namespace ui
