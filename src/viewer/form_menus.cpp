// The window's menus: machine, subsystem and operations menus, and the
// option menus of the plots (also popped up from the plots themselves).
#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <string>

#include "viewer/spectrum_form.h"
#include "viewer/widget_names.h"

namespace viewer {

namespace {

QAction* AddAction(QMenu* menu, const QString& objectName, const QString& caption, bool checkable) {
    auto* action = menu->addAction(caption);
    action->setObjectName(objectName);
    action->setCheckable(checkable);
    return action;
}

}  // namespace

void SpectrumForm::BuildMenus() {
    QMenuBar* bar = menuBar();

    auto* machineMenu = bar->addMenu(tr("&Machine"));
    machineMenu->setObjectName("MenuMachineList");
    for (int i = 0; i < kMachineMenuEntries; ++i) {
        MenuMachine[i] = AddAction(machineMenu, IndexedName("MenuMachine", i), QString(), true);
        MenuMachine[i]->setVisible(false);
        connect(MenuMachine[i], &QAction::triggered, this,
                [this, i] { Guarded("MenuMachine_Click", [&] { MenuMachine_Click(static_cast<int16_t>(i)); }); });
    }
    // The machines under the combined operations entry (machine 4).
    MenuMachine2Menu = new QMenu(tr("Operations &by machine"), this);
    MenuMachine2Menu->setObjectName("MenuMachine2");
    for (int i = 0; i < kMachine2Entries; ++i) {
        MenuMachine2[i] = AddAction(MenuMachine2Menu, IndexedName("MenuMachine2", i), QString(), true);
        connect(MenuMachine2[i], &QAction::triggered, this,
                [this, i] { Guarded("MenuMachine2_Click", [&] { MenuMachine2_Click(static_cast<int16_t>(i)); }); });
    }
    machineMenu->addSeparator();
    machineMenu->addMenu(MenuMachine2Menu)->setVisible(false);
    machineMenu->addSeparator();
    PrintOpts = AddAction(machineMenu, "PrintOpts", tr("&Print to Logbook"), false);
    PrintOpts->setShortcut(QKeySequence::Print);
    connect(PrintOpts, &QAction::triggered, this, [this] { Guarded("PrintOpts_Click", [&] { PrintOpts_Click(); }); });
    auto* quit = AddAction(machineMenu, "MenuClose", tr("&Close"), false);
    quit->setShortcut(QKeySequence::Close);
    connect(quit, &QAction::triggered, this, &QWidget::close);

    MSubsystem = bar->addMenu(tr("&Subsystem"));
    MSubsystem->setObjectName("MSubsystem");
    for (int i = 0; i < catalogue::kSubsystemMenuEntries; ++i) {
        MenuSubsystem[i] = AddAction(MSubsystem, IndexedName("MenuSubsystem", i), QString(), true);
        MenuSubsystem[i]->setVisible(false);
        connect(MenuSubsystem[i], &QAction::triggered, this,
                [this, i] { Guarded("MenuSubsystem_Click", [&] { MenuSubsystem_Click(static_cast<int16_t>(i)); }); });
    }

    MenuOperationsMenu = bar->addMenu(tr("&Operations"));
    MenuOperationsMenu->setObjectName("MenuOperations");
    MenuOperations[0] = AddAction(MenuOperationsMenu, "MenuOperations_0", tr("&Actual values"), false);
    MenuOperations[1] = AddAction(MenuOperationsMenu, "MenuOperations_1", tr("Soll Display"), false);
    MenuOperations[1]->setVisible(false);
    MenuOperationsMenu->menuAction()->setVisible(false);

    liveOpts = bar->addMenu(tr("&Live"));
    liveOpts->setObjectName("liveOpts");
    const char* autoCaptions[] = {"Auto-scale: fit &all", "Auto-scale: keep &zero", "Auto-scale: &ignore outliers"};
    for (int i = 0; i < 3; ++i) LiveAutoScale[i] = AddAction(liveOpts, IndexedName("LiveAutoScale", i), tr(autoCaptions[i]), true);
    LiveAutoScale[2]->setChecked(true);
    liveOpts->addSeparator();
    LivePeakHold = AddAction(liveOpts, "LivePeakHold", tr("&Peak Hold"), true);
    refMark = AddAction(liveOpts, "refMark", tr("Take &Reference"), true);
    refDisplay = AddAction(liveOpts, "refDisplay", tr("Show &Relative to Reference"), true);
    liveOpts->addSeparator();
    liveShowThreshold = AddAction(liveOpts, "liveShowThreshold", tr("Show &Thresholds"), true);
    dispPercent = AddAction(liveOpts, "dispPercent", tr("&Percent of Threshold"), true);
    liveOpts->addSeparator();
    displayReset = AddAction(liveOpts, "displayReset", tr("Re&start Links"), false);
    connect(displayReset, &QAction::triggered, this, [this] { Guarded("displayReset_Click", [&] { displayReset_Click(); }); });

    displayOpts = bar->addMenu(tr("&Trends"));
    displayOpts->setObjectName("displayOpts");
    for (int i = 0; i < 3; ++i) HistAutoScale[i] = AddAction(displayOpts, IndexedName("HistAutoScale", i), tr(autoCaptions[i]), true);
    displayOpts->addSeparator();
    histShowThreshold = AddAction(displayOpts, "histShowThreshold", tr("Show &Thresholds"), true);
    modThreshold = AddAction(displayOpts, "modThreshold", tr("&Modify Threshold..."), false);
    displayOpts->addSeparator();
    selectedItemDelete = AddAction(displayOpts, "selectedItemDelete", tr("&Delete Selected Item"), false);
    allItemsDelete = AddAction(displayOpts, "allItemsDelete", tr("Delete &All Items"), false);
    displayOpts->addSeparator();
    auto* depthMenu = displayOpts->addMenu(tr("Time &Depth"));
    depthMenu->setObjectName("scDepthMenu");
    const char* depths[] = {"&10 minutes", "1 &hour", "&6 hours", "1&2 hours", "&24 hours"};
    for (int i = 0; i < 5; ++i) scDepth[i] = AddAction(depthMenu, IndexedName("scDepth", i), tr(depths[i]), true);
    scDepth[1]->setChecked(true);
    liveShowThreshold->setVisible(false);
    histShowThreshold->setVisible(false);
    modThreshold->setVisible(false);

    machOptions = new QMenu(tr("Machine overview"), this);
    machOptions->setObjectName("machOptions");
    MachAutoScale = AddAction(machOptions, "MachAutoScale", tr("&Auto-scale"), true);
    GeneralOpts = new QMenu(tr("Items"), this);
    GeneralOpts->setObjectName("GeneralOpts");
    GeneralOpts->addAction(selectedItemDelete);
    GeneralOpts->addAction(allItemsDelete);

    auto* viewMenu = bar->addMenu(tr("&View"));
    viewMenu->setObjectName("MenuView");
    MExtraInfo = AddAction(viewMenu, "MExtraInfo", tr("&Extra Information"), true);
    connect(MExtraInfo, &QAction::triggered, this, [this] { Guarded("MExtraInfo_Click", [&] { MExtraInfo_Click(); }); });

    for (QAction* action : {LivePeakHold, refMark, refDisplay, liveShowThreshold, dispPercent, histShowThreshold,
                            modThreshold, selectedItemDelete, allItemsDelete, MachAutoScale})
        action->setProperty("accessibleName", action->text().remove('&'));
    BuildExportEntries();
}

}  // namespace viewer
