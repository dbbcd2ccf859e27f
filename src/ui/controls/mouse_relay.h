// Mouse presses, clicks and double clicks of a widget that has no such
// signals of its own (a label, a picture, an option button's mouse-down
// before it is handled), as signals. The relay watches; the widget still
// handles the events itself.
#pragma once

#include <QObject>

class QWidget;

namespace ui {

class MouseRelay : public QObject {
    Q_OBJECT

public:
    // Watches `widget`, whose child the relay becomes.
    explicit MouseRelay(QWidget* widget);

    static constexpr int kLeftButton = 1;
    static constexpr int kRightButton = 2;

signals:
    // Any button pressed (1 left, 2 right, 4 middle), before the widget sees it.
    void MouseDown(int button);
    // The left button pressed and released over the widget.
    void Click();
    // The second click of a double click (its first came as Click).
    void DblClick();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool afterDouble_ = false;  // the release that ends a double click is no click of its own
};

}  // namespace ui
