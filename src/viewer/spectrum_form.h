// The viewer window. The operator chooses a machine, a subsystem and a
// channel, and watches the channel's spectrum live; selected elements are
// followed over time on the trend plots beside their grids.
//
// One class whose member functions live in the file of their concern:
//   form_widgets.cpp / form_menus.cpp  the controls, menus and layout
//   startup.cpp      Form_Load, Form_Unload, start arguments
//   navigation.cpp   machine, subsystem and device choice; catalogue callbacks
//   selection.cpp    channel chooser, element chooser, property boxes, ranges
//   channel_open.cpp element names, locations and thresholds of a channel
//   live.cpp         data-received events of the four plots
//   plotsetup.cpp    colours and grids (InitGraphics), markers
//   items.cpp        the selected items: adding, removing, grids, clicks
//   trends.cpp       item histories, live links and the trend plots' events
//   cursor.cpp       the trend cursor's read-out, the spectrum's mouse read-out
//   time_navigation.cpp  the time scale and the calendar move the trend window
//   overview.cpp     the machine overview's quantities
//   printing.cpp     snapshot to the logbook
//   pending.cpp      procedures whose behaviour later features bring
// The shared data is FormState; widgets are reached through the form only.
#pragma once

#include <QMainWindow>
#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "catalogue/catalogue_window.h"
#include "viewer/form_state.h"
#include "viewer/movie_state.h"
#include "viewer/waterfall_view.h"

class QAction;
class QCheckBox;
class QDate;
class QComboBox;
class QFrame;
class QGridLayout;
class QGroupBox;
class QLabel;
class QLineEdit;
class QMenu;
class QPushButton;
class QRadioButton;
class QSaveFile;
class QSpinBox;
class QSplitter;

namespace ui {
class PlexPlot;
class ValueGrid;
class MonthCalendar;
class IntervalTimer;
}  // namespace ui

namespace viewer {

inline constexpr int kMachineMenuEntries = catalogue::kMaxMachine + 1;  // MenuMachine(0..15)
inline constexpr int kMachine2Entries = 3;                              // MenuMachine2(0..2)

class SpectrumForm : public QMainWindow, public catalogue::CatalogueWindow {
    Q_OBJECT

public:
    // commandLine: the start arguments as one text (machine, subsystem,
    // "EXTRAS_ON", split at "," or " "); applicationPath: the program's
    // directory in the system's form, without trailing "\".
    SpectrumForm(std::string commandLine, std::string applicationPath, QWidget* parent = nullptr);
    ~SpectrumForm() override;

    // Runs the start-up once (the first showing does it too).
    void Load();
    bool Loaded() const { return loaded_; }

    FormState& State() { return s_; }
    const FormState& State() const { return s_; }

    // --- operations other windows and the control call ---
    void SelectAMachine(int16_t& machine, int16_t& subMachine, int16_t& wantPs);
    void SelectASubSystem(int16_t index);
    void SelectADevice(int32_t& row);

    // Closes every window of the library (a nested call does nothing).
    static void UnloadAllForms();

    // --- catalogue::CatalogueWindow ---
    void SetSubsystemMenuEntry(int16_t index, const std::string& caption, bool visible) override;
    void HideSubsystemMenuEntry(int16_t index) override;
    void ClearSpectrumCombo() override;
    void AddSpectrumComboItem(const std::string& text) override;
    void SetSpectrumComboVisible(bool visible) override;
    void SelectSpectrumComboPosition(int16_t position) override;
    void PrepareChannel(int16_t channel) override;
    void ShowMessage(const std::string& text) override;

    // --- controls (system names; arrays keep their indices) ---
    std::array<QAction*, kMachineMenuEntries> MenuMachine{};
    std::array<QAction*, kMachine2Entries> MenuMachine2{};
    QMenu* MenuMachine2Menu = nullptr;
    QMenu* MSubsystem = nullptr;
    std::array<QAction*, catalogue::kSubsystemMenuEntries> MenuSubsystem{};
    QMenu* MenuOperationsMenu = nullptr;
    std::array<QAction*, 2> MenuOperations{};
    QAction* MExtraInfo = nullptr;
    QAction* PrintOpts = nullptr;
    QMenu* liveOpts = nullptr;
    std::array<QAction*, 3> LiveAutoScale{};
    QAction* LivePeakHold = nullptr;
    QAction* refDisplay = nullptr;
    QAction* refMark = nullptr;
    QAction* liveShowThreshold = nullptr;
    QAction* dispPercent = nullptr;
    QAction* displayReset = nullptr;
    QMenu* displayOpts = nullptr;
    std::array<QAction*, 3> HistAutoScale{};
    QAction* histShowThreshold = nullptr;
    QAction* modThreshold = nullptr;
    QAction* selectedItemDelete = nullptr;
    QAction* allItemsDelete = nullptr;
    std::array<QAction*, 5> scDepth{};
    QMenu* machOptions = nullptr;
    QAction* MachAutoScale = nullptr;
    QMenu* GeneralOpts = nullptr;

