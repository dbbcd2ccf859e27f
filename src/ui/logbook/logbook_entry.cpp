#include "ui/logbook/logbook_entry.h"

#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QImageWriter>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

namespace ui {
namespace {

// Data written, flushed and handed to the disk before the entry is renamed
// into place: after a power loss the entry is whole or absent.
bool Synced(QFile& file, QString& problem) {
    if (!file.flush() || ::fsync(file.handle()) != 0) {
        problem = "cannot write " + file.fileName() + ": " + file.errorString();
        return false;
    }
    return true;
}

bool WriteImage(const QString& path, const QImage& picture, QString& problem) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        problem = "cannot create " + path + ": " + file.errorString();
        return false;
    }
    QImageWriter writer(&file, "png");
    if (!writer.write(picture)) {
        problem = "cannot write " + path + ": " + writer.errorString();
        return false;
    }
    return Synced(file, problem);
}

QByteArray RecordJson(const LogbookRecord& record, const QImage& picture) {
    QJsonObject json;
    json["logbook"] = record.logbook;
    json["time"] = record.time.toString(Qt::ISODateWithMs);
    json["user"] = record.user;
    json["host"] = record.host;
    json["machine"] = record.machine;
    json["device"] = record.device;
    json["title"] = record.title;
    json["image"] = QString(kLogbookImageFile);
    json["width"] = picture.width();
    json["height"] = picture.height();
    return QJsonDocument(json).toJson(QJsonDocument::Indented);
}

bool WriteRecord(const QString& path, const QByteArray& json, QString& problem) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(json) != json.size()) {
        problem = "cannot write " + path + ": " + file.errorString();
        return false;
    }
    return Synced(file, problem);
}

// "20260123-154210-123", with "-2", "-3"... when two snapshots share the
// millisecond.
QString FreeEntryName(const QDir& logbook, const QDateTime& time) {
    const QString base = time.toString("yyyyMMdd-HHmmss-zzz");
    QString name = base;
    for (int n = 2; logbook.exists(name); ++n) name = base + "-" + QString::number(n);
    return name;
}

}  // namespace

QString WriteLogbookEntry(const QString& logbookDirectory, const QImage& picture,
                          const LogbookRecord& record, QString& problem) {
    if (picture.isNull()) {
        problem = "the window gave no picture";
        return QString();
    }
    QDir logbook(logbookDirectory);
    if (!logbook.mkpath(".")) {
        problem = "cannot create the directory " + logbookDirectory;
        return QString();
    }
    QTemporaryDir assembly(logbook.filePath(".entry-XXXXXX"));
    if (!assembly.isValid()) {
        problem = "cannot write in " + logbookDirectory + ": " + assembly.errorString();
        return QString();
    }
    if (!WriteImage(assembly.filePath(kLogbookImageFile), picture, problem)) return QString();
    if (!WriteRecord(assembly.filePath(kLogbookRecordFile), RecordJson(record, picture), problem))
        return QString();
    const QString entry = logbook.filePath(FreeEntryName(logbook, record.time));
    if (!QDir().rename(assembly.path(), entry)) {
        problem = "cannot rename " + assembly.path() + " to " + entry;
        return QString();
    }
    assembly.setAutoRemove(false);
    return entry;
}

}  // namespace ui
