#include "control/program_location.h"

#include <QCoreApplication>

namespace control {

std::string ControlConfigPath() { return std::string(kConfigRoot) + std::string(kConfigFolder); }

std::string SystemPath(std::string_view nativePath) {
    std::string path(nativePath);
    for (char& c : path)
        if (c == '/') c = '\\';
    return path;
}

std::string ModuleDirectory(std::string_view moduleFileName) {
    const auto last = moduleFileName.rfind('\\');
    if (last == std::string_view::npos) return "";
    // Joining every part but the last, each with "\" after it, is the text up
    // to and including the last separator.
    return std::string(moduleFileName.substr(0, last + 1));
}

std::string ChooseProgramPath(std::string_view moduleDirectory, std::string_view applicationPath) {
    if (moduleDirectory.find(kDevelopmentEnvironmentMark) != std::string_view::npos)
        return std::string(applicationPath);
    return std::string(moduleDirectory);
}

std::string HostModuleFileName() {
    std::string name = SystemPath(QCoreApplication::applicationFilePath().toStdString());
    if (name.size() > kModuleNameLimit) name.resize(kModuleNameLimit);
    return name;
}

std::string HostApplicationPath() {
    return SystemPath(QCoreApplication::applicationDirPath().toStdString());
}

}  // namespace control
