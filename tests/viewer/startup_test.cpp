// Start-up: the start arguments, the user mode, and each step that can stop
// the start-up with its message.
#include <gtest/gtest.h>

#include <QAction>
#include <QComboBox>
#include <QFrame>
#include <QLabel>
#include <QMenu>
#include <QPushButton>

#include "form_fixture.h"
#include "ui/controls/month_calendar.h"
#include "ui/plot/plex_plot.h"
#include "scratch_config.h"
#include "viewer/startup_rules.h"

namespace {

using viewer_test::FormFixture;
using viewer_test::ScratchConfig;

TEST(StartArguments, TheSplitWithMorePartsWinsAndBlanksWinATie) {
    const struct {
        const char* line;
        viewer::StartArguments expected;
    } cases[] = {
        {"", {}},
        {"VESTA", {"VESTA", "", ""}},
        {"VESTA,BLM", {"VESTA", "BLM", ""}},
        {"VESTA BLM EXTRAS_ON", {"VESTA", "BLM", "EXTRAS_ON"}},
        {"A,B,C D", {"A", "B", "C D"}},
        {"A,B C", {"A,B", "C", ""}},  // a tie goes to the blanks
        {"a b c d", {}},
        {"A,,B", {"A", "", "B"}},
        {"A, B", {"A,", "B", ""}},
    };
    for (const auto& c : cases) {
        const viewer::StartArguments a = viewer::SplitStartArguments(c.line);
        EXPECT_EQ((std::vector<std::string>{a.machine, a.subsystem, a.extras}),
                  (std::vector<std::string>{c.expected.machine, c.expected.subsystem, c.expected.extras}))
            << c.line;
    }
}

TEST(StartUp, ArgumentsChooseMachineSubsystemAndExtras) {
    const struct {
        const char* line;
        int16_t machine;
        const char* subsystemFile;
        int16_t extrasMode;
    } cases[] = {
        {"", 0, "ORKA_BPM.csv", 2},
        {"VESTA,BLM", 1, "VESTA_BLM.csv", 2},
        {"VESTA BLM EXTRAS_ON", 1, "VESTA_BLM.csv", 1},
        {"VESTA BLM extras_on", 1, "VESTA_BLM.csv", 2},
        {"vesta", 0, "ORKA_BPM.csv", 2},
        {"LYRAS,NOSUCH", 2, "LYRAS_BPM.csv", 2},
    };
    for (const auto& c : cases) {
        FormFixture f(c.line);
        viewer::SpectrumForm& form = f.Load();
        const auto& cat = f.State().cat;
        EXPECT_EQ(cat.CurrentMachine, c.machine) << c.line;
        EXPECT_EQ(cat.SubsystemList[cat.CurrentSubsystem].FileName, c.subsystemFile) << c.line;
        EXPECT_EQ(f.State().ExtrasMode, c.extrasMode) << c.line;
        EXPECT_TRUE(form.MenuMachine[c.machine]->isChecked()) << c.line;
        EXPECT_TRUE(form.MenuSubsystem[cat.CurrentSubsystem]->isChecked()) << c.line;
        EXPECT_FALSE(f.State().Initialising) << c.line;
        EXPECT_GT(form.PLEXPlotSpectrum->LinkCount(), 0) << c.line << ": the shown channel goes live";
        EXPECT_EQ(form.LabelSelect[4]->text(), "All Curves");
        EXPECT_EQ(form.MonthView1->Value(), QDate(2023, 11, 14)) << "the test clock's day";
        EXPECT_EQ(f.dialogs.Texts(), std::vector<std::string>{}) << c.line;
    }
}

TEST(StartUp, WithoutAUserNameTheExtraInformationReplacesTheElementChooser) {
    for (const std::string user : {"", "op"}) {
        FormFixture f("", viewer_test::SampleConfig(), user);
        viewer::SpectrumForm& form = f.Load();
        const bool anonymous = user.empty();
        EXPECT_EQ(form.MExtraInfo->isChecked(), anonymous) << user;
        EXPECT_EQ(form.ComboDevs->isHidden(), anonymous) << user;
        EXPECT_EQ(form.ComSelDevice->isHidden(), anonymous) << user;
        EXPECT_EQ(form.X[2]->isHidden(), !anonymous) << user;
        EXPECT_EQ(form.LabelPoints[0]->text(), anonymous ? "-" : "") << user;
    }
}

TEST(StartUp, EachFailingStepShowsItsMessageAndStopsThere) {
    const struct {
        const char* name;
        std::function<void(const ScratchConfig&)> damage;
        std::string message;
    } cases[] = {
        {"machine list", [](const ScratchConfig& c) { c.Remove("config_machines.csv"); },
         "Read Machine-Info File config_machines.csv failed !"},
        {"subsystem list", [](const ScratchConfig& c) { c.Remove("TEST_Subsystems.csv"); },
         "Read Data Source Config File: TEST_Subsystems.csv failed !"},
        {"history list", [](const ScratchConfig& c) { c.Remove("TEST.HIST"); },
         "Read Machine Source Config File failed !"},
    };
    for (const auto& c : cases) {
        ScratchConfig config({"T,S/D,P,3,Orbit,10,0,mm,,,,1,A"});
        c.damage(config);
        FormFixture f("", config.Dir());
        f.Load();
        EXPECT_EQ(f.dialogs.Texts(), std::vector<std::string>{c.message}) << c.name;
        EXPECT_TRUE(f.State().Initialising) << c.name << ": the start-up stopped before its end";
        EXPECT_EQ(f.form->PLEXPlotSpectrum->LinkCount(), 0) << c.name;
        EXPECT_EQ(f.dialogs.Records()[0].title, "") << c.name;
    }
}

TEST(StartUp, OpenedByTheControlAnEmptyConfigurationDirectoryIsReported) {
    QTemporaryDir drive;
    QDir(drive.path()).mkpath("bin.orka/spectrum/configs");
    qputenv("LUMISCOPE_DRIVE_L", drive.path().toLocal8Bit());
    FormFixture f;
    viewer::Library().OpenedByControl = true;
    f.form->show();
    f.Settle();
    qunsetenv("LUMISCOPE_DRIVE_L");
    ASSERT_EQ(f.dialogs.Records().size(), 1u);
    const ui::DialogRecord& box = f.dialogs.Records()[0];
    EXPECT_EQ(box.title, "Configuration Files Missing!") << "its text: the control's test";
    EXPECT_FALSE(viewer::Library().ConfigOk);
    EXPECT_FALSE(f.form->isVisible());
    EXPECT_EQ(viewer::Library().ConfigPath, "L:\\bin.orka\\spectrum\\configs\\");
}

}  // namespace
