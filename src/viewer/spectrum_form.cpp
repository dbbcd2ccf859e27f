// The form's life: construction, the first showing, closing, and the guard
// around every event handler.
#include "viewer/spectrum_form.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QAction>
#include <QDate>
#include <exception>
#include <vector>

#include "catalogue/runtime_error.h"
#include "ui/controls/dialogs.h"
#include "ui/controls/month_calendar.h"
#include "ui/controls/value_grid.h"
#include "ui/plot/plex_plot.h"

namespace viewer {

LibraryValues& Library() {
    static LibraryValues values;
    return values;
}

namespace {

// Every window of the library that is loaded, for UnloadAllForms.
std::vector<QPointer<SpectrumForm>>& OpenForms() {
    static std::vector<QPointer<SpectrumForm>> forms;
    return forms;
}

bool unloading = false;

}  // namespace

SpectrumForm::SpectrumForm(std::string commandLine, std::string applicationPath, QWidget* parent)
    : QMainWindow(parent), commandLine_(std::move(commandLine)), applicationPath_(std::move(applicationPath)) {
    setObjectName("SpectrumForm");
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(tr("Lumiscope"));
    setAccessibleName(tr("Lumiscope spectrum viewer"));
    BuildControls();
    BuildMenus();
    BuildLayout();
    BuildReplayControls();
    ConnectEvents();
    ConnectJudgeEvents();
    ConnectReplayEvents();
    resize(1280, 800);
    OpenForms().push_back(this);
}

SpectrumForm::~SpectrumForm() {
    auto& forms = OpenForms();
    std::erase_if(forms, [this](const QPointer<SpectrumForm>& form) { return form.isNull() || form == this; });
}

void SpectrumForm::Load() {
    if (loaded_) return;
    loaded_ = true;
    if (!Guarded("Form_Load", [&] { Form_Load(); })) {
        // A start-up cut short by a run-time error must not leave the window
        // initialising for good: every handler would return at once and no
        // later choice could go live. The grids and colours do not depend on
        // the step that failed.
        s_.Initialising = false;
        s_.Busy = false;
        Guarded("InitGraphics", [&] { InitGraphics(); });
        return;
    }
    // The start-up itself starts no traffic (its chooser events come while
    // it initialises); once it has completed, the channel the chooser shows
    // goes live, as if the operator had confirmed it.
    if (!s_.Initialising && s_.cat.SpectrumCount > 0)
        Guarded("SpectrumCombo_Click", [&] { SpectrumCombo_Click(); });
}

void SpectrumForm::showEvent(QShowEvent* event) {
    Load();
    QMainWindow::showEvent(event);
}

void SpectrumForm::closeEvent(QCloseEvent* event) {
    Form_Unload();
    event->accept();
}

void SpectrumForm::Form_Unload() {
    for (ui::PlexPlot* plot : {PLEXPlotSpectrum, PLEXPlotSelected, PLEXPlotExtra, PLEXPlotAccelerator})
        plot->DetachAll();
    UnloadAllForms();
}

void SpectrumForm::UnloadAllForms() {
    if (unloading) return;
    unloading = true;
    const auto forms = OpenForms();
    for (const QPointer<SpectrumForm>& form : forms) {
        if (form.isNull()) continue;
        for (ui::PlexPlot* plot : {form->PLEXPlotSpectrum, form->PLEXPlotSelected, form->PLEXPlotExtra,
                                   form->PLEXPlotAccelerator})
            plot->DetachAll();
        form->hide();
        form->deleteLater();
    }
    OpenForms().clear();
    unloading = false;
}

bool SpectrumForm::Guarded(const char* handler, const std::function<void()>& body) {
    try {
        body();
        return true;
    } catch (const catalogue::RuntimeError& error) {
        ui::MsgBox(std::string("Run-time error ") + std::to_string(error.code()) + " in " + handler + ": " +
                       error.what(),
                   ui::MsgBoxButtons::OK, ui::MsgBoxIcon::Critical);
    } catch (const std::exception& error) {
        ui::MsgBox(std::string("Run-time error in ") + handler + ": " + error.what(), ui::MsgBoxButtons::OK,
                   ui::MsgBoxIcon::Critical);
    }
    return false;
}

void SpectrumForm::ShowMessage(const std::string& text) { ui::MsgBox(text); }

void SpectrumForm::ConnectEvents() {
    connect(SpectrumCombo, qOverload<int>(&QComboBox::activated), this,
            [this](int) { Guarded("SpectrumCombo_Click", [&] { SpectrumCombo_Click(); }); });
    connect(ComSelDevice, &QPushButton::clicked, this,
            [this] { Guarded("ComSelDevice_Click", [&] { ComSelDevice_Click(); }); });
    for (int k = 0; k < kPropBoxes; ++k)
        connect(ChkProps[k], &QCheckBox::clicked, this, [this, k] {
            Guarded("ChkProps_Click", [&] { ChkProps_Click(static_cast<int16_t>(k)); });
        });
    for (int k = 0; k < 6; ++k)
        connect(ComSelect[k], &QPushButton::clicked, this, [this, k] {
            Guarded("ComSelect_Click", [&] { ComSelect_Click(static_cast<int16_t>(k)); });
        });
    for (int k = 0; k < 4; ++k)
        connect(TxtSelect[k], &QLineEdit::textChanged, this, [this, k] {
            Guarded("TxtSelect_Change", [&] { TxtSelect_Change(static_cast<int16_t>(k)); });
        });

    connect(PLEXPlotSpectrum, &ui::PlexPlot::DataReceive, this, [this](int32_t link, int16_t error) {
        Guarded("PLEXPlotSpectrum_DataReceive", [&] { PLEXPlotSpectrum_DataReceive(link, error); });
    });
    connect(PLEXPlotSpectrum, &ui::PlexPlot::CursorClick, this, [this](double x, double) {
        Guarded("PLEXPlotSpectrum_Click", [&] {
            int32_t row = static_cast<int32_t>(x + 0.5);
            if (row >= 0) SelectADevice(row);
        });
    });
    connect(PLEXPlotSpectrum, &ui::PlexPlot::CursorMove, this, [this](double x, double) {
        Guarded("PLEXPlotSpectrum_MouseMove", [&] { PLEXPlotSpectrum_MouseMove(x); });
    });
    connect(PLEXPlotSpectrum, &ui::PlexPlot::OptionsRequest, this, [this](QPoint at) { liveOpts->popup(at); });

    ui::PlexPlot* trends[] = {PLEXPlotSelected, PLEXPlotExtra, PLEXPlotAccelerator};
    QMenu* trendMenus[] = {displayOpts, machOptions, machOptions};
    for (int16_t which = 0; which < 3; ++which) {
        ui::PlexPlot* plot = trends[which];
        connect(plot, &ui::PlexPlot::DataReceive, this, [this, which](int32_t link, int16_t error) {
            Guarded("Plot_DataReceive", [&] { Plot_DataReceive(which, link, error); });
        });
        connect(plot, &ui::PlexPlot::OptionsRequest, this, [menu = trendMenus[which]](QPoint at) { menu->popup(at); });
        connect(plot, &ui::PlexPlot::CursorClick, this, [this, which](double x, double y) {
            Guarded("PlotCursor_Click", [&] { PlotCursor_Click(which, x, y); });
        });
        connect(plot, &ui::PlexPlot::CursorMove, this, [this, which](double x, double y) {
            Guarded("PlotCursor_Move", [&] { PlotCursor_Move(which, x, y); });
        });
    }
    for (int16_t which = 0; which < 3; ++which)
        connect(trends[which], &ui::PlexPlot::ZoomEvent, this,
                [this, which](double start, double end, double yMin, double yMax) {
                    Guarded("ZoomRoutine", [&] { ZoomRoutine(which, start, end, yMin, yMax); });
                });
    connect(GridSelected, &ui::ValueGrid::Click, this,
            [this](int row, int) { Guarded("GridSelected_Click", [&] { ClickAGrid(row); }); });
    connect(GridSelected, &ui::ValueGrid::MouseDown, this, [this](int button, int, int, int) {
        if (button == ui::ValueGrid::kRightButton) GeneralOpts->popup(QCursor::pos());
    });
    connect(selectedItemDelete, &QAction::triggered, this,
            [this] { Guarded("selectedItemDelete_Click", [&] { selectedItemDelete_Click(); }); });
    connect(allItemsDelete, &QAction::triggered, this,
            [this] { Guarded("allItemsDelete_Click", [&] { allItemsDelete_Click(); }); });
    for (int16_t k = 0; k < 2; ++k)
        connect(OptTime[k], &QRadioButton::clicked, this,
                [this, k] { Guarded("OptTime_Click", [&] { OptTime_Click(k); }); });
    connect(UpDownTime, qOverload<int>(&QSpinBox::valueChanged), this, [this](int) {
        if (s_.Initialising) return;
        Guarded("UpDownTime_Change", [&] { UpDownTime_Change(true); });
    });
    connect(MonthView1, &ui::MonthCalendar::DateClick, this,
            [this](const QDate& day) { Guarded("MonthClicker", [&] { MonthClicker(day); }); });
}

}  // namespace viewer
