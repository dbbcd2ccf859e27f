#include "options.h"

#include <algorithm>

#include "catalogue/catalogue.h"
#include "catalogue/numbers.h"

namespace lumiscope_app {

bool ParseWindowSize(const std::string& text, int& width, int& height) {
    const auto x = text.find('x');
    if (x == std::string::npos) return false;
    int64_t w = 0, h = 0;
    if (!catalogue::ParseInteger(text.substr(0, x), 100, 10000, w) ||
        !catalogue::ParseInteger(text.substr(x + 1), 100, 10000, h))
        return false;
    width = static_cast<int>(w);
    height = static_cast<int>(h);
    return true;
}

const command_line::ProgramText& ViewerText() {
    static const command_line::ProgramText text = {
        "lumiscope",
        {"[options] [MACHINE [SUBSYSTEM [EXTRAS_ON]]]"},
        "Opens the spectrum viewer on the simulated accelerator. The words that are\n"
        "not options are the start arguments, joined with blanks (\"VESTA,BLM\" works too):\n"
        "the first machine whose name contains MACHINE, its first subsystem whose file\n"
        "name contains SUBSYSTEM, and EXTRAS_ON for the extra channels.\n"
        "The configuration is read from configs/ in the program directory; when there\n"
        "is none, from the sample configuration of the installation\n"
        "(<prefix>/share/lumiscope/configs).\n",
        "environment:\n"
        "  LUMISCOPE_POLL_MS    the channel's live links poll at this interval (ms)\n"
        "  LUMISCOPE_TRANSPORT=network, LUMISCOPE_NAMES  the middleware over the network\n"
        "                       instead of the simulated accelerator (see the README)\n"
        "  LUMISCOPE_SIM_FAULTS, LUMISCOPE_SIM_SEED, LUMISCOPE_SIM_WRITERS\n"
        "                       the simulated accelerator's settings (see the README)\n"
        "  LUMISCOPE_LOGBOOK_DIR  where printed snapshots are filed without a logbook printer\n"};
    return text;
}

void DeclareViewerOptions(command_line::CommandLine& commandLine, ViewerOptions& options) {
    CLI::App& app = commandLine.Options();
    ViewerOptions* const parsed = &options;
    app.add_option("--app-path", options.appPath,
                   "the program directory: the configuration is read from\n"
                   "DIR/configs/ (default: this program's directory, where\n"
                   "the build links configs/ to the sample configuration)")
        ->type_name("DIR");
    app.add_option_function<std::string>(
           "--size",
           [parsed](const std::string& text) {
               if (!ParseWindowSize(text, parsed->width, parsed->height))
                   throw CLI::ValidationError("--size wants WIDTHxHEIGHT, for example 1280x800, not \"" + text + "\"");
           },
           "window size in pixels, for example 1280x800")
        ->type_name("WxH");
    app.add_option_function<std::string>(
           "--channel",
           [parsed](const std::string& text) {
               int64_t channel = 0;
               if (!catalogue::ParseInteger(text, 0, catalogue::kMaxSpectrum, channel))
                   throw CLI::ValidationError("--channel wants a chooser entry (0 to 100), not \"" + text + "\"");
               parsed->channel = static_cast<int>(channel);
           },
           "choose entry N (0 = first) of the channel chooser once\n"
           "the window has started, as the operator would (the\n"
           "window starts on the chooser's first channel)")
        ->type_name("N");
    app.add_option("--snapshot", options.snapshot,
                   "save a picture of the window after --after seconds of\nlive data, then exit (0 when saved)")
        ->type_name("FILE.png");
    app.add_option_function<std::string>(
           "--after",
           [parsed](const std::string& text) {
               const double seconds = catalogue::NumericValue(text);
               if (text.empty() || !catalogue::IsCleanNumber(text) || seconds < 0 || seconds > 86400)
                   throw CLI::ValidationError("--after wants seconds (0 to 86400), not \"" + text + "\"");
               parsed->afterSeconds = seconds;
           },
           "live time before the snapshot (default 3; 0 = at once)")
        ->type_name("SECONDS");
    app.add_option_function<std::string>(
           "--select",
           [parsed](const std::string& list) {
               // Element names never hold a comma; empty names are left out.
               parsed->select.clear();
               size_t from = 0;
               while (from <= list.size()) {
                   const size_t comma = std::min(list.find(',', from), list.size());
                   if (comma > from) parsed->select.push_back(list.substr(from, comma - from));
                   from = comma + 1;
               }
               if (parsed->select.empty())
                   throw CLI::ValidationError("--select wants element names, for example BPM.S01.C1,BPM.S01.C2");
           },
           "follow these elements of the chosen channel from the\n"
           "start, as if picked in the element chooser (names as the\n"
           "spectrum labels them; at most 9)")
        ->type_name("NAME[,NAME...]");
    app.add_flag("--quit-when-populated", options.quitWhenPopulated,
                 "exit as soon as the window is shown with its start-up\n"
                 "done (machines, subsystems and channels read)");
    app.add_flag("--quit-when-live", options.quitWhenLive, "exit as soon as the window shows a live spectrum");
    app.add_option_function<std::vector<std::string>>("MACHINE", [parsed](const std::vector<std::string>& words) {
        parsed->commandLine.clear();
        for (const std::string& word : words) parsed->commandLine += (parsed->commandLine.empty() ? "" : " ") + word;
    });
}

}  // namespace lumiscope_app
