// The month calendar: days and their local midnights, limits, user clicks.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTableView>
#include <QTest>

#include "scoped_time_zone.h"
#include "ui/controls/month_calendar.h"

namespace ui {
namespace {

using test_support::ScopedTimeZone;

constexpr const char* kUtc = "UTC0";
constexpr const char* kCentralEurope = "CET-1CEST,M3.5.0,M10.5.0/3";

TEST(LocalMidnight, DaysConvertToTheSecondsOfTheirLocalMidnightAndBack) {
    struct Case { const char* zone; QDate date; int32_t seconds; };
    const Case cases[] = {
        {kUtc, QDate(1970, 1, 1), 0},
        {kUtc, QDate(2024, 2, 29), 1709164800},
        {kUtc, QDate(2038, 1, 19), 2147472000},
        {kCentralEurope, QDate(2024, 3, 31), 1711839600},   // a 23-hour day
        {kCentralEurope, QDate(2024, 10, 27), 1729980000},  // a 25-hour day
        // Outside 32-bit seconds, or no day at all.
        {kUtc, QDate(1969, 12, 31), -1},
        {kCentralEurope, QDate(1970, 1, 1), -1},  // 23:00 the day before, in UTC
        {kUtc, QDate(2038, 1, 20), -1},
        {kUtc, QDate(), -1},
    };
    for (const Case& c : cases) {
        ScopedTimeZone zone(c.zone);
        const std::string name = c.zone + (" " + c.date.toString(Qt::ISODate).toStdString());
        EXPECT_EQ(LocalMidnightSeconds(c.date), c.seconds) << name;
        if (c.seconds < 0) continue;
        EXPECT_EQ(LocalDateOfSeconds(c.seconds), c.date) << name;
        EXPECT_EQ(LocalDateOfSeconds(int64_t{c.seconds} + 82799), c.date) << name;
        // The second before midnight is the day before (before 1970: no day).
        EXPECT_EQ(LocalDateOfSeconds(c.seconds - 1), c.seconds ? c.date.addDays(-1) : QDate()) << name;
    }
}

TEST(MonthCalendar, ValueStaysWithinItsLimits) {
    ScopedTimeZone zone(kUtc);
    MonthCalendar calendar;
    const QDate today(2024, 2, 29);
    // Start-up puts value and both limits on today; then each step sets one thing.
    struct Step { char what; QDate set, value; int monthShown; };
    const Step steps[] = {
        {'v', today, today, 2},  {'<', today, today, 2}, {'>', today, today, 2},
        {'v', QDate(2024, 2, 28), today, 2}, {'v', QDate(2024, 3, 1), today, 2}, {'v', QDate(), today, 2},
        {'<', QDate(2024, 1, 1), today, 2}, {'>', QDate(2024, 12, 31), today, 2},
        {'v', QDate(2024, 6, 15), QDate(2024, 6, 15), 6},
        {'>', QDate(2024, 5, 31), QDate(2024, 5, 31), 5},  // a limit past the value pulls it along
        {'<', QDate(), QDate(2024, 5, 31), 5},             // no day: the limit stays
    };
    for (const Step& s : steps) {
        s.what == 'v' ? calendar.SetValue(s.set) : s.what == '<' ? calendar.SetMinDate(s.set) : calendar.SetMaxDate(s.set);
        const std::string name = s.what + s.set.toString(Qt::ISODate).toStdString();
        EXPECT_EQ(calendar.Value(), s.value) << name;
        EXPECT_EQ(calendar.monthShown(), s.monthShown) << name;
    }
    EXPECT_EQ(calendar.MinDate(), QDate(2024, 1, 1));
    calendar.SetValue(today);
    EXPECT_EQ(calendar.ValueSeconds(), 1709164800);
}

TEST(MonthCalendar, AUserClickOnADaySignalsThatDayButCodeDoesNot) {
    MonthCalendar calendar;
    calendar.SetValue(QDate(2025, 2, 3));
    calendar.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&calendar));
    QSignalSpy clicks(&calendar, &MonthCalendar::DateClick);
    calendar.SetValue(QDate(2025, 2, 20));
    EXPECT_EQ(clicks.count(), 0);

    // Day 15 appears once on any month page.
    auto* days = calendar.findChild<QTableView*>();
    ASSERT_NE(days, nullptr);
    QModelIndex fifteenth;
    for (int r = 0; r < days->model()->rowCount() && !fifteenth.isValid(); ++r)
        for (int c = 0; c < days->model()->columnCount(); ++c)
            if (days->model()->index(r, c).data().toString() == "15") fifteenth = days->model()->index(r, c);
    ASSERT_TRUE(fifteenth.isValid());
    QTest::mouseClick(days->viewport(), Qt::LeftButton, {}, days->visualRect(fifteenth).center());
    ASSERT_EQ(clicks.count(), 1);
    EXPECT_EQ(clicks.at(0).at(0).toDate(), QDate(2025, 2, 15));
    EXPECT_EQ(calendar.Value(), QDate(2025, 2, 15));
}

}  // namespace
}  // namespace ui
