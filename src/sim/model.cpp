#include "sim/model.h"

#include <algorithm>
#include <set>

#include "catalogue/catalogue.h"
#include "catalogue/catalogue_window.h"
#include "catalogue/readers.h"
#include "sim/lattice.h"
#include "vire/history_servers.h"

namespace sim {
namespace {

// The archiver a history address names: the last part of a full address
// ("/ORKA/OKHISTORY"), or the table's server for a machine name ("ORKA").
std::string ArchiverOf(const std::string& arcServer) {
    if (arcServer.empty()) return "";
    const std::string server = vire::HistoryServerName(arcServer);
    return server.substr(server.find_last_of('/') + 1);
}

uint64_t DeviceKey(uint64_t seed, const std::string& context, const std::string& server,
                   const std::string& device) {
    return Mix(seed, HashText(context + "/" + server + "/" + device));
}

bool SharesDeviceKey(SignalKind kind) {
    return kind == SignalKind::CurrentSet || kind == SignalKind::CurrentAct || kind == SignalKind::CurrentDiff ||
           kind == SignalKind::Voltage;
}

Channel MakeChannel(const catalogue::SpectrumRecord& record, uint64_t seed, int32_t size) {
    Channel c;
    c.context = record.Context;
    c.server = record.Server;
    c.device = record.Device;
    // History files keep "SERVER/DEVICE" in one field.
    if (const size_t slash = c.server.find('/'); c.device.empty() && slash != std::string::npos) {
        c.device = c.server.substr(slash + 1);
        c.server = c.server.substr(0, slash);
    }
    c.property = record.Property;
    c.serverAddress = "/" + c.context + "/" + c.server;
    c.hstServer = record.HstServer;
    c.hstProperty = record.HstProperty;
    c.archiver = ArchiverOf(record.ArcServer);
    c.arcProperty = record.ArcProperty;
    c.size = size;
    c.reverse = record.Reverse;
    c.signal.kind = KindOfProperty(c.property);
    // A power supply's set, actual, difference and voltage values belong
    // together, so they share the device's key; every other quantity has its
    // own, or a monitor's two planes would read the same numbers.
    c.signal.key = DeviceKey(seed, c.context, c.server, c.device);
    if (!SharesDeviceKey(c.signal.kind)) c.signal.key = Mix(c.signal.key, HashText(c.property));
    c.signal.max = record.Max;
    c.signal.min = record.Min;
    if (c.signal.max <= c.signal.min) c.signal.max = c.signal.min + 1.0f;
    c.signal.size = size;
    c.signal.currentScale = c.signal.max;
    c.names = ElementNames(c.context, c.server, c.device, size);
    return c;
}

class Reader {
public:
    Reader(const std::string& configDir, uint64_t seed) : seed_(seed) {
        std::string dir = configDir;
        while (dir.size() > 1 && (dir.back() == '/' || dir.back() == '\\')) dir.pop_back();
        configPath_ = dir + "/";
    }

    Model Read() {
        catalogue::Catalogue cat = Fresh();
        const std::string machines = configPath_ + "config_machines.csv";
        if (catalogue::ReadMachineFile(cat, machines) != 0) {
            Problem(cat);
            return std::move(model_);
        }
        for (int16_t m = 0; m < cat.MachineCount; ++m) {
            ReadSubsystems(cat.MachineList[m].ConfigFile);
            ReadHistory(cat.MachineList[m].MachineFile);
        }
        ShareCurrentScales();
        return std::move(model_);
    }

private:
    catalogue::Catalogue Fresh() const {
        catalogue::Catalogue cat;
        cat.ConfigPath = configPath_;
        return cat;
    }

    void Problem(const catalogue::Catalogue& cat) {
        model_.problems.push_back(cat.LastReport.file + " line " + std::to_string(cat.LastReport.line) +
                                  ": " + cat.LastReport.error);
    }

    bool FirstVisit(const std::string& file) { return !file.empty() && visited_.insert(file).second; }

    void ReadSubsystems(const std::string& file) {
        if (!FirstVisit(file)) return;
        catalogue::Catalogue cat = Fresh();
        catalogue::QuietWindow window;
        if (catalogue::ReadSubsystemList(cat, window, configPath_ + file) != 0) Problem(cat);
        for (int16_t s = 0; s < cat.LastReport.rowsStored; ++s)
            ReadChannels(cat.SubsystemList[s].Directory + cat.SubsystemList[s].FileName);
    }

