#include <optional>

#include "catalogue/numbers.h"
#include "catalogue/reader_support.h"
#include "catalogue/readers.h"
#include "catalogue/table.h"

namespace catalogue {
namespace {

// Column positions of a data-source file, looked up in this order.
struct SpectrumColumns {
    int context, server, property, size, hstServer, hstProperty, arcServer, arcProperty,
        description, max, min, egu, append, high, low, tag, propLink, propShort, extDevNameDev,
        extDevNameProp, extraPropComboIndex, thresholdMode, thresholdTool;

    explicit SpectrumColumns(const std::string& header)
        : context(FindColumn(header, "CONTEXT")),
          server(FindColumn(header, "SERVER")),
          property(FindColumn(header, "PROPERTY")),
          size(FindColumn(header, "SIZE")),
          hstServer(FindColumn(header, "HSTSERVER")),
          hstProperty(FindColumn(header, "HSTPROPERTY")),
          arcServer(FindColumn(header, "ARCSERVER")),
          arcProperty(FindColumn(header, "ARCPROPERTY")),
          description(FindColumn(header, "DESCRIPTION")),
          max(FindColumn(header, "MAX")),
          min(FindColumn(header, "MIN")),
          egu(FindColumn(header, "EGU")),
          append(FindColumn(header, "APPEND")),
          high(FindColumn(header, "HIGH")),
          low(FindColumn(header, "LOW")),
          tag(FindColumn(header, "TAG")),
          propLink(FindColumn(header, "PROPLINK")),
          propShort(FindColumn(header, "PROPSHORT")),
          extDevNameDev(FindColumn(header, "EXTDEVNAMEDEV")),
          extDevNameProp(FindColumn(header, "EXTDEVNAMEPROP")),
          extraPropComboIndex(FindColumn(header, "EXTRAPROPCOMBOINDEX")),
          thresholdMode(FindColumn(header, "THRMODE")),
          thresholdTool(FindColumn(header, "THRTOOL")) {}
};

// SIZE of a row: the numeric value rounded; one that no spectrum can hold
// ends the reader here, before anything is sized by it.
int32_t SpectrumSize(const std::string& text) {
    const int32_t size = RoundToInt32(NumericValue(text));
    if (size < 0 || size > kMaxSpectrumPoints)
        throw RuntimeError(ErrorKind::SizeOutOfRange,
                           "SIZE " + std::to_string(size) + " outside 0.." + std::to_string(kMaxSpectrumPoints) +
                               ": a spectrum holds at most " + std::to_string(kMaxSpectrumPoints) + " points");
    return size;
}

// Reads one data row into the record, column by column; a missing column
// leaves the record's field as it was.
void ReadSpectrumRow(const SpectrumColumns& c, const RowFields& line, SpectrumRecord& r) {
    auto set = [&](int column, std::string& target) {
        if (column >= 0) target = line.Get(column);
    };
    set(c.context, r.Context);
    if (c.server >= 0) {
        const std::string server = line.Get(c.server);
        const std::size_t slash = server.find('/');
        if (slash == std::string::npos) {
            r.Server = server;  // the device of the row before stays
        } else {
            r.Server = server.substr(0, slash);
            r.Device = server.substr(slash + 1);
        }
    }
    set(c.property, r.Property);
    if (c.size >= 0) r.Size = SpectrumSize(line.Get(c.size));
    set(c.hstServer, r.HstServer);
    set(c.hstProperty, r.HstProperty);
    set(c.arcServer, r.ArcServer);
    set(c.arcProperty, r.ArcProperty);
    set(c.description, r.Description);
    if (c.max >= 0) r.Max = ToSingle(NumericValue(line.Get(c.max)));
    if (c.min >= 0) r.Min = ToSingle(NumericValue(line.Get(c.min)));
    set(c.egu, r.Egu);
    set(c.tag, r.Tag);
    if (c.propLink >= 0) {
        r.PropLink = RoundToInt16(NumericValue(line.Get(c.propLink)));
        set(c.propShort, r.PropShort);
    } else {
        r.PropLink = -1;
    }
    const std::string extDevNameProp = c.extDevNameProp >= 0 ? line.Get(c.extDevNameProp) : "";
    if (!extDevNameProp.empty()) {
        r.ExtDevNameProp = extDevNameProp;
        r.HasExtDevName = true;
    } else {
        r.HasExtDevName = false;  // the old text stays
    }
    set(c.extDevNameDev, r.ExtDevNameDev);
    r.ExtraPropComboIndex = c.extraPropComboIndex >= 0
                                ? RoundToInt16(NumericValue(line.Get(c.extraPropComboIndex)))
                                : int16_t{-1};
    // Every row, a carried-over tag included: a file without a TAG column read
    // after one with tags grows the slash row by row.
    if (!r.Tag.empty()) r.Tag = "/" + r.Tag;
    // Both write the same field: a LOW value replaces the HIGH value.
    set(c.high, r.ThresholdSource);
    set(c.low, r.ThresholdSource);
    // How the operator changes a threshold: as THRMODE says, else written
    // back where a link source reads it, else handed to the threshold tool
    // (a table file is the tool's to edit, not the viewer's).
    const std::string mode = c.thresholdMode >= 0 ? line.Get(c.thresholdMode) : "";
    r.ThresholdMode = !mode.empty() ? RoundToInt16(NumericValue(mode))
                                    : (IsThresholdLinkSource(r.ThresholdSource) ? int16_t{3} : int16_t{4});
    const std::string tool = c.thresholdTool >= 0 ? line.Get(c.thresholdTool) : "";
    r.ThresholdTool = !tool.empty() ? tool : std::string(kDefaultThresholdTool);
    r.HighThresholds.assign(1, 0.0f);
    r.LowThresholds.assign(1, 0.0f);
    r.Append = false;
    r.Reverse = false;
}

// The APPEND column of rows after the first: continue the row above (only
// when units and limits match) and/or reverse the channel order.
void ApplyAppend(const SpectrumColumns& c, const RowFields& line, const SpectrumRecord& above,
                 SpectrumRecord& r) {
    const std::string flag = UpperCase(line.Get(c.append));
    const bool wantsAppend =
        flag.find("TRUE") != std::string::npos || flag.find("YES") != std::string::npos;
    if (wantsAppend && r.Egu == above.Egu && r.Max == above.Max && r.Min == above.Min)
        r.Append = true;
    if (flag.find("REVERSE") != std::string::npos) r.Reverse = true;
}

void FillSpectrumCombo(Catalogue& cat, CatalogueWindow& window, int16_t n) {
    window.ClearSpectrumCombo();
    if (n < 2) {
        window.SetSpectrumComboVisible(false);
        cat.ComboToSpectrum[0] = 0;
        window.AddSpectrumComboItem(cat.SpectrumList[0].Description);
        window.SelectSpectrumComboPosition(0);
        cat.CatalogueFresh = true;
        cat.CatalogueFresh2 = true;
        window.PrepareChannel(0);
        return;
    }
    window.SetSpectrumComboVisible(true);
    int16_t position = 0;
    for (int16_t i = 0; i < n; ++i) {
        if (cat.SpectrumList[i].Append) continue;  // shown with the row it continues
        cat.ComboToSpectrum[position] = i;
        window.AddSpectrumComboItem(cat.SpectrumList[i].Description);
        position = CheckedAdd16(position, 1);
    }
    window.SelectSpectrumComboPosition(0);
}

}  // namespace

int16_t ReadSpectrumConfig(Catalogue& cat, CatalogueWindow& window, std::string_view path) {
    return detail::RunReader(cat, path, [&](ReaderReport& report) {
        const auto lines = ReadTextLines(path);
        std::optional<SpectrumColumns> columns;
        int16_t n = 0;
        detail::WalkTable(
            lines, detail::SkipRule::Comments, report,
            [&](const std::string& header) { columns.emplace(header); },
            [&](const std::string& line) {
                const RowFields fields(line);
                SpectrumRecord& r = cat.NewSpectrum;
                ReadSpectrumRow(*columns, fields, r);
                if (n >= 1 && columns->append >= 0) ApplyAppend(*columns, fields, cat.SpectrumList[n - 1], r);
                cat.SpectrumList[n] = r;  // row index 100 is the last that fits
                n = CheckedAdd16(n, 1);
                report.rowsStored = n;
                return true;
            });
        report.line = 0;
        cat.SpectrumCount = n;
        // The entry behind the last row: with 101 rows there is none, and the
        // reader fails here, after the count has been set.
        cat.SpectrumList[n].Append = false;
        cat.SpectrumTrace = -1;
        FillSpectrumCombo(cat, window, n);
    });
}

}  // namespace catalogue