    QComboBox* SpectrumCombo = nullptr;
    QComboBox* ComboDevs = nullptr;
    QPushButton* ComSelDevice = nullptr;
    QGroupBox* FrameProps = nullptr;
    std::array<QCheckBox*, kPropBoxes> ChkProps{};
    std::array<QLabel*, 2> LabelExtDevice{};
    std::array<QLineEdit*, 4> TxtSelect{};
    std::array<QPushButton*, 6> ComSelect{};
    std::array<QCheckBox*, 2> ChkAuto{};
    QCheckBox* ChkScale = nullptr;
    QCheckBox* ChkRelScale = nullptr;
    std::array<QLabel*, 5> LabelSelect{};
    std::array<QLabel*, 2> LabelPoints{};
    std::array<QLabel*, 2> LabelMisc{};
    std::array<QFrame*, 3> X{};
    std::array<QLabel*, 2> LabelZoom{};
    std::array<QLabel*, 2> PicZoom{};
    QPushButton* ComUnZoom = nullptr;
    QRadioButton* OptLiveData = nullptr;
    QRadioButton* OptArchiveData = nullptr;
    std::array<QRadioButton*, 2> OptTime{};
    QSpinBox* UpDownTime = nullptr;
    QLineEdit* TextTimeScale = nullptr;
    QFrame* FrameMisc4 = nullptr;  // FrameMisc(4)
    ui::MonthCalendar* MonthView1 = nullptr;
    ui::PlexPlot* PLEXPlotSpectrum = nullptr;
    ui::PlexPlot* PLEXPlotSelected = nullptr;
    ui::PlexPlot* PLEXPlotExtra = nullptr;
    ui::PlexPlot* PLEXPlotAccelerator = nullptr;
    ui::ValueGrid* GridSelected = nullptr;
    ui::ValueGrid* GridExtra = nullptr;
    ui::ValueGrid* GridAccelerator = nullptr;
    ui::IntervalTimer* MovieTimer = nullptr;
    QLabel* StatusLine = nullptr;  // what the links report, in words

    // --- event handlers (public so that tests drive them as the user would) ---
    void MenuMachine_Click(int16_t index);
    void MenuMachine2_Click(int16_t index);
    void MenuSubsystem_Click(int16_t index);
    void SpectrumCombo_Click();
    void ComSelDevice_Click();
    void ChkProps_Click(int16_t index);
    void ComSelect_Click(int16_t index);
    void TxtSelect_Change(int16_t index);
    void PrintOpts_Click();
    void MExtraInfo_Click();
    void displayReset_Click();
    // The data-received events of the plots.
    void PLEXPlotSpectrum_DataReceive(int32_t link, int16_t error);
    void Plot_DataReceive(int16_t which, int32_t link, int16_t error);
    void PLEXPlotSpectrum_MouseMove(double x);
    void selectedItemDelete_Click();
    void allItemsDelete_Click();
    void OptTime_Click(int16_t index);
    void MonthClicker(const QDate& day);
    // The trend plots' cursor (which: 0 selected items, 1 extra, 2 overview).
    void PlotCursor_Click(int16_t which, double x, double y);
    void PlotCursor_Move(int16_t which, double x, double y);

    // --- procedures ---
    void InitPropSelections(bool fromItem);
    void initSpectrumInfo(int16_t channel);
    void InitGraphics();
    void DrawMarkers();
    void LinkRestart();
    // Opens a catalogue entry's data source: element names, locations and
    // thresholds. The middleware's completion code (0 = opened).
    int16_t OpenChannel(int16_t channel);

    // --- the selected items (items.cpp) ---
    void SelectAChannel(int16_t& element, int16_t& sourceChannel, int16_t& elementNumber,
                        int16_t& plottedChannel);
    void RemoveAllItems();
    void RemoveSelectedItem();
    void ClickAGrid(int32_t row);
    // column 1 = "Cursor", else the third column; grid 0 selected items,
    // 1 extra channels, 2 machine overview; reload recounts the points.
    void FillAGrid(int16_t column, int16_t grid, int32_t time, bool reload);
    // Follows the named elements of the chosen channel as if each was
    // picked in the chooser; returns the names the channel does not have.
    std::vector<std::string> SelectElementsByName(const std::vector<std::string>& names);

