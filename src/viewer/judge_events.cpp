// The controls of the judging tools wired to their handlers: threshold,
// reference, peak-hold and auto-scale menus, the scale boxes, the
// set-point comparison's menu and the extra grid.
#include <QAction>
#include <QCheckBox>
#include <QCursor>
#include <QMenu>
#include <QSignalBlocker>

#include "ui/controls/value_grid.h"
#include "viewer/spectrum_form.h"

namespace viewer {

void SpectrumForm::ConnectJudgeEvents() {
    // These handlers turn their menu's tick themselves, as the operator's
    // click would; the tick the menu has already turned is put back first.
    const auto onMenu = [this](QAction* action, const char* name, std::function<void()> handler) {
        connect(action, &QAction::triggered, this, [this, action, name, handler](bool checked) {
            if (action->isCheckable()) {
                const QSignalBlocker quiet(action);
                action->setChecked(!checked);
            }
            Guarded(name, handler);
        });
    };
    onMenu(liveShowThreshold, "liveShowThreshold_Click", [this] { liveShowThreshold_Click(); });
    onMenu(histShowThreshold, "histShowThreshold_Click", [this] { histShowThreshold_Click(); });
    onMenu(dispPercent, "dispPercent_Click", [this] { dispPercent_Click(); });
    onMenu(modThreshold, "modThreshold_Click", [this] { modThreshold_Click(); });
    onMenu(LivePeakHold, "LivePeakHold_Click", [this] { LivePeakHold_Click(); });
    onMenu(refMark, "refMark_Click", [this] { refMark_Click(); });
    onMenu(refDisplay, "refDisplay_Click", [this] { refDisplay_Click(); });
    onMenu(MachAutoScale, "MachAutoScale_Click", [this] { MachAutoScale_Click(); });
    for (int16_t k = 0; k < 3; ++k) {
        onMenu(LiveAutoScale[k], "LiveAutoScale_Click", [this, k] { LiveAutoScale_Click(k); });
        onMenu(HistAutoScale[k], "HistAutoScale_Click", [this, k] { HistAutoScale_Click(k); });
    }
    // The operations menu: the set-point comparison on and off again.
    onMenu(MenuOperations[1], "MenuOperations_Click", [this] { SwitchExtras(s_.ExtrasMode == 1 ? int16_t{2} : int16_t{1}); });
    onMenu(MenuOperations[0], "MenuOperations_Click", [this] { SwitchExtras(0); });

    // Check boxes report their new state.
    for (int16_t k = 0; k < 2; ++k)
        connect(ChkAuto[k], &QCheckBox::clicked, this,
                [this, k] { Guarded("ChkAuto_Click", [&] { ChkAuto_Click(k); }); });
    connect(ChkScale, &QCheckBox::clicked, this, [this] { Guarded("ChkScale_Click", [&] { ChkScale_Click(); }); });
    connect(ChkRelScale, &QCheckBox::clicked, this,
            [this] { Guarded("ChkRelScale_Click", [&] { ChkRelScale_Click(); }); });
    connect(GridExtra, &ui::ValueGrid::Click, this,
            [this](int row, int) { Guarded("GridExtra_Click", [&] { GridExtra_Click(row); }); });
    connect(GridExtra, &ui::ValueGrid::MouseDown, this, [this](int button, int, int, int) {
        if (button == ui::ValueGrid::kRightButton) machOptions->popup(QCursor::pos());
    });
}

}  // namespace viewer
