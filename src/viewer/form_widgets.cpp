// The window's controls and their layout: choosers and options in a column
// on the left, the live spectrum on top of the right side, the trend plots
// with their grids beneath it. Splitters and layouts keep everything readable
// from 1280x800 up; the left column scrolls rather than clips.
#include <algorithm>

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSpinBox>
#include <QSplitter>
#include <QStatusBar>
#include <QVBoxLayout>

#include "ui/controls/full_item_texts.h"
#include "ui/controls/interval_timer.h"
#include "ui/controls/month_calendar.h"
#include "ui/controls/value_grid.h"
#include "ui/plot/plex_plot.h"
#include "viewer/spectrum_form.h"
#include "viewer/widget_names.h"

namespace viewer {

namespace {

constexpr int kGridMinimumHeight = 90;

QLabel* NewLabel(const QString& name, const QString& caption, QWidget* parent) {
    return Named(new QLabel(caption, parent), name, caption);
}

// A trend plot with its grid to the right; the grid keeps its fitted width.
QWidget* TrendRow(const QString& name, ui::PlexPlot* plot, ui::ValueGrid* grid, QWidget* parent) {
    auto* row = new QWidget(parent);
    row->setObjectName(name);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(plot, 1);
    layout->addWidget(grid, 0, Qt::AlignTop);
    return row;
}

}  // namespace

void SpectrumForm::BuildControls() {
    SpectrumCombo = Named(new QComboBox(this), "SpectrumCombo", tr("Channel"));
    SpectrumCombo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    SpectrumCombo->setMinimumContentsLength(18);
    ComboDevs = Named(new QComboBox(this), "ComboDevs", tr("Element"));
    ComboDevs->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    ComboDevs->setMinimumContentsLength(14);
    ComboDevs->setMaxVisibleItems(25);
    // Element names can be long (location and name): the box stays narrow,
    // its popup and tool tips show them whole.
    ui::ShowFullItemTexts(ComboDevs);
    ComSelDevice = Named(new QPushButton(tr("&Add"), this), "ComSelDevice", tr("Add element"));
    ComSelDevice->setToolTip(tr("Follow the chosen element over time"));
    FrameProps = Named(new QGroupBox(tr("Properties"), this), "FrameProps", tr("Properties"));
    for (int k = 0; k < kPropBoxes; ++k)
        ChkProps[k] = Named(new QCheckBox(FrameProps), IndexedName("ChkProps", k), QString());
    for (int k = 0; k < 2; ++k) {
        LabelExtDevice[k] = NewLabel(IndexedName("LabelExtDevice", k), QString(), this);
        LabelExtDevice[k]->setVisible(false);
    }

    const char* rangeCaptions[] = {"Live maximum", "Live minimum", "Trend maximum", "Trend minimum"};
    for (int k = 0; k < 4; ++k) {
        TxtSelect[k] = Named(new QLineEdit(this), IndexedName("TxtSelect", k), tr(rangeCaptions[k]));
        TxtSelect[k]->setMaximumWidth(110);
    }
    const char* buttonCaptions[] = {"Set", "Auto", "Default", "Set", "Live limits", "Auto"};
    const char* buttonNames[] = {"Set live range", "Auto-scale live", "Catalogue range",
                                 "Set trend range", "Trend range from live limits", "Auto-scale trends"};
    for (int k = 0; k < 6; ++k)
        ComSelect[k] = Named(new QPushButton(tr(buttonCaptions[k]), this), IndexedName("ComSelect", k), tr(buttonNames[k]));
    ChkAuto[0] = Named(new QCheckBox(tr("Auto live"), this), "ChkAuto_0", tr("Auto live"));
    ChkAuto[1] = Named(new QCheckBox(tr("Auto trends"), this), "ChkAuto_1", tr("Auto trends"));
    ChkScale = Named(new QCheckBox(tr("Scale menu"), this), "ChkScale", tr("Scale menu"));
    ChkRelScale = Named(new QCheckBox(tr("Own scales"), this), "ChkRelScale", tr("Own scales"));
    for (int k = 0; k < 5; ++k) LabelSelect[k] = NewLabel(IndexedName("LabelSelect", k), QString(), this);
    for (int k = 0; k < 2; ++k) LabelPoints[k] = NewLabel(IndexedName("LabelPoints", k), QString(), this);
    for (int k = 0; k < 2; ++k) LabelMisc[k] = NewLabel(IndexedName("LabelMisc", k), QString(), this);
    for (int k = 0; k < 3; ++k) {
        X[k] = Named(new QFrame(this), IndexedName("X", k), tr("Details"));
        X[k]->setFrameShape(QFrame::StyledPanel);
    }
    for (int k = 0; k < 2; ++k) {
        LabelZoom[k] = NewLabel(IndexedName("LabelZoom", k), QString(), this);
        PicZoom[k] = NewLabel(IndexedName("PicZoom", k), QString::fromUtf8("\u2196"), this);
        LabelZoom[k]->setVisible(false);
        PicZoom[k]->setVisible(false);
    }
    ComUnZoom = Named(new QPushButton(tr("&Unzoom"), this), "ComUnZoom", tr("Unzoom"));
    ComUnZoom->setVisible(false);

    OptLiveData = Named(new QRadioButton(tr("&Live"), this), "OptLiveData", tr("Live"));
    OptArchiveData = Named(new QRadioButton(tr("A&rchive"), this), "OptArchiveData", tr("Archive"));
    OptTime[0] = Named(new QRadioButton(tr("Time scale"), this), "OptTime_0", tr("Time scale"));
    OptTime[1] = Named(new QRadioButton(tr("Day"), this), "OptTime_1", tr("Day"));
    // Two independent choices: the data mode and the time navigation.
    auto* modeGroup = new QButtonGroup(this);
    modeGroup->addButton(OptLiveData);
    modeGroup->addButton(OptArchiveData);
    auto* timeGroup = new QButtonGroup(this);
    timeGroup->addButton(OptTime[0]);
    timeGroup->addButton(OptTime[1]);
    OptLiveData->setChecked(true);
    OptTime[0]->setChecked(true);
    UpDownTime = Named(new QSpinBox(this), "UpDownTime", tr("Time step"));
    TextTimeScale = Named(new QLineEdit(this), "TextTimeScale", tr("Time scale"));
    TextTimeScale->setReadOnly(true);
    FrameMisc4 = Named(new QFrame(this), "FrameMisc_4", tr("Replay"));
    MonthView1 = Named(new ui::MonthCalendar(this), "MonthView1", tr("Date"));
    MonthView1->setVisible(false);

    PLEXPlotSpectrum = Named(new ui::PlexPlot(this), "PLEXPlotSpectrum", tr("Live spectrum"));
    PLEXPlotSelected = Named(new ui::PlexPlot(this), "PLEXPlotSelected", tr("Selected items"));
    PLEXPlotExtra = Named(new ui::PlexPlot(this), "PLEXPlotExtra", tr("Extra channels"));
    PLEXPlotAccelerator = Named(new ui::PlexPlot(this), "PLEXPlotAccelerator", tr("Machine overview"));
    // Each trend plot names what it shows, so that empty plots can be told apart.
    for (ui::PlexPlot* trend : {PLEXPlotSelected, PLEXPlotExtra, PLEXPlotAccelerator}) {
        trend->SetTimeAxis(true);
        trend->SetCaption(trend->accessibleName().toStdString());
    }
    GridSelected = Named(new ui::ValueGrid("GridSelected", this), "GridSelected", tr("Selected items"));
    GridExtra = Named(new ui::ValueGrid("GridExtra", this), "GridExtra", tr("Extra channels"));
    GridAccelerator = Named(new ui::ValueGrid("GridAccelerator", this), "GridAccelerator", tr("Machine overview"));
    MovieTimer = new ui::IntervalTimer(500, this);
    MovieTimer->setObjectName("MovieTimer");
    StatusLine = NewLabel("StatusLine", QString(), this);
}

QGroupBox* SpectrumForm::RangeBox(const QString& title, const char* name, int first, QGridLayout*& layout) {
    // Maximum and minimum with their buttons, the auto-scale box and the
    // third button: TxtSelect(first..first+1), ComSelect(first/2*3 ...).
    auto* box = Named(new QGroupBox(title, this), name, QString(title).remove('&'));
    layout = new QGridLayout(box);
    const int button = first / 2 * 3;
    layout->addWidget(new QLabel(tr("Max"), box), 0, 0);
    layout->addWidget(TxtSelect[first], 0, 1);
    layout->addWidget(ComSelect[button], 0, 2);
    layout->addWidget(new QLabel(tr("Min"), box), 1, 0);
    layout->addWidget(TxtSelect[first + 1], 1, 1);
    layout->addWidget(ComSelect[button + 1], 1, 2);
    layout->addWidget(ChkAuto[first / 2], 2, 0, 1, 2);
    layout->addWidget(ComSelect[button + 2], 2, 2);
    return box;
}

void SpectrumForm::BuildLayout() {
    // Left column: what to show and how.
    auto* channelBox = Named(new QGroupBox(tr("C&hannel"), this), "FrameChannel", tr("Channel"));
    auto* channelLayout = new QVBoxLayout(channelBox);
    channelLayout->addWidget(SpectrumCombo);
    auto* elementRow = new QHBoxLayout;
    elementRow->addWidget(ComboDevs, 1);
    elementRow->addWidget(ComSelDevice);
    channelLayout->addLayout(elementRow);
    channelLayout->addWidget(LabelExtDevice[0]);
    channelLayout->addWidget(LabelExtDevice[1]);
    auto* propsLayout = new QGridLayout(FrameProps);
    for (int k = 0; k < kPropBoxes; ++k) propsLayout->addWidget(ChkProps[k], k / 2, k % 2);
    channelLayout->addWidget(FrameProps);

    QGridLayout* liveLayout = nullptr;
    QGroupBox* liveBox = RangeBox(tr("Live &range"), "FrameLiveRange", 0, liveLayout);
    QGridLayout* trendLayout = nullptr;
    QGroupBox* trendBox = RangeBox(tr("Trend ra&nge"), "FrameTrendRange", 2, trendLayout);
    trendLayout->addWidget(ChkRelScale, 3, 0, 1, 2);
    trendLayout->addWidget(ChkScale, 3, 2);
    trendLayout->addWidget(LabelSelect[4], 4, 0, 1, 3);

    auto* timeBox = Named(new QGroupBox(tr("T&ime"), this), "FrameTime", tr("Time"));
    auto* timeLayout = new QGridLayout(timeBox);
    timeLayout->addWidget(OptLiveData, 0, 0);
    timeLayout->addWidget(OptArchiveData, 0, 1);
    timeLayout->addWidget(OptTime[0], 1, 0);
    timeLayout->addWidget(OptTime[1], 1, 1);
    timeLayout->addWidget(TextTimeScale, 2, 0);
    timeLayout->addWidget(UpDownTime, 2, 1);
    timeLayout->addWidget(MonthView1, 3, 0, 1, 2);
    timeLayout->addWidget(FrameMisc4, 4, 0, 1, 2);
    auto* zoomRow = new QHBoxLayout;
    zoomRow->addWidget(PicZoom[0]);
    zoomRow->addWidget(LabelZoom[0]);
    zoomRow->addStretch(1);
    zoomRow->addWidget(ComUnZoom);
    timeLayout->addLayout(zoomRow, 5, 0, 1, 2);

    auto* details = new QVBoxLayout(X[2]);
    for (int k = 0; k < 2; ++k) details->addWidget(LabelPoints[k]);
    details->addWidget(LabelMisc[0]);
    for (int k = 0; k < 4; ++k) details->addWidget(LabelSelect[k]);

    auto* column = new QWidget(this);
    column->setObjectName("ChooserColumn");
    auto* columnLayout = new QVBoxLayout(column);
    columnLayout->addWidget(channelBox);
    columnLayout->addWidget(liveBox);
    columnLayout->addWidget(trendBox);
    columnLayout->addWidget(timeBox);
    columnLayout->addWidget(X[2]);
    columnLayout->addStretch(1);
    X[0]->setVisible(false);
    X[1]->setVisible(false);
    auto* scroll = new QScrollArea(this);
    scroll->setObjectName("ChooserScroll");
    scroll->setWidget(column);
    scroll->setWidgetResizable(true);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setMinimumWidth(column->sizeHint().width() + 20);

    // Right side: the spectrum over the trends.
    auto* itemsColumn = new QSplitter(Qt::Vertical, this);
    itemsColumn->setObjectName("ItemsSplitter");
    itemsColumn->addWidget(TrendRow("SelectedRow", PLEXPlotSelected, GridSelected, itemsColumn));
    itemsColumn->addWidget(TrendRow("ExtraRow", PLEXPlotExtra, GridExtra, itemsColumn));
    auto* trends = new QSplitter(Qt::Horizontal, this);
    trends->setObjectName("TrendSplitter");
    trends->addWidget(itemsColumn);
    trends->addWidget(TrendRow("AcceleratorRow", PLEXPlotAccelerator, GridAccelerator, trends));
    trends->setStretchFactor(0, 3);
    trends->setStretchFactor(1, 2);
    auto* plots = new QSplitter(Qt::Vertical, this);
    plots->setObjectName("PlotSplitter");
    plots->addWidget(PLEXPlotSpectrum);
    plots->addWidget(trends);
    plots->setStretchFactor(0, 3);
    plots->setStretchFactor(1, 2);
    plots->setSizes({430, 330});

    auto* main = new QSplitter(Qt::Horizontal, this);
    main->setObjectName("MainSplitter");
    main->addWidget(scroll);
    main->addWidget(plots);
    main->setStretchFactor(0, 0);
    main->setStretchFactor(1, 1);
    main->setCollapsible(1, false);
    setCentralWidget(main);
    statusBar()->addWidget(StatusLine, 1);
    for (QWidget* plot : {static_cast<QWidget*>(PLEXPlotSpectrum), static_cast<QWidget*>(PLEXPlotSelected),
                          static_cast<QWidget*>(PLEXPlotExtra), static_cast<QWidget*>(PLEXPlotAccelerator)})
        plot->setMinimumSize(240, 140);
}

void SpectrumForm::Form_Resize() {
    // The extra plot takes room only while extra channels are shown.
    if (auto* extraRow = findChild<QWidget*>("ExtraRow")) extraRow->setVisible(s_.ExtrasMode != 0 && s_.Extras.Count() > 0);
    // A grid is as wide as its columns and at most as high as its rows; on a
    // small screen it scrolls rather than pushing the plots off the window.
    for (ui::ValueGrid* grid : {GridSelected, GridExtra, GridAccelerator}) {
        grid->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        grid->FitWidthToColumns();
        grid->FitHeightToRows();
        // Room for the vertical scroll bar the grid shows when it is cut short.
        grid->setFixedWidth(grid->width() + grid->verticalScrollBar()->sizeHint().width());
        const int fitted = grid->height();
        grid->setMinimumHeight(std::min(fitted, kGridMinimumHeight));
        grid->setMaximumHeight(fitted);
    }
}

}  // namespace viewer
