#include "catalogue/reader_support.h"

#include "catalogue/table.h"

namespace catalogue::detail {

bool IsSkipped(std::string_view line, SkipRule rule) {
    switch (rule) {
        case SkipRule::CommentsAndEmpty:
            return line.empty() || StartsWithAny(line, ";%#");
        case SkipRule::Comments:
            return StartsWithAny(line, ";%#");
        case SkipRule::SemicolonPercent:
            return StartsWithAny(line, ";%");
        case SkipRule::TwoCharacterTest: {
            const std::string_view prefix = line.substr(0, 2);
            return prefix == ";" || prefix == "%" || prefix == "#";
        }
    }
    return false;
}

}  // namespace catalogue::detail
