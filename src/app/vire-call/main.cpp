// vire-call: one link call from the shell, answered by the servers on the
// network when the environment names them (LUMISCOPE_TRANSPORT=network), else
// (or with --simulate) by the simulated accelerator of a configuration
// directory.
#include <algorithm>
#include <iostream>
#include <string>
#include <vector>

#include "arguments.h"
#include "command_line/command_line.h"
#ifdef LUMISCOPE_NETWORK
#include "net/environment.h"
#endif
#include "output.h"
#include "sim/simulated_accelerator.h"
#include "tool_support/installed_files.h"
#include "vire/completion_codes.h"
#include "vire/formats.h"
#include "vire/link.h"
#include "vire/queries.h"
#include "vire/utils.h"
#include "vire/wire.h"

namespace {

const command_line::ProgramText kText = {
    "vire-call",
    {"ADDRESS PROPERTY [--count N] [--format NAME] [--input I,I...]", "ADDRESS PROPERTY --write V[,V...] [--format NAME]",
     "--names /CONTEXT/SERVER PROPERTY [--count N]", "--props /CONTEXT/SERVER [PROPERTY]",
     "--history ADDRESS PROPERTY --from T --to T [--mode M] [--count N]", "--spectrum ADDRESS PROPERTY --at T --count N",
     "--format-name CODE | --error-text CODE | --ctime T"},
    "One link call of the middleware from the shell, answered by the servers on the\n"
    "network when LUMISCOPE_TRANSPORT=network (unless --simulate), else by the\n"
    "simulated accelerator of a configuration directory. ADDRESS is /CONTEXT/SERVER/DEVICE;\n"
    "times T are Unix seconds, now, or now-SECONDS. Exit code 0 when the call\n"
    "succeeds, 1 when it ends with a completion code, 2 for a mistake in the\n"
    "command line.\n",
    "examples:\n"
    "  vire-call /ORKA/BPMQ1/ORBIT ORBIT.X --count 32\n"
    "  vire-call --names /ORKA/BLMSRV LOSS.FAST\n"
    "  vire-call --history /ORKA/BPMHIST/BPM.S01.C1 ORBIT.X.Q1.HIST --from now-3600 --to now\n"};

// The network when the environment asks for it (LUMISCOPE_TRANSPORT=network), as in the viewer.
bool InstallNetworkTransport([[maybe_unused]] const std::string& configDir) {
#ifdef LUMISCOPE_NETWORK
    return net::InstallTransportFromEnvironment(configDir);
#else
    return false;
#endif
}

std::vector<std::byte> LongInput(const std::vector<int32_t>& values) {
    std::vector<std::byte> bytes(values.size() * 4);
    for (size_t i = 0; i < values.size(); ++i) vire::StoreInt32(bytes, 4 * i, values[i]);
    return bytes;
}

// Most elements one read makes room for; a larger count is answered as out
// of range without asking the server (or the memory) for it.
constexpr int32_t kMaxReadElements = 1'000'000;

// A read of `count` elements of `format`, with LONG input values. A negative
// count goes to the server as it is, with no room for an answer.
Answer Read(const CallArguments& a, int16_t format, int32_t count, const std::vector<int32_t>& input) {
    Answer answer;
    answer.format = format;
    const int32_t width = vire::FormatSize(format);
    if (width <= 0) {
        answer.status = vire::kFormatMismatch;
        return answer;
    }
    if (count > kMaxReadElements) {
        answer.status = vire::kOutOfRange;
        return answer;
    }
    std::vector<std::byte> buffer(static_cast<size_t>(std::max(count, 0)) * static_cast<size_t>(width));
    std::vector<std::byte> inBytes = LongInput(input);
    vire::DataObject out{count, format, "", buffer};
    const vire::DataObject in{static_cast<int32_t>(input.size()), vire::kFormatLong, "", inBytes};
    answer.status = vire::LinkCall(a.address, a.property, out, in, vire::kAccessRead, a.timeoutMs);
    answer.stamp = out.stamp;
    if (answer.status == vire::kOk) DecodeValues(answer, format, buffer, out.count);
    return answer;
}

Answer Write(const CallArguments& a) {
    Answer answer;
    answer.format = a.format;
    const int16_t code = vire::CanonicalFormat(a.format);
    if (code != vire::kFormatSingle && code != vire::kFormatLong) {
        answer.status = vire::kFormatMismatch;
        return answer;
    }
    std::vector<std::byte> bytes(a.writeValues.size() * 4);
    for (size_t i = 0; i < a.writeValues.size(); ++i) {
        if (code == vire::kFormatSingle) vire::StoreFloat(bytes, 4 * i, static_cast<float>(a.writeValues[i]));
        else vire::StoreInt32(bytes, 4 * i, static_cast<int32_t>(a.writeValues[i]));
    }
    vire::DataObject out{};
    const vire::DataObject in{static_cast<int32_t>(a.writeValues.size()), a.format, "", bytes};
    answer.status = vire::LinkCall(a.address, a.property, out, in, vire::kAccessWrite, a.timeoutMs);
    return answer;
}

int Run(const CallArguments& a) {
    switch (a.kind) {
    case CallKind::FormatName:
        std::cout << vire::FormatName(static_cast<int16_t>(a.number)) << "\n";
        return 0;
    case CallKind::ErrorText:
        std::cout << vire::ErrorText(static_cast<vire::Status>(a.number)) << "\n";
        return 0;
    case CallKind::Ctime:
        std::cout << vire::CTIME(a.number) << "\n";
        return 0;
    default: break;
    }

    if (a.simulate || !InstallNetworkTransport(a.configDir)) {
        auto accelerator = sim::InstallSimulatedAccelerator(a.configDir);
        for (const auto& problem : accelerator->settings().problems) std::cerr << "vire-call: " << problem << "\n";
        for (const auto& problem : accelerator->model().problems) std::cerr << "vire-call: " << problem << "\n";
    }
    if (a.user) vire::SetUserName(*a.user);
    const std::string what = a.address + " " + a.property;

    switch (a.kind) {
    case CallKind::Names: {
        Answer answer;
        answer.format = vire::kFormatName16;
        int32_t count = a.countGiven ? a.count : 0;
        std::vector<std::string> names;
        answer.status = vire::GetDeviceNames(a.address, a.property, count, names);
        if (answer.status == vire::kOk) AddNames(answer, names);
        return PrintAnswer(answer, a.json, a.address + "/#0 " + a.property + ".NAM");
    }
    case CallKind::Properties: {
        Answer answer;
        vire::PropertyList list;
        answer.status = vire::GetProperties(a.address, a.property, list);
        answer.format = list.format;
        if (answer.status == vire::kOk) AddNames(answer, list.names);
        return PrintAnswer(answer, a.json, a.address + " PROPS");
    }
    case CallKind::History: {
        std::vector<int32_t> input{static_cast<int32_t>(a.from), static_cast<int32_t>(a.to)};
        if (a.mode > 0) input.push_back(a.mode);
        return PrintAnswer(Read(a, vire::kFormatFltInt, a.countGiven ? a.count : 999, input), a.json, what);
    }
    case CallKind::Spectrum: {
        const std::vector<int32_t> input{static_cast<int32_t>(a.at), static_cast<int32_t>(a.at), 0};
        return PrintAnswer(Read(a, vire::kFormatSingle, a.count, input), a.json, what);
    }
    case CallKind::Write: return PrintAnswer(Write(a), a.json, what);
    default: return PrintAnswer(Read(a, a.format, a.count, a.input), a.json, what);
    }
}

}  // namespace

int main(int argc, char** argv) try {
    command_line::CommandLine commandLine(kText);
    CallArguments arguments;
    arguments.configDir = tool_support::SampleConfigDirectory();
    DeclareArguments(commandLine, vire::UNIXTIME(), arguments);
    if (const auto exitCode = commandLine.Parse(argc, argv)) return *exitCode;
    if (const std::string problem = CompleteArguments(arguments); !problem.empty()) return commandLine.Fail(problem);
    return Run(arguments);
} catch (const std::exception& error) {
    // Nothing below is meant to throw; if it does, say so rather than abort.
    std::cerr << "vire-call: unexpected failure: " << error.what() << "\n";
    return 3;
}
