#include "ui/qt_scheduler.h"

#include <QTimer>
#include <algorithm>

namespace ui {

QtScheduler::QtScheduler(QObject* parent) : QObject(parent) {}

QtScheduler::~QtScheduler() {
    for (auto& [id, timer] : timers_) delete timer;
}

vire::TimerId QtScheduler::StartTimer(int32_t intervalMs, std::function<void()> onTick) {
    const vire::TimerId id = nextId_++;
    auto* timer = new QTimer(this);
    timer->setInterval(std::max<int32_t>(intervalMs, 1));
    // Precise timers: a 1000 ms link should tick at 1000 ms, not drift by 5 %.
    timer->setTimerType(Qt::PreciseTimer);
    connect(timer, &QTimer::timeout, this, [tick = std::move(onTick)] { tick(); });
    timers_[id] = timer;
    timer->start();
    return id;
}

void QtScheduler::StopTimer(vire::TimerId id) {
    auto it = timers_.find(id);
    if (it == timers_.end()) return;
    it->second->stop();
    // A tick may stop its own timer: delete it once the tick has returned.
    it->second->deleteLater();
    timers_.erase(it);
}

void QtScheduler::Post(std::function<void()> task) {
    // Queued onto this object's (the UI) thread; safe from any thread. A task
    // posted after the scheduler is gone is dropped with it.
    QMetaObject::invokeMethod(this, [task = std::move(task)] { task(); }, Qt::QueuedConnection);
}

ScopedQtScheduler::ScopedQtScheduler()
    : scheduler_(std::make_unique<QtScheduler>()), previous_(vire::CurrentScheduler()) {
    vire::SetScheduler(scheduler_.get());
}

ScopedQtScheduler::~ScopedQtScheduler() { vire::SetScheduler(previous_); }

}  // namespace ui
