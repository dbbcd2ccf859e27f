// Filing window snapshots in a logbook: where an entry goes, what it records,
// and that a refused one leaves nothing behind and tells the operator why.
#include <QDir>
#include <QFile>
#include <QImage>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QWidget>

#include <sys/resource.h>

#include <csignal>
#include <optional>
#include <gtest/gtest.h>

#include "scoped_time_zone.h"
#include "ui/controls/scoped_dialog_responder.h"
#include "ui/logbook/logbook.h"
#include "ui/logbook/logbook_entry.h"
#include "vire/clock.h"
#include "vire/link.h"

namespace {

// Files of this process may not grow beyond `bytes` while it lives: a full
// disk, for the writes in between.
class DiskFull {
public:
    explicit DiskFull(rlim_t bytes) {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &saved_);
        rlimit limit = saved_;
        limit.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~DiskFull() { setrlimit(RLIMIT_FSIZE, &saved_); }

private:
    rlimit saved_{};
};

constexpr int64_t kNow = 1'790'000'000'123;  // milliseconds, a fixed "now"

class LogbookTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(root_.isValid());
        ui::Logbook::SetRootDirectory(root_.path());
        vire::SetTestClock(kNow);
        vire::SetUserName("operator");
    }
    void TearDown() override {
        ui::Logbook::SetRootDirectory(QString());
        ui::Logbook::SetPrinterLookup(nullptr);
        vire::UseSystemClock();
        vire::SetUserName("");
    }
    // Everything in the logbook directory, hidden temporary entries included.
    QStringList LogbookContents() const {
        return QDir(ui::Logbook("ORKA").Directory())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    }
    QTemporaryDir root_;
};

TEST_F(LogbookTest, FilesTheWindowAsOneWholeEntryNamedAndStampedInLocalTime) {
    const test_support::ScopedTimeZone berlin("Europe/Berlin");
    ui::Logbook::SetPrinterLookup([](const QString&) { return false; });
    QWidget window;
    window.resize(160, 90);
    window.setWindowTitle("Spectrum Viewer");
    ui::ScopedDialogResponder boxes;
    const std::tuple<int64_t, QString, QString> cases[] = {  // now, entry, the record's wall-clock time
        {1'768'000'000'456, "20260110-000640-456", "2026-01-10T00:06:40.456"},  // still the 9th in UTC
        {kNow, "20260921-161320-123", "2026-09-21T16:13:20.123"},               // summer time
    };
    for (const auto& [now, entry, time] : cases) {
        vire::SetTestClock(now);
        const QDir where(ui::Logbook("ORKA").File(&window, {"VESTA", "Beam Loss Monitors"}).where);
        EXPECT_EQ(where.dirName(), entry);
        EXPECT_EQ(QImage(where.filePath(ui::kLogbookImageFile)).size(), window.size() * window.devicePixelRatio());
        QFile recordFile(where.filePath(ui::kLogbookRecordFile));
        ASSERT_TRUE(recordFile.open(QIODevice::ReadOnly)) << entry.toStdString();
        const QJsonObject record = QJsonDocument::fromJson(recordFile.readAll()).object();
        QStringList fields;
        for (const char* key : {"logbook", "user", "machine", "device", "title", "time"})
            fields << record[key].toString();
        EXPECT_EQ(fields.first(5), QStringList({"ORKA", "operator", "VESTA", "Beam Loss Monitors", "Spectrum Viewer"}));
        EXPECT_TRUE(fields[5].startsWith(time) && !fields[5].endsWith("Z")) << fields[5].toStdString();
        EXPECT_FALSE(record["host"].toString().isEmpty());
    }
    // Two snapshots in the same millisecond are two entries.
    const ui::LogbookResult again = ui::Logbook("ORKA").File(&window, {"VESTA", "Beam Loss Monitors"});
    ASSERT_EQ(again.outcome, ui::LogbookOutcome::Filed);
    EXPECT_EQ(LogbookContents(), (QStringList{"20260110-000640-456", "20260921-161320-123", "20260921-161320-123-2"}));
    EXPECT_TRUE(boxes.Records().empty());
}

TEST_F(LogbookTest, RefusedEntriesLeaveNothingAndSayWhy) {
    enum class Setup { RootIsAFile, NoPicture, DiskFull };
    struct Case { const char* name; bool printerInstalled; Setup setup; };
    const Case cases[] = {
        {"no printer, directory blocked", false, Setup::RootIsAFile},
        {"printer refuses, directory blocked", true, Setup::RootIsAFile},
        {"no printer, nothing to file", false, Setup::NoPicture},
        {"no printer, disk full half-way", false, Setup::DiskFull},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        QTemporaryDir scratch;
        const QString root = c.setup == Setup::RootIsAFile ? scratch.filePath("not-a-directory") : scratch.path();
        QFile blocker(root);
        ASSERT_TRUE(c.setup != Setup::RootIsAFile || blocker.open(QIODevice::WriteOnly));
        ui::Logbook::SetRootDirectory(root);
        ui::Logbook::SetPrinterLookup([&](const QString& name) { return c.printerInstalled && name == "ORKA"; });
        QImage picture = c.setup == Setup::NoPicture ? QImage() : QImage(40, 30, QImage::Format_RGB32);
        picture.fill(Qt::darkCyan);
        ui::ScopedDialogResponder boxes;
        boxes.Answer(ui::MsgBoxResult::OK);
        std::optional<DiskFull> full;
        if (c.setup == Setup::DiskFull) full.emplace(64);
        const ui::LogbookResult result = ui::Logbook("ORKA").File(picture, "Spectrum Viewer", {"ORKA", "Orbit"});
        full.reset();
        EXPECT_EQ(result.outcome, ui::LogbookOutcome::Refused);
        ASSERT_EQ(boxes.Records().size(), 1u);
        const ui::DialogRecord& box = boxes.Records()[0];
        EXPECT_EQ(box.text.substr(0, box.text.find('\n')),
                  c.printerInstalled ? "Cannot send Raw JPEG to Printer !"
                                     : "Please add ORKA to your list of installed printers");
        EXPECT_NE(box.text.find(result.problem.toStdString()), std::string::npos);
        EXPECT_EQ(box.title + (box.icon == ui::MsgBoxIcon::Exclamation ? " (!)" : ""), "Print to Logbook (!)");
        EXPECT_TRUE(LogbookContents().isEmpty()) << LogbookContents().join(", ").toStdString();
    }
}

TEST_F(LogbookTest, DirectoryComesFromTheSetterThenTheEnvironment) {
    ui::Logbook::SetRootDirectory(QString());
    qputenv("LUMISCOPE_LOGBOOK_DIR", "/srv/logbooks");
    EXPECT_EQ(ui::Logbook("ORKA").Directory(), "/srv/logbooks/ORKA");
    ui::Logbook::SetRootDirectory("/data/elog");
    EXPECT_EQ(ui::Logbook("VESTA").Directory(), "/data/elog/VESTA");
    ui::Logbook::SetRootDirectory(QString());
    qunsetenv("LUMISCOPE_LOGBOOK_DIR");
    EXPECT_TRUE(ui::Logbook("ORKA").Directory().endsWith("/lumiscope/logbook/ORKA"));
}

}  // namespace
