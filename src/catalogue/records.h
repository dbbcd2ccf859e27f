// The records of the configuration catalogue.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace catalogue {

// The program, in the program's own folder, that changes thresholds kept in
// table files (threshold mode 4) when a row names none (THRTOOL).
inline constexpr const char* kDefaultThresholdTool = "lumiscope-thresholds";

// One machine (accelerator) of "config_machines.csv".
struct MachineRecord {
    std::string Reserved;     // no reader fills it
    std::string ConfigFile;   // the machine's subsystem list (CONFIGFILE)
    std::string MachineFile;  // the machine's history file (MACHINEFILE)
    std::string Name;         // MACHINE
};

// One subsystem (family of devices) of a machine.
struct SubsystemRecord {
    std::string Directory;    // with trailing "\"
    std::string FileName;     // the data-source file (FILENAME)
    std::string Reserved;     // no reader fills it
    std::string Description;  // DESCRIPTION: the menu caption
};

// One spectrum channel: a row of a data-source file, or of a machine history
// file. The fields after the file-read ones are filled while the window runs.
struct SpectrumRecord {
    std::string Description;
    std::string Context;
    std::string Server;
    std::string Device;
    std::string Property;
    std::string ExtDevNameDev;
    std::string ExtDevNameProp;
    bool HasExtDevName = false;
    int16_t ExtraPropComboIndex = 0;
    std::string Tag;  // stored with a leading "/" when not empty
    std::string HstServer;
    std::string HstProperty;
    std::string ArcServer;
    std::string ArcProperty;
    int32_t Size = 0;
    std::string ThresholdSource;
    std::vector<float> HighThresholds = std::vector<float>(1);
    std::vector<float> LowThresholds = std::vector<float>(1);
    float Max = 0.0f;
    float Min = 0.0f;
    std::string Egu;
    std::string ShortName;  // history files only
    std::string Label;      // history files only
    bool Append = false;    // continues the spectrum of the row above
    bool Reverse = false;   // the channel order arrives reversed
    int16_t PropLink = 0;
    std::string PropShort;

    // Learnt while the window runs (never read from a file).
    std::vector<std::string> ElementNames;      // by element number
    std::vector<std::string> ElementLocations;  // by element number
    bool HasLocations = false;
    int32_t ElementCount = 0;
    std::vector<float> Values;  // latest values of the live link
    int32_t LinkHandle = -1;    // live link on the spectrum plot; -1 = none
    bool Started = false;       // live link set up since the last display reset
    bool UseArchive = false;    // history spectra come from the archiver
    int16_t ThresholdMode = 0;  // how a threshold is changed (1..4; THRMODE)
    std::string ThresholdTool;  // external program of threshold mode 4 (THRTOOL)

    // Upper bound of an array in the table's sense (size - 1).
    static int32_t UpperBound(const std::vector<float>& values) {
        return static_cast<int32_t>(values.size()) - 1;
    }
};

}  // namespace catalogue
