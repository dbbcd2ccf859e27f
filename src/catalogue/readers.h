// Readers of the configuration files into the catalogue.
//
// Each returns 0 on success and a non-zero code on failure (the ErrorKind of
// the error that ended it); the rows read up to a failure stay in the tables,
// and Catalogue::LastReport tells which file and line failed and why.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "catalogue/catalogue.h"
#include "catalogue/catalogue_window.h"

namespace catalogue {

// "config_machines.csv" (full path) into Machines / MachineCount.
int16_t ReadMachineFile(Catalogue& cat, std::string_view path);

// A machine's subsystem list (ConfigPath + its ConfigFile), preceded by the
// local "SpectrumInfo.csv" of ProgramPath when there is one; captions the
// subsystem menu.
int16_t ReadSubsystemList(Catalogue& cat, CatalogueWindow& window, std::string_view path);

// A subsystem's data-source file into Spectra / SpectrumCount; fills the
// spectrum chooser.
int16_t ReadSpectrumConfig(Catalogue& cat, CatalogueWindow& window, std::string_view path);

// Thresholds of one channel from its source: a link "DEV[PROP]" or a table
// file under ApplicationPath. `high` and `low` are sized by the caller, one
// value per element. Returns 3 (read by link), 2 (read from file) or -1.
inline constexpr int16_t kThresholdsByLink = 3;
inline constexpr int16_t kThresholdsFromFile = 2;
inline constexpr int16_t kThresholdsFailed = -1;
inline constexpr int32_t kThresholdLinkTimeoutMs = 800;
int16_t ReadThresholds(Catalogue& cat, CatalogueWindow& window, std::string_view source,
                       std::vector<float>& high, std::vector<float>& low);

// The thresholds of SpectrumList[channel] from its ThresholdSource, into its
// own arrays sized one value per element (the threshold step of the channel
// preparation). -1 without a source, the arrays then left as they are.
int16_t ReadChannelThresholds(Catalogue& cat, CatalogueWindow& window, int16_t channel);

// True when a threshold source names a link rather than a file.
bool IsThresholdLinkSource(std::string_view source);

// A machine's history file into History / HistoryCount.
int16_t ReadHistoryFile(Catalogue& cat, std::string_view path);

}  // namespace catalogue
