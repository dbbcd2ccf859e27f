#include "ui/logbook/logbook.h"

#include <QDir>
#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <QPrinter>
#include <QPrinterInfo>
#include <QStandardPaths>
#include <QSysInfo>
#include <QWidget>

#include "ui/controls/dialogs.h"
#include "ui/logbook/logbook_entry.h"
#include "vire/clock.h"
#include "vire/link.h"

namespace ui {
namespace {

constexpr char kMessageTitle[] = "Print to Logbook";

QString& RootSetting() {
    static QString root;
    return root;
}

Logbook::PrinterLookup& PrinterLookupSetting() {
    static Logbook::PrinterLookup lookup;
    return lookup;
}

bool PrinterInstalled(const QString& name) {
    if (PrinterLookupSetting()) return PrinterLookupSetting()(name);
    return QPrinterInfo::availablePrinterNames().contains(name);
}

}  // namespace

Logbook::Logbook(std::string name) : name_(std::move(name)) {}

void Logbook::SetRootDirectory(const QString& root) { RootSetting() = root; }

QString Logbook::RootDirectory() {
    if (!RootSetting().isEmpty()) return RootSetting();
    const QString fromEnvironment = qEnvironmentVariable("LUMISCOPE_LOGBOOK_DIR");
    if (!fromEnvironment.isEmpty()) return fromEnvironment;
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + "/lumiscope/logbook";
}

QString Logbook::Directory() const { return QDir(RootDirectory()).filePath(QString::fromStdString(name_)); }

void Logbook::SetPrinterLookup(PrinterLookup lookup) { PrinterLookupSetting() = std::move(lookup); }

LogbookResult Logbook::File(QWidget* window, const LogbookDetails& details) {
    const QImage picture = window ? window->grab().toImage() : QImage();
    return File(picture, window ? window->windowTitle() : QString(), details);
}

LogbookResult Logbook::File(const QImage& picture, const QString& windowTitle, const LogbookDetails& details) {
    const QString logbookName = QString::fromStdString(name_);
    const bool printerInstalled = PrinterInstalled(logbookName);
    if (printerInstalled && PrintTo(logbookName, picture))
        return {LogbookOutcome::Printed, logbookName, QString()};

    LogbookRecord record;
    record.logbook = logbookName;
    record.time = QDateTime::fromMSecsSinceEpoch(vire::NowMilliseconds());
    record.user = QString::fromStdString(vire::UserName());
    record.host = QSysInfo::machineHostName();
    record.machine = QString::fromStdString(details.machine);
    record.device = QString::fromStdString(details.device);
    record.title = windowTitle;
    QString problem;
    const QString entry = WriteLogbookEntry(Directory(), picture, record, problem);
    if (!entry.isEmpty()) return {LogbookOutcome::Filed, entry, QString()};

    // Neither way worked: say first what the site expects (the logbook's
    // printer), then why the local logbook could not take the entry.
    const std::string printerText =
        printerInstalled ? std::string("Cannot send Raw JPEG to Printer !")
                         : "Please add " + name_ + " to your list of installed printers";
    const QString text = QString::fromStdString(printerText) + "\n\nThe snapshot could not be kept in the logbook directory " +
                         Directory() + " either: " + problem + ".";
    MsgBox(text.toStdString(), MsgBoxButtons::OK, MsgBoxIcon::Exclamation, kMessageTitle);
    return {LogbookOutcome::Refused, QString(), problem};
}

bool Logbook::PrintTo(const QString& printerName, const QImage& picture) const {
    const QPrinterInfo info = QPrinterInfo::printerInfo(printerName);
    if (picture.isNull() || info.isNull()) return false;
    QPrinter printer(info, QPrinter::HighResolution);
    printer.setDocName("Lumiscope snapshot");
    printer.setPageOrientation(picture.width() > picture.height() ? QPageLayout::Landscape
                                                                  : QPageLayout::Portrait);
    QPainter painter;
    if (!painter.begin(&printer)) return false;
    const QRect page = painter.viewport();
    const QSize fitted = picture.size().scaled(page.size(), Qt::KeepAspectRatio);
    painter.drawImage(QRect(page.topLeft(), fitted), picture);
    return painter.end();
}

}  // namespace ui
