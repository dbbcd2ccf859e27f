#include "control/lumiscope.h"

#include <QEvent>
#include <QLabel>
#include <QResizeEvent>

#include "catalogue/files.h"
#include "control/control_picture.h"
#include "control/history_files.h"
#include "control/program_location.h"
#include "control/viewer_window.h"
#include "viewer/form_state.h"
#include "viewer/spectrum_form.h"
#include "vire/formats.h"
#include "vire/queries.h"

namespace control {

Lumiscope::Lumiscope(QWidget* parent) : QWidget(parent) {
    setObjectName("Lumiscope");
    ImageColumn = new QLabel(this);
    ImageColumn->setObjectName("ImageColumn");
    ImageColumn->setAccessibleName("Spectrum viewer");
    ImageColumn->setPixmap(ControlPicture());
    ImageColumn->setScaledContents(true);
    LABEL_main = new QLabel("Lumiscope\nDouble-click to open the spectrum viewer", this);
    LABEL_main->setObjectName("LABEL_main");
    LABEL_main->setAccessibleName("Lumiscope");
    LABEL_main->setAlignment(Qt::AlignCenter);
    LABEL_main->setWordWrap(true);
    LABEL_main->setStyleSheet("QLabel { color: white; background: rgba(0, 0, 0, 110); padding: 2px; }");
    ImageColumn->installEventFilter(this);
    LABEL_main->installEventFilter(this);
    setToolTip("Double-click to open the spectrum viewer");
    resize(200, 120);
}

int16_t Lumiscope::TestHistoryConfigLoad() {
    return CountHistoryConfigRows(HostApplicationPath() + "\\" + kHistoryConfigFile);
}

int16_t Lumiscope::SelectView() const { return 0; }

void Lumiscope::SelectView(int16_t) {}

void Lumiscope::SelectAProp(const std::string& context, const std::string& server,
                            const std::string& property, int32_t, int32_t) {
    const std::string fullDeviceName = "/" + context + "/" + server;
    vire::PropertyList answer;
    vire::GetProperties(fullDeviceName, property, answer);
    // The answer is read as the server gave it and then dropped: hosts call
    // this to wake the server up, nothing here keeps what it says.
    std::string first = answer.names.size() > 0 ? answer.names[0] : std::string();
    std::string second = answer.names.size() > 1 ? answer.names[1] : std::string();
    std::string format = vire::FormatName(answer.format);
    (void)first;
    (void)second;
    (void)format;
}

void Lumiscope::AddAProp(const std::string& context, const std::string& server,
                         const std::string& property, int32_t unused1, int32_t unused2) {
    SelectAProp(context, server, property, unused1, unused2);
}

std::string Lumiscope::ViewerCaption() const { return std::string(); }

void Lumiscope::ViewerCaption(const std::string&) {}

void Lumiscope::DoSomething() {
    viewer::LibraryValues& library = viewer::Library();
    const std::string moduleDirectory = ModuleDirectory(HostModuleFileName());
    library.ProgramPath = ChooseProgramPath(moduleDirectory, HostApplicationPath());
    library.OpenedByControl = true;
    library.ViewerReady = true;
    library.ConfigPath = ControlConfigPath();
    if (!catalogue::FileSearch(library.ConfigPath).empty()) {
        viewer::SpectrumForm& window = ViewerWindow();
        window.show();
        window.raise();
        window.activateWindow();
        return;
    }
    viewer::ReportMissingConfiguration();
}

void Lumiscope::OpenViewer() { DoSomething(); }

void Lumiscope::OpenInfoFile() {
    InfoName.clear();
    InfoMode = 2;
    const HistoryInfo info = ReadHistoryInfo(InfoPath + kHistoryInfoFile);
    InfoName = info.name;
    InfoMode = info.mode;
}

int16_t Lumiscope::SelectADevice() const { return viewer::Library().ViewerReady ? -1 : 0; }

void Lumiscope::SelectADevice(int32_t row) {
    if (!viewer::Library().ViewerReady) return;
    viewer::SpectrumForm& window = ViewerWindow();
    if (!window.Loaded()) window.Load();
    window.SelectADevice(row);
}

void Lumiscope::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    const QRect inner = contentsRect();
    ImageColumn->setGeometry(0, 0, inner.width(), inner.height());
    // The caption sits across the lower part of the picture.
    const int captionHeight = std::min(inner.height(), LABEL_main->heightForWidth(inner.width()) + 4);
    LABEL_main->setGeometry(0, inner.height() - captionHeight, inner.width(), captionHeight);
    LABEL_main->raise();
}

bool Lumiscope::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseButtonDblClick) {
        if (watched == ImageColumn) ImageColumn_DblClick();
        else if (watched == LABEL_main) LABEL_main_DblClick();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void Lumiscope::ImageColumn_DblClick() { DoSomething(); }

void Lumiscope::LABEL_main_DblClick() { DoSomething(); }

}  // namespace control
