// A configuration directory written by a test: one machine "TEST" with one
// subsystem whose data-source rows the test gives, and an empty history file.
#pragma once

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <fstream>
#include <string>
#include <vector>

namespace viewer_test {

class ScratchConfig {
public:
    // rows: data-source rows under kHeader.
    explicit ScratchConfig(const std::vector<std::string>& rows) {
        Write("config_machines.csv", "MACHINE,CONFIGFILE,MACHINEFILE\nTEST,TEST_Subsystems.csv,TEST.HIST\n");
        Write("TEST_Subsystems.csv", "FILENAME,DESCRIPTION\nTEST_DEV.csv,Devices\n");
        Write("TEST.HIST", "CONTEXT,SERVER,PROPERTY,DESCRIPTION\n");
        std::string text = std::string(kHeader) + "\n";
        for (const std::string& row : rows) text += row + "\n";
        Write("TEST_DEV.csv", text);
    }
    static constexpr const char* kHeader =
        "CONTEXT,SERVER,PROPERTY,SIZE,DESCRIPTION,MAX,MIN,EGU,APPEND,TAG,HIGH,PROPLINK,PROPSHORT";

    void Write(const std::string& name, const std::string& contents) const {
        std::ofstream(Dir() + "/" + name, std::ios::binary) << contents;
    }
    void Remove(const std::string& name) const { QFile::remove(QString::fromStdString(Dir() + "/" + name)); }
    // The configuration directory (the application path's "configs").
    std::string Dir() const { return root_.path().toStdString() + "/configs"; }

private:
    QTemporaryDir root_;
    bool made_ = QDir(root_.path()).mkpath("configs");
};

}  // namespace viewer_test
