// Form_Load: brings the window into a working state in a fixed order. A
// failing step shows its message and ends the start-up there; the window
// stays open (without data) so the operator can read it and close it.
#include <QAction>
#include <QComboBox>
#include <QDate>
#include <QDateTime>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <algorithm>

#include "catalogue/files.h"
#include "catalogue/reader_messages.h"
#include "catalogue/readers.h"
#include "ui/controls/dialogs.h"
#include "ui/controls/month_calendar.h"
#include "viewer/initialising_guard.h"
#include "viewer/spectrum_form.h"
#include "viewer/startup_rules.h"
#include "vire/clock.h"
#include "vire/link.h"
#include "vire/queries.h"
#include "vire/threshold_link.h"

namespace viewer {

namespace {

constexpr const char* kFixedProgramDirectory = "L:\\bin.orka\\spectrum";
constexpr int16_t kCombinedMachine = 4;

std::string Upper(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return text;
}

}  // namespace

std::string FixedConfigPath() { return std::string(kFixedProgramDirectory) + "\\configs\\"; }

std::string HistoryFileMachineName(const catalogue::Catalogue& cat) {
    int16_t machine = cat.CurrentMachine;
    if (machine == kCombinedMachine) {
        const std::string file = Upper(cat.SubsystemList[cat.CurrentSubsystem].FileName);
        if (file.find("ORKA") != std::string::npos) machine = 0;
        else if (file.find("VESTA") != std::string::npos) machine = 1;
        else if (file.find("LYRAS") != std::string::npos) machine = 2;
        else machine = 0;
    }
    return cat.MachineList[machine].MachineFile;
}

std::string SpectrumForm::ReadUserName() const { return Upper(vire::UserName()); }

void ReportMissingConfiguration() {
    ui::MsgBox("Configuration files are missing!! Please start the Tallyview (a.k.a. the Tally Analyzer) to get the "
               "files!",
               ui::MsgBoxButtons::OK, ui::MsgBoxIcon::Exclamation, "Configuration Files Missing!");
    Library().ConfigOk = false;
}

void SpectrumForm::Form_Load() {
    catalogue::Catalogue& cat = s_.cat;
    // User mode. Operators see the element chooser; without a user
    // name the window shows the extra information instead.
    s_.MaxItems = 9;
    s_.Items.SetMaxItems(s_.MaxItems);
    s_.Extras.SetMaxItems(s_.MaxItems);
    Library().ConfigOk = true;
    if (!ReadUserName().empty()) {
        MExtraInfo->setChecked(false);
        for (QWidget* w : {static_cast<QWidget*>(X[2]), static_cast<QWidget*>(LabelPoints[0]),
                           static_cast<QWidget*>(LabelPoints[1]), static_cast<QWidget*>(LabelMisc[0])})
            w->setVisible(false);
    } else {
        MExtraInfo->setChecked(true);
        ComboDevs->setVisible(false);
        ComSelDevice->setVisible(false);
        LabelPoints[0]->setText("-");
        LabelPoints[1]->setText("-");
    }
    // Handlers stay quiet while the window is set up.
    s_.Initialising = true;
    s_.DisplayCounter0 = 0;
    s_.DisplayCounter1 = 1;
    LabelSelect[4]->setText("All Curves");
    // Start arguments
    const StartArguments args = SplitStartArguments(commandLine_);
    // Configuration directory
    s_.DisplayMode = 1;
    if (Library().OpenedByControl) {
        Library().ConfigPath = FixedConfigPath();
        if (catalogue::FileSearch(Library().ConfigPath).empty()) {
            ReportMissingConfiguration();
            hide();
            return;
        }
    } else {
        Library().ConfigPath = applicationPath_ + "\\configs\\";
    }
    cat.ConfigPath = Library().ConfigPath;
    cat.ProgramPath = Library().ProgramPath;
    cat.ApplicationPath = applicationPath_;
    vire::InstallThresholdLink(cat);
    // Machine list
    s_.AcceleratorOverview = false;
    cat.CatalogueFresh = true;
    cat.CatalogueFresh2 = true;
    if (catalogue::ReadMachineFile(cat, cat.ConfigPath + std::string(catalogue::kMachineListFileName)) != 0) {
        ui::MsgBox(catalogue::ReadMachineInfoFailedText());
        return;
    }
    CaptionMachineMenus();
    // Machine
    if (!args.machine.empty())
        FirstContaining(args.machine, cat.MachineCount, cat.CurrentMachine,
                        [&](int16_t i) -> const std::string& { return cat.MachineList[i].Name; });
    MenuMachine.at(static_cast<std::size_t>(cat.CurrentMachine))->setChecked(true);
    MSubsystem->setTitle(cat.CurrentMachine == kCombinedMachine ? "Select Machine" : "Subsystem");
    // Subsystem list and subsystem
    const std::string configFile = cat.MachineList[cat.CurrentMachine].ConfigFile;
    if (catalogue::ReadSubsystemList(cat, *this, cat.ConfigPath + configFile) != 0) {
        ui::MsgBox(catalogue::ReadDataSourceFailedText(configFile));
        return;
    }
    if (!args.subsystem.empty())
        FirstContaining(args.subsystem, cat.SubsystemCount, cat.CurrentSubsystem,
                        [&](int16_t i) -> const std::string& { return cat.SubsystemList[i].FileName; });
    MenuSubsystem.at(static_cast<std::size_t>(cat.CurrentSubsystem))->setChecked(true);
    // The channel catalogue; its reader reports nothing to this step.
    const catalogue::SubsystemRecord& subsystem = cat.SubsystemList[cat.CurrentSubsystem];
    s_.PrevChannel = -1;
    s_.CompanionMarker = -1;
    catalogue::ReadSpectrumConfig(cat, *this, subsystem.Directory + subsystem.FileName);
    // The history list
    if (catalogue::ReadHistoryFile(cat, cat.ConfigPath + HistoryFileMachineName(cat)) != 0) {
        ui::MsgBox(std::string(catalogue::kReadMachineSourceFailedText));
        return;
    }
    // Item slots start empty, the trend window at the present.
    for (int16_t i = 0; i < s_.MaxItems; ++i) {
        s_.Items[i].unusedSlot = s_.Items[i].unusedSlot2 = true;
        s_.Extras[i].unusedSlot = s_.Extras[i].unusedSlot2 = true;
    }
    s_.HistorySelections = 0;
    UpDownTime_Change(!OptTime[0]->isChecked());
    // Extras
    if (!args.extras.empty()) {
        s_.ExtrasRequested = true;
        SwitchExtras(args.extras == "EXTRAS_ON" ? 1 : 2);
    } else {
        s_.ExtrasRequested = false;
        SwitchExtras(2);
    }
    // Property boxes, scale menu, grids, colours and the calendar.
    InitPropSelections(false);
    SwitchScaleMenu(2);
    InitGraphics();
    const QDate today = QDateTime::fromMSecsSinceEpoch(vire::NowMilliseconds()).date();
    // Any day the archive holds, up to today.
    MonthView1->SetMinDate(today.addDays(-kArchiveDays));
    MonthView1->SetMaxDate(today);
    MonthView1->SetValue(today);
    s_.Items.SetCurrent(-1);
    s_.ZoomMarkers = {-1, -1, -1, -1};
    // Set-up done: handlers act again, and the machine overview starts.
    s_.Initialising = false;
    InitAcceleratorHistory();
}

void SpectrumForm::CaptionMachineMenus() {
    const catalogue::Catalogue& cat = s_.cat;
    for (int i = 0; i < kMachineMenuEntries; ++i) {
        const bool used = i < cat.MachineCount;
        const QString name = used ? QString::fromStdString(cat.MachineList[i].Name) : QString();
        MenuMachine[i]->setText(i < 9 ? QString("&%1 %2").arg(i + 1).arg(name) : name);
        MenuMachine[i]->setVisible(used);
        MenuMachine[i]->setProperty("accessibleName", name);
    }
    const bool combined = cat.MachineCount > kCombinedMachine;
    for (int i = 0; i < kMachine2Entries; ++i) {
        const bool used = i < cat.MachineCount;
        MenuMachine2[i]->setText(used ? QString::fromStdString(cat.MachineList[i].Name) : QString());
        MenuMachine2[i]->setVisible(used);
    }
    MenuMachine2Menu->menuAction()->setVisible(combined);
    if (combined)
        MenuMachine2Menu->setTitle(tr("%1 &by machine").arg(QString::fromStdString(cat.MachineList[kCombinedMachine].Name)));
}

}  // namespace viewer
