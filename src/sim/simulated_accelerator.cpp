#include "sim/simulated_accelerator.h"

#include <algorithm>
#include <chrono>
#include <thread>

#include "vire/clock.h"
#include "vire/completion_codes.h"
#include "vire/formats.h"
#include "vire/link.h"
#include "vire/queries.h"
#include "vire/utils.h"
#include "vire/wire.h"

namespace sim {
namespace {

// Element count that fits both the caller's count and its buffer.
int32_t Room(const vire::DataObject& out, int32_t asked) {
    const int32_t width = vire::FormatSize(out.format);
    if (width <= 0) return 0;
    return std::min<int32_t>(asked, static_cast<int32_t>(out.buffer.size() / static_cast<size_t>(width)));
}

// Names as fields of `width` characters, blank-padded; a longer name is cut
// into fields of width-1 characters each ending in "&", the last one plain.
std::vector<std::string> NameFields(const std::vector<std::string>& names, size_t width) {
    std::vector<std::string> fields;
    for (const auto& name : names) {
        std::string rest = name;
        while (rest.size() > width) {
            fields.push_back(rest.substr(0, width - 1) + "&");
            rest = rest.substr(width - 1);
        }
        fields.push_back(rest + std::string(width - rest.size(), ' '));
    }
    return fields;
}

vire::Status WriteFields(const std::vector<std::string>& fields, vire::DataObject& out, int32_t room,
                         size_t width) {
    const int32_t n = std::min<int32_t>(room, static_cast<int32_t>(fields.size()));
    for (int32_t i = 0; i < n; ++i) {
        const auto bytes = vire::String2Bytes(fields[static_cast<size_t>(i)], width);
        std::copy(bytes.begin(), bytes.end(), out.buffer.begin() + static_cast<ptrdiff_t>(i * width));
    }
    out.count = n;
    return vire::kOk;
}

// "PROPERTY[n]" -> ("PROPERTY", n); no brackets -> (property, -1); -2 when the
// element part is not a number.
std::pair<std::string, int32_t> SplitElement(const std::string& property) {
    const size_t open = property.find('[');
    if (open == std::string::npos || property.back() != ']') return {property, -1};
    const std::string digits = property.substr(open + 1, property.size() - open - 2);
    if (digits.empty() || digits.size() > 6 ||
        !std::all_of(digits.begin(), digits.end(), [](char c) { return c >= '0' && c <= '9'; }))
        return {property.substr(0, open), -2};
    return {property.substr(0, open), std::stoi(digits)};
}

// A slow server keeps the caller waiting: with the test clock the wait is a
// step of the clock, so that tests see the time pass without sleeping.
void Wait(int32_t ms) {
    if (ms <= 0) return;
    if (vire::TestClockActive()) vire::AdvanceTestClock(ms);
    else std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}

}  // namespace

SimulatedAccelerator::SimulatedAccelerator(const std::string& configDir)
    : SimulatedAccelerator(configDir, LoadSimulationSettings(configDir)) {}

SimulatedAccelerator::SimulatedAccelerator(const std::string& configDir, SimulationSettings settings)
    : settings_(std::move(settings)), model_(BuildModel(configDir, settings_.seed)),
      history_(model_, settings_) {}

void SimulatedAccelerator::SetFault(const std::string& target, Fault fault) {
    std::lock_guard<std::mutex> lock(mutex_);
    settings_.faults[target] = fault;
}

void SimulatedAccelerator::ClearFault(const std::string& target) {
    std::lock_guard<std::mutex> lock(mutex_);
    settings_.faults.erase(target);
}

std::optional<Fault> SimulatedAccelerator::MeetFault(const Address& address) {
    for (const std::string& target : {address.ServerAddress(), address.server}) {
        const auto it = settings_.faults.find(target);
        if (it == settings_.faults.end()) continue;
        const Fault fault = it->second;
        if (fault.calls > 0 && --it->second.calls == 0) settings_.faults.erase(it);  // recovered
        return fault;
    }
    return std::nullopt;
}

vire::Status SimulatedAccelerator::Call(const std::string& fullDeviceName, const std::string& property,
                                        vire::DataObject& out, const vire::DataObject& in,
                                        int16_t access, int32_t timeoutMs) {
    const int32_t asked = out.count;
    out.count = 0;
    out.stamp = 0;
    const Address address = ParseAddress(fullDeviceName);
    std::unique_lock<std::mutex> lock(mutex_);
    if (const std::optional<Fault> fault = MeetFault(address)) {
        switch (fault->kind) {
        case Fault::Kind::Down: return vire::kLinkError;
        case Fault::Kind::Code: return fault->code;
        case Fault::Kind::Slow:
            lock.unlock();
            // The caller gives up at its time-out unless the answer comes first.
            if (fault->delayMs == 0 || fault->delayMs >= timeoutMs) {
                Wait(timeoutMs);
                return vire::kTimeout;
            }
            Wait(fault->delayMs);
            lock.lock();
            break;
        }
    }
    if (asked < 0) return vire::kOutOfRange;
    return Dispatch(address, property, out, in, access, asked);
}

vire::Status SimulatedAccelerator::Dispatch(const Address& address, const std::string& property,
                                            vire::DataObject& out, const vire::DataObject& in,
                                            int16_t access, int32_t asked) {
    const std::string device = address.ServerAddress() + (address.device.empty() ? "" : "/" + address.device);
    if (model_.thresholds.count({device, SplitElement(property).first}) != 0)
        return AccessThreshold(device, property, out, in, access, asked);
    if (access != vire::kAccessRead) return vire::kIllegalAccess;
    if (property == "PROPS" && address.device.empty()) return ReadProperties(address, out, in, asked);
    if (address.device == "#0" && property.size() > 4 && property.ends_with(".NAM"))
        return ReadNames(address, property.substr(0, property.size() - 4), out, asked);
    if (history_.Serves(address)) return history_.Read(address, property, out, in, asked);
    if (const auto it = model_.locations.find({device, property}); it != model_.locations.end()) {
        if (!vire::IsNameFormat(out.format)) return vire::kFormatMismatch;
        const size_t width = static_cast<size_t>(vire::FormatSize(out.format));
        return WriteFields(NameFields(it->second, width), out, Room(out, asked), width);
    }
    return ReadLive(address, property, out, asked);
}

vire::Status SimulatedAccelerator::UnknownAddress(const Address& address) const {
    const std::string server = address.ServerAddress();
    const bool serverKnown = std::any_of(model_.channels.begin(), model_.channels.end(),
                                         [&](const Channel& c) { return c.serverAddress == server; });
    if (!serverKnown) return vire::kLinkError;
    const bool deviceKnown = std::any_of(model_.channels.begin(), model_.channels.end(), [&](const Channel& c) {
        return c.serverAddress == server && c.device == address.device;
    });
    return deviceKnown ? vire::kUnknownProperty : vire::kUnknownDevice;
}

vire::Status SimulatedAccelerator::ReadLive(const Address& address, const std::string& property,
                                            vire::DataObject& out, int32_t asked) const {
    const std::string server = address.ServerAddress();
    const auto it = std::find_if(model_.channels.begin(), model_.channels.end(), [&](const Channel& c) {
        return c.serverAddress == server && c.device == address.device && c.property == property;
    });
    if (it == model_.channels.end()) return UnknownAddress(address);
    if (vire::CanonicalFormat(out.format) != vire::kFormatSingle) return vire::kFormatMismatch;
    const Channel& channel = *it;
    const int32_t n = std::min(Room(out, asked), channel.size);
    const int64_t now = vire::NowMilliseconds();
    for (int32_t i = 0; i < n; ++i) {
        const int32_t element = channel.reverse ? channel.size - 1 - i : i;
        vire::StoreFloat(out.buffer, 4 * static_cast<size_t>(i), SignalValue(channel.signal, element, now));
    }
    out.count = n;
    return vire::kOk;
}

vire::Status SimulatedAccelerator::ReadNames(const Address& address, const std::string& property,
                                             vire::DataObject& out, int32_t asked) const {
    const std::string server = address.ServerAddress();
    const auto it = std::find_if(model_.channels.begin(), model_.channels.end(), [&](const Channel& c) {
        return c.serverAddress == server && c.property == property;
    });
    if (it == model_.channels.end()) {
        Address probe = address;
        probe.device.clear();
        return UnknownAddress(probe) == vire::kLinkError ? vire::kLinkError : vire::kUnknownProperty;
    }
    if (!vire::IsNameFormat(out.format)) return vire::kFormatMismatch;
    const size_t width = static_cast<size_t>(vire::FormatSize(out.format));
    const std::vector<std::string> names = it->names.empty() ? std::vector<std::string>{"#0"} : it->names;
    return WriteFields(NameFields(names, width), out, Room(out, asked), width);
}

vire::Status SimulatedAccelerator::ReadProperties(const Address& address, vire::DataObject& out,
                                                  const vire::DataObject& in, int32_t asked) const {
    const std::string server = address.ServerAddress();
    std::vector<std::string> properties;
    for (const auto& c : model_.channels)
        if (c.serverAddress == server && std::find(properties.begin(), properties.end(), c.property) == properties.end())
            properties.push_back(c.property);
    for (const auto& [key, table] : model_.thresholds)
        if (key.first.rfind(server + "/", 0) == 0 &&
            std::find(properties.begin(), properties.end(), key.second) == properties.end())
            properties.push_back(key.second);
    if (properties.empty()) return vire::kLinkError;
    if (vire::FormatSize(out.format) != vire::kPropertyRecordWidth) return vire::kFormatMismatch;

    // The property asked about comes first; one the server lacks gets no answer.
    const std::string asking = in.buffer.empty() ? "" : vire::Bytes2String(in.buffer);
    std::vector<std::string> answer;
    if (!asking.empty()) {
        const auto it = std::find(properties.begin(), properties.end(), asking);
        if (it == properties.end()) return vire::kOk;
        answer.push_back(*it);
    }
    for (const auto& p : properties)
        if (p != asking) answer.push_back(p);
    const size_t width = static_cast<size_t>(vire::FormatSize(out.format));
    return WriteFields(NameFields(answer, width), out, Room(out, asked), width);
}

vire::Status SimulatedAccelerator::AccessThreshold(const std::string& device, const std::string& property,
                                                   vire::DataObject& out, const vire::DataObject& in,
                                                   int16_t access, int32_t asked) {
    const auto [base, element] = SplitElement(property);
    auto& table = model_.thresholds.at({device, base});
    const int32_t size = static_cast<int32_t>(table.size());
    if (access == vire::kAccessRead) {
        if (vire::CanonicalFormat(out.format) != vire::kFormatSingle) return vire::kFormatMismatch;
        if (element < -1 || element >= size) return vire::kOutOfRange;
        const int32_t first = std::max(element, 0);
        const int32_t n = std::min(Room(out, asked), element >= 0 ? 1 : size);
        for (int32_t i = 0; i < n; ++i) vire::StoreFloat(out.buffer, 4 * static_cast<size_t>(i), table[first + i]);
        out.count = n;
        return vire::kOk;
    }
    if (access != vire::kAccessWrite) return vire::kIllegalAccess;
    if (settings_.writers.count(vire::UserName()) == 0) return vire::kAccessDenied;
    if (vire::CanonicalFormat(in.format) != vire::kFormatSingle) return vire::kFormatMismatch;
    const int32_t given = std::min<int32_t>(in.count, static_cast<int32_t>(in.buffer.size() / 4));
    if (given < 1) return vire::kInvalidInput;
    const int32_t first = std::max(element, 0);
    if (element < -1 || first + given > size || (element >= 0 && given != 1)) return vire::kOutOfRange;
    for (int32_t i = 0; i < given; ++i) table[first + i] = vire::LoadFloat(in.buffer, 4 * static_cast<size_t>(i));
    return vire::kOk;
}

vire::LinkData SimulatedAccelerator::Poll(const vire::SubscriptionRequest& request) {
    vire::LinkData data;
    data.format = request.format;
    const Address address = ParseAddress(request.fullDeviceName);
    std::lock_guard<std::mutex> lock(mutex_);
    if (const std::optional<Fault> fault = MeetFault(address)) {
        // A live link never waits: a reading that would come later than the
        // next one is due fails; one delayed less is simply delivered.
        const bool late = fault->kind == Fault::Kind::Slow &&
                          (fault->delayMs == 0 || fault->delayMs >= request.intervalMs);
        if (fault->kind != Fault::Kind::Slow || late) {
            data.status = fault->kind == Fault::Kind::Down   ? vire::kLinkError
                          : fault->kind == Fault::Kind::Slow ? vire::kTimeout
                                                             : fault->code;
            return data;
        }
    }
    const int32_t width = std::max(vire::FormatSize(request.format), 1);
    const int32_t count = std::clamp(request.count, 0, 64000);
    data.bytes.resize(static_cast<size_t>(count) * static_cast<size_t>(width));
    vire::DataObject out{count, request.format, "", data.bytes};
    data.status = ReadLive(address, request.property, out, count);
    data.count = data.status == vire::kOk ? out.count : 0;
    data.bytes.resize(static_cast<size_t>(data.count) * static_cast<size_t>(width));
    return data;
}

std::shared_ptr<SimulatedAccelerator> InstallSimulatedAccelerator(const std::string& configDir) {
    auto accelerator = std::make_shared<SimulatedAccelerator>(configDir);
    vire::SetTransport(accelerator);
    return accelerator;
}

}  // namespace sim
