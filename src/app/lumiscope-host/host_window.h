// A host program's window with the viewer control on it, the way a
// control-room application places it: the control's picture (double-click
// opens the viewer) and buttons that call the control's public members.
#pragma once

#include <QMainWindow>

class QLabel;
class QSpinBox;

namespace control {
class Lumiscope;
}

namespace lumiscope_host {

class HostWindow : public QMainWindow {
    Q_OBJECT
public:
    explicit HostWindow(QWidget* parent = nullptr);
    control::Lumiscope* Control() const { return control_; }

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void OpenViewer();
    void SelectDevice();
    void ReadHistorySettings();
    void ShowState();

    control::Lumiscope* control_ = nullptr;
    QSpinBox* row_ = nullptr;
    QLabel* state_ = nullptr;
};

}  // namespace lumiscope_host
