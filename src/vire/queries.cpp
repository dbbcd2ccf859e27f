#include "vire/queries.h"

#include <algorithm>
#include <cstdint>

#include "vire/completion_codes.h"
#include "vire/formats.h"
#include "vire/link.h"
#include "vire/utils.h"
#include "vire/wire.h"

namespace vire {
namespace {

constexpr int32_t kQueryTimeoutMs = 1000;

std::string TrimBlanks(const std::string& text) {
    const auto first = text.find_first_not_of(' ');
    if (first == std::string::npos) return "";
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string FieldAt(const std::vector<std::byte>& buffer, int32_t index, int32_t width) {
    return Bytes2String(std::span<const std::byte>(buffer).subspan(
        static_cast<size_t>(index) * width, static_cast<size_t>(width)));
}

}  // namespace

Status GetProperties(const std::string& fullDeviceName, const std::string& property,
                     PropertyList& result) {
    std::vector<std::byte> records(static_cast<size_t>(kMaxPropertyRecords) * kPropertyRecordWidth);
    std::vector<std::byte> name = String2Bytes(property, kPropertyRecordWidth);
    DataObject out{kMaxPropertyRecords, kFormatName32, "", records};
    const DataObject in{1, kFormatName32, "", name};
    const Status status =
        LinkCall(fullDeviceName, "PROPS", out, in, kAccessRead, kQueryTimeoutMs);
    result = PropertyList{};
    if (status != kOk) return status;
    result.format = out.format;
    const int32_t delivered = std::clamp(out.count, 0, kMaxPropertyRecords);
    for (int32_t i = 0; i < delivered; ++i)
        result.names.push_back(TrimBlanks(FieldAt(records, i, kPropertyRecordWidth)));
    return result.names.empty() ? kNoData : kOk;
}

Status GetDeviceNames(const std::string& serverName, const std::string& property,
                      int32_t& count, std::vector<std::string>& names) {
    if (count < 0 || count > kMaxNameCount) return kOutOfRange;
    const int32_t asked = count > 0 ? count : kDefaultNameCount;
    std::vector<std::byte> buffer(static_cast<size_t>(asked) * kDeviceNameWidth);
    DataObject out{asked, kFormatName16, "", buffer};
    const DataObject in{};
    const Status status = LinkCall(serverName + "/#0", property + ".NAM", out, in, kAccessRead,
                                   kQueryTimeoutMs);
    if (status != kOk) return status;

    names.clear();
    const int32_t delivered = std::clamp(out.count, 0, asked);
    if (delivered > 0 && TrimBlanks(FieldAt(buffer, 0, kDeviceNameWidth)) == "#0") {
        for (int32_t i = 0; i < asked; ++i) names.push_back("#" + std::to_string(i));
        count = asked;
        return kOk;
    }
    std::string pending;  // a long name collected over its continued fields
    for (int32_t i = 0; i < delivered; ++i) {
        const std::string field = FieldAt(buffer, i, kDeviceNameWidth);
        if (static_cast<int32_t>(field.size()) == kDeviceNameWidth && field.back() == '&') {
            pending += field.substr(0, field.size() - 1);
            continue;
        }
        names.push_back(TrimBlanks(pending + field));
        pending.clear();
    }
    // A continuation mark on the last field delivered: keep what came.
    if (!pending.empty()) names.push_back(TrimBlanks(pending));
    count = static_cast<int32_t>(names.size());
    return kOk;
}

Status ReadFloats(const std::string& fullDeviceName, const std::string& property,
                  std::span<float> values, int32_t timeoutMs) {
    if (values.size() > static_cast<size_t>(INT32_MAX / 4)) return kOutOfRange;
    std::vector<std::byte> buffer(values.size() * 4);
    DataObject out{static_cast<int32_t>(values.size()), kFormatSingle, "", buffer};
    const Status status = LinkCall(fullDeviceName, property, out, DataObject{}, kAccessRead, timeoutMs);
    if (status != kOk) return status;
    const size_t delivered = static_cast<size_t>(std::clamp<int32_t>(out.count, 0, static_cast<int32_t>(values.size())));
    for (size_t i = 0; i < delivered; ++i) values[i] = LoadFloat(buffer, 4 * i);
    return kOk;
}

}  // namespace vire
