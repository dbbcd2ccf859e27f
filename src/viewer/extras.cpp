// The set-point comparison: beside each selected item, the same element of
// its companion channel (set values beside actual values, or their
// difference) on the extra plot with its grid, and the extra information
// panel.
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QFrame>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>

#include "ui/controls/dialogs.h"
#include "ui/controls/event_loop.h"
#include "ui/controls/value_grid.h"
#include "ui/plot/plex_plot.h"
#include "viewer/channel_map.h"
#include "viewer/initialising_guard.h"
#include "viewer/spectrum_form.h"
#include "viewer/value_text.h"
#include "vire/link.h"
#include "vire/utils.h"

namespace viewer {

namespace {

constexpr uint32_t kWhite = 0xFFFFFF;
constexpr uint32_t kHighlight = 0xFFC0C0;

// The machines whose power supplies have set-point files, and what their
// comparison is called.
struct SetPointMachine {
    const char* file;
    const char* name;
};
constexpr SetPointMachine kSetPointMachines[] = {{"LYRAS_PS.csv", "LYRAS"}, {"VESTA_PS.csv", "VESTA"}, {"ORKA_PS.csv", "ORKA"}};

}  // namespace

void SpectrumForm::SwitchExtras(int16_t mode) {
    catalogue::Catalogue& cat = s_.cat;
    if (s_.ExtrasRequested) {
        // A channel that is itself a set value or an actual one is compared
        // with its set values; any other with the difference of the two.
        const std::string chosen = SpectrumCombo->currentText().toStdString();
        const bool istSoll = chosen.find("Ist") != std::string::npos && chosen.find("Soll") != std::string::npos;
        std::string display = istSoll ? "Soll Display" : "Ist - Soll Display";
        std::string history = istSoll ? "Soll History" : "Ist - Soll History";
        std::string file;
        if (cat.CurrentSubsystem >= 0 && cat.CurrentSubsystem < cat.SubsystemCount)
            file = cat.SubsystemList[cat.CurrentSubsystem].FileName;
        if (cat.CurrentMachine >= 0 && cat.CurrentMachine < cat.MachineCount)
            file += " " + cat.MachineList[cat.CurrentMachine].ConfigFile;
        for (const SetPointMachine& machine : kSetPointMachines)
            if (file.find(machine.file) != std::string::npos) {
                display = std::string(machine.name) + " " + display;
                history = std::string(machine.name) + " " + history;
                break;
            }
        MenuOperations[1]->setText(QString::fromStdString(display));
        MenuOperations[1]->setVisible(true);
        PLEXPlotExtra->SetCaption(history);
        PLEXPlotExtra->SetYLabel(cat.SpectrumList[cat.CurrentSpectrum].Egu);
    } else {
        s_.ExtrasRequested = false;
        MenuOperations[1]->setVisible(false);
    }
    switch (mode) {
        case 0: FrameProps->setVisible(true); break;
        case 1:
            FrameProps->setVisible(false);
            // The companions are found afresh; the old ones leave no trace or link behind.
            DropExtraItems();
            if (s_.Items.Count() > 0) SelectAnEXTRAChannel(true);
            break;
        case 2: FrameProps->setVisible(false); break;
        default: break;
    }
    s_.ExtrasMode = mode;
    Form_Resize();
}

void SpectrumForm::PrepareExtraPlot() {
    // Without automatic companions the extra plot starts empty.
    DropExtraItems();
    PLEXPlotExtra->Clear();
    Form_Resize();
}

void SpectrumForm::DropExtraItems() {
    // The grid has its columns only once the window has set up its grids.
    const bool listed = s_.Extras.Count() > 0;
    for (int16_t i = 0; i < s_.Extras.Count(); ++i) {
        SelectedItem& extra = s_.Extras[i];
        extra.hasData = false;
        PLEXPlotExtra->DeleteTrace(extra.traceNumber);
        extra.traceNumber = -1;
        PLEXPlotExtra->Detach(extra.linkHandle);
        extra.linkHandle = -1;
        ui::YieldToEventLoop();
    }
    s_.Extras.Clear();
    if (listed) ResetItemGrid(1);
}

void SpectrumForm::SelectAnEXTRAChannel(bool rebuild) {
    if (s_.Items.Count() == 0) return;
    catalogue::Catalogue& cat = s_.cat;
    if (rebuild) DropExtraItems();
    const int16_t before = s_.Extras.Count();
    for (int16_t i = 0; i < s_.Items.Count(); ++i) {
        const SelectedItem& item = s_.Items[i];
        if (item.ExtraPropComboIndex <= -1) continue;
        const int16_t companion = cat.ComboToSpectrum[item.ExtraPropComboIndex];
        // A companion not yet opened is opened with its appended parts.
        if (cat.SpectrumList[companion].ElementNames.empty()) {
            for (int16_t k = 0; k < kMaxSpectrumParts; ++k) {
                const auto e = static_cast<int16_t>(companion + k);
                const int16_t status = OpenChannel(e);
                if (status != 0) {
                    ui::MsgBox("PROBLEMS!   " + vire::ErrorText(status));
                    break;
                }
                if (e + 1 >= catalogue::kMaxSpectrum || !cat.SpectrumList[e + 1].Append) break;
            }
        }
        int16_t element = item.elementNumber, number = item.elementNumber;
        SelectedItem candidate = MakeSelectedItem(cat, element, companion, number, companion);
        // One extra item per companion device, however many items share it.
        bool known = false;
        for (int16_t x = 0; x < s_.Extras.Count() && !known; ++x)
            known = s_.Extras[x].device == candidate.device && s_.Extras[x].historyServer == candidate.historyServer &&
                    s_.Extras[x].historyProperty == candidate.historyProperty;
        if (!known) s_.Extras.Add(std::move(candidate));
        ui::YieldToEventLoop();
    }
    if (s_.Extras.Count() > before) LoadHistories(1, before, static_cast<int16_t>(s_.Extras.Count() - 1));
    DrawTrends(1);
    FillAGrid(2, 1, vire::UNIXTIME(), false);
    Form_Resize();
}

void SpectrumForm::GridExtra_Click(int32_t row) {
    FlagGuard busy(s_.Busy);
    const int32_t item = row - 1;
    if (item < 0 || item >= s_.Extras.Count()) return;
    const auto paint = [this](int32_t r, uint32_t colour) {
        for (int c = 1; c < GridExtra->Cols(); ++c) GridExtra->SetCellBackColour(r, c, colour);
    };
    const int16_t previous = s_.Extras.Current();
    if (previous >= 0) paint(previous + 1, kWhite);
    // A second click on the highlighted row takes the highlight away.
    if (previous == item) {
        s_.Extras.SetCurrent(-1);
        return;
    }
    s_.Extras.SetCurrent(static_cast<int16_t>(item));
    paint(row, kHighlight);
    const SelectedItem& chosen = s_.Extras[static_cast<int16_t>(item)];
    LabelPoints[0]->setText(QString::number(chosen.pointCount) + " points");
    LabelPoints[1]->setText(QString::fromStdString(GridValueText(chosen.currentValue)));
    LabelSelect[0]->setText(QString::fromStdString(ItemRowCaption(chosen)));
    LabelSelect[1]->setText(QString::fromStdString(chosen.channelName));
}

void SpectrumForm::MExtraInfo_Click() {
    // The menu has already changed its tick: it says which set of controls to show.
    const bool info = MExtraInfo->isChecked();
    for (QWidget* w : {static_cast<QWidget*>(X[2]), static_cast<QWidget*>(LabelPoints[0]),
                       static_cast<QWidget*>(LabelPoints[1]), static_cast<QWidget*>(LabelMisc[0])})
        w->setVisible(info);
    ComboDevs->setVisible(!info);
    ComSelDevice->setVisible(!info);
    if (ChkRelScale->isChecked() != info) {
        ChkRelScale->setChecked(info);
        ChkRelScale_Click();
    }
}

}  // namespace viewer
