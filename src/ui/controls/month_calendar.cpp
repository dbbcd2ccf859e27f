#include "ui/controls/month_calendar.h"

#include <ctime>

#include "vire/utils.h"

namespace ui {

int32_t LocalMidnightSeconds(const QDate& date) {
    if (!date.isValid()) return -1;
    return vire::MKTIME(date.year(), date.month(), date.day(), 0, 0, 0);
}

QDate LocalDateOfSeconds(int64_t seconds) {
    if (seconds < 0) return QDate();
    // The same local time as MKTIME and CTIME use, so that a day and its
    // midnight always convert back into each other.
    const std::time_t t = static_cast<std::time_t>(seconds);
    std::tm parts{};
    if (localtime_r(&t, &parts) == nullptr) return QDate();
    return QDate(parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday);
}

MonthCalendar::MonthCalendar(QWidget* parent) : QCalendarWidget(parent) {
    setObjectName(QStringLiteral("MonthView1"));
    connect(this, &QCalendarWidget::clicked, this, &MonthCalendar::DateClick);
}

void MonthCalendar::SetValue(const QDate& date) {
    if (!date.isValid() || date < minimumDate() || date > maximumDate()) return;
    setSelectedDate(date);
    setCurrentPage(date.year(), date.month());
}

void MonthCalendar::SetMinDate(const QDate& date) {
    if (date.isValid()) setMinimumDate(date);
}

void MonthCalendar::SetMaxDate(const QDate& date) {
    if (date.isValid()) setMaximumDate(date);
}

}  // namespace ui
