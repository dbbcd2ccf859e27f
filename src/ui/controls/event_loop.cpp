#include "ui/controls/event_loop.h"

#include <QCoreApplication>

namespace ui {

void YieldToEventLoop() {
    if (QCoreApplication::instance() == nullptr) return;
    QCoreApplication::processEvents();
}

}  // namespace ui
