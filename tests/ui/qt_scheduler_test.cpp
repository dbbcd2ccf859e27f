// The middleware's scheduler on the Qt event loop: work posted from another
// thread runs on the UI thread, and links stopped inside a tick stay stopped.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QThread>
#include <thread>

#include "ui/qt_scheduler.h"
#include "vire/scheduler.h"

namespace {

TEST(QtScheduler, PostedWorkRunsOnTheUiThreadWhenTheLoopTurns) {
    ui::ScopedQtScheduler scoped;
    ASSERT_EQ(vire::CurrentScheduler(), &scoped.scheduler());
    QThread* ranOn = nullptr;
    std::thread worker([&] { vire::CurrentScheduler()->Post([&] { ranOn = QThread::currentThread(); }); });
    worker.join();
    EXPECT_EQ(ranOn, nullptr);  // not before the loop turns
    QCoreApplication::processEvents();
    EXPECT_EQ(ranOn, QCoreApplication::instance()->thread());
}

TEST(QtScheduler, UninstallsItselfAndDropsWorkPostedBehindIt) {
    vire::Scheduler* before = vire::CurrentScheduler();
    bool ran = false;
    {
        ui::ScopedQtScheduler scoped;
        scoped.scheduler().Post([&] { ran = true; });
    }
    QCoreApplication::processEvents();
    EXPECT_FALSE(ran);
    EXPECT_EQ(vire::CurrentScheduler(), before);
}

TEST(QtScheduler, ATimerStoppedInsideItsTickNeverTicksAgain) {
    ui::ScopedQtScheduler scoped;
    int ticks = 0;
    vire::TimerId id = 0;
    id = scoped.scheduler().StartTimer(1, [&] {
        ++ticks;
        scoped.scheduler().StopTimer(id);
    });
    scoped.scheduler().StopTimer(999);  // unknown: ignored
    // Turn the loop until the first tick; the timer is 1 ms, so this ends.
    while (ticks == 0) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    for (int i = 0; i < 5; ++i) QCoreApplication::processEvents();
    EXPECT_EQ(ticks, 1);
}

}  // namespace
