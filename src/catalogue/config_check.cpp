#include "catalogue/config_check.h"

#include <filesystem>
#include <set>

#include "catalogue/catalogue_window.h"
#include "catalogue/combined_entry.h"
#include "catalogue/files.h"
#include "catalogue/numbers.h"
#include "catalogue/reader_messages.h"
#include "catalogue/reader_support.h"
#include "catalogue/readers.h"
#include "catalogue/table.h"

namespace catalogue {
namespace {

// A table's lines with the line numbers of its header and data rows.
struct TableLines {
    std::vector<std::string> lines;
    int32_t headerLine = 0;          // 1-based; 0 = no header
    std::vector<int32_t> rowLines;   // 1-based, one per data row

    const std::string& Header() const { return lines.at(static_cast<std::size_t>(headerLine - 1)); }
    const std::string& Row(std::size_t i) const {
        return lines.at(static_cast<std::size_t>(rowLines.at(i) - 1));
    }
    int32_t RowLine(std::size_t i) const { return i < rowLines.size() ? rowLines[i] : 0; }
};

TableLines LoadTable(const std::string& path, detail::SkipRule rule) {
    TableLines table;
    table.lines = ReadTextLines(path);
    for (std::size_t i = 0; i < table.lines.size(); ++i) {
        if (detail::IsSkipped(table.lines[i], rule)) continue;
        const auto line = static_cast<int32_t>(i + 1);
        if (table.headerLine == 0)
            table.headerLine = line;
        else
            table.rowLines.push_back(line);
    }
    return table;
}

std::string Quoted(const std::string& text) { return "'" + text + "'"; }

class Checker {
public:
    Checker(std::string configDir, const ConfigCheckOptions& options) : options_(options) {
        namespace fs = std::filesystem;
        while (configDir.size() > 1 && (configDir.back() == '/' || configDir.back() == '\\'))
            configDir.pop_back();
        configPath_ = configDir + "/";
        applicationPath_ = options.applicationPath.empty()
                               ? fs::path(configDir).parent_path().string()
                               : options.applicationPath;
        if (applicationPath_.empty()) applicationPath_ = ".";
    }

    ConfigCheckResult Run() {
        CheckMachines();
        return std::move(result_);
    }

private:
    Catalogue FreshCatalogue() const {
        Catalogue cat;
        cat.ConfigPath = configPath_;
        cat.ApplicationPath = applicationPath_;
        cat.ThresholdLink = options_.thresholdLink;
        return cat;
    }

    void Problem(const std::string& file, int32_t line, const std::string& message) {
        result_.problems.push_back(ConfigProblem{NativePath(file), line, message});
    }

    // Reads a file once; false (and a problem) when it is missing or unreadable.
    bool Load(const std::string& path, detail::SkipRule rule, TableLines& table,
              const std::string& referrer, int32_t referrerLine, const std::string& what) {
        try {
            table = LoadTable(path, rule);
        } catch (const RuntimeError& error) {
            Problem(referrer, referrerLine, what + " " + Quoted(NativePath(path)) + ": " + error.what());
            return false;
        }
        ++result_.filesRead;
        if (table.headerLine == 0) Problem(path, 0, "no header line");
        return table.headerLine != 0;
    }

    // Keys the viewer needs; also the empty-header-field rule, which answers a
    // missing key with the position of an empty field.
    void CheckHeader(const std::string& path, const TableLines& table,
                     std::initializer_list<const char*> keys, const std::string& consequence) {
        const std::string upper = UpperCase(table.Header());
        for (const char* key : keys) {
            const int column = FindColumn(table.Header(), key);
            if (column < 0) {
                Problem(path, table.headerLine, std::string("column ") + key + " missing" + consequence);
            } else if (GetField(upper, column) != key) {
                Problem(path, table.headerLine,
                        std::string("column ") + key + " missing: the empty header field at position " +
                            std::to_string(column) + " stands in for it");
            }
        }
    }

