// The middleware layer's scheduler on the Qt event loop.
//
// Live links tick on QTimers of the UI thread; work finished on other threads
// (a network transport's reader) is queued to the UI thread's event loop.
#pragma once

#include <QObject>
#include <map>
#include <memory>

#include "vire/scheduler.h"

class QTimer;

namespace ui {

class QtScheduler : public QObject, public vire::Scheduler {
    Q_OBJECT
public:
    explicit QtScheduler(QObject* parent = nullptr);
    ~QtScheduler() override;

    vire::TimerId StartTimer(int32_t intervalMs, std::function<void()> onTick) override;
    void StopTimer(vire::TimerId id) override;
    void Post(std::function<void()> task) override;

private:
    std::map<vire::TimerId, QTimer*> timers_;
    vire::TimerId nextId_ = 1;
};

// Installs a QtScheduler as the middleware's scheduler for as long as it lives.
class ScopedQtScheduler {
public:
    ScopedQtScheduler();
    ~ScopedQtScheduler();
    ScopedQtScheduler(const ScopedQtScheduler&) = delete;
    ScopedQtScheduler& operator=(const ScopedQtScheduler&) = delete;
    QtScheduler& scheduler() { return *scheduler_; }

private:
    std::unique_ptr<QtScheduler> scheduler_;
    vire::Scheduler* previous_;
};

}  // namespace ui
