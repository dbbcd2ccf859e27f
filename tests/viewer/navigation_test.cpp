// Machine and subsystem navigation, and the channel selection it triggers.
#include <gtest/gtest.h>

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <tuple>

#include "form_fixture.h"
#include "scratch_config.h"
#include "ui/plot/plex_plot.h"
#include "viewer/control_colours.h"
#include "catalogue/runtime_error.h"
#include "vire/link.h"

namespace {

using viewer_test::FormFixture;

std::string SubsystemFile(FormFixture& f) {
    const auto& cat = f.State().cat;
    return cat.SubsystemList[cat.CurrentSubsystem].FileName;
}

TEST(Navigation, MachineMenusChooseMachineSubsystemAndTheCombinedEntry) {
    const struct { const char* name; std::function<void(viewer::SpectrumForm&)> click; int16_t machine;
        const char *subsystem, *menuTitle; bool operations; } cases[] = {
        {"MenuMachine(1)", [](auto& w) { w.MenuMachine_Click(1); }, 1, "VESTA_BPM.csv", "Subsystem", false},
        {"MenuMachine(4)", [](auto& w) { w.MenuMachine_Click(4); }, 0, "ORKA_BPM.csv", "Select Machine", true},
        {"MenuMachine2(2)", [](auto& w) { w.MenuMachine2_Click(2); }, 2, "LYRAS_PS.csv", "Select Machine", true},
        {"MenuMachine2(1)", [](auto& w) { w.MenuMachine2_Click(1); }, 1, "VESTA_PS.csv", "Select Machine", true},
    };
    for (const auto& c : cases) {
        FormFixture f;
        viewer::SpectrumForm& form = f.Load();
        c.click(form);
        EXPECT_EQ(f.State().cat.CurrentMachine, c.machine) << c.name;
        EXPECT_EQ(SubsystemFile(f), c.subsystem) << c.name;
        EXPECT_EQ(form.MSubsystem->title(), c.menuTitle) << c.name;
        EXPECT_EQ(form.MenuOperationsMenu->menuAction()->isVisible(), c.operations) << c.name;
        EXPECT_EQ(f.State().ExtrasRequested, c.operations) << c.name;
        int checked = 0;
        for (QAction* entry : form.MenuMachine) checked += entry->isChecked() ? 1 : 0;
        EXPECT_EQ(checked, 1) << c.name;
        EXPECT_EQ(f.dialogs.Texts(), std::vector<std::string>{}) << c.name;
    }
}

TEST(Navigation, LeavingTheCombinedEntryTurnsCompanionsIntoThePlainExtraDisplay) {
    FormFixture f("ORKA PS EXTRAS_ON");
    viewer::SpectrumForm& form = f.Load();
    ASSERT_EQ(f.State().ExtrasMode, 1);
    form.MenuMachine_Click(4);
    EXPECT_EQ(f.State().ExtrasMode, 1);
    form.MenuMachine_Click(3);
    EXPECT_EQ(f.State().ExtrasMode, 2);
    EXPECT_EQ(f.State().cat.MachineList[f.State().cat.CurrentMachine].Name, "KALM");
}

TEST(Selection, ChoosingAChannelStartsEveryPartAndFillsTheElementChooser) {
    FormFixture f;
    viewer::SpectrumForm& form = f.Load();
    form.SpectrumCombo_Click();  // "Orbit horizontal": four parts of 32
    EXPECT_EQ(f.State().ChannelsStarted, 4);
    EXPECT_EQ(form.PLEXPlotSpectrum->LinkCount(), 4);
    EXPECT_EQ(form.ComboDevs->count(), 128);
    EXPECT_DOUBLE_EQ(form.PLEXPlotSpectrum->XMax(), 31 + 0.2 + 3 * 32);
    EXPECT_EQ(form.PLEXPlotSpectrum->XLabel(), "Device Name/Location");
    EXPECT_EQ(form.PLEXPlotSpectrum->Caption(), "ORKA: Orbit horizontal") << "the chosen channel, not its last part";
    EXPECT_EQ((std::vector<QString>{form.TxtSelect[0]->text(), form.TxtSelect[1]->text()}),
              (std::vector<QString>{"5", "-5"}));
    EXPECT_FALSE(form.liveShowThreshold->isVisible()) << "no threshold source";
    EXPECT_TRUE(form.LiveAutoScale[2]->isChecked());

    form.MenuSubsystem_Click(1);  // beam losses: located elements and thresholds
    EXPECT_EQ(form.ComboDevs->itemText(0), "Girder 01 pos 1 (BLM.S01.1)");
    for (QAction* menu : {form.liveShowThreshold, form.histShowThreshold, form.modThreshold})
        EXPECT_TRUE(menu->isVisible()) << menu->objectName().toStdString();
    EXPECT_EQ(f.dialogs.Texts(), std::vector<std::string>{});
}

TEST(Selection, AFailingPartStopsTheGroupWithItsErrorText) {
    FormFixture f;
    viewer::SpectrumForm& form = f.Load();
    f.accelerator->SetFault("/ORKA/BPMQ2", sim::Fault{sim::Fault::Kind::Down});
    form.SpectrumCombo_Click();
    EXPECT_EQ(f.dialogs.Texts(), std::vector<std::string>{"PROBLEMS!   " + vire::ErrorText(2)});
    EXPECT_EQ(f.State().ChannelsStarted, 1);
    EXPECT_EQ(form.ComboDevs->count(), 32);
    EXPECT_NE(form.StatusLine->text().toStdString().find("/ORKA/BPMQ2/ORBIT ORBIT.X not opened: " +
                                                          vire::ErrorText(2)),
              std::string::npos);
}

TEST(Selection, AFifthPropertyIsMappedButHasNoBoxAndASixthIsABoundsFault) {
    for (const int heads : {5, 6}) {
        std::vector<std::string> rows;
        for (int i = 0; i < heads; ++i)
            rows.push_back("T,S/D,P" + std::to_string(i) + ",2,Orbit" + std::to_string(i) + ",10,0,mm,,,,7,Q" +
                           std::to_string(i));
        viewer_test::ScratchConfig config(rows);
        FormFixture f("", config.Dir(), "OPERATOR", viewer_test::FakeDevices());
        viewer::SpectrumForm& form = f.Load();
        form.SwitchExtras(0);
        if (heads == 5) {
            form.InitPropSelections(false);
            EXPECT_EQ(f.State().PropBoxesUsed, 5);
            EXPECT_EQ(f.State().PropChannel[4], 4);
            for (int k = 0; k < 4; ++k) EXPECT_EQ(form.ChkProps[k]->text(), QString("Q%1").arg(k));
            EXPECT_FALSE(form.FrameProps->isHidden());
        } else {
            EXPECT_THROW(form.InitPropSelections(false), catalogue::RuntimeError);
        }
    }
}

TEST(Selection, ATickedPropertyBoxWearsTheColourOfTheItemItStandsFor) {
    viewer_test::ScratchConfig config({"T,S/D,P0,9,O0,10,0,mm,,,,7,Q0", "T,S/D,P1,9,O1,10,0,mm,,,,7,Q1"});
    FormFixture f("", config.Dir(), "OPERATOR", viewer_test::FakeDevices());
    viewer::SpectrumForm& form = f.Load();
    // Slots 0 and 1: element N1 of Q1 (current) and of Q0; slot 2: another element of Q1.
    const std::pair<const char*, const char*> items[] = {{"N1", "Q1"}, {"N1", "Q0"}, {"N5", "Q1"}};
    for (int16_t slot = 0; slot < 3; ++slot) {
        viewer::SelectedItem item;
        item.elementName = items[slot].first;
        item.PropShort = items[slot].second;
        item.propertyLink = 7;
        f.State().Items.Add(item);
    }
    f.State().Items.SetCurrent(0);
    form.InitPropSelections(true);
    EXPECT_EQ((std::vector<uint32_t>{viewer::BackColourOf(form.ChkProps[0]), viewer::BackColourOf(form.ChkProps[1])}),
              (std::vector<uint32_t>{f.State().ItemColours[1], f.State().ItemColours[0]}));
}

TEST(Selection, LiveLimitsForTheTrendsClearTheZoomOfEveryItemTheyApplyTo) {
    for (const int16_t common : {1, 0}) {
        FormFixture f;
        viewer::SpectrumForm& form = f.Load();
        viewer::FormState& s = f.State();
        s.CommonScale = common;
        s.Items.Add({});
        s.Items.Add({});
        s.Extras.Add({});
        s.Items.SetCurrent(1);
        viewer::SelectedItem* items[] = {&s.Items[0], &s.Items[1], &s.Extras[0]};
        for (viewer::SelectedItem* item : items) item->zoomFlag = 1;
        form.ComSelect_Click(4);
        const std::vector<int16_t> zoomed = {items[0]->zoomFlag, items[1]->zoomFlag, items[2]->zoomFlag};
        EXPECT_EQ(zoomed, (common ? std::vector<int16_t>{0, 0, 0} : std::vector<int16_t>{1, 0, 1})) << common;
    }
}

TEST(Selection, RangeBoxesTurnGreenWhenEditedAndGreyWhenApplied) {
    FormFixture f;
    viewer::SpectrumForm& form = f.Load();
    form.SpectrumCombo_Click();
    form.TxtSelect[0]->setText("2.5");
    EXPECT_EQ(viewer::BackColourOf(form.TxtSelect[0]), 0xC0FFC0u);
    form.ComSelect_Click(0);
    EXPECT_EQ(viewer::BackColourOf(form.TxtSelect[0]), 0xE0E0E0u);
    EXPECT_EQ(viewer::BackColourOf(form.TxtSelect[1]), 0xE0E0E0u);
    EXPECT_DOUBLE_EQ(form.PLEXPlotSpectrum->YMax(), 2.5);
    EXPECT_DOUBLE_EQ(form.PLEXPlotSpectrum->YMin(), -5);

    form.ChkAuto[1]->setChecked(true);
    form.ComSelect_Click(4);
    EXPECT_EQ(f.dialogs.Texts(), std::vector<std::string>{"Auto-Scale is switched on!!!!!"});
}

}  // namespace