    void ReadChannels(const std::string& path) {
        if (!FirstVisit(path)) return;
        catalogue::Catalogue cat = Fresh();
        catalogue::QuietWindow window;
        if (catalogue::ReadSpectrumConfig(cat, window, path) != 0) Problem(cat);
        for (int16_t i = 0; i < cat.LastReport.rowsStored; ++i) {
            const catalogue::SpectrumRecord& record = cat.SpectrumList[i];
            if (record.Context.empty() || record.Server.empty() || record.Property.empty()) continue;
            // The reader refuses sizes beyond a spectrum; the clamp keeps a
            // record set some other way from sizing the names past reason.
            AddChannel(MakeChannel(record, seed_, std::clamp<int32_t>(record.Size, 1, catalogue::kMaxSpectrumPoints)));
            AddThresholdTable(record);
            AddLocations(record);
        }
    }

    void ReadHistory(const std::string& file) {
        if (!FirstVisit(file)) return;
        catalogue::Catalogue cat = Fresh();
        if (catalogue::ReadHistoryFile(cat, configPath_ + file) != 0) Problem(cat);
        for (int16_t i = 0; i < cat.HistoryCount; ++i) {
            const catalogue::SpectrumRecord& record = cat.HistoryList[i];
            if (record.Context.empty() || record.Server.empty() || record.Property.empty()) continue;
            AddChannel(MakeChannel(record, seed_, 1));
        }
    }

    // Several files may name the same live channel (the operations entry
    // repeats the machines' power supplies): it is one device.
    void AddChannel(Channel channel) {
        for (const auto& known : model_.channels)
            if (known.serverAddress == channel.serverAddress && known.device == channel.device &&
                known.property == channel.property)
                return;
        model_.channels.push_back(std::move(channel));
    }

    void AddThresholdTable(const catalogue::SpectrumRecord& record) {
        const std::string& source = record.ThresholdSource;
        if (!catalogue::IsThresholdLinkSource(source)) return;
        const size_t open = source.find('[');
        const std::string device = source.substr(0, open);
        const std::string property = source.substr(open + 1, source.size() - open - 2);
        auto& table = model_.thresholds[{device, property}];
        if (static_cast<int32_t>(table.size()) >= record.Size) return;
        const uint64_t key = Mix(seed_, HashText(source));
        const float span = std::max(record.Max - record.Min, 1.0f);
        for (int32_t i = static_cast<int32_t>(table.size()); i < record.Size; ++i)
            table.push_back(record.Min + span * static_cast<float>(0.6 + 0.2 * Unit(Mix(key, i))));
    }

    void AddLocations(const catalogue::SpectrumRecord& record) {
        if (!record.HasExtDevName || record.ExtDevNameDev.empty()) return;
        auto& list = model_.locations[{record.ExtDevNameDev, record.ExtDevNameProp}];
        if (!list.empty()) return;
        list = ElementLocations(ElementNames(record.Context, record.Server, record.Device, record.Size));
    }

    // A power supply's difference and voltage channels have ranges of their
    // own; their currents follow the device's set value and its range.
    void ShareCurrentScales() {
        for (auto& c : model_.channels) {
            for (const auto& set : model_.channels)
                if (set.signal.kind == SignalKind::CurrentSet && set.serverAddress == c.serverAddress &&
                    set.device == c.device)
                    c.signal.currentScale = set.signal.max;
        }
    }

    uint64_t seed_;
    std::string configPath_;
    std::set<std::string> visited_;
    Model model_;
};

}  // namespace

std::string Address::ServerAddress() const {
    if (context.empty()) return server;
    return "/" + context + "/" + server;
}

Address ParseAddress(const std::string& fullDeviceName) {
    Address address;
    if (fullDeviceName.empty() || fullDeviceName[0] != '/') {
        address.server = fullDeviceName;
        return address;
    }
    const size_t second = fullDeviceName.find('/', 1);
    address.context = fullDeviceName.substr(1, second == std::string::npos ? std::string::npos : second - 1);
    if (second == std::string::npos) return address;
    const size_t third = fullDeviceName.find('/', second + 1);
    address.server = fullDeviceName.substr(second + 1, third == std::string::npos ? std::string::npos
                                                                                   : third - second - 1);
    if (third != std::string::npos) address.device = fullDeviceName.substr(third + 1);
    // A history file keeps "SERVER/DEVICE" in its SERVER field and no device:
    // an address built from it as server + "/" + device ends in "/".
    while (!address.device.empty() && address.device.back() == '/') address.device.pop_back();
    return address;
}

}  // namespace sim

namespace sim {

Model BuildModel(const std::string& configDir, uint64_t seed) { return Reader(configDir, seed).Read(); }

}  // namespace sim
