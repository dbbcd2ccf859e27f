#include "ui/controls/save_file_chooser.h"

#include <QApplication>
#include <QFileDialog>

namespace ui {
namespace {

SaveFileChooser& Installed() {
    static SaveFileChooser chooser;
    return chooser;
}

}  // namespace

std::string ChooseSaveFile(const SaveFileRequest& request) {
    if (Installed()) return Installed()(request);
    return QFileDialog::getSaveFileName(QApplication::activeWindow(), QString::fromStdString(request.title),
                                        QString::fromStdString(request.suggestedPath),
                                        QString::fromStdString(request.filter))
        .toStdString();
}

SaveFileChooser SetSaveFileChooser(SaveFileChooser chooser) {
    SaveFileChooser previous = std::move(Installed());
    Installed() = std::move(chooser);
    return previous;
}

ScopedSaveFileChooser::ScopedSaveFileChooser(SaveFileChooser chooser)
    : previous_(SetSaveFileChooser(std::move(chooser))) {}

ScopedSaveFileChooser::~ScopedSaveFileChooser() { SetSaveFileChooser(std::move(previous_)); }

}  // namespace ui
