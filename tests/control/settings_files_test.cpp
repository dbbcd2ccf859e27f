// The control's own files and paths: the history settings it reads and the
// program directory it settles on.
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <fstream>

#include <gtest/gtest.h>

#include "catalogue/runtime_error.h"
#include "control/history_files.h"
#include "control/lumiscope.h"
#include "control/program_location.h"

namespace {

TEST(HistoryConfigLoad, CountsTheRowsAfterTheHeader) {
    struct Case { const char* name; const char* contents; int16_t rows; };  // contents nullptr: no file
    const Case cases[] = {
        {"no file", nullptr, 0},
        {"only comments", "; a\r\n% b\r\n# c\r\n", 0},
        {"header and three", "; q\r\nContext,Server\r\nA,1\r\nB,2\r\nC,3\r\n", 3},
        {"blank line after the header counts", "Context,Server\n\nA,1\n", 2},
        {"comments between rows skipped", "Context\nA\n;x\n%y\n#z\nB\n", 2},
        {"header only", "Context,Server\r\n", 0},
    };
    // The control looks beside the host program; the test program is the host.
    const QString file = QDir(QString::fromStdString(control::HostApplicationPath()).replace('\\', '/'))
                             .filePath(control::kHistoryConfigFile);
    control::Lumiscope scope;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        QFile::remove(file);
        if (c.contents) std::ofstream(file.toStdString(), std::ios::binary) << c.contents;
        EXPECT_EQ(scope.TestHistoryConfigLoad(), c.rows);
    }
    QFile::remove(file);
}

TEST(OpenInfoFile, ReadsNameAndModeWithModesOutsideTheRangeAsTwo) {
    struct Case { const char* name; const char* contents; const char* infoName; int16_t mode; bool throws; };
    const Case cases[] = {
        {"mode 0", "NAME,MODE\r\nORKA,0\r\n", "ORKA", 0, false},
        {"mode 1, quoted name", "NAME,MODE\r\n\"VESTA\",1\r\n", "VESTA", 1, false},
        {"mode 3 becomes 2", "NAME,MODE\r\nORKA,3\r\n", "ORKA", 2, false},
        {"mode -1 becomes 2", "NAME,MODE\r\nORKA,-1\r\n", "ORKA", 2, false},
        {"no file", nullptr, "", 2, false},
        {"mode not a number", "NAME,MODE\r\nORKA,fast\r\n", "", 2, true},
        {"no data line", "NAME,MODE\r\n", "", 2, true},
    };
    QTemporaryDir dir;
    const QString info = dir.filePath(control::kHistoryInfoFile);
    control::Lumiscope scope;
    scope.InfoPath = control::SystemPath(dir.path().toStdString()) + "\\";
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        QFile::remove(info);
        if (c.contents) std::ofstream(info.toStdString(), std::ios::binary) << c.contents;
        scope.InfoName = "stale";
        scope.InfoMode = 1;
        if (c.throws) EXPECT_THROW(scope.OpenInfoFile(), catalogue::RuntimeError);
        else EXPECT_NO_THROW(scope.OpenInfoFile());
        EXPECT_EQ(scope.InfoName, c.infoName);
        EXPECT_EQ(scope.InfoMode, c.mode);
    }
}

TEST(ProgramPath, DevelopmentEnvironmentTakesTheApplicationPathOnlyInExactCase) {
    struct Case { const char* module; const char* programPath; };
    const char* app = "D:\\work\\project";
    const Case cases[] = {
        {"C:\\Program Files\\Microsoft Visual Studio\\VB98\\VB6.EXE", app},
        {"C:\\program files\\microsoft visual studio\\VB98\\VB6.EXE", "C:\\program files\\microsoft visual studio\\VB98\\"},
        {"C:\\PROGRAM FILES\\MICROSOFT VISUAL STUDIO\\VB6.EXE", "C:\\PROGRAM FILES\\MICROSOFT VISUAL STUDIO\\"},
        {"C:\\Program Files\\Microsoft Visua\\VB6.EXE", "C:\\Program Files\\Microsoft Visua\\"},
        {"\\usr\\local\\bin\\lumiscope-host", "\\usr\\local\\bin\\"},
        {"host.exe", ""}, {"", ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.module);
        EXPECT_EQ(control::ChooseProgramPath(control::ModuleDirectory(c.module), app), c.programPath);
    }
}

}  // namespace
