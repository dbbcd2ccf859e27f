// Machine and subsystem navigation, and the channel selection it triggers.
#include <gtest/gtest.h>

#include <QGroupBox>
#include <QMenu>

#include "form_fixture.h"
#include "viewer/control_colours.h"

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
        EXPECT_EQ(std::to_string(f.State().cat.CurrentMachine) + " " + SubsystemFile(f) + " " +
                      form.MSubsystem->title().toStdString(),
                  std::to_string(c.machine) + " " + c.subsystem + " " + c.menuTitle);
        EXPECT_EQ(std::pair(form.MenuOperationsMenu->menuAction()->isVisible(), f.State().ExtrasRequested),
                  std::pair(c.operations, c.operations)) << c.name;
        EXPECT_EQ(std::ranges::count_if(form.MenuMachine, [](QAction* m) { return m->isChecked(); }), 1) << c.name;
        EXPECT_TRUE(f.dialogs.Texts().empty()) << c.name;
    }
}

TEST(Navigation, LeavingTheCombinedEntryTurnsCompanionsIntoThePlainExtraDisplay) {
    FormFixture f("ORKA PS EXTRAS_ON");
    viewer::SpectrumForm& form = f.Load();
    form.MenuMachine_Click(4);
    const int16_t onTheCombinedEntry = f.State().ExtrasMode;
    form.MenuMachine_Click(3);
    EXPECT_EQ(std::pair(onTheCombinedEntry, f.State().ExtrasMode), (std::pair<int16_t, int16_t>(1, 2)));
    EXPECT_EQ(f.State().cat.MachineList[f.State().cat.CurrentMachine].Name, "KALM");
}

TEST(Selection, ChoosingAChannelStartsEveryPartAndFillsTheElementChooser) {
    FormFixture f;
    viewer::SpectrumForm& form = f.Load();
    form.SpectrumCombo_Click();  // "Orbit horizontal": four parts of 32
    const auto& s = f.State();
    EXPECT_EQ((std::vector<int>{s.ChannelsStarted, form.PLEXPlotSpectrum->LinkCount(), form.ComboDevs->count()}),
              (std::vector<int>{4, 4, 128}));
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
    EXPECT_EQ(std::pair(f.State().ChannelsStarted, form.ComboDevs->count()), (std::pair<int16_t, int>(1, 32)));
    EXPECT_NE(form.StatusLine->text().toStdString().find("/ORKA/BPMQ2/ORBIT ORBIT.X not opened: " +
                                                          vire::ErrorText(2)),
              std::string::npos);
}

// A sixth property is a bounds fault: the start-up tests show it reported.
TEST(Selection, AFifthPropertyIsMappedButHasNoBox) {
    std::vector<std::string> rows;
    for (int i = 0; i < 5; ++i)
        rows.push_back("T,S/D,P" + std::to_string(i) + ",2,O,10,0,mm,,,,7,Q" + std::to_string(i));
    viewer_test::ScratchConfig config(rows);
    FormFixture f("", config.Dir(), "OPERATOR", viewer_test::FakeDevices());
    viewer::SpectrumForm& form = f.Load();
    form.SwitchExtras(0);
    form.InitPropSelections(false);
    EXPECT_EQ(std::pair(f.State().PropBoxesUsed, f.State().PropChannel[4]), (std::pair<int16_t, int16_t>(5, 4)));
    for (int k = 0; k < 4; ++k) EXPECT_EQ(form.ChkProps[k]->text(), QString("Q%1").arg(k));
    EXPECT_FALSE(form.FrameProps->isHidden());
}

TEST(Selection, ATickedPropertyBoxWearsTheColourOfTheItemItStandsFor) {
    viewer_test::ScratchConfig config({"T,S/D,P0,9,O0,10,0,mm,,,,7,Q0", "T,S/D,P1,9,O1,10,0,mm,,,,7,Q1"});
    FormFixture f("", config.Dir(), "OPERATOR", viewer_test::FakeDevices());
    viewer::SpectrumForm& form = f.Load();
    // Slots 0 and 1: element N1 of Q1 (current) and of Q0; slot 2: another element of Q1.
    const std::pair<const char*, const char*> items[] = {{"N1", "Q1"}, {"N1", "Q0"}, {"N5", "Q1"}};
    for (const auto& [name, property] : items) {
        viewer::SelectedItem item;
        std::tie(item.elementName, item.PropShort, item.propertyLink) = std::tuple(name, property, 7);
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
        for (viewer::ItemList* list : {&s.Items, &s.Items, &s.Extras}) (*list)[list->Add({})].zoomFlag = 1;
        s.Items.SetCurrent(1);
        form.ComSelect_Click(4);
        const std::vector<int16_t> zoomed = {s.Items[0].zoomFlag, s.Items[1].zoomFlag, s.Extras[0].zoomFlag};
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
    EXPECT_EQ(std::pair(form.PLEXPlotSpectrum->YMax(), form.PLEXPlotSpectrum->YMin()), std::pair(2.5, -5.0));

    form.ChkAuto[1]->setChecked(true);
    form.ComSelect_Click(4);
    EXPECT_EQ(f.dialogs.Texts(), std::vector<std::string>{"Auto-Scale is switched on!!!!!"});
}

}  // namespace
