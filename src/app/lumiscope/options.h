// The command line of the stand-alone viewer.
#pragma once

#include <string>
#include <vector>

#include "command_line/command_line.h"

namespace lumiscope_app {

struct ViewerOptions {
    std::string commandLine;  // the start arguments
    std::string appPath;      // native directory, "" = the program's own
    int width = 0, height = 0;  // 0 = the window's own size
    int channel = -1;           // chooser entry to choose after start-up; -1 none
    std::string snapshot;
    double afterSeconds = 3.0;
    std::vector<std::string> select;  // elements to follow from the start
    bool quitWhenPopulated = false;
    bool quitWhenLive = false;
};

// What --help says about the viewer besides its options.
const command_line::ProgramText& ViewerText();

// Declares the viewer's options on the command line, to be read into `options`
// (the words that are not options become its start arguments).
void DeclareViewerOptions(command_line::CommandLine& commandLine, ViewerOptions& options);

// "1280x800" -> 1280, 800; false for anything else (sizes 100..10000).
bool ParseWindowSize(const std::string& text, int& width, int& height);

}  // namespace lumiscope_app
