// Files that are not what a reader expects: empty, comments only, binary,
// NUL bytes and tabs around values, very long lines, absurd numbers. Every
// reader ends with its result and keeps its tables within their bounds.
#include <gtest/gtest.h>

#include "catalogue/readers.h"
#include "test_support.h"

namespace catalogue {
namespace {

// Every byte value but the line ends, in one line.
std::string Garbage(std::size_t bytes) {
    std::string text;
    for (std::size_t i = 0; i < bytes; ++i) {
        const char c = static_cast<char>((i * 131 + 7) % 256);
        text += c == '\n' || c == '\r' ? 'x' : c;
    }
    return text;
}

TEST(BadInput, EveryReaderEndsWithItsResult) {
    const auto overflow = static_cast<int16_t>(ErrorKind::Overflow);
    struct Case { std::string name, contents; int16_t spectrumResult, historyResult, machines, subsystems, spectra, history; };
    const Case cases[] = {
        {"empty", "", 0, 0, 0, 0, 0, 0},
        // "#" is no comment in history files: "#c" is their header, "#d" a row.
        {"comments only", ";a\r\n%b\r\n#c\r\n#d\r\n", 0, 0, 0, 0, 0, 1},
        {"header only, no line end", "MACHINE,FILENAME,CONTEXT", 0, 0, 0, 0, 0, 0},
        {"binary without line ends", Garbage(600), 0, 0, 0, 0, 0, 0},
        {"NUL and tabs around fields", std::string("\0MACHINE\0,\tFILENAME\t,SIZE\r\n\0ORKA\0,\tF.csv\t,12\r\n", 46), 0,
         0, 1, 1, 1, 1},
        {"a very long line", "MACHINE,FILENAME,DESCRIPTION\n" + std::string(1 << 20, 'x') + "\n", 0, 0, 1, 1, 1, 1},
        {"unreadable number", "SIZE,MAX,PROPLINK\nabc,1e-3x,7 7\n", 0, 0, 1, 1, 1, 1},
        {"number past its field", "SIZE\n3000000000\n", overflow, overflow, 1, 1, 0, 0},
        {"size past a spectrum", "SIZE\n2000000000\n", static_cast<int16_t>(ErrorKind::SizeOutOfRange), 0, 1, 1, 0, 1},
    };
    for (const Case& c : cases) {
        catalogue_test::ScratchDir dir;
        const std::string path = dir.Write("t.csv", c.contents);
        Catalogue cat;
        catalogue_test::RecordingWindow window;
        EXPECT_EQ(ReadMachineFile(cat, path), 0) << c.name;
        EXPECT_EQ(cat.LastReport.rowsStored, c.machines) << c.name;
        EXPECT_EQ(ReadSubsystemList(cat, window, path), 0) << c.name;
        EXPECT_EQ(cat.LastReport.rowsStored, c.subsystems) << c.name;
        EXPECT_EQ(ReadSpectrumConfig(cat, window, path), c.spectrumResult) << c.name;
        EXPECT_EQ(cat.LastReport.rowsStored, c.spectra) << c.name;
        EXPECT_EQ(cat.SpectrumCount, c.spectrumResult == 0 ? c.spectra : 0) << c.name;
        EXPECT_EQ(ReadHistoryFile(cat, path), c.historyResult) << c.name;
        EXPECT_EQ(cat.LastReport.rowsStored, c.history) << c.name;
    }
}

}  // namespace
}  // namespace catalogue
