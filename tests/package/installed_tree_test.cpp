// The installed tree and the Debian package as a user gets them: the files,
// programs that find the installed sample configuration, the menu entry and
// AppStream data, the Designer plugin, the example host built with
// find_package, and the .deb with its dependencies.
#include <QDesignerCustomWidgetInterface>
#include <QFile>
#include <QPluginLoader>
#include <QTemporaryDir>
#include <QWidget>
#include <memory>
#include <tuple>

#include <gtest/gtest.h>

#include "tool_run.h"

namespace {

using test_support::RunTool;
using test_support::ToolRun;

const std::string kBin = LUMISCOPE_BINARY_DIR;
const std::string kLibDir = LUMISCOPE_LIBDIR;
const std::string kDesignerDir = LUMISCOPE_DESIGNER_DIR;

bool Built(const std::string& program) { return QFile::exists(QString::fromStdString(kBin + "/bin/" + program)); }

// What a user relies on, relative to the prefix; programs and their man pages
// only where this build made the program.
std::vector<std::string> ExpectedFiles() {
    std::vector<std::string> files = {
        kLibDir + "/liblumiscope-control.so",
        kLibDir + "/liblumiscope-control.so." LUMISCOPE_VERSION,
        "include/lumiscope/control/lumiscope.h",
        "include/lumiscope/embedding/host_middleware.h",
        kLibDir + "/cmake/Lumiscope/LumiscopeConfig.cmake",
        kLibDir + "/cmake/Lumiscope/LumiscopeConfigVersion.cmake",
        kLibDir + "/cmake/Lumiscope/LumiscopeTargets.cmake",
        kDesignerDir + "/liblumiscope_designer.so",
        "share/applications/org.lumiscope.Lumiscope.desktop",
        "share/icons/hicolor/scalable/apps/org.lumiscope.Lumiscope.svg",
        "share/metainfo/org.lumiscope.Lumiscope.metainfo.xml",
        "share/lumiscope/configs/config_machines.csv",
        "share/lumiscope/configs/Simulation.csv",
        "share/lumiscope/drive-l/bin.orka/spectrum/configs",
        "share/doc/lumiscope/examples/host/CMakeLists.txt",
        "share/doc/lumiscope/examples/host/host_window.ui",
    };
    for (const std::string program : {"lumiscope", "lumiscope-host", "lumiscope-config", "vire-call",
                                      "lumiscope-plot-demo", "lumiscope-devserver",
                                      "lumiscope-archiver"}) {
        if (!Built(program)) continue;
        files.push_back("bin/" + program);
        files.push_back("share/man/man1/" + program + ".1");
    }
    return files;
}

class InstalledTree : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        scratch_ = std::make_unique<QTemporaryDir>();
        prefix_ = scratch_->path().toStdString() + "/prefix";
        install_ = RunTool(LUMISCOPE_CMAKE_COMMAND, {"--install", kBin, "--prefix", prefix_}, {}, true);
    }
    static void TearDownTestSuite() { scratch_.reset(); }

    static std::string Scratch() { return scratch_->path().toStdString(); }
    static std::string Installed(const std::string& path) { return prefix_ + "/" + path; }

    static inline std::unique_ptr<QTemporaryDir> scratch_;
    static inline std::string prefix_;
    static inline ToolRun install_;
};

TEST_F(InstalledTree, HoldsWhatUsersRelyOn) {
    ASSERT_EQ(install_.exitCode, 0) << install_.out;
    for (const std::string& file : ExpectedFiles())
        EXPECT_TRUE(QFile::exists(QString::fromStdString(Installed(file)))) << file;
    // The drive's configs/ is a link into the sample, not a copy that could drift.
    EXPECT_EQ(QFile::symLinkTarget(QString::fromStdString(Installed("share/lumiscope/drive-l/bin.orka/spectrum/configs"))),
              QString::fromStdString(Installed("share/lumiscope/configs")));
}

// Installed programs have no configs/ beside them: they read the sample the
// tree installed, not the source tree's. The menu entry and AppStream data
// pass their validators.
TEST_F(InstalledTree, ProgramsFindTheInstalledSampleAndTheDesktopDataValidate) {
    // the program (bin/ of the tree, or a validator), its arguments, part of what it prints
    const std::tuple<std::string, std::vector<std::string>, std::string> cases[] = {
        {"bin/vire-call", {"/ORKA/BPMQ1/ORBIT", "ORBIT.X", "--count", "4", "--json"}, "{\"status\":0,"},
        {"bin/lumiscope-config", {"check", Installed("share/lumiscope/configs")}, "configuration OK"},
        {"bin/lumiscope", {"--quit-when-populated"}, "populated after"},
        {"desktop-file-validate", {Installed("share/applications/org.lumiscope.Lumiscope.desktop")}, ""},
        {"appstreamcli", {"validate", "--no-net", Installed("share/metainfo/org.lumiscope.Lumiscope.metainfo.xml")},
         ""},
    };
    // Away from the build tree, so that nothing is found there by chance.
    const std::vector<std::string> environment = {"QT_QPA_PLATFORM=offscreen", "LUMISCOPE_DRIVE_L=",
                                                  "LUMISCOPE_TRANSPORT="};
    for (const auto& [program, args, printed] : cases) {
        const bool installed = program.starts_with("bin/");
        if (installed && !Built(program.substr(4))) continue;
        const ToolRun run = RunTool(installed ? Installed(program) : program, args, environment, true);
        EXPECT_EQ(run.exitCode, 0) << program << "\n" << run.out;
        EXPECT_NE(run.out.find(printed), std::string::npos) << program << "\n" << run.out;
    }
    // The man page is the program's help: its options and the version.
    const ToolRun page = RunTool("man", {"-l", Installed("share/man/man1/lumiscope.1")}, {"MANWIDTH=120", "MAN_KEEP_FORMATTING="});
    EXPECT_NE(page.out.find("--snapshot FILE.png"), std::string::npos) << page.out;
    EXPECT_NE(page.out.find("lumiscope " LUMISCOPE_VERSION), std::string::npos) << page.out;
}

