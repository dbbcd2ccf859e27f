// Where the host program and the configuration live, in the system's path
// form ("\" separators, directories with a trailing "\"). Only the file-system
// boundary (catalogue/files.h) turns these texts into native paths.
#pragma once

#include <string>
#include <string_view>

namespace control {

// Inside the development environment the module's directory is that of the
// environment, not of the project, so the application path is taken instead.
// Compared exactly, letter case included.
inline constexpr std::string_view kDevelopmentEnvironmentMark = "Program Files\\Microsoft Visual";

// The configuration directory the control always uses: the site's shared
// drive. LUMISCOPE_DRIVE_L maps the drive to a directory of this machine.
inline constexpr std::string_view kConfigRoot = "L:\\bin.orka\\spectrum";
inline constexpr std::string_view kConfigFolder = "\\configs\\";
std::string ControlConfigPath();

// The module file name holds at most this many characters (the platform's
// 260-character buffer, its last one the terminator).
inline constexpr std::size_t kModuleNameLimit = 259;

// A native path in the system's form: "/" becomes "\".
std::string SystemPath(std::string_view nativePath);

// The directory part of a module file name: split at "\", every part but the
// last joined, each followed by "\". "" for a name without any "\".
std::string ModuleDirectory(std::string_view moduleFileName);

// ProgramPath: the module's directory, or the application path (no trailing
// "\") when the module directory lies inside the development environment.
std::string ChooseProgramPath(std::string_view moduleDirectory, std::string_view applicationPath);

// The host executable's file name in the system's form, cut to the module
// name buffer.
std::string HostModuleFileName();
// The host executable's directory in the system's form, without trailing "\".
std::string HostApplicationPath();

}  // namespace control
