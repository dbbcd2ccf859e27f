// The viewer control as a host uses it: opening the viewer, the placeholders,
// the device selection forwarded to the window, and the message when the
// configuration directory is missing.
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QTemporaryDir>
#include <QTest>
#include <memory>

#include <gtest/gtest.h>

#include "control/lumiscope.h"
#include "control/program_location.h"
#include "control/viewer_window.h"
#include "sim/simulated_accelerator.h"
#include "ui/controls/scoped_dialog_responder.h"
#include "ui/qt_scheduler.h"
#include "viewer/form_state.h"
#include "viewer/spectrum_form.h"
#include "vire/transport.h"

namespace {

constexpr char kMissingText[] =
    "Configuration files are missing!! Please start the Tallyview (a.k.a. the Tally Analyzer) to get the files!";

enum class Drive { Sample, NoConfigs, EmptyConfigs };

// Drive L: for one test: bin.orka/spectrum/configs is the sample
// configuration, missing, or empty.
class ControlTest : public ::testing::Test {
protected:
    void UseDrive(Drive drive) {
        drive_ = std::make_unique<QTemporaryDir>();
        QDir root(drive_->path());
        root.mkpath("bin.orka/spectrum");
        if (drive == Drive::Sample)
            QFile::link(LUMISCOPE_SAMPLE_CONFIG_DIR, root.filePath("bin.orka/spectrum/configs"));
        if (drive == Drive::EmptyConfigs) root.mkpath("bin.orka/spectrum/configs");
        qputenv("LUMISCOPE_DRIVE_L", drive_->path().toUtf8());
    }
    void SetUp() override {
        viewer::Library() = viewer::LibraryValues{};
        accelerator_ = sim::InstallSimulatedAccelerator(LUMISCOPE_SAMPLE_CONFIG_DIR);
        control::SetHostCommandLine("");
    }
    void TearDown() override {
        viewer::SpectrumForm::UnloadAllForms();
        delete control::ExistingViewerWindow();
        vire::SetTransport(nullptr);
        qunsetenv("LUMISCOPE_DRIVE_L");
        viewer::Library() = viewer::LibraryValues{};
    }
    std::unique_ptr<QTemporaryDir> drive_;
    ui::ScopedQtScheduler scheduler_;
    std::shared_ptr<sim::SimulatedAccelerator> accelerator_;
};

TEST_F(ControlTest, ThePictureFillsTheControlAndThePlaceholdersReadBackNothing) {
    control::Lumiscope scope;
    scope.SelectView(3);
    scope.ViewerCaption("Orbit");
    EXPECT_EQ(scope.SelectView(), 0);
    EXPECT_EQ(scope.ViewerCaption(), "");
    for (const QSize size : {QSize(300, 150), QSize(90, 400)}) {
        scope.resize(size);
        scope.show();
        QCoreApplication::processEvents();
        EXPECT_EQ(scope.ImageColumn->geometry(), QRect(QPoint(0, 0), size));
    }
}

TEST_F(ControlTest, OpensTheViewerThatSelectsDevices) {
    UseDrive(Drive::Sample);
    ui::ScopedDialogResponder boxes;
    control::Lumiscope scope;
    EXPECT_EQ(scope.SelectADevice(), 0);
    scope.SelectADevice(2);
    EXPECT_EQ(control::ExistingViewerWindow(), nullptr);

    scope.DoSomething();
    EXPECT_EQ(scope.SelectADevice(), -1);
    const viewer::LibraryValues& library = viewer::Library();
    EXPECT_TRUE(library.OpenedByControl);
    EXPECT_EQ(library.ConfigPath, "L:\\bin.orka\\spectrum\\configs\\");
    EXPECT_EQ(library.ProgramPath, control::HostApplicationPath() + "\\");
    ASSERT_NE(control::ExistingViewerWindow(), nullptr);
    EXPECT_TRUE(control::ExistingViewerWindow()->isVisible());
    EXPECT_TRUE(boxes.Records().empty()) << boxes.Texts().front();

    // Closing the viewer does not make the control forget it: the next
    // selection loads a new window first.
    viewer::SpectrumForm::UnloadAllForms();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    ASSERT_EQ(control::ExistingViewerWindow(), nullptr);
    EXPECT_EQ(scope.SelectADevice(), -1);
    scope.SelectADevice(0);
    ASSERT_NE(control::ExistingViewerWindow(), nullptr);
    EXPECT_TRUE(control::ExistingViewerWindow()->Loaded());
}

TEST_F(ControlTest, MissingConfigurationIsReportedAndTheViewerStaysClosed) {
    enum class Opening { Call, PictureDoubleClick, LabelDoubleClick };
    struct Case { const char* name; Drive drive; Opening opening; };
    const Case cases[] = {
        {"no configs directory", Drive::NoConfigs, Opening::Call},
        {"empty configs directory", Drive::EmptyConfigs, Opening::Call},
        {"double click on the picture", Drive::EmptyConfigs, Opening::PictureDoubleClick},
        {"double click on the label", Drive::NoConfigs, Opening::LabelDoubleClick},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        UseDrive(c.drive);
        viewer::Library() = viewer::LibraryValues{};
        ui::ScopedDialogResponder boxes;
        boxes.Answer(ui::MsgBoxResult::OK);
        control::Lumiscope scope;
        if (c.opening == Opening::PictureDoubleClick) QTest::mouseDClick(scope.ImageColumn, Qt::LeftButton);
        else if (c.opening == Opening::LabelDoubleClick) QTest::mouseDClick(scope.LABEL_main, Qt::LeftButton);
        else scope.DoSomething();

        ASSERT_EQ(boxes.Records().size(), 1u);
        EXPECT_EQ(boxes.Records()[0].text, kMissingText);
        EXPECT_EQ(boxes.Records()[0].title, "Configuration Files Missing!");
        EXPECT_EQ(boxes.Records()[0].icon, ui::MsgBoxIcon::Exclamation);
        EXPECT_FALSE(viewer::Library().ConfigOk);
        EXPECT_TRUE(viewer::Library().ViewerReady);
        EXPECT_EQ(control::ExistingViewerWindow(), nullptr);
    }
}

}  // namespace
