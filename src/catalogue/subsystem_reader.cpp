#include "catalogue/reader_support.h"
#include "catalogue/reader_messages.h"
#include "catalogue/readers.h"
#include "catalogue/table.h"

namespace catalogue {
namespace {

// Appends the rows of one subsystem table at position n, all with the same
// directory.
void ReadSubsystemRows(Catalogue& cat, ReaderReport& report, std::string_view path,
                       const std::string& directory, int16_t& n) {
    report.file = NativePath(path);
    const auto lines = ReadTextLines(path);
    int fileColumn = -1, descriptionColumn = -1;
    detail::WalkTable(
        lines, detail::SkipRule::CommentsAndEmpty, report,
        [&](const std::string& header) {
            fileColumn = FindColumn(header, "FILENAME");
            descriptionColumn = FindColumn(header, "DESCRIPTION");
        },
        [&](const std::string& line) {
            SubsystemRecord& subsystem = cat.SubsystemList[n];  // beyond entry 15 fails
            subsystem.Directory = directory;
            if (fileColumn >= 0) subsystem.FileName = GetField(line, fileColumn);
            if (descriptionColumn >= 0) subsystem.Description = GetField(line, descriptionColumn);
            n = CheckedAdd16(n, 1);
            report.rowsStored = n;
            return true;
        });
}

}  // namespace

int16_t ReadSubsystemList(Catalogue& cat, CatalogueWindow& window, std::string_view path) {
    return detail::RunReader(cat, path, [&](ReaderReport& report) {
        int16_t n = 0;
        // The local list is optional: it is read only when it is there. The
        // doubled "\" of ProgramPath + "\" is harmless and kept.
        const std::string localList = cat.ProgramPath + "\\" + std::string(kLocalSubsystemListFileName);
        if (!cat.ProgramPath.empty() && !FileSearch(localList).empty())
            ReadSubsystemRows(cat, report, localList, cat.ProgramPath, n);
        ReadSubsystemRows(cat, report, path, cat.ConfigPath, n);
        cat.SubsystemCount = n;

        report.line = 0;
        for (int16_t i = 0; i < n; ++i) {
            // The window has 15 entries: a 16th subsystem fails here.
            if (i >= kSubsystemMenuEntries)
                throw RuntimeError(ErrorKind::MenuEntryMissing,
                                   "the subsystem menu has no entry " + std::to_string(i) +
                                       " (it has " + std::to_string(kSubsystemMenuEntries) + ")");
            window.SetSubsystemMenuEntry(i, cat.SubsystemList[i].Description, true);
        }
        for (int16_t i = n; i < kSubsystemMenuEntries; ++i) window.HideSubsystemMenuEntry(i);
    });
}

}  // namespace catalogue
