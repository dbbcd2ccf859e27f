#include "catalogue/reader_support.h"
#include "catalogue/readers.h"
#include "catalogue/table.h"

namespace catalogue {

int16_t ReadMachineFile(Catalogue& cat, std::string_view path) {
    return detail::RunReader(cat, path, [&](ReaderReport& report) {
        const auto lines = ReadTextLines(path);
        int nameColumn = -1, configColumn = -1, machineFileColumn = -1;
        int16_t n = 0;
        detail::WalkTable(
            lines, detail::SkipRule::CommentsAndEmpty, report,
            [&](const std::string& header) {
                nameColumn = FindColumn(header, "MACHINE");
                configColumn = FindColumn(header, "CONFIGFILE");
                machineFileColumn = FindColumn(header, "MACHINEFILE");
            },
            [&](const std::string& line) {
                MachineRecord& machine = cat.MachineList[n];  // a 17th row fails here
                if (nameColumn >= 0) machine.Name = GetField(line, nameColumn);
                if (configColumn >= 0) machine.ConfigFile = GetField(line, configColumn);
                if (machineFileColumn >= 0) machine.MachineFile = GetField(line, machineFileColumn);
                n = CheckedAdd16(n, 1);
                report.rowsStored = n;
                return true;
            });
        cat.MachineCount = n;
    });
}

}  // namespace catalogue
