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
#include "ui/controls/value_grid.h"
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
        // A heading row and one row per item slot.
        for (const ui::ValueGrid* grid : {form.GridSelected, form.GridExtra})
            EXPECT_EQ((std::vector<std::string>{std::to_string(grid->Rows()), grid->TextMatrix(0, 0),
                                                grid->TextMatrix(0, 2)}),
                      (std::vector<std::string>{"10", "Item", "Now"}))
                << c.line;
        EXPECT_EQ(form.GridAccelerator->Rows(), cat.HistoryCount + 1) << c.line;
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

TEST(StartUp, TheCombinedEntryReadsTheHistoryOfTheMachineItsSubsystemNames) {
    // Five machines, each with a history file of its own; the combined entry
    // (the fifth) has one too, which only a subsystem naming no machine
    // could wrongly reach.
    ScratchConfig config({"T,S/D,P,3,Orbit,10,0,mm,,,,1,A"});
    std::string machines = "MACHINE,CONFIGFILE,MACHINEFILE\n";
    for (const char* name : {"ORKA", "VESTA", "LYRAS", "KALM", "OPS"}) {
        machines += std::string(name) + "," + name + "_Subsystems.csv," + name + ".HIST\n";
        config.Write(std::string(name) + ".HIST", std::string("CONTEXT,SERVER,PROPERTY,DESCRIPTION\nT,S/D,P,") + name +
                                                      " quantity\n");
        config.Write(std::string(name) + "_Subsystems.csv", "FILENAME,DESCRIPTION\nTEST_DEV.csv,Devices\n");
    }
    config.Write("config_machines.csv", machines);
    config.Write("OPS_Subsystems.csv", "FILENAME,DESCRIPTION\nORKA_DEV.csv,O\nVESTA_DEV.csv,V\nLYRAS_DEV.csv,L\n"
                                       "TRANSFER_DEV.csv,T\nKALM_DEV.csv,K\n");
    for (const char* file : {"ORKA_DEV.csv", "VESTA_DEV.csv", "LYRAS_DEV.csv", "TRANSFER_DEV.csv", "KALM_DEV.csv"})
        config.Write(file, std::string(ScratchConfig::kHeader) + "\nT,S/D,P,3,Orbit,10,0,mm,,,,1,A\n");
    const struct {
        const char* arguments;
        const char* quantity;
    } cases[] = {
        {"OPS,ORKA", "ORKA quantity"},
        {"OPS,VESTA", "VESTA quantity"},
        {"OPS,LYRAS", "LYRAS quantity"},
        {"OPS,TRANSFER", "ORKA quantity"},  // no machine named: the first machine's
        {"OPS,KALM", "ORKA quantity"},      // only ORKA, VESTA and LYRAS are looked for
        {"KALM", "KALM quantity"},
    };
    for (const auto& c : cases) {
        FormFixture f(c.arguments, config.Dir(), "OPERATOR", viewer_test::FakeDevices());
        f.Load();
        EXPECT_EQ(f.dialogs.Texts(), std::vector<std::string>{}) << c.arguments;
        ASSERT_EQ(f.State().cat.HistoryCount, 1) << c.arguments;
        EXPECT_EQ(f.State().cat.HistoryList[0].Description, c.quantity) << c.arguments;
    }
}

TEST(StartUp, ARunTimeErrorIsReportedOnceAndLaterChoicesStillGoLive) {
    // Six properties share one link number in the start channel's group: the
    // property maps hold five, so the start-up ends with a bounds fault.
    std::vector<std::string> rows;
    for (int i = 0; i < 6; ++i)
        rows.push_back("T,S/D,P" + std::to_string(i) + ",2,Orbit" + std::to_string(i) + ",10,0,mm,,,,7,Q" +
                       std::to_string(i));
    rows.push_back("T,S/D,Other,3,Other,10,0,mm,,,,8,R");
    const struct {
        const char* name;
        std::function<void(viewer::SpectrumForm&)> choose;
        int32_t links;
        size_t boxes;  // the start-up's box included
    } cases[] = {
        {"a channel of its own", [](auto& w) { w.SpectrumCombo->setCurrentIndex(6); emit w.SpectrumCombo->activated(6); }, 1, 1},
        {"the subsystem again", [](auto& w) { w.MenuSubsystem[0]->trigger(); }, 1, 2},
    };
    for (const auto& c : cases) {
        ScratchConfig config(rows);
        FormFixture f("", config.Dir(), "OPERATOR", viewer_test::FakeDevices());
        viewer::SpectrumForm& form = f.Load();
        ASSERT_EQ(f.dialogs.Records().size(), 1u) << c.name;
        EXPECT_EQ(f.dialogs.Texts()[0].rfind("Run-time error", 0), 0u) << f.dialogs.Texts()[0];
        EXPECT_EQ(f.dialogs.Records()[0].icon, ui::MsgBoxIcon::Critical);
        EXPECT_FALSE(f.State().Initialising) << c.name;
        EXPECT_FALSE(f.State().Busy) << c.name;
        EXPECT_EQ(form.GridSelected->Rows(), 10) << c.name << ": the grids are set up all the same";
        c.choose(form);
        f.Advance(1000);
        EXPECT_EQ(form.PLEXPlotSpectrum->LinkCount(), c.links) << c.name;
        EXPECT_GT(f.State().LivePointCount, 0) << c.name;
        EXPECT_EQ(f.dialogs.Records().size(), c.boxes) << c.name << ": the same fault, reported again";
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
