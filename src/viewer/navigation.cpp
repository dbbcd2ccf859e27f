// Moving through the catalogue: machine and subsystem menus, a device chosen
// by a host or by a click on the spectrum, and the callbacks through which the
// catalogue readers caption the subsystem menu and fill the channel chooser.
#include <QAction>
#include <QComboBox>
#include <QMenu>
#include <QTimer>
#include <limits>

#include "catalogue/reader_messages.h"
#include "catalogue/readers.h"
#include "catalogue/runtime_error.h"
#include "ui/controls/dialogs.h"
#include "ui/plot/plex_plot.h"
#include "viewer/channel_map.h"
#include "viewer/spectrum_form.h"
#include "viewer/startup_rules.h"

namespace viewer {

namespace {
constexpr int16_t kCombinedMachine = 4;
}

void SpectrumForm::MenuMachine_Click(int16_t index) {
    int16_t machine = index == kCombinedMachine ? static_cast<int16_t>(-kCombinedMachine) : index;
    int16_t subMachine = 0;
    int16_t wantPs = 0;
    SelectAMachine(machine, subMachine, wantPs);
}

void SpectrumForm::MenuMachine2_Click(int16_t index) {
    int16_t machine = kCombinedMachine;
    int16_t wantPs = 1;
    SelectAMachine(machine, index, wantPs);
}

void SpectrumForm::MenuSubsystem_Click(int16_t index) { SelectASubSystem(index); }

void SpectrumForm::SelectAMachine(int16_t& machine, int16_t& subMachine, int16_t& wantPs) {
    catalogue::Catalogue& cat = s_.cat;
    const bool combined = machine == kCombinedMachine || machine == -kCombinedMachine;
    // The combined entry chooses a machine under it and asks for the extras.
    if (combined) {
        cat.CurrentMachine = subMachine;
        MSubsystem->setTitle("Select Machine");
        s_.ExtrasRequested = true;
        MenuOperationsMenu->menuAction()->setVisible(true);
        s_.Items.SetCurrent(-1);
        RemoveAllItems();
    } else {
        cat.CurrentMachine = machine;
        MSubsystem->setTitle("Subsystem");
        s_.ExtrasRequested = false;
        MenuOperationsMenu->menuAction()->setVisible(false);
        if (s_.ExtrasMode == 1) s_.ExtrasMode = 2;
    }
    // The check marks follow the new choice.
    for (int16_t i = 0; i < cat.MachineCount && i < kMachineMenuEntries; ++i) {
        MenuMachine[i]->setChecked(false);
        if (i < kMachine2Entries) MenuMachine2[i]->setChecked(false);
    }
    if (combined) {
        MenuMachine.at(kCombinedMachine)->setChecked(true);
        MenuMachine2.at(static_cast<std::size_t>(subMachine))->setChecked(true);
    } else {
        MenuMachine.at(static_cast<std::size_t>(machine))->setChecked(true);
    }
    // Every row's display state starts afresh.
    for (int16_t i = 0; i < catalogue::kMaxSpectrum; ++i) cat.SpectrumList[i].Started = false;
    // The history list of the machine.
    if (catalogue::ReadHistoryFile(cat, cat.ConfigPath + cat.MachineList[cat.CurrentMachine].MachineFile) != 0) {
        ui::MsgBox(std::string(catalogue::kReadMachineSourceFailedText));
        return;
    }
    // Colours, grids and the machine overview of the new machine.
    InitGraphics();
    InitAcceleratorHistory();
    // The machine's subsystems; the combined entry may ask for "_PS".
    const std::string configFile = cat.MachineList[cat.CurrentMachine].ConfigFile;
    if (catalogue::ReadSubsystemList(cat, *this, cat.ConfigPath + configFile) != 0) {
        ui::MsgBox(catalogue::ReadDataSourceFailedText(configFile));
        return;
    }
    if (wantPs >= 1) {
        FirstContaining("_PS", cat.SubsystemCount, cat.CurrentSubsystem,
                        [&](int16_t i) -> const std::string& { return cat.SubsystemList[i].FileName; });
    } else if (cat.CurrentSubsystem < 0) {
        cat.CurrentSubsystem = 0;
    }
    if (cat.CurrentSubsystem >= cat.SubsystemCount) cat.CurrentSubsystem = 0;
    for (int16_t i = 0; i < catalogue::kSubsystemMenuEntries; ++i)
        MenuSubsystem[i]->setChecked(i == cat.CurrentSubsystem);
    // The channel catalogue; the chooser's handler rebuilds the selection.
    ReadCurrentSubsystem();
}

void SpectrumForm::SelectASubSystem(int16_t index) {
    catalogue::Catalogue& cat = s_.cat;
    for (int16_t i = 0; i < cat.SubsystemCount && i < catalogue::kSubsystemMenuEntries; ++i)
        MenuSubsystem[i]->setChecked(false);
    MenuSubsystem.at(static_cast<std::size_t>(index))->setChecked(true);
    cat.CurrentSubsystem = index;
    if (MenuOperationsMenu->menuAction()->isVisible()) {
        // Under the combined entry the machine is read again first.
        int16_t machine = kCombinedMachine;
        int16_t subMachine = cat.CurrentMachine;
        int16_t wantPs = 0;
        SelectAMachine(machine, subMachine, wantPs);
        cat.CurrentSubsystem = index;
    }
    // Reading the catalogue selects its first channel, which runs the
    // chooser's handler.
    ReadCurrentSubsystem();
}

void SpectrumForm::ReadCurrentSubsystem() {
    catalogue::Catalogue& cat = s_.cat;
    const catalogue::SubsystemRecord& subsystem = cat.SubsystemList[cat.CurrentSubsystem];
    s_.PrevChannel = -1;
    s_.CompanionMarker = -1;
    catalogue::ReadSpectrumConfig(cat, *this, subsystem.Directory + subsystem.FileName);
}

void SpectrumForm::SelectADevice(int32_t& row) {
    // Any error inside these steps just ends the operation.
    try {
        const int16_t remembered = s_.cat.CurrentSpectrum;
        if (row < std::numeric_limits<int16_t>::min() || row > std::numeric_limits<int16_t>::max())
            catalogue::ThrowOverflow("row " + std::to_string(row));
        const auto row16 = static_cast<int16_t>(row);
        ChannelElement target = MapRowToChannel(s_.cat, remembered, row16);
        int16_t element = row16;
        SelectAChannel(element, target.channel, target.element, target.channel);
        // The grid row of the item just chosen (or of the current one, when
        // the list was full) is the one clicked.
        ClickAGrid(s_.Items.Current() + 1);
        if (histShowThreshold->isChecked() && s_.cat.SpectrumList[remembered].HighThresholds.size() > 1)
            DrawThresholds(PLEXPlotSelected);
    } catch (const std::exception&) {
    }
}

// --- what the catalogue readers do to the window ---

void SpectrumForm::SetSubsystemMenuEntry(int16_t index, const std::string& caption, bool visible) {
    QAction* entry = MenuSubsystem.at(static_cast<std::size_t>(index));
    entry->setText(QString::fromStdString(caption));
    entry->setProperty("accessibleName", QString::fromStdString(caption));
    entry->setVisible(visible);
}

void SpectrumForm::HideSubsystemMenuEntry(int16_t index) {
    MenuSubsystem.at(static_cast<std::size_t>(index))->setVisible(false);
}

void SpectrumForm::ClearSpectrumCombo() {
    const QSignalBlocker block(SpectrumCombo);
    SpectrumCombo->clear();
}

void SpectrumForm::AddSpectrumComboItem(const std::string& text) {
    const QSignalBlocker block(SpectrumCombo);
    SpectrumCombo->addItem(QString::fromStdString(text));
}

void SpectrumForm::SetSpectrumComboVisible(bool visible) { SpectrumCombo->setVisible(visible); }

void SpectrumForm::SelectSpectrumComboPosition(int16_t position) {
    {
        const QSignalBlocker block(SpectrumCombo);
        SpectrumCombo->setCurrentIndex(position);
    }
    // Choosing a position from code fires the chooser's handler, as a click
    // does, with the click's report of a run-time error: the catalogue reader
    // that calls this would take the error for its own and keep it quiet.
    Guarded("SpectrumCombo_Click", [&] { SpectrumCombo_Click(); });
}

}  // namespace viewer
