// The month calendar of the history display (MonthView1): a selected date
// with its lower and upper limits, and a signal when the user clicks a day.
// History windows are 32-bit seconds, so the selected day also converts to
// the seconds of its local midnight.
#pragma once

#include <QCalendarWidget>
#include <QDate>
#include <cstdint>

namespace ui {

// Seconds since 1970 of local midnight at the start of `date`; -1 for an
// invalid date or one outside the 32-bit range (before 1970, after 2038).
int32_t LocalMidnightSeconds(const QDate& date);
// The local date a time falls on; invalid for negative times.
QDate LocalDateOfSeconds(int64_t seconds);

class MonthCalendar : public QCalendarWidget {
    Q_OBJECT

public:
    explicit MonthCalendar(QWidget* parent = nullptr);

    QDate Value() const { return selectedDate(); }
    // Selects and shows `date`. An invalid date, or one outside the limits,
    // leaves the selection as it is.
    void SetValue(const QDate& date);
    QDate MinDate() const { return minimumDate(); }
    QDate MaxDate() const { return maximumDate(); }
    // A limit that excludes the selected date moves the selection onto the
    // limit; an invalid date is ignored.
    void SetMinDate(const QDate& date);
    void SetMaxDate(const QDate& date);

    // The selected day as LocalMidnightSeconds.
    int32_t ValueSeconds() const { return LocalMidnightSeconds(Value()); }

signals:
    // The user clicked a day (not emitted for changes made from code).
    void DateClick(const QDate& date);
};

}  // namespace ui
