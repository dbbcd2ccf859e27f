// The file-system boundary: native paths, file searches and line splitting.
#include <gtest/gtest.h>

#include <cstdlib>

#include "catalogue/files.h"
#include "catalogue/runtime_error.h"
#include "test_support.h"

namespace catalogue {
namespace {

using catalogue_test::ScratchDir;

TEST(NativePath, TurnsSystemPathsIntoNativeOnes) {
    ::setenv("LUMISCOPE_DRIVE_L", "/srv/orka", 1);
    ::unsetenv("LUMISCOPE_DRIVE_Q");
    struct Case { std::string in, out; };
    const Case cases[] = {
        {"L:\\bin.orka\\spectrum\\configs\\", "/srv/orka/bin.orka/spectrum/configs/"},
        {"l:\\x.csv", "/srv/orka/x.csv"},
        {"L:x.csv", "/srv/orka/x.csv"},
        {"Q:\\x.csv", "Q:/x.csv"},  // unmapped drive: not found later, never guessed
        {"/work/configs/", "/work/configs/"},
        {"C:\\prog\\\\SpectrumInfo.csv", "C:/prog/SpectrumInfo.csv"},
        {"dir/\\SpectrumInfo.csv", "dir/SpectrumInfo.csv"},
        {"configs\\ORKA_BLM_THR.csv", "configs/ORKA_BLM_THR.csv"},
        {"", ""},
    };
    for (const Case& c : cases) EXPECT_EQ(NativePath(c.in), c.out) << c.in;
    ::unsetenv("LUMISCOPE_DRIVE_L");
}

TEST(SplitLines, KnowsEveryLineEnd) {
    struct Case { std::string contents; std::vector<std::string> lines; };
    const Case cases[] = {
        {"a\r\nb\r\n", {"a", "b"}},
        {"a\nb\n", {"a", "b"}},
        {"a\rb\r", {"a", "b"}},
        {"a\r\nb", {"a", "b"}},
        {"a\n\nb\n", {"a", "", "b"}},
        {"\n", {""}},
        {"", {}},
        {"a\r\r\nb", {"a", "", "b"}},
        {std::string("a\0b\nc", 5), {std::string("a\0b", 3), "c"}},
    };
    for (const Case& c : cases) EXPECT_EQ(SplitLines(c.contents), c.lines);
}

TEST(FileSearch, FindsFilesAndDirectoryEntries) {
    ScratchDir dir;
    EXPECT_EQ(FileSearch(dir.Path() + "/"), "");  // an empty directory yields nothing
    dir.Write("b.csv", "x");
    dir.Write("a.csv", "x");
    EXPECT_EQ(FileSearch(dir.Path() + "/"), "a.csv");
    EXPECT_EQ(FileSearch(dir.Path("b.csv")), "b.csv");
    EXPECT_EQ(FileSearch(dir.Path("missing.csv")), "");
    EXPECT_EQ(FileSearch(dir.Path("missing") + "/"), "");
    EXPECT_EQ(FileSearch(""), "");
}

TEST(ReadTextLines, MissingAndUnreadableFilesAreErrors) {
    ScratchDir dir;
    try {
        ReadTextLines(dir.Path("missing.csv"));
        FAIL();
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.kind(), ErrorKind::FileNotFound);
    }
    try {
        ReadTextLines(dir.Path() + "/");
        FAIL();
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.kind(), ErrorKind::FileRead);
    }
    const std::string longLine(1 << 20, 'x');
    EXPECT_EQ(ReadTextLines(dir.Write("long.csv", "h\n" + longLine + "\n")).at(1).size(), longLine.size());
}

}  // namespace
}  // namespace catalogue
