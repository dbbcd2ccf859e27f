// What the operator reads on the window besides the spectrum: the trend
// plots' titles, element names in the chooser, where a snapshot went.
#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QTemporaryDir>

#include "form_fixture.h"
#include "ui/logbook/logbook.h"
#include "ui/plot/plex_plot.h"

namespace {

using viewer_test::FormFixture;

TEST(Window, EachTrendPlotIsTitledSoThatEmptyOnesCanBeToldApart) {
    FormFixture f;
    viewer::SpectrumForm& form = f.Load();
    const std::pair<const ui::PlexPlot*, const char*> plots[] = {
        {form.PLEXPlotSelected, "Selected items"},
        {form.PLEXPlotExtra, "Extra channels"},
        {form.PLEXPlotAccelerator, "Machine overview"},
    };
    for (const auto& [plot, title] : plots) EXPECT_EQ(plot->Caption(), title);
}

TEST(Window, TheElementChooserShowsLongNamesWhole) {
    const struct {
        const char* arguments;
        const char* channel;
        int row;
        const char* line;
    } cases[] = {
        {"LYRAS,PS", "Steerer current Soll", 0, "LINAC.STEERER.H01"},  // continued over two name fields
        {"LYRAS,PS", "Steerer current Soll", 23, "LINAC.STEERER.H24"},
        {"ORKA,BLM", "", 5, "Girder 02 pos 2 (BLM.S01.6)"},
    };
    for (const auto& c : cases) {
        FormFixture f(c.arguments);
        viewer::SpectrumForm& form = f.Load();
        if (*c.channel) {
            form.SpectrumCombo->setCurrentIndex(form.SpectrumCombo->findText(c.channel));
            form.SpectrumCombo_Click();
        }
        QComboBox* chooser = form.ComboDevs;
        ASSERT_GT(chooser->count(), c.row) << c.line;
        EXPECT_EQ(chooser->itemText(c.row), c.line);
        EXPECT_EQ(chooser->itemData(c.row, Qt::ToolTipRole).toString(), c.line);
        const int needed = chooser->view()->fontMetrics().horizontalAdvance(c.line);
        EXPECT_GT(chooser->view()->minimumWidth(), needed) << c.line << ": the popup holds the whole name";
        chooser->setCurrentIndex(c.row);
        EXPECT_EQ(chooser->toolTip(), c.line);
    }
}

TEST(Window, AFiledSnapshotSaysWhereItWentAndARefusedOneLeavesTheStatusAlone) {
    for (const bool blocked : {false, true}) {
        QTemporaryDir root;
        const QString logbooks = blocked ? root.filePath("a-file") : root.path();
        if (blocked) QFile(logbooks).open(QIODevice::WriteOnly);
        ui::Logbook::SetRootDirectory(logbooks);
        ui::Logbook::SetPrinterLookup([](const QString&) { return false; });
        FormFixture f;
        viewer::SpectrumForm& form = f.Load();
        form.resize(400, 300);
        const QString before = form.StatusLine->text();
        form.PrintOpts_Click();
        const QStringList entries = QDir(ui::Logbook("ORKA").Directory()).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        if (blocked) {
            EXPECT_EQ(form.StatusLine->text(), before);
            EXPECT_EQ(f.dialogs.Records().size(), 1u);
        } else {
            ASSERT_EQ(entries.size(), 1);
            EXPECT_EQ(form.StatusLine->text(), "Snapshot filed in the ORKA logbook: " +
                                                   QDir(ui::Logbook("ORKA").Directory()).filePath(entries[0]));
            EXPECT_TRUE(f.dialogs.Records().empty());
        }
        ui::Logbook::SetRootDirectory(QString());
        ui::Logbook::SetPrinterLookup(nullptr);
    }
}

}  // namespace