    void CheckNumber(const std::string& path, int32_t line, const std::string& row, int column,
                     const char* key) {
        if (column < 0) return;
        const std::string value = GetField(row, column);
        if (!IsCleanNumber(value))
            Problem(path, line, std::string(key) + " value " + Quoted(value) + " is not a number (read as " +
                                    std::to_string(NumericValue(value)) + ")");
    }

    void CheckMachines() {
        const std::string path = configPath_ + std::string(kMachineListFileName);
        TableLines table;
        if (!Load(path, detail::SkipRule::CommentsAndEmpty, table, configPath_, 0,
                  "cannot read the machine list"))
            return;
        CheckHeader(path, table, {"MACHINE", "CONFIGFILE", "MACHINEFILE"}, "");
        Catalogue cat = FreshCatalogue();
        if (ReadMachineFile(cat, path) != 0) {
            Problem(path, cat.LastReport.line, ReadMachineInfoFailedText() + " (" + cat.LastReport.error + ")");
            return;
        }
        for (int16_t m = 0; m < cat.MachineCount; ++m) {
            const MachineRecord& machine = cat.MachineList[m];
            const int32_t line = table.RowLine(static_cast<std::size_t>(m));
            if (machine.Name.empty()) Problem(path, line, "machine without a name");
            if (machine.MachineFile.empty())
                Problem(path, line, "machine " + Quoted(machine.Name) + " names no history file");
            else
                CheckHistoryFile(configPath_ + machine.MachineFile, path, line);
            if (machine.ConfigFile.empty())
                Problem(path, line, "machine " + Quoted(machine.Name) + " names no subsystem list");
            else
                CheckSubsystemList(machine.ConfigFile, m == kCombinedMachineEntry, path, line);
        }
    }

    void CheckSubsystemList(const std::string& configFile, bool combinedEntry, const std::string& referrer,
                            int32_t referrerLine) {
        const std::string path = configPath_ + configFile;
        if (!checked_.insert(NativePath(path)).second) return;
        TableLines table;
        if (!Load(path, detail::SkipRule::CommentsAndEmpty, table, referrer, referrerLine,
                  "subsystem list"))
            return;
        CheckHeader(path, table, {"FILENAME", "DESCRIPTION"}, "");
        Catalogue cat = FreshCatalogue();
        QuietWindow window;
        if (ReadSubsystemList(cat, window, path) != 0)
            Problem(path, cat.LastReport.line,
                    ReadDataSourceFailedText(configFile) + " (" + cat.LastReport.error + ")");
        const int16_t stored = cat.LastReport.rowsStored;
        for (int16_t s = 0; s < stored; ++s) {
            const SubsystemRecord& subsystem = cat.SubsystemList[s];
            const int32_t line = table.RowLine(static_cast<std::size_t>(s));
            if (subsystem.Description.empty())
                Problem(path, line, "subsystem without a description: its menu entry is blank");
            if (subsystem.FileName.empty()) {
                Problem(path, line, "subsystem names no data-source file");
                continue;
            }
            if (combinedEntry && !MachineNamedInFileName(subsystem.FileName))
                Problem(path, line, "data-source file " + Quoted(subsystem.FileName) +
                                        " names none of ORKA, VESTA, LYRAS: the combined entry shows the "
                                        "history of machine 0 with it");
            CheckDataSourceFile(subsystem.Directory + subsystem.FileName, path, line);
        }
    }

