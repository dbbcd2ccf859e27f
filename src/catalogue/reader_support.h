// What the readers share: error capture and the walk over a table's lines.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/catalogue.h"
#include "catalogue/files.h"
#include "catalogue/runtime_error.h"

namespace catalogue::detail {

// Runs a reader's body; a RuntimeError ends it with its code, and so does any
// other exception (as Unexpected): nothing throws out of a reader. cat.LastReport
// gets the report when the reader ends, so a reader that the window starts
// from inside another (the channel preparation reads thresholds while the
// data-source file is read) does not stand in for the outer one.
template <typename Body>
int16_t RunReader(Catalogue& cat, std::string_view path, Body&& body) {
    ReaderReport report{NativePath(path), 0, "", 0};
    int16_t result = 0;
    try {
        body(report);
        report.line = 0;
    } catch (const RuntimeError& error) {
        report.error = error.what();
        result = error.code();
    } catch (const std::exception& error) {
        report.error = std::string("unexpected failure: ") + error.what();
        result = static_cast<int16_t>(ErrorKind::Unexpected);
    }
    cat.LastReport = std::move(report);
    return result;
}

// Which lines a reader passes over before the header and the data rows.
enum class SkipRule {
    CommentsAndEmpty,   // first character ";", "%" or "#"; and empty lines
    Comments,           // first character ";", "%" or "#"; empty lines are rows
    SemicolonPercent,   // first character ";" or "%"; "#" and empty lines are rows
    TwoCharacterTest,   // the first two characters compared with ";", "%", "#":
                        // only one-character lines can match
};

bool IsSkipped(std::string_view line, SkipRule rule);

// Calls onHeader(line) for the first line that is not skipped and onRow(line)
// for the others, keeping report.line on the line being handled. onRow returns
// false to stop early.
template <typename OnHeader, typename OnRow>
void WalkTable(const std::vector<std::string>& lines, SkipRule rule, ReaderReport& report,
               OnHeader&& onHeader, OnRow&& onRow) {
    bool haveHeader = false;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        report.line = static_cast<int32_t>(i + 1);
        if (IsSkipped(lines[i], rule)) continue;
        if (!haveHeader) {
            haveHeader = true;
            onHeader(lines[i]);
            continue;
        }
        if (!onRow(lines[i])) return;
    }
}

}  // namespace catalogue::detail
