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

std::optional<ViewerOptions> ParseViewerOptions(const std::vector<std::string>& arguments, std::string& error) {
    ViewerOptions options;
    std::vector<std::string> words;
    for (size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        const bool takesValue = argument == "--app-path" || argument == "--size" || argument == "--snapshot" ||
                                argument == "--after" || argument == "--channel" ||
                                argument == "--select";
        if (takesValue && i + 1 >= arguments.size()) {
            error = argument + " needs a value";
            return std::nullopt;
        }
        if (argument == "--help" || argument == "-h") {
            options.help = true;
        } else if (argument == "--app-path") {
            options.appPath = arguments[++i];
        } else if (argument == "--size") {
            if (!ParseWindowSize(arguments[++i], options.width, options.height)) {
                error = "--size wants WIDTHxHEIGHT, for example 1280x800, not \"" + arguments[i] + "\"";
                return std::nullopt;
            }
        } else if (argument == "--channel") {
            int64_t channel = 0;
            if (!catalogue::ParseInteger(arguments[++i], 0, catalogue::kMaxSpectrum, channel)) {
                error = "--channel wants a chooser entry (0 to 100), not \"" + arguments[i] + "\"";
                return std::nullopt;
            }
            options.channel = static_cast<int>(channel);
        } else if (argument == "--snapshot") {
            options.snapshot = arguments[++i];
        } else if (argument == "--after") {
            const std::string& text = arguments[++i];
            const double seconds = catalogue::NumericValue(text);
            if (text.empty() || !catalogue::IsCleanNumber(text) || seconds < 0 || seconds > 86400) {
                error = "--after wants seconds (0 to 86400), not \"" + text + "\"";
                return std::nullopt;
            }
            options.afterSeconds = seconds;
        } else if (argument == "--select") {
            // Element names never hold a comma; empty names are left out.
            const std::string& list = arguments[++i];
            size_t from = 0;
            while (from <= list.size()) {
                const size_t comma = std::min(list.find(',', from), list.size());
                if (comma > from) options.select.push_back(list.substr(from, comma - from));
                from = comma + 1;
            }
            if (options.select.empty()) {
                error = "--select wants element names, for example BPM.S01.C1,BPM.S01.C2";
                return std::nullopt;
            }
        } else if (argument == "--quit-when-populated") {
            options.quitWhenPopulated = true;
        } else if (argument == "--quit-when-live") {
            options.quitWhenLive = true;
        } else if (argument.rfind("--", 0) == 0) {
            error = "unknown option " + argument;
            return std::nullopt;
        } else {
            words.push_back(argument);
        }
    }
    for (const std::string& word : words) {
        if (!options.commandLine.empty()) options.commandLine += ' ';
        options.commandLine += word;
    }
    return options;
}

}  // namespace lumiscope_app