    // --- trends and time (trends.cpp, time_navigation.cpp, overview.cpp) ---
    // Reads the history of the list's items first..last for the trend
    // window; false when the operator aborted.
    bool LoadHistories(int16_t grid, int16_t first, int16_t last);
    void PlotTheHistoryData();
    void setSpectrumHistoryParameters();
    void InitAcceleratorHistory();
    void UpDownTime_Change(bool fromScale);

    // Procedures whose behaviour later features bring (pending.cpp).
    void SwitchExtras(int16_t mode);
    void EnterHistoryMode();
    void SwitchScaleMenu(int16_t mode);
    void DrawThresholds(ui::PlexPlot* plot);
    void ConvertToPercent();
    void AutoScaling(int16_t plotCode, int16_t mode);
    void ReloadArchiveData();
    void ScalingAction(int16_t index);
    void PrepareExtraPlot();
    void ZoomRoutine(int16_t which, double newStart, double newEnd, double newYMin, double newYMax);

    // The program's text for the device under the mouse on the spectrum.
    std::string DeviceUnderCursor(double x) const;

    // --- judging the spectrum: thresholds, reference and peak hold, scaling,
    // set-point comparison (thresholds.cpp, reference.cpp, scaling.cpp,
    // extras.cpp, judge_events.cpp) ---
    void liveShowThreshold_Click();
    void histShowThreshold_Click();
    void ToggleThresholdTrace(QAction* entry, ui::PlexPlot* plot, int32_t& trace);
    void dispPercent_Click();
    void modThreshold_Click();
    void ModifySelectedItemThreshold();
    void LivePeakHold_Click();
    void refMark_Click();
    void refDisplay_Click();
    void RefreshSpectrumModeCaption();
    // which: 0 selected items, 1 extra channels, 2 machine overview.
    void RefreshTrendModeCaption(int16_t which);
    void LiveAutoScale_Click(int16_t index);
    void HistAutoScale_Click(int16_t index);
    void MachAutoScale_Click();
    void ChkAuto_Click(int16_t index);
    void ChkScale_Click();
    void ChkRelScale_Click();
    void SwitchScaling();
    void SelectAnEXTRAChannel(bool rebuild);
    void GridExtra_Click(int32_t row);
    // The checked entry of the live auto-scale menu as a scaling mode (1..3), 0 for none.
    int16_t LiveScaleMode() const;
    // The same for the trend plots' auto-scale menu.
    int16_t TrendScaleMode() const;

    // --- export of what is shown (export_shown.cpp) ---
    // Pop-up menu entries of the spectrum's, the items' and the overview's
    // menus (indices 0, 1, 2).
    std::array<QAction*, 3> ExportCsv{};
    std::array<QAction*, 3> ExportPng{};
    std::array<QAction*, 3> ExportWindowPng{};
    // plot: 0 spectrum, 1 selected items, 2 extra channels, 3 machine
    // overview; kExportWindow (PNG only) the whole window.
    static constexpr int16_t kExportWindow = -1;
    void ExportCsv_Click(int16_t plot);
    void ExportPng_Click(int16_t plot);

