#include "command_line.h"

#include <algorithm>
#include <cstdio>
#include <sstream>

#ifndef LUMISCOPE_VERSION
#error "the build passes LUMISCOPE_VERSION"
#endif

namespace command_line {

namespace {

constexpr std::size_t kOptionColumn = 24;

// An option as the help lists it: "-h, --help" or "--count N".
std::string OptionLabel(const CLI::Option& option) {
    std::string label;
    for (const std::string& name : option.get_snames()) label += (label.empty() ? "-" : ", -") + name;
    for (const std::string& name : option.get_lnames()) label += (label.empty() ? "--" : ", --") + name;
    if (option.get_type_size() != 0 && !option.get_type_name().empty()) label += " " + option.get_type_name();
    return label;
}

// The description's later lines line up under its first.
std::string OptionEntry(const CLI::Option& option) {
    std::string entry = "  " + OptionLabel(option);
    entry += entry.size() + 2 <= kOptionColumn ? std::string(kOptionColumn - entry.size(), ' ')
                                                : "\n" + std::string(kOptionColumn, ' ');
    for (const char c : option.get_description()) {
        entry += c;
        if (c == '\n') entry += std::string(kOptionColumn, ' ');
    }
    return entry + "\n";
}

// Options with a name, a sub-command's once even when several commands take it.
void CollectOptions(const CLI::App& app, std::vector<const CLI::Option*>& options) {
    const auto named = [](const CLI::Option* o) { return !o->get_lnames().empty() || !o->get_snames().empty(); };
    for (const CLI::Option* option : app.get_options(named)) {
        const bool listed = std::any_of(options.begin(), options.end(), [&](const CLI::Option* o) {
            return o->get_lnames() == option->get_lnames() && o->get_snames() == option->get_snames();
        });
        if (!listed) options.push_back(option);
    }
    for (const CLI::App* sub : app.get_subcommands([](const CLI::App*) { return true; })) CollectOptions(*sub, options);
}

// The program's own options first, --help and --version last.
std::vector<const CLI::Option*> ListedOptions(const CLI::App& app) {
    std::vector<const CLI::Option*> options;
    CollectOptions(app, options);
    std::stable_partition(options.begin(), options.end(), [](const CLI::Option* o) {
        const std::vector<std::string>& names = o->get_lnames();
        return names != std::vector<std::string>{"help"} && names != std::vector<std::string>{"version"};
    });
    return options;
}

bool HasCommands(const CLI::App& app) {
    return !app.get_subcommands([](const CLI::App*) { return true; }).empty();
}

// The first argument CLI11 left over, in the words of a person.
std::string Leftover(const std::vector<std::string>& remaining, CommandLine::Pass pass) {
    for (const std::string& word : remaining) {
        if (word == "--") continue;
        const bool longOption = word.rfind("--", 0) == 0 && word.size() > 2;
        if (pass == CommandLine::Pass::BeforeQt && !longOption) continue;  // Qt's turn comes
        if (longOption || (word.size() > 1 && word[0] == '-')) return "unknown option " + word;
        return "unexpected argument " + word;
    }
    return "";
}

// CLI11's reasons reworded where they name no option a person typed.
std::string Reason(const CLI::Error& error) {
    const std::string what = error.what();
    if (error.get_name() == "ArgumentMismatch") {
        const auto colon = what.find(':');
        if (colon != std::string::npos && what.find(" missing", colon) != std::string::npos)
            return what.substr(0, colon) + " needs a value";
    }
    // "Could not convert: --count = x"
    if (error.get_name() == "ConversionError" && what.rfind("Could not convert: ", 0) == 0) {
        const std::string rest = what.substr(19);
        const auto equals = rest.find(" = ");
        if (equals != std::string::npos)
            return rest.substr(0, equals) + " cannot take \"" + rest.substr(equals + 3) + "\"";
    }
    if (error.get_name() == "RequiredError" && what.find("A subcommand is required") != std::string::npos)
        return "no command";
    return what;
}

}  // namespace

CommandLine::CommandLine(ProgramText text) : text_(std::move(text)), app_(text_.description, text_.name) {
    app_.set_help_flag();  // answered before CLI11 parses, see Check
    app_.add_flag("-h,--help")->description("this text");
    app_.add_flag("--version")->description("the program's name and version");
    app_.allow_extras();
    app_.option_defaults()->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
}

std::string CommandLine::VersionLine() const { return text_.name + " " + LUMISCOPE_VERSION + "\n"; }

std::string CommandLine::Help() const {
    std::ostringstream help;
    for (std::size_t i = 0; i < text_.synopsis.size(); ++i)
        help << (i == 0 ? "usage: " : "       ") << text_.name << (text_.synopsis[i].empty() ? "" : " ")
             << text_.synopsis[i] << "\n";
    if (!text_.description.empty()) help << "\n" << text_.description;
    help << "\noptions:\n";
    for (const CLI::Option* option : ListedOptions(app_)) help << OptionEntry(*option);
    if (!text_.footer.empty()) help << "\n" << text_.footer;
    return help.str();
}

std::string CommandLine::Check(const std::vector<std::string>& arguments, Pass pass, bool& wantsHelp,
                               bool& wantsVersion) {
    wantsHelp = wantsVersion = false;
    for (const std::string& argument : arguments) {
        if (argument == "--") break;
        wantsHelp = wantsHelp || argument == "--help" || argument == "-h";
        wantsVersion = wantsVersion || argument == "--version";
    }
    if (wantsHelp || wantsVersion) return "";
    app_.clear();
    // CLI11 takes the arguments last first.
    std::vector<std::string> reversed(arguments.rbegin(), arguments.rend());
    try {
        app_.parse(reversed);
    } catch (const CLI::ParseError& error) {
        // Something missing is reported after an option nobody knows, and a
        // word where a command should be is a command this program lacks.
        const std::vector<std::string> remaining = app_.remaining(true);
        if (error.get_name() == "RequiredError") {
            const std::string leftover = Leftover(remaining, pass);
            if (leftover.rfind("unknown option", 0) == 0) return leftover;
            if (HasCommands(app_) && !leftover.empty()) return "unknown command " + remaining.front();
        }
        return Reason(error);
    }
    return Leftover(app_.remaining(true), pass);
}

std::optional<int> CommandLine::Parse(const std::vector<std::string>& arguments, Pass pass) {
    bool wantsHelp = false, wantsVersion = false;
    const std::string problem = Check(arguments, pass, wantsHelp, wantsVersion);
    if (wantsHelp) {
        std::fputs(Help().c_str(), stdout);
        return 0;
    }
    if (wantsVersion) {
        std::fputs(VersionLine().c_str(), stdout);
        return 0;
    }
    if (!problem.empty()) return Fail(problem);
    return std::nullopt;
}

std::optional<int> CommandLine::Parse(int argc, char** argv, Pass pass) {
    return Parse(std::vector<std::string>(argv + (argc > 0 ? 1 : 0), argv + argc), pass);
}

int CommandLine::Fail(const std::string& reason) const {
    std::fprintf(stderr, "%s: %s (%s --help lists the options)\n", text_.name.c_str(), reason.c_str(),
                 text_.name.c_str());
    return kUsageError;
}

}  // namespace command_line