    void CheckDataSourceFile(const std::string& path, const std::string& referrer, int32_t referrerLine) {
        if (!checked_.insert(NativePath(path)).second) return;
        TableLines table;
        if (!Load(path, detail::SkipRule::Comments, table, referrer, referrerLine, "data-source file"))
            return;
        CheckHeader(path, table,
                    {"CONTEXT", "SERVER", "PROPERTY", "SIZE", "DESCRIPTION", "MAX", "MIN", "EGU"},
                    ": each row keeps the value of the file read before");
        Catalogue cat = FreshCatalogue();
        QuietWindow window;
        if (ReadSpectrumConfig(cat, window, path) != 0)
            Problem(path, cat.LastReport.line, "data-source file not read: " + cat.LastReport.error);
        const int16_t stored = cat.LastReport.rowsStored;
        const std::string& header = table.Header();
        const int size = FindColumn(header, "SIZE"), max = FindColumn(header, "MAX"),
                  min = FindColumn(header, "MIN"), propLink = FindColumn(header, "PROPLINK"),
                  comboIndex = FindColumn(header, "EXTRAPROPCOMBOINDEX"),
                  server = FindColumn(header, "SERVER"), append = FindColumn(header, "APPEND"),
                  high = FindColumn(header, "HIGH"), low = FindColumn(header, "LOW");

        int16_t comboEntries = 0;
        for (int16_t i = 0; i < stored; ++i)
            if (!cat.SpectrumList[i].Append) ++comboEntries;

        for (int16_t i = 0; i < stored; ++i) {
            const SpectrumRecord& r = cat.SpectrumList[i];
            const auto index = static_cast<std::size_t>(i);
            const int32_t line = table.RowLine(index);
            const std::string& row = table.Row(index);
            CheckNumber(path, line, row, size, "SIZE");
            CheckNumber(path, line, row, max, "MAX");
            CheckNumber(path, line, row, min, "MIN");
            CheckNumber(path, line, row, propLink, "PROPLINK");
            CheckNumber(path, line, row, comboIndex, "EXTRAPROPCOMBOINDEX");
            if (r.Size < 1) Problem(path, line, "SIZE " + std::to_string(r.Size) + ": a spectrum needs at least 1 element");
            if (!(r.Max > r.Min))
                Problem(path, line, "MAX " + std::to_string(r.Max) + " is not above MIN " + std::to_string(r.Min));
            if (server >= 0 && GetField(row, server).find('/') == std::string::npos)
                Problem(path, line, "SERVER " + Quoted(GetField(row, server)) +
                                        " names no device: the device of the row before (" +
                                        Quoted(r.Device) + ") is used");
            if (append >= 0) {
                const std::string flag = UpperCase(GetField(row, append));
                const bool wantsAppend =
                    flag.find("TRUE") != std::string::npos || flag.find("YES") != std::string::npos;
                if (i == 0 && !flag.empty())
                    Problem(path, line, "APPEND " + Quoted(GetField(row, append)) + " is ignored on the first row");
                else if (wantsAppend && !r.Append)
                    Problem(path, line, "APPEND " + Quoted(GetField(row, append)) +
                                            " ignored: EGU, MAX or MIN differ from the row above");
            }
            if (high >= 0 && low >= 0) {
                const std::string highValue = GetField(row, high), lowValue = GetField(row, low);
                if (!highValue.empty() && !lowValue.empty())
                    Problem(path, line, "LOW " + Quoted(lowValue) + " replaces HIGH " + Quoted(highValue));
                else if (!highValue.empty())
                    Problem(path, line, "the empty LOW field replaces HIGH " + Quoted(highValue) +
                                            ": the channel gets no thresholds");
            }
            if (r.ExtraPropComboIndex >= comboEntries)
                Problem(path, line, "EXTRAPROPCOMBOINDEX " + std::to_string(r.ExtraPropComboIndex) +
                                        " is past the chooser's last entry (" +
                                        std::to_string(comboEntries - 1) + ")");
            if (r.HasExtDevName && r.ExtDevNameDev.empty())
                Problem(path, line, "EXTDEVNAMEPROP without EXTDEVNAMEDEV");
            if (!r.Append && r.Description.empty())
                Problem(path, line, "row without a description: its chooser entry is blank");
            if (!r.ThresholdSource.empty()) CheckThresholdSource(cat, i, path, line);
        }
        CheckSpectra(cat, stored, comboEntries, table, path);
        CheckPropertyGroups(cat, stored, table, path);
        for (const std::string& message : window.messages) Problem(path, 0, "message: " + message);
    }

