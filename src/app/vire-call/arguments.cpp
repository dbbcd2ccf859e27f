#include "arguments.h"

#include <cstdlib>
#include <limits>

#include "catalogue/numbers.h"
#include "command_line/command_line.h"
#include "vire/formats.h"

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

int64_t Integer(const std::string& option, const std::string& text, int64_t low, int64_t high, const std::string& wants) {
    int64_t value = 0;
    if (!catalogue::ParseInteger(text, low, high, value)) throw CLI::ValidationError(option + " needs " + wants);
    return value;
}

}  // namespace

void DeclareArguments(command_line::CommandLine& commandLine, int64_t now, CallArguments& arguments) {
    CLI::App& app = commandLine.Options();
    // The options fill the arguments when the command line is parsed.
    CallArguments* const parsed = &arguments;
    auto kind = [parsed](CallKind k) {
        return [parsed, k](int64_t) {
            if (parsed->kind != CallKind::Read && parsed->kind != k)
                throw CLI::ValidationError("one kind of call at a time");
            parsed->kind = k;
        };
    };
    app.add_flag_function("--names", kind(CallKind::Names), "the element names of a server's property");
    app.add_flag_function("--props", kind(CallKind::Properties), "the property list of a server");
    app.add_flag_function("--history", kind(CallKind::History), "values of a history property between --from and --to");
    app.add_flag_function("--spectrum", kind(CallKind::Spectrum), "the stored spectrum at --at");
    const auto conversion = [parsed, kind](CallKind k, const std::string& option) {
        return [parsed, k, option, kind](const std::string& text) {
            kind(k)(0);
            const bool time = k == CallKind::Ctime;
            const int64_t low = time ? std::numeric_limits<int64_t>::min() / 2 : -32768;
            const int64_t high = time ? std::numeric_limits<int64_t>::max() / 2 : 32767;
            parsed->number = Integer(option, text, low, high, time ? "a number" : "a number from -32768 to 32767");
        };
    };
    app.add_option_function<std::string>("--format-name", conversion(CallKind::FormatName, "--format-name"),
                                         "the name of a format code")
        ->type_name("CODE");
    app.add_option_function<std::string>("--error-text", conversion(CallKind::ErrorText, "--error-text"),
                                         "the text of a completion code")
        ->type_name("CODE");
    app.add_option_function<std::string>("--ctime", conversion(CallKind::Ctime, "--ctime"),
                                         "the local-time text of a time")
        ->type_name("T");
    app.add_option_function<std::string>(
           "--count",
           [parsed](const std::string& text) {
               // Any 32-bit count: what is out of range is for the call to answer.
               parsed->count = static_cast<int32_t>(Integer("--count", text, std::numeric_limits<int32_t>::min(),
                                                           std::numeric_limits<int32_t>::max(), "a 32-bit number"));
               parsed->countGiven = true;
           },
           "elements to read")
        ->type_name("N");
    app.add_option_function<std::string>(
           "--format",
           [parsed](const std::string& text) {
               const int16_t code = vire::FormatCode(text);
               if (code == 0) throw CLI::ValidationError("unknown format \"" + text + "\"");
               parsed->format = code;
           },
           "the format to read or write (default SINGLE)")
        ->type_name("NAME");
    app.add_option_function<std::string>(
           "--write",
           [parsed, kind](const std::string& text) {
               kind(CallKind::Write)(0);
               for (const auto& part : SplitCommas(text)) {
                   char* end = nullptr;
                   const double v = std::strtod(part.c_str(), &end);
                   if (part.empty() || *end != '\0') throw CLI::ValidationError("unreadable value \"" + part + "\"");
                   parsed->writeValues.push_back(v);
               }
           },
           "write these values instead of reading")
        ->type_name("V[,V...]");
    app.add_option_function<std::string>(
           "--input",
           [parsed, now](const std::string& text) {
               for (const auto& part : SplitCommas(text)) {
                   int64_t number = 0;
                   if (!ParseTime(part, now, number)) throw CLI::ValidationError("unreadable input \"" + part + "\"");
                   parsed->input.push_back(static_cast<int32_t>(number));
               }
           },
           "LONG input values of a read")
        ->type_name("I,I...");
    for (const auto& [option, target] : {std::pair{"--from", &parsed->from}, {"--to", &parsed->to}, {"--at", &parsed->at}}) {
        app.add_option_function<std::string>(
               option,
               [option = std::string(option), target = target, now](const std::string& text) {
                   if (!ParseTime(text, now, *target)) throw CLI::ValidationError(option + " needs a time");
               },
               std::string(option) == "--at" ? "the time of the spectrum" : std::string("the time window's ") +
                                                                            (std::string(option) == "--from" ? "start" : "end"))
            ->type_name("T");
    }
    app.add_option_function<std::string>(
           "--mode",
           [parsed](const std::string& text) { parsed->mode = static_cast<int32_t>(Integer("--mode", text, -1000, 1000, "a number")); },
           "the history request's mode")
        ->type_name("M");
    app.add_option_function<std::string>(
           "--timeout",
           [parsed](const std::string& text) {
               parsed->timeoutMs = static_cast<int32_t>(Integer("--timeout", text, 0, 600'000, "milliseconds"));
           },
           "the call's time-out in milliseconds (default 1000)")
        ->type_name("MS");
    app.add_flag("--json", arguments.json, "one JSON document instead of text");
    app.add_flag("--simulate", arguments.simulate,
                 "the simulated accelerator even when LUMISCOPE_TRANSPORT=network");
    app.add_option("--config", arguments.configDir,
                   "the simulated accelerator's configuration directory\n(default: the sample configuration)")
        ->type_name("DIR");
    app.add_option_function<std::string>(
           "--user", [parsed](const std::string& text) { parsed->user = text; }, "the user name the call carries")
        ->type_name("NAME");
    app.add_option("ADDRESS", arguments.words);
}

std::string CompleteArguments(CallArguments& parsed) {
    const std::vector<std::string>& positional = parsed.words;
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
