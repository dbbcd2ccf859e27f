// The command line of the stand-alone viewer.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace lumiscope_app {

inline constexpr char kViewerUsage[] =
    "usage: lumiscope [options] [MACHINE [SUBSYSTEM [EXTRAS_ON]]]\n"
    "\n"
    "Opens the spectrum viewer on the simulated accelerator. The words that are\n"
    "not options are the start arguments, joined with blanks (\"VESTA,BLM\" works too):\n"
    "the first machine whose name contains MACHINE, its first subsystem whose file\n"
    "name contains SUBSYSTEM, and EXTRAS_ON for the extra channels.\n"
    "\n"
    "options:\n"
    "  --app-path DIR       the program directory: the configuration is read from\n"
    "                       DIR/configs/ (default: this program's directory, where\n"
    "                       the build links configs/ to the sample configuration)\n"
    "  --size WxH           window size in pixels, for example 1280x800\n"
    "  --channel N          choose entry N (0 = first) of the channel chooser once\n"
    "                       the window has started, as the operator would (the\n"
    "                       window starts on the chooser's first channel)\n"
    "  --snapshot FILE.png  save a picture of the window after --after seconds of\n"
    "                       live data, then exit (0 when saved)\n"
    "  --after SECONDS      live time before the snapshot (default 3; 0 = at once)\n"
    "  --select NAME[,NAME...]  follow these elements of the chosen channel from the\n"
    "                       start, as if picked in the element chooser (names as the\n"
    "                       spectrum labels them; at most 9)\n"
    "  --quit-when-populated  exit as soon as the window is shown with its start-up\n"
    "                       done (machines, subsystems and channels read)\n"
    "  --quit-when-live     exit as soon as the window shows a live spectrum\n"
    "  --help               this text\n"
    "\n"
    "environment:\n"
    "  LUMISCOPE_POLL_MS    the channel's live links poll at this interval (ms)\n"
    "  LUMISCOPE_TRANSPORT=network, LUMISCOPE_NAMES  the middleware over the network\n"
    "                       instead of the simulated accelerator (see the README)\n"
    "  LUMISCOPE_SIM_FAULTS, LUMISCOPE_SIM_SEED, LUMISCOPE_SIM_WRITERS\n"
    "                       the simulated accelerator's settings (see the README)\n"
    "  LUMISCOPE_LOGBOOK_DIR  where printed snapshots are filed without a logbook printer\n";

struct ViewerOptions {
    bool help = false;
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

// Parses the arguments after the program's name; nullopt with `error` set
// for a command line it cannot take.
std::optional<ViewerOptions> ParseViewerOptions(const std::vector<std::string>& arguments, std::string& error);

// "1280x800" -> 1280, 800; false for anything else (sizes 100..10000).
bool ParseWindowSize(const std::string& text, int& width, int& height);

}  // namespace lumiscope_app
