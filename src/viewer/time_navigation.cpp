// Moving the trend plots through time: the time scale steps the window by
// its span (or by days), the calendar picks the day; each move reads the
// items' histories for the new window and draws them again.
#include <QDateTime>
#include <QLineEdit>
#include <QRadioButton>
#include <QSpinBox>

#include "ui/controls/month_calendar.h"
#include "viewer/initialising_guard.h"
#include "viewer/spectrum_form.h"
#include "vire/clock.h"
#include "vire/utils.h"

namespace viewer {

int32_t SpectrumForm::CalendarAnchor() const {
    // The chosen day at the present time of day: "yesterday" is one day back,
    // across a change of daylight saving too.
    const QDateTime now = QDateTime::fromMSecsSinceEpoch(vire::NowMilliseconds());
    const QDate day = MonthView1->Value();
    if (!day.isValid() || day >= now.date()) return vire::UNIXTIME();
    return static_cast<int32_t>(QDateTime(day, now.time()).toSecsSinceEpoch());
}

void SpectrumForm::UpDownTime_Change(bool /*fromScale*/) {
    const int32_t step = OptTime[1]->isChecked() ? kSecondsPerDay : s_.HistorySpan;
    {
        FlagGuard initialising(s_.Initialising);
        TextTimeScale->setText(QString::fromStdString(OptTime[1]->isChecked() ? "1 day" : SpanText(s_.HistorySpan)));
    }
    const int32_t now = vire::UNIXTIME();
    s_.Window = PlaceTrendWindow(CalendarAnchor(), now, s_.HistorySpan, step, UpDownTime->value());
    s_.HistoryStart = s_.Window.start;
    s_.HistoryStop = s_.Window.stop;
    if (s_.Initialising) return;
    ReloadTrendHistories();
    if (OptArchiveData->isChecked()) ArchiveWindowMoved();
}

void SpectrumForm::MonthClicker(const QDate& day) {
    {
        // A new day starts at its own time of day, with no steps taken.
        FlagGuard initialising(s_.Initialising);
        MonthView1->SetValue(day);
        UpDownTime->setValue(0);
    }
    UpDownTime_Change(true);
}

void SpectrumForm::OptTime_Click(int16_t /*index*/) {
    if (s_.Initialising) return;
    {
        FlagGuard initialising(s_.Initialising);
        UpDownTime->setValue(0);
    }
    UpDownTime_Change(true);
}

void SpectrumForm::ReloadTrendHistories() {
    FlagGuard busy(s_.Busy);
    for (int16_t grid = 0; grid < 3; ++grid) {
        ItemList& items = ListOf(grid);
        if (items.Count() == 0) continue;
        if (!LoadHistories(grid, 0, static_cast<int16_t>(items.Count() - 1))) break;
    }
    PlotTheHistoryData();
}

}  // namespace viewer
