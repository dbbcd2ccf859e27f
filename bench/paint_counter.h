// Counts the paint events a widget receives, so that a frame benchmark can
// wait for the paint that follows a data change.
#pragma once

#include <QEvent>
#include <QObject>

namespace lumiscope_bench {

class PaintCounter : public QObject {
public:
    int count = 0;
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint) ++count;
        return false;
    }
};

}  // namespace lumiscope_bench
