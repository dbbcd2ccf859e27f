// Start-up: the start arguments, the user mode, and each step that can stop
// the start-up with its message.
#include <gtest/gtest.h>

#include <QFrame>
#include <QMenu>
#include <QPushButton>

#include "form_fixture.h"
#include "ui/controls/month_calendar.h"
#include "ui/controls/value_grid.h"
#include "viewer/startup_rules.h"

namespace {

using viewer_test::FormFixture;
using viewer_test::ScratchConfig;

TEST(StartArguments, TheSplitWithMorePartsWinsAndBlanksWinATie) {
    const struct { const char* line; viewer::StartArguments expected; } cases[] = {
        {"", {}}, {"VESTA", {"VESTA", "", ""}}, {"VESTA,BLM", {"VESTA", "BLM", ""}},
        {"VESTA BLM EXTRAS_ON", {"VESTA", "BLM", "EXTRAS_ON"}}, {"A,B,C D", {"A", "B", "C D"}},
        {"A,B C", {"A,B", "C", ""}},  // a tie goes to the blanks
        {"a b c d", {}}, {"A,,B", {"A", "", "B"}}, {"A, B", {"A,", "B", ""}},
    };
    for (const auto& c : cases) {
        const viewer::StartArguments a = viewer::SplitStartArguments(c.line);
        EXPECT_EQ((std::vector<std::string>{a.machine, a.subsystem, a.extras}),
                  (std::vector<std::string>{c.expected.machine, c.expected.subsystem, c.expected.extras}))
            << c.line;
    }
}

TEST(StartUp, ArgumentsChooseMachineSubsystemAndExtras) {
    const struct { const char* line; int16_t machine; const char* subsystemFile; int16_t extrasMode; } cases[] = {
        {"", 0, "ORKA_BPM.csv", 2}, {"VESTA,BLM", 1, "VESTA_BLM.csv", 2},
        {"VESTA BLM EXTRAS_ON", 1, "VESTA_BLM.csv", 1}, {"VESTA BLM extras_on", 1, "VESTA_BLM.csv", 2},
        {"vesta", 0, "ORKA_BPM.csv", 2}, {"LYRAS,NOSUCH", 2, "LYRAS_BPM.csv", 2},
    };
    for (const auto& c : cases) {
        FormFixture f(c.line);
        viewer::SpectrumForm& form = f.Load();
        const auto& cat = f.State().cat;
        EXPECT_EQ(cat.CurrentMachine, c.machine) << c.line;
        EXPECT_EQ(cat.SubsystemList[cat.CurrentSubsystem].FileName, c.subsystemFile) << c.line;
        EXPECT_EQ(f.State().ExtrasMode, c.extrasMode) << c.line;
        EXPECT_TRUE(form.MenuMachine[c.machine]->isChecked() && form.MenuSubsystem[cat.CurrentSubsystem]->isChecked());
        EXPECT_TRUE(!f.State().Initialising && form.PLEXPlotSpectrum->LinkCount() > 0) << c.line << ": goes live";
        EXPECT_EQ(form.LabelSelect[4]->text(), "All Curves");
        EXPECT_EQ(form.MonthView1->Value(), QDate(2023, 11, 14)) << "the test clock's day";
        // A heading row and one row per item slot.
        EXPECT_EQ(std::pair(form.GridSelected->Rows(), form.GridExtra->Rows()), std::pair(10, 10)) << c.line;
        EXPECT_TRUE(f.dialogs.Texts().empty()) << c.line;
    }
}

TEST(StartUp, WithoutAUserNameTheExtraInformationReplacesTheElementChooser) {
    for (const std::string user : {"", "op"}) {
        FormFixture f("", viewer_test::SampleConfig(), user);
        viewer::SpectrumForm& form = f.Load();
        const bool a = user.empty();  // anonymous
        EXPECT_EQ((std::vector<bool>{form.MExtraInfo->isChecked(), form.ComboDevs->isHidden(),
                                     form.ComSelDevice->isHidden(), !form.X[2]->isHidden()}),
                  (std::vector<bool>{a, a, a, a})) << user;
        EXPECT_EQ(form.LabelPoints[0]->text(), a ? "-" : "") << user;
    }
}

TEST(StartUp, EachFailingStepShowsItsMessageAndStopsThere) {
    const struct { const char* name; std::function<void(const ScratchConfig&)> damage; std::string message; }
        cases[] = {
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
        EXPECT_TRUE(f.State().Initialising && f.form->PLEXPlotSpectrum->LinkCount() == 0) << c.name;
        EXPECT_EQ(f.dialogs.Records()[0].title, "") << c.name;
    }
}

TEST(StartUp, TheCombinedEntryReadsTheHistoryOfTheMachineItsSubsystemNames) {
    // The combined entry (the fifth) has a history file of its own, which
    // only a subsystem naming no machine could wrongly reach.
    ScratchConfig config({"T,S/D,P,3,Orbit,10,0,mm,,,,1,A"});
    std::string machines = "MACHINE,CONFIGFILE,MACHINEFILE\n", subsystems = "FILENAME,DESCRIPTION\n";
    for (const std::string name : {"ORKA", "VESTA", "LYRAS", "KALM", "OPS"}) {
        machines += name + ",TEST_Subsystems.csv," + name + ".HIST\n";
        config.Write(name + ".HIST", "CONTEXT,SERVER,PROPERTY,DESCRIPTION\nT,S/D,P," + name + "\n");
        config.Write(name + "_DEV.csv", std::string(ScratchConfig::kHeader) + "\nT,S/D,P,3,Orbit,10,0,mm,,,,1,A\n");
        subsystems += name + "_DEV.csv," + name + "\n";
    }
    config.Write("config_machines.csv", machines);
    config.Write("TEST_Subsystems.csv", subsystems);
    const std::pair<const char*, const char*> cases[] = {  // start arguments, history read
        {"OPS,ORKA", "ORKA"}, {"OPS,VESTA", "VESTA"}, {"OPS,LYRAS", "LYRAS"},
        {"OPS,KALM", "ORKA"}, {"OPS,OPS", "ORKA"}, {"KALM,KALM", "KALM"},
    };
    for (const auto& [arguments, history] : cases) {
        FormFixture f(arguments, config.Dir(), "OPERATOR", viewer_test::FakeDevices());
        f.Load();
        ASSERT_EQ(f.State().cat.HistoryCount, 1) << arguments;
        EXPECT_EQ(f.State().cat.HistoryList[0].Description, history) << arguments;
    }
}

TEST(StartUp, ARunTimeErrorIsReportedAndLaterChoicesStillGoLive) {
    // Six properties share one link number in the start channel's group: the
    // maps hold five, so the start-up ends in a bounds fault.
    std::vector<std::string> rows;
    for (int i = 0; i < 6; ++i) rows.push_back("T,S/D,P" + std::to_string(i) + ",2,O" + std::to_string(i) + ",10,0,mm,,,,7,Q");
    rows.push_back("T,S/D,Other,3,Other,10,0,mm,,,,8,R");
    const std::pair<std::function<void(viewer::SpectrumForm&)>, size_t> cases[] = {  // choice, boxes since start
        {[](auto& w) { w.SpectrumCombo->setCurrentIndex(6); emit w.SpectrumCombo->activated(6); }, 1},
        {[](auto& w) { w.MenuSubsystem[0]->trigger(); }, 2},  // the same fault again, reported
    };
    for (const auto& [choose, boxes] : cases) {
        ScratchConfig config(rows);
        FormFixture f("", config.Dir(), "OPERATOR", viewer_test::FakeDevices());
        viewer::SpectrumForm& form = f.Load();
        ASSERT_EQ(f.dialogs.Records().size(), 1u);
        EXPECT_EQ(f.dialogs.Texts()[0].rfind("Run-time error", 0), 0u) << f.dialogs.Texts()[0];
        EXPECT_FALSE(f.State().Initialising || f.State().Busy);
        choose(form);
        f.Advance(1000);
        EXPECT_TRUE(form.PLEXPlotSpectrum->LinkCount() == 1 && f.State().LivePointCount > 0) << boxes;
        EXPECT_EQ(f.dialogs.Records().size(), boxes);
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
    EXPECT_EQ(f.dialogs.Records()[0].title, "Configuration Files Missing!") << "its text: the control's test";
    EXPECT_FALSE(viewer::Library().ConfigOk || f.form->isVisible());
    EXPECT_EQ(viewer::Library().ConfigPath, "L:\\bin.orka\\spectrum\\configs\\");
}

}  // namespace
