#include "catalogue/numbers.h"
#include "catalogue/reader_support.h"
#include "catalogue/readers.h"
#include "catalogue/table.h"

namespace catalogue {

int16_t ReadHistoryFile(Catalogue& cat, std::string_view path) {
    return detail::RunReader(cat, path, [&](ReaderReport& report) {
        const auto lines = ReadTextLines(path);
        int context = -1, server = -1, property = -1, hstServer = -1, hstProperty = -1,
            arcServer = -1, arcProperty = -1, description = -1, max = -1, min = -1, egu = -1,
            shortName = -1;
        auto field = [](const RowFields& line, int column) { return column >= 0 ? line.Get(column) : std::string(); };
        int16_t n = 0;
        detail::WalkTable(
            lines, detail::SkipRule::SemicolonPercent, report,
            [&](const std::string& header) {
                context = FindColumn(header, "CONTEXT");
                server = FindColumn(header, "SERVER");
                property = FindColumn(header, "PROPERTY");
                hstServer = FindColumn(header, "HSTSERVER");
                hstProperty = FindColumn(header, "HSTPROPERTY");
                arcServer = FindColumn(header, "ARCSERVER");
                arcProperty = FindColumn(header, "ARCPROPERTY");
                description = FindColumn(header, "DESCRIPTION");
                max = FindColumn(header, "MAX");
                min = FindColumn(header, "MIN");
                egu = FindColumn(header, "EGU");
                shortName = FindColumn(header, "SHORTNAME");
            },
            [&](const std::string& text) {
                const RowFields line(text);
                SpectrumRecord& entry = cat.HistoryList[n];
                entry.Context = field(line, context);
                entry.Server = field(line, server);
                entry.Property = field(line, property);
                entry.HstServer = field(line, hstServer);
                entry.HstProperty = field(line, hstProperty);
                entry.ArcServer = field(line, arcServer);
                entry.ArcProperty = field(line, arcProperty);
                entry.Description = field(line, description);
                entry.ShortName = field(line, shortName);
                // Whatever column comes first; overwritten with 1 below.
                entry.Size = RoundToInt32(NumericValue(line.Get(0)));
                if (max >= 0) entry.Max = ToSingle(NumericValue(line.Get(max)));
                if (min >= 0) entry.Min = ToSingle(NumericValue(line.Get(min)));
                if (egu >= 0) entry.Egu = line.Get(egu);
                n = CheckedAdd16(n, 1);
                report.rowsStored = n;
                return n < kHistoryRowsRead;
            });
        cat.HistoryCount = n;
        report.line = 0;
        for (int16_t i = 0; i < n; ++i) {
            SpectrumRecord& entry = cat.HistoryList[i];
            entry.Size = 1;
            if (!entry.HstProperty.empty() && entry.HstProperty.find(".HIST") == std::string::npos)
                entry.HstProperty += ".HIST";
            entry.Label = entry.ShortName.empty() ? entry.Property : entry.ShortName;
            if (!entry.Egu.empty()) entry.Label += "    (" + entry.Egu + ")";
        }
    });
}

}  // namespace catalogue
