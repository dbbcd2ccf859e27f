#include "history/item_history.h"

namespace history {
namespace {
// Above this the archive is taken whatever the local history holds.
constexpr int32_t kArchiveAlwaysAbove = 500;
}  // namespace

bool UseArchive(int32_t localResult, int32_t archiveResult) {
    return archiveResult > kArchiveAlwaysAbove || localResult < archiveResult;
}

bool ChooseLocal(int32_t localResult, int32_t archiveResult) { return !UseArchive(localResult, archiveResult); }

}  // namespace history
