// What the operator reads beside the spectrum: trend titles, whole element
// names in the chooser, where a snapshot went.
#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include "form_fixture.h"
#include "ui/logbook/logbook.h"
#include "ui/logbook/logbook_entry.h"

namespace {

TEST(Window, TitledTrendsWholeElementNamesAndTheFiledSnapshotsPlace) {
    viewer_test::FormFixture f("LYRAS,PS");
    viewer::SpectrumForm& form = f.Load();
    EXPECT_EQ((std::vector<std::string>{form.PLEXPlotSelected->Caption(), form.PLEXPlotExtra->Caption(),
                                        form.PLEXPlotAccelerator->Caption()}),
              (std::vector<std::string>{"Selected items", "Extra channels", "Machine overview"}));
    // Steerer names take two name fields each.
    form.SpectrumCombo->setCurrentIndex(form.SpectrumCombo->findText("Steerer current Soll"));
    form.SpectrumCombo_Click();
    for (const auto& [row, name] : {std::pair{0, "LINAC.STEERER.H01"}, std::pair{23, "LINAC.STEERER.H24"}}) {
        EXPECT_EQ(form.ComboDevs->itemText(row), name);
        EXPECT_EQ(form.ComboDevs->itemData(row, Qt::ToolTipRole).toString(), name);
        EXPECT_GT(form.ComboDevs->view()->minimumWidth(), form.ComboDevs->view()->fontMetrics().horizontalAdvance(name));
    }
    QTemporaryDir root;
    ui::Logbook::SetRootDirectory(root.path());
    ui::Logbook::SetPrinterLookup([](const QString&) { return false; });
    form.PrintOpts_Click();
    const QDir logbook(ui::Logbook("ORKA").Directory());
    const QStringList entries = logbook.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    ui::Logbook::SetRootDirectory(QString());
    ui::Logbook::SetPrinterLookup(nullptr);
    ASSERT_EQ(entries.size(), 1);
    EXPECT_EQ(form.StatusLine->text(), "Snapshot filed in the ORKA logbook: " + logbook.filePath(entries[0]));
    // Filed in the ORKA logbook whatever the machine, the record names what the picture shows.
    QFile recordFile(QDir(logbook.filePath(entries[0])).filePath(ui::kLogbookRecordFile));
    ASSERT_TRUE(recordFile.open(QIODevice::ReadOnly));
    const QJsonObject record = QJsonDocument::fromJson(recordFile.readAll()).object();
    EXPECT_EQ((record["machine"].toString() + "|" + record["device"].toString() + "|" + record["title"].toString())
                  .toStdString(), "LYRAS|Steerer current Soll|" + form.windowTitle().toStdString());
}

}  // namespace
