// Where a program finds the files that come with it, in the build tree and
// in an installed tree alike.
#pragma once

#include <filesystem>
#include <string>

namespace tool_support {

// The directory of the running program; empty when the system does not say.
std::filesystem::path ProgramDirectory();

// The installed tree's data directory (<prefix>/share/lumiscope), found from
// the program's directory, so that a tree moved elsewhere still works.
std::filesystem::path InstalledDataDirectory();

// The sample configuration directory: configs/ beside the program when there
// is one (the build tree links it there), else the installed tree's.
std::string SampleConfigDirectory();

}  // namespace tool_support
