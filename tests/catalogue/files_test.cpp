// The file-system boundary: native paths, file searches and line splitting.
#include <gtest/gtest.h>

#include <cstdlib>

#include "catalogue/files.h"
#include "catalogue/runtime_error.h"
#include "test_support.h"

namespace catalogue {
namespace {

TEST(NativePath, MapsDrivesFromTheEnvironmentAndFoldsSeparators) {
    ::setenv("LUMISCOPE_DRIVE_L", "/srv/orka", 1);
    ::unsetenv("LUMISCOPE_DRIVE_Q");
    struct Case { std::string in, out; };
    const Case cases[] = {
        {"L:\\bin.orka\\spectrum\\configs\\", "/srv/orka/bin.orka/spectrum/configs/"}, {"l:\\x.csv", "/srv/orka/x.csv"},
        {"L:x.csv", "/srv/orka/x.csv"}, {"Q:\\x.csv", "Q:/x.csv"},  // unmapped: not found later, never guessed
        {"C:\\prog\\\\SpectrumInfo.csv", "C:/prog/SpectrumInfo.csv"}, {"dir/\\a.csv", "dir/a.csv"}, {"", ""},
    };
    for (const Case& c : cases) EXPECT_EQ(NativePath(c.in), c.out) << c.in;
    ::unsetenv("LUMISCOPE_DRIVE_L");
}

TEST(SplitLines, KnowsEveryLineEnd) {
    struct Case { std::string contents; std::vector<std::string> lines; };
    const Case cases[] = {
        {"a\r\nb\r\n", {"a", "b"}}, {"a\nb", {"a", "b"}}, {"a\rb\r", {"a", "b"}}, {"a\n\nb\n", {"a", "", "b"}},
        {"\n", {""}}, {"", {}}, {"a\r\r\nb", {"a", "", "b"}}, {std::string("a\0b\nc", 5), {std::string("a\0b", 3), "c"}},
    };
    for (const Case& c : cases) EXPECT_EQ(SplitLines(c.contents), c.lines);
}

TEST(FileSearch, FirstDirectoryEntryByNameOrTheFileItself) {
    catalogue_test::ScratchDir dir;
    EXPECT_EQ(FileSearch(dir.Path() + "/"), "");
    dir.Write("b.csv", "x");
    dir.Write("a.csv", "x");
    EXPECT_EQ(FileSearch(dir.Path() + "/"), "a.csv");
    EXPECT_EQ(FileSearch(dir.Path("b.csv")), "b.csv");
    EXPECT_EQ(FileSearch(dir.Path("missing.csv")) + FileSearch(dir.Path("missing") + "/") + FileSearch(""), "");
}

TEST(ReadTextLines, MissingAndUnreadableFilesAreErrorsOfTheirKind) {
    catalogue_test::ScratchDir dir;
    struct Case { std::string path; ErrorKind kind; };
    for (const Case& c : {Case{dir.Path("missing.csv"), ErrorKind::FileNotFound}, {dir.Path() + "/", ErrorKind::FileRead}}) {
        try {
            ReadTextLines(c.path);
            ADD_FAILURE() << c.path;
        } catch (const RuntimeError& error) {
            EXPECT_EQ(error.kind(), c.kind) << c.path;
        }
    }
}

}  // namespace
}  // namespace catalogue