    // Points of the spectrum that starts at `head`: the head row and the rows
    // appended to it.
    static int64_t SpectrumPoints(const Catalogue& cat, int16_t head, int16_t stored) {
        int64_t points = cat.SpectrumList[head].Size;
        for (int16_t k = head + 1; k < stored && cat.SpectrumList[k].Append; ++k) points += cat.SpectrumList[k].Size;
        return points;
    }

    // A spectrum holds at most 8000 points, and a companion (set values for
    // actual values) needs an element for every element of its channel.
    void CheckSpectra(const Catalogue& cat, int16_t stored, int16_t comboEntries, const TableLines& table,
                      const std::string& path) {
        for (int16_t head = 0; head < stored; ++head) {
            const SpectrumRecord& r = cat.SpectrumList[head];
            if (r.Append) continue;
            const int32_t line = table.RowLine(static_cast<std::size_t>(head));
            const int64_t points = SpectrumPoints(cat, head, stored);
            if (points > kMaxSpectrumPoints)
                Problem(path, line, "spectrum " + Quoted(r.Description) + " has " + std::to_string(points) +
                                        " points; the viewer shows at most " + std::to_string(kMaxSpectrumPoints));
            if (r.ExtraPropComboIndex < 0 || r.ExtraPropComboIndex >= comboEntries) continue;
            const int16_t companion = cat.ComboToSpectrum[r.ExtraPropComboIndex];
            const int64_t companionPoints = SpectrumPoints(cat, companion, stored);
            if (companionPoints < points)
                Problem(path, line, "companion " + Quoted(cat.SpectrumList[companion].Description) + " has " +
                                        std::to_string(companionPoints) + " elements, fewer than the " +
                                        std::to_string(points) + " of this channel");
        }
    }

    // The property check boxes offer the entries that share the chosen
    // channel's PROPLINK number (appended entries included, and without a
    // PROPLINK column every entry shares -1): four boxes, a fifth entry is
    // kept without a box, and a sixth is more than the window holds.
    void CheckPropertyGroups(const Catalogue& cat, int16_t stored, const TableLines& table,
                             const std::string& path) {
        const int16_t scanned = std::min<int16_t>(stored, kMaxSpectrum);  // entries 0..99
        std::set<int16_t> reported;
        for (int16_t head = 0; head < scanned; ++head) {
            const SpectrumRecord& r = cat.SpectrumList[head];
            if (r.Append || !reported.insert(r.PropLink).second) continue;
            int members = 0;
            for (int16_t i = 0; i < scanned; ++i) members += cat.SpectrumList[i].PropLink == r.PropLink;
            const std::string group = "PROPLINK " + std::to_string(r.PropLink) + " is shared by " +
                                      std::to_string(members) + " entries";
            const int32_t line = table.RowLine(static_cast<std::size_t>(head));
            if (members > kPropertyGroupSlots)
                Problem(path, line, group + ": choosing " + Quoted(r.Description) +
                                        " fails, the property selection holds " +
                                        std::to_string(kPropertyGroupSlots));
            else if (members > kPropertyCheckBoxes)
                Problem(path, line, group + ": only " + std::to_string(kPropertyCheckBoxes) +
                                        " get a check box");
        }
    }

