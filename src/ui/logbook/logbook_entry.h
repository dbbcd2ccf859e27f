// One logbook entry on disk: a directory "<logbook>/<time>" holding
// "snapshot.png" and "entry.json". It is written into a hidden temporary
// directory (".entry-*") in the logbook directory and renamed into place
// once both files are complete and flushed to disk, so readers and crashes
// only ever see whole entries; whatever fails on the way is removed again.
#pragma once

#include <QDateTime>
#include <QString>

class QImage;

namespace ui {

inline constexpr char kLogbookImageFile[] = "snapshot.png";
inline constexpr char kLogbookRecordFile[] = "entry.json";

struct LogbookRecord {
    QString logbook;
    QDateTime time;
    QString user;
    QString host;     // the computer the snapshot was taken on
    QString machine;  // the accelerator
    QString device;
    QString title;    // the window's title
};

// Writes the entry; returns its directory, or "" with `problem` saying why.
QString WriteLogbookEntry(const QString& logbookDirectory, const QImage& picture,
                          const LogbookRecord& record, QString& problem);

}  // namespace ui