    // --- looking back in time: the data mode, zoom, recorded spectra, the
    // replay and the waterfall (history_mode.cpp, zoom.cpp,
    // spectrum_history.cpp, movie.cpp, waterfall.cpp) ---
    QGroupBox* FrameMovie = nullptr;
    QPushButton* MovieButton = nullptr;
    std::array<QPushButton*, 2> StepButton{};
    QPushButton* SpeedButton = nullptr;
    QMenu* MovieSpeedOpts = nullptr;
    std::array<QAction*, 3> mSpeedOpts{};
    QPushButton* WaterfallButton = nullptr;
    QAction* WaterfallOpts = nullptr;
    void OptArchiveData_Click();
    void OptLiveData_Click();
    void OptLiveData_MouseDown();
    void scDepth_Click(int16_t index);
    void ZoomBack();
    void ComUnZoom_Click();
    void LabelZoom_Click();
    void LabelZoom_DblClick();
    void PicZoom_Click();
    void PicZoom_DblClick();
    // The recorded spectrum of the chosen channel at `time`; false when a
    // read failed (told, nothing drawn).
    bool LoadHistorySpectrum(int32_t time);
    void MovieButton_Click();
    void MovieTimer_Timer();
    void StepButton_Click(int16_t index);
    void SpeedButton_MouseDown(int button);
    void mSpeedOpts_Click(int16_t index);
    void MovieSpeedUp();
    // The waterfall of the chosen channel over the trend window (opened from
    // WaterfallButton); a click on a row replays from that row's time.
    void WaterfallButton_Click();
    void StartMovieAt(int32_t time);
    MovieState& Movie() { return movie_; }

protected:
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void BuildControls();
    void BuildMenus();
    void BuildLayout();
    QGroupBox* RangeBox(const QString& title, const char* name, int first, QGridLayout*& layout);
    void ConnectEvents();
    void ConnectJudgeEvents();
    // Live values from the parts' last readings, as received (peak hold and
    // percent undone).
    void RestoreRawLiveValues();
    // The trend plot `which` (0 selected, 1 extra) fitted to its items.
    void ScaleTrendPlot(int16_t which, int16_t mode);
    // Every extra item removed with its trace, link and grid row.
    void DropExtraItems();
    void Form_Load();
    void Form_Unload();
    void Form_Resize();
    void ShowLinkStatus();
    // Runs a handler; a run-time error of the window logic (a bound, an
    // overflow) is reported in a message box and the window keeps running.
    // False when the handler ended with such an error.
    bool Guarded(const char* handler, const std::function<void()>& body);
    std::string ReadUserName() const;
    void CaptionMachineMenus();
    void ReadCurrentSubsystem();
    void ReselectItems();
    std::string TraceCaptionPrefix() const;
    bool LiveAutoScaleChecked() const;
    // Opens a spectrum's entries from its head on (at most 100, stopping
    // before the next head entry); the first failure is reported with
    // "PROBLEMS!   " and ends the group. Returns how many were opened.
    int16_t OpenSpectrumParts(int16_t head, const std::function<void(int16_t)>& opened);
    void StartSpectrumLinks(int16_t first, bool fillChooser);
    // The list, grid and trend plot of grid number 0, 1 or 2.
    ItemList& ListOf(int16_t grid);
    ui::ValueGrid* GridOf(int16_t grid) const;
    ui::PlexPlot* TrendPlotOf(int16_t which) const;
    uint32_t ColourOf(int16_t grid, int16_t slot) const;
    void ResetItemGrid(int16_t grid);
    void ShowItemStatus(const SelectedItem& item);
    void AttachItemLink(int16_t grid, SelectedItem& item);
    void MoveWindowToPresent();
    void DrawTrends(int16_t grid);
    void AutoScaleOwnRanges(int16_t grid);
    int16_t CursorMode() const;
    int32_t CalendarAnchor() const;
    void ReloadTrendHistories();
    // The plot's range, labels and caption for a catalogue entry (the link aside).
    void ShowChannelFrame(int16_t channel);
    // The notice on the spectrum plot: parts not opened or failing, a
    // spectrum too long to draw.
    std::string MissingNotice(const std::string& failingParts) const;
    // Looking back in time.
    void BuildReplayControls();
    void ConnectReplayEvents();
    void ShowZoomControls(bool shown);
    void ApplyZoomEntry();
    void ReloadZoomedHistory();
    void StoreFullYRanges();
    std::vector<int32_t> MovieTimes(int16_t item) const;
    void StopMovie();
    void ArchiveWindowMoved();
    // The recorded spectra of the chosen channel at `rows` times of the
    // trend window; false when a read failed.
    bool ReadWaterfall(int32_t rows, WaterfallPicture& picture);

    // --- export of what is shown (export_shown.cpp) ---
    void BuildExportEntries();
    ui::PlexPlot* ExportedPlot(int16_t plot) const;
    std::vector<std::string> ExportHeader(int16_t plot) const;
    std::string ValueSourceAt(int16_t plot, int32_t trace, double x);
    // The path the user chose ("" when cancelled).
    std::string AskExportPath(int16_t plot, const char* suffix, const char* filter);
    // False (after telling the user) when the file could not be written.
    bool WriteExport(const std::string& path, const std::function<bool(QSaveFile&)>& write);
    int16_t exportOverviewPlot_ = 2;  // the plot the shared menu was last popped up from
    QString exportDirectory_;         // where the last export went

    FormState s_;
    std::string commandLine_;
    std::string applicationPath_;
    bool loaded_ = false;
    MovieState movie_;
};

}  // namespace viewer