// What Designer does with the plugin: load it from where it looks, create the
// control for a form, and list its properties and slots.
TEST_F(InstalledTree, DesignerPluginCreatesTheControlWithItsPropertiesAndSlots) {
    QPluginLoader loader(QString::fromStdString(Installed(kDesignerDir + "/liblumiscope_designer.so")));
    auto* plugin = qobject_cast<QDesignerCustomWidgetInterface*>(loader.instance());
    ASSERT_NE(plugin, nullptr) << loader.errorString().toStdString();
    EXPECT_EQ(plugin->name(), "control::Lumiscope");
    EXPECT_EQ(plugin->includeFile(), "control/lumiscope.h");
    EXPECT_TRUE(plugin->domXml().contains("class=\"control::Lumiscope\""));
    std::unique_ptr<QWidget> widget(plugin->createWidget(nullptr));
    ASSERT_NE(widget, nullptr);
    const QMetaObject* meta = widget->metaObject();
    EXPECT_STREQ(meta->className(), "control::Lumiscope");
    // property, written, what the control gives back
    const std::tuple<const char*, QVariant, QString> properties[] = {
        {"SelectView", 7, "0"}, {"ViewerCaption", "caption", ""}, {"InfoPath", "/srv/info/", "/srv/info/"}};
    for (const auto& [name, written, read] : properties) {
        EXPECT_TRUE(widget->setProperty(name, written)) << name;
        EXPECT_EQ(widget->property(name).toString(), read) << name;
    }
    for (const char* slot : {"SelectAProp(std::string,std::string,std::string,int32_t,int32_t)", "DoSomething()",
                             "OpenViewer()", "SelectADevice(int32_t)"})
        EXPECT_GE(meta->indexOfSlot(QMetaObject::normalizedSignature(slot)), 0) << slot;
}

TEST_F(InstalledTree, ExampleHostBuildsWithFindPackage) {
    const std::string build = Scratch() + "/example";
    const ToolRun configure = RunTool(
        LUMISCOPE_CMAKE_COMMAND,
        {"-S", Installed("share/doc/lumiscope/examples/host"), "-B", build, "-G", "Ninja", "-DCMAKE_PREFIX_PATH=" + prefix_},
        {}, true);
    ASSERT_EQ(configure.exitCode, 0) << configure.out;
    const ToolRun make = RunTool(LUMISCOPE_CMAKE_COMMAND, {"--build", build}, {}, true);
    ASSERT_EQ(make.exitCode, 0) << make.out;
    // Linked with the installed control library, not the build tree's.
    const ToolRun libraries = RunTool("ldd", {build + "/lumiscope-example-host"});
    EXPECT_NE(libraries.out.find(Installed(kLibDir + "/liblumiscope-control.so")), std::string::npos) << libraries.out;
}

TEST(DebianPackage, HoldsTheInstalledTreeUnderUsrWithItsDependencies) {
    QTemporaryDir scratch;
    const std::string dir = scratch.path().toStdString();
    const ToolRun pack =
        RunTool(LUMISCOPE_CPACK_COMMAND, {"-G", "DEB", "--config", kBin + "/CPackConfig.cmake", "-B", dir}, {}, true);
    ASSERT_EQ(pack.exitCode, 0) << pack.out;
    const std::string deb = dir + "/lumiscope_" LUMISCOPE_VERSION "_amd64.deb";
    ASSERT_TRUE(QFile::exists(QString::fromStdString(deb))) << pack.out;
    const ToolRun contents = RunTool("dpkg-deb", {"--contents", deb});
    for (const std::string& file : ExpectedFiles())
        EXPECT_NE(contents.out.find(" ./usr/" + file), std::string::npos) << file;
    EXPECT_EQ(contents.out.find("/build/"), std::string::npos) << "nothing of the build tree";
    const ToolRun depends = RunTool("dpkg-deb", {"--field", deb, "Depends"});
    for (const std::string package : {"libqt6widgets6", "libqcustomplot", "qt6-qpa-plugins", "libc6"})
        EXPECT_NE(depends.out.find(package), std::string::npos) << package << " in " << depends.out;
}

}  // namespace
