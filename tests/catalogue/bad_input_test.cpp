// Files that are not what a reader expects: empty, comments only, binary,
// NUL bytes and tabs around values, very long lines. Every reader ends with
// its result and keeps its tables within their bounds.
#include <gtest/gtest.h>

#include "catalogue/readers.h"
#include "test_support.h"

namespace catalogue {
namespace {

using catalogue_test::RecordingWindow;
using catalogue_test::ScratchDir;

// Every byte value but the line ends, in one line.
std::string Garbage(std::size_t bytes) {
    std::string text;
    for (std::size_t i = 0; i < bytes; ++i) {
        const char c = static_cast<char>((i * 131 + 7) % 256);
        text += c == '\n' || c == '\r' ? 'x' : c;
    }
    return text;
}

// A literal with its NUL bytes.
template <std::size_t N>
std::string Bytes(const char (&text)[N]) {
    return std::string(text, N - 1);
}

// Rows stored by each reader for the same bytes.
struct Counts { int16_t machines, subsystems, spectra, history; };

TEST(BadInput, EveryReaderEndsWithItsResult) {
    const std::string longValue(1 << 20, 'x');
    struct Case { std::string name, contents; int16_t result; Counts counts; };
    const Case cases[] = {
        {"empty", "", 0, {0, 0, 0, 0}},
        // "#" is no comment in history files: "#c" is their header, "#d" a row.
        {"comments only", ";a\r\n%b\r\n#c\r\n#d\r\n", 0, {0, 0, 0, 1}},
        {"header only, no line end", "MACHINE,FILENAME,CONTEXT", 0, {0, 0, 0, 0}},
        {"binary without line ends", Garbage(600), 0, {0, 0, 0, 0}},
        {"NUL and tabs around fields", Bytes("\0MACHINE\0,\tFILENAME\t,CONTEXT,SIZE\r\n\0ORKA\0,\tF.csv\t,C,12\r\n"), 0,
         {1, 1, 1, 1}},
        {"a very long line", "MACHINE,FILENAME,DESCRIPTION\n" + longValue + "\n", 0, {1, 1, 1, 1}},
        {"unreadable number", "SIZE,MAX,PROPLINK\nabc,1e-3x,7 7\n", 0, {1, 1, 1, 1}},
        {"number past its field", "SIZE\n3000000000\n", static_cast<int16_t>(ErrorKind::Overflow), {1, 1, 0, 0}},
    };
    for (const Case& c : cases) {
        ScratchDir dir;
        const std::string path = dir.Write("t.csv", c.contents);
        Catalogue cat;
        RecordingWindow window;
        const bool numberFails = c.result != 0;
        EXPECT_EQ(ReadMachineFile(cat, path), 0) << c.name;
        EXPECT_EQ(cat.LastReport.rowsStored, c.counts.machines) << c.name;
        EXPECT_EQ(ReadSubsystemList(cat, window, path), 0) << c.name;
        EXPECT_EQ(cat.LastReport.rowsStored, c.counts.subsystems) << c.name;
        EXPECT_EQ(ReadSpectrumConfig(cat, window, path), c.result) << c.name;
        EXPECT_EQ(cat.LastReport.rowsStored, c.counts.spectra) << c.name;
        EXPECT_EQ(ReadHistoryFile(cat, path), c.result) << c.name;
        EXPECT_EQ(cat.LastReport.rowsStored, c.counts.history) << c.name;
        if (!numberFails) {
            EXPECT_EQ(cat.SpectrumCount, c.counts.spectra) << c.name;
        }
    }
}

TEST(BadInput, FieldsAroundNulAndTabsAreReadTrimmed) {
    ScratchDir dir;
    const std::string path = dir.Write("t.csv", Bytes("\0CONTEXT\0,\tSIZE\t,MAX, EGU\r\n\0ORKA\0,\t12\t, 2.5 ,\tmm \r\n"));
    Catalogue cat;
    RecordingWindow window;
    ASSERT_EQ(ReadSpectrumConfig(cat, window, path), 0);
    const SpectrumRecord& r = cat.SpectrumList[0];
    EXPECT_EQ(r.Context + "|" + std::to_string(r.Size) + "|" + std::to_string(r.Max) + "|" + r.Egu, "ORKA|12|2.500000|mm");
}

TEST(BadInput, AnEmptyDataSourceFileStillOffersRowZero) {
    // Nothing read: the chooser is hidden and offers what row 0 held before.
    ScratchDir dir;
    Catalogue cat;
    cat.SpectrumList[0].Description = "Left from before";
    RecordingWindow window;
    ASSERT_EQ(ReadSpectrumConfig(cat, window, dir.Write("t.csv", "; nothing\r\n")), 0);
    EXPECT_EQ(cat.SpectrumCount, 0);
    EXPECT_EQ(window.events, (std::vector<std::string>{"clear combo", "hide combo", "add Left from before", "select 0",
                                                      "prepare 0"}));
}

}  // namespace
}  // namespace catalogue
