#include "ui/controls/mouse_relay.h"

#include <QMouseEvent>
#include <QWidget>

namespace ui {

namespace {

int ButtonCode(Qt::MouseButton button) {
    switch (button) {
        case Qt::LeftButton: return MouseRelay::kLeftButton;
        case Qt::RightButton: return MouseRelay::kRightButton;
        case Qt::MiddleButton: return 4;
        default: return 0;
    }
}

}  // namespace

MouseRelay::MouseRelay(QWidget* widget) : QObject(widget) { widget->installEventFilter(this); }

bool MouseRelay::eventFilter(QObject* watched, QEvent* event) {
    auto* widget = qobject_cast<QWidget*>(watched);
    switch (event->type()) {
        case QEvent::MouseButtonPress:
            emit MouseDown(ButtonCode(static_cast<QMouseEvent*>(event)->button()));
            break;
        case QEvent::MouseButtonRelease: {
            const auto* mouse = static_cast<QMouseEvent*>(event);
            if (mouse->button() != Qt::LeftButton) break;
            if (afterDouble_) afterDouble_ = false;
            else if (widget && widget->rect().contains(mouse->position().toPoint())) emit Click();
            break;
        }
        case QEvent::MouseButtonDblClick:
            if (static_cast<QMouseEvent*>(event)->button() != Qt::LeftButton) break;
            afterDouble_ = true;
            emit DblClick();
            break;
        default: break;
    }
    return QObject::eventFilter(watched, event);
}

}  // namespace ui