    void CheckThresholdSource(const Catalogue& read, int16_t channel, const std::string& path, int32_t line) {
        const std::string source = read.SpectrumList[channel].ThresholdSource;
        Catalogue cat = FreshCatalogue();
        cat.SpectrumList[0] = read.SpectrumList[channel];
        QuietWindow window;
        if (IsThresholdLinkSource(source)) {
            if (source.front() != '/' || source.back() != ']' || source.find('[') + 2 >= source.size())
                Problem(path, line, "threshold link " + Quoted(source) +
                                        " is not of the form /CONTEXT/SERVER/DEVICE[PROPERTY]");
            else if (options_.thresholdLink && ReadChannelThresholds(cat, window, 0) != kThresholdsByLink)
                Problem(path, line, "threshold link " + Quoted(source) + " cannot be read: " + cat.LastReport.error);
            return;
        }
        const std::string file = applicationPath_ + "\\" + source;
        if (FileSearch(file).empty()) {
            Problem(path, line, "threshold file " + Quoted(source) + " not found (looked for " +
                                    NativePath(file) + ")");
            return;
        }
        CheckThresholdTable(file);
        if (ReadChannelThresholds(cat, window, 0) != kThresholdsFromFile) {
            std::string message = "thresholds " + Quoted(source) + " not read: " + cat.LastReport.error;
            for (const std::string& box : window.messages) message += " (message: " + box + ")";
            Problem(path, line, message);
        }
    }

    void CheckThresholdTable(const std::string& path) {
        if (!checked_.insert(NativePath(path)).second) return;
        TableLines table;
        if (!Load(path, detail::SkipRule::TwoCharacterTest, table, path, 0, "threshold file")) return;
        CheckHeader(path, table, {"HIGH"}, "");
        const int high = FindColumn(table.Header(), "HIGH"), low = FindColumn(table.Header(), "LOW");
        for (std::size_t i = 0; i < table.lines.size(); ++i) {
            const std::string& text = table.lines[i];
            if (text.size() > 1 && StartsWithAny(text, ";%#"))
                Problem(path, static_cast<int32_t>(i + 1),
                        "comment mark not honoured: only one-character comment lines are skipped in "
                        "threshold tables, this line is read as " +
                            std::string(static_cast<int32_t>(i + 1) == table.headerLine ? "the header" : "data"));
        }
        for (std::size_t i = 0; i < table.rowLines.size(); ++i) {
            CheckNumber(path, table.rowLines[i], table.Row(i), high, "HIGH");
            CheckNumber(path, table.rowLines[i], table.Row(i), low, "LOW");
        }
    }

    void CheckHistoryFile(const std::string& path, const std::string& referrer, int32_t referrerLine) {
        if (!checked_.insert(NativePath(path)).second) return;
        TableLines table;
        if (!Load(path, detail::SkipRule::SemicolonPercent, table, referrer, referrerLine, "history file"))
            return;
        CheckHeader(path, table, {"PROPERTY", "DESCRIPTION"}, "");
        Catalogue cat = FreshCatalogue();
        if (ReadHistoryFile(cat, path) != 0) {
            Problem(path, cat.LastReport.line,
                    std::string(kReadMachineSourceFailedText) + " (" + cat.LastReport.error + ")");
            return;
        }
        if (table.rowLines.size() > static_cast<std::size_t>(kHistoryRowsRead))
            Problem(path, table.RowLine(kHistoryRowsRead),
                    "only the first " + std::to_string(kHistoryRowsRead) +
                        " quantities are read; this row and the ones after it are ignored");
        const int max = FindColumn(table.Header(), "MAX"), min = FindColumn(table.Header(), "MIN");
        for (int16_t i = 0; i < cat.HistoryCount; ++i) {
            const SpectrumRecord& entry = cat.HistoryList[i];
            const auto index = static_cast<std::size_t>(i);
            CheckNumber(path, table.RowLine(index), table.Row(index), max, "MAX");
            CheckNumber(path, table.RowLine(index), table.Row(index), min, "MIN");
            if (entry.HstServer.empty() && entry.ArcServer.empty())
                Problem(path, table.RowLine(index),
                        "quantity " + Quoted(entry.Label) + " has neither a history server nor an archive");
        }
    }

    ConfigCheckOptions options_;
    std::string configPath_;
    std::string applicationPath_;
    std::set<std::string> checked_;
    ConfigCheckResult result_;
};

}  // namespace

ConfigCheckResult CheckConfigDirectory(const std::string& configDir, const ConfigCheckOptions& options) {
    return Checker(configDir, options).Run();
}

}  // namespace catalogue
