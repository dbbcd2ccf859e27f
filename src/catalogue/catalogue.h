// The configuration catalogue: everything the window knows of machines,
// subsystems, spectrum channels and history quantities, with the shared values
// the readers set. One Catalogue belongs to one viewer window; the tools and
// the tests make their own.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>

#include "catalogue/fixed_array.h"
#include "catalogue/records.h"

namespace catalogue {

inline constexpr int kMaxMachine = 15;      // MachineList 0..15
inline constexpr int kMaxSubsystem = 15;    // SubsystemList 0..15
inline constexpr int kSubsystemMenuEntries = 15;  // MenuSubsystem(0..14)
inline constexpr int kMaxSpectrum = 100;    // SpectrumList 0..100
inline constexpr int kMaxHistory = 10;      // HistoryList 0..10
inline constexpr int kHistoryRowsRead = 10; // at most 10 history quantities
// Longest combined spectrum the viewer holds (LiveValues): no channel can have
// more elements, so no SIZE above it is read and no array is sized beyond it.
inline constexpr int32_t kMaxSpectrumPoints = 8000;

using MachineTable = FixedArray<MachineRecord, 0, kMaxMachine>;
using SubsystemTable = FixedArray<SubsystemRecord, 0, kMaxSubsystem>;
using SpectrumTable = FixedArray<SpectrumRecord, 0, kMaxSpectrum>;
using HistoryTable = FixedArray<SpectrumRecord, 0, kMaxHistory>;
using ComboMapTable = FixedArray<int16_t, 0, kMaxSpectrum>;

// Reads `values.size()` 32-bit floats from device/property with one link call
// (access 1) and returns the completion code (0 = success). The middleware
// layer provides it; the catalogue does not talk to servers itself.
using ThresholdLinkRead = std::function<int16_t(const std::string& device,
                                                const std::string& property,
                                                std::span<float> values, int32_t timeoutMs)>;

// What the last reader did, for the tools' diagnostics.
struct ReaderReport {
    std::string file;     // native path of the file the reader had open
    int32_t line = 0;     // 1-based line of the error; 0 = none
    std::string error;    // "" on success
    int16_t rowsStored = 0;  // data rows stored into the table
};

struct Catalogue {
    MachineTable MachineList;
    int16_t MachineCount = 0;
    int16_t CurrentMachine = 0;

    SubsystemTable SubsystemList;
    int16_t SubsystemCount = 0;
    int16_t CurrentSubsystem = 0;

    SpectrumTable SpectrumList;
    int16_t SpectrumCount = 0;
    int16_t CurrentSpectrum = 0;  // the channel last chosen in SpectrumCombo
    // Each data row is read into NewSpectrum before it is copied into the
    // table; it is never cleared, so a column a file lacks keeps the value of
    // the row (or the file) read before.
    SpectrumRecord NewSpectrum;
    ComboMapTable ComboToSpectrum;  // SpectrumCombo list position -> SpectrumList index

    HistoryTable HistoryList;
    int16_t HistoryCount = 0;

    // Set when a catalogue has just been read; the window clears them.
    bool CatalogueFresh = false;
    bool CatalogueFresh2 = false;
    // Handle of the live spectrum trace; -1 asks the next spectrum to rebuild
    // it. Reading a catalogue sets it to -1.
    int32_t SpectrumTrace = -1;

    std::string ProgramPath;      // where a local "SpectrumInfo.csv" lives, trailing "\"
    std::string ConfigPath;       // the configuration directory, trailing "\"
    std::string ApplicationPath;  // the program's directory, no trailing "\" (threshold files)

    ThresholdLinkRead ThresholdLink;  // may be empty: link sources then fail

    ReaderReport LastReport;
};

}  // namespace catalogue
