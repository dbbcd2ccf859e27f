// One command line for every Lumiscope program: the same --help layout, the
// same --version, and the same answer to a mistake (one line on standard
// error, exit code 2). The options themselves are declared on the CLI11
// application that Options() returns.
#pragma once

#include <CLI/CLI.hpp>
#include <optional>
#include <string>
#include <vector>

namespace command_line {

inline constexpr int kUsageError = 2;

// What --help says about a program besides its options.
struct ProgramText {
    std::string name;                   // "vire-call"
    std::vector<std::string> synopsis;  // one usage line each, without the name
    std::string description;            // after the usage lines
    std::string footer;                 // after the options: environment, examples
};

class CommandLine {
public:
    explicit CommandLine(ProgramText text);

    CLI::App& Options() { return app_; }

    // Programs that start Qt parse twice: before the application object exists
    // (so that a mistake needs no display), leniently, letting through words
    // Qt may take for itself ("-platform offscreen"); and again, strictly, on
    // the arguments Qt left.
    enum class Pass { Strict, BeforeQt };

    // nullopt: run the program. Otherwise the exit code after help or the
    // version went to standard output (0) or a mistake to standard error (2).
    // --help and --version win wherever they stand.
    std::optional<int> Parse(int argc, char** argv, Pass pass = Pass::Strict);
    std::optional<int> Parse(const std::vector<std::string>& arguments, Pass pass = Pass::Strict);

    // A mistake the declarations cannot see (a missing combination): says it
    // the same way and returns 2.
    int Fail(const std::string& reason) const;

    std::string Help() const;
    std::string VersionLine() const;
    const std::string& Name() const { return text_.name; }

    // Parses without printing: "" when the arguments are fine, else the reason.
    // `wantsHelp`/`wantsVersion` report the two requests.
    std::string Check(const std::vector<std::string>& arguments, Pass pass, bool& wantsHelp, bool& wantsVersion);

private:
    ProgramText text_;
    CLI::App app_;
};

}  // namespace command_line
