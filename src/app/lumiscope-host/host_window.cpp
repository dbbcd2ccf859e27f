#include "host_window.h"

#include <QCloseEvent>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

#include "catalogue/runtime_error.h"
#include "control/lumiscope.h"
#include "ui/controls/dialogs.h"
#include "viewer/form_state.h"
#include "viewer/spectrum_form.h"

namespace lumiscope_host {

HostWindow::HostWindow(QWidget* parent) : QMainWindow(parent) {
    setWindowTitle("Lumiscope host");
    auto* central = new QWidget(this);
    auto* layout = new QHBoxLayout(central);

    control_ = new control::Lumiscope(central);
    control_->setMinimumSize(220, 140);
    layout->addWidget(control_, 1);

    auto* calls = new QGroupBox("The control's members", central);
    auto* form = new QFormLayout(calls);
    auto* open = new QPushButton("&Open viewer (DoSomething)", calls);
    open->setObjectName("OpenViewer");
    connect(open, &QPushButton::clicked, this, &HostWindow::OpenViewer);
    form->addRow(open);

    auto* deviceRow = new QHBoxLayout;
    row_ = new QSpinBox(calls);
    row_->setObjectName("DeviceRow");
    row_->setRange(0, 100000);
    row_->setAccessibleName("Item grid row");
    auto* select = new QPushButton("&Select device", calls);
    select->setObjectName("SelectADevice");
    connect(select, &QPushButton::clicked, this, &HostWindow::SelectDevice);
    deviceRow->addWidget(row_);
    deviceRow->addWidget(select);
    form->addRow("Item grid row:", deviceRow);

    auto* history = new QPushButton("Read &history settings", calls);
    history->setObjectName("HistorySettings");
    connect(history, &QPushButton::clicked, this, &HostWindow::ReadHistorySettings);
    form->addRow(history);

    state_ = new QLabel(calls);
    state_->setObjectName("ControlState");
    state_->setWordWrap(true);
    state_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    form->addRow(state_);
    layout->addWidget(calls);

    setCentralWidget(central);
    ShowState();
}

void HostWindow::OpenViewer() {
    control_->DoSomething();
    ShowState();
}

void HostWindow::SelectDevice() {
    control_->SelectADevice(static_cast<int32_t>(row_->value()));
    ShowState();
}

void HostWindow::ReadHistorySettings() {
    // The control reports a malformed file as a run-time error of this call.
    try {
        const int16_t rows = control_->TestHistoryConfigLoad();
        control_->OpenInfoFile();
        ui::MsgBox("HistoryConfig.csv: " + std::to_string(rows) + " quantities\nHistoryInfo.csv: name \"" +
                       control_->InfoName + "\", mode " + std::to_string(control_->InfoMode),
                   ui::MsgBoxButtons::OK, ui::MsgBoxIcon::Information, "History settings");
    } catch (const catalogue::RuntimeError& error) {
        ui::MsgBox(std::string("Run-time error: ") + error.what(), ui::MsgBoxButtons::OK, ui::MsgBoxIcon::Critical,
                   "History settings");
    }
    ShowState();
}

void HostWindow::ShowState() {
    const viewer::LibraryValues& library = viewer::Library();
    state_->setText(QString("SelectADevice: %1\nConfiguration: %2\nProgram path: %3")
                        .arg(control_->SelectADevice())
                        .arg(QString::fromStdString(library.ConfigPath.empty() ? "(not yet located)" : library.ConfigPath))
                        .arg(QString::fromStdString(library.ProgramPath)));
}

void HostWindow::closeEvent(QCloseEvent* event) {
    // The host going away takes the library's windows with it.
    viewer::SpectrumForm::UnloadAllForms();
    QMainWindow::closeEvent(event);
}

}  // namespace lumiscope_host
