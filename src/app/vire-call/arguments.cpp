#include "arguments.h"

#include <cerrno>
#include <cstdlib>
#include <limits>

#include "catalogue/numbers.h"
#include "vire/formats.h"

const char* const kUsage =
    "usage: vire-call ADDRESS PROPERTY [--count N] [--format NAME] [--input I,I...]\n"
    "       vire-call ADDRESS PROPERTY --write V[,V...] [--format NAME]\n"
    "       vire-call --names /CONTEXT/SERVER PROPERTY [--count N]\n"
    "       vire-call --props /CONTEXT/SERVER [PROPERTY]\n"
    "       vire-call --history ADDRESS PROPERTY --from T --to T [--mode M] [--count N]\n"
    "       vire-call --spectrum ADDRESS PROPERTY --at T --count N\n"
    "       vire-call --format-name CODE | --error-text CODE | --ctime T\n"
    "common options: --json, --timeout MS (1000), --config DIR (the simulated\n"
    "accelerator's configuration directory; default the sample one), --user NAME,\n"
    "--simulate (the simulated accelerator even when LUMISCOPE_TRANSPORT=network).\n"
    "Times T are Unix seconds, now, or now-SECONDS. ADDRESS is /CONTEXT/SERVER/DEVICE.\n";

namespace {


bool ParseTime(const std::string& text, int64_t now, int64_t& value) {
    if (text == "now") {
        value = now;
        return true;
    }
    int64_t back = 0;
    if (text.rfind("now-", 0) == 0 && catalogue::ParseInteger(text.substr(4), 0, std::numeric_limits<int32_t>::max(), back)) {
        value = now - back;
        return true;
    }
    return catalogue::ParseInteger(text, std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::max(), value);
}

std::vector<std::string> SplitCommas(const std::string& text) {
    std::vector<std::string> parts;
    size_t start = 0;
    for (;;) {
        const size_t comma = text.find(',', start);
        parts.push_back(text.substr(start, comma - start));
        if (comma == std::string::npos) return parts;
        start = comma + 1;
    }
}

}  // namespace

std::string ParseArguments(const std::vector<std::string>& args, int64_t now, CallArguments& parsed) {
    std::vector<std::string> positional;
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string& arg = args[i];
        auto value = [&](std::string& out) -> bool {
            if (i + 1 >= args.size()) return false;
            out = args[++i];
            return true;
        };
        std::string text;
        int64_t number = 0;
        if (arg == "--simulate") {
            parsed.simulate = true;
        } else if (arg == "--json") {
            parsed.json = true;
        } else if (arg == "--names") {
            parsed.kind = CallKind::Names;
        } else if (arg == "--props") {
            parsed.kind = CallKind::Properties;
        } else if (arg == "--history") {
            parsed.kind = CallKind::History;
        } else if (arg == "--spectrum") {
            parsed.kind = CallKind::Spectrum;
        } else if (arg == "--format-name" || arg == "--error-text" || arg == "--ctime") {
            parsed.kind = arg == "--format-name" ? CallKind::FormatName
                          : arg == "--error-text" ? CallKind::ErrorText
                                                  : CallKind::Ctime;
            const int64_t low = parsed.kind == CallKind::Ctime ? std::numeric_limits<int64_t>::min() / 2 : -32768;
            const int64_t high = parsed.kind == CallKind::Ctime ? std::numeric_limits<int64_t>::max() / 2 : 32767;
            if (!value(text) || !catalogue::ParseInteger(text, low, high, parsed.number))
                return arg + " needs a number" + (parsed.kind == CallKind::Ctime ? "" : " from -32768 to 32767");
        } else if (arg == "--count") {
            // Any 32-bit count: what is out of range is for the call to answer.
            if (!value(text) || !catalogue::ParseInteger(text, std::numeric_limits<int32_t>::min(),
                                                         std::numeric_limits<int32_t>::max(), number))
                return "--count needs a 32-bit number";
            parsed.count = static_cast<int32_t>(number);
            parsed.countGiven = true;
        } else if (arg == "--format") {
            if (!value(text)) return "--format needs a format name";
            const int16_t code = vire::FormatCode(text);
            if (code == 0) return "unknown format \"" + text + "\"";
            parsed.format = code;
        } else if (arg == "--write") {
            if (!value(text)) return "--write needs values";
            parsed.kind = CallKind::Write;
            for (const auto& part : SplitCommas(text)) {
                char* end = nullptr;
                const double v = std::strtod(part.c_str(), &end);
                if (part.empty() || *end != '\0') return "unreadable value \"" + part + "\"";
                parsed.writeValues.push_back(v);
            }
        } else if (arg == "--input") {
            if (!value(text)) return "--input needs integers";
            for (const auto& part : SplitCommas(text)) {
                if (!ParseTime(part, now, number)) return "unreadable input \"" + part + "\"";
                parsed.input.push_back(static_cast<int32_t>(number));
            }
        } else if (arg == "--from" || arg == "--to" || arg == "--at") {
            if (!value(text) || !ParseTime(text, now, number)) return arg + " needs a time";
            (arg == "--from" ? parsed.from : arg == "--to" ? parsed.to : parsed.at) = number;
        } else if (arg == "--mode") {
            if (!value(text) || !catalogue::ParseInteger(text, -1000, 1000, number)) return "--mode needs a number";
            parsed.mode = static_cast<int32_t>(number);
        } else if (arg == "--timeout") {
            if (!value(text) || !catalogue::ParseInteger(text, 0, 600'000, number)) return "--timeout needs milliseconds";
            parsed.timeoutMs = static_cast<int32_t>(number);
        } else if (arg == "--config") {
            if (!value(parsed.configDir)) return "--config needs a directory";
        } else if (arg == "--user") {
            if (!value(text)) return "--user needs a name";
            parsed.user = text;
        } else if (arg.size() > 2 && arg.rfind("--", 0) == 0) {
            return "unknown option " + arg;
        } else {
            positional.push_back(arg);
        }
    }
    switch (parsed.kind) {
    case CallKind::FormatName:
    case CallKind::ErrorText:
    case CallKind::Ctime:
        return positional.empty() ? "" : "unexpected argument " + positional.front();
    case CallKind::Properties:
        if (positional.empty() || positional.size() > 2) return "--props needs /CONTEXT/SERVER [PROPERTY]";
        parsed.address = positional[0];
        parsed.property = positional.size() == 2 ? positional[1] : "";
        return "";
    default:
        if (positional.size() != 2) return "needs ADDRESS and PROPERTY";
        parsed.address = positional[0];
        parsed.property = positional[1];
        if (parsed.kind == CallKind::Spectrum && !parsed.countGiven) return "--spectrum needs --count N";
        return "";
    }
}
