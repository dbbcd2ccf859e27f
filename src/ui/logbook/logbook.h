// The electronic logbook: a snapshot of a window filed under a logbook's name.
//
//     ui::Logbook logbook("ORKA");
//     logbook.File(window, {.machine = "ORKA", .device = "Beam Loss Monitors"});
//
// Where an entry goes:
//   1. to the printer named like the logbook, when this system has one
//      (the site's logbook printers carry the logbook's name);
//   2. otherwise, or when that printer refuses the page, into the logbook's
//      directory as one entry: a directory holding "snapshot.png" and
//      "entry.json" (time, user, machine, device, window title). The entry is
//      assembled in a hidden temporary directory beside it and renamed into
//      place in one step, so a crash never leaves half an entry behind.
//   3. when neither works, the operator is told why in a message box.
//
// The logbooks' root directory is, in this order: the one set with
// SetRootDirectory, the environment variable LUMISCOPE_LOGBOOK_DIR, or
// "lumiscope/logbook" under the user's data directory. Each logbook is the
// sub-directory of its name ("<root>/ORKA").
#pragma once

#include <QString>
#include <functional>
#include <string>

class QImage;
class QWidget;

namespace ui {

struct LogbookDetails {
    std::string machine;  // the chosen machine's name
    std::string device;   // the chosen channel's description
};

enum class LogbookOutcome { Printed, Filed, Refused };

struct LogbookResult {
    LogbookOutcome outcome = LogbookOutcome::Refused;
    QString where;    // the printer's name or the entry's directory
    QString problem;  // why it was refused (also shown to the operator)
};

class Logbook {
public:
    explicit Logbook(std::string name);

    const std::string& Name() const { return name_; }

    // Takes the window's picture and files it. The title recorded is the
    // window's title.
    LogbookResult File(QWidget* window, const LogbookDetails& details);
    // Files a picture taken elsewhere.
    LogbookResult File(const QImage& picture, const QString& windowTitle, const LogbookDetails& details);

    // The directory entries of this logbook go to.
    QString Directory() const;

    // The root of all logbooks for this process ("" = back to the default).
    static void SetRootDirectory(const QString& root);
    static QString RootDirectory();

    // Whether a printer of this name is installed; tests replace the answer
    // (nullptr = ask the system).
    using PrinterLookup = std::function<bool(const QString& name)>;
    static void SetPrinterLookup(PrinterLookup lookup);

private:
    bool PrintTo(const QString& printer, const QImage& picture) const;

    std::string name_;
};

}  // namespace ui
