#include "output.h"

#include <cstdio>
#include <iostream>

#include "vire/fltint.h"
#include "vire/formats.h"
#include "vire/link.h"
#include "vire/utils.h"
#include "vire/wire.h"

namespace {

std::string Hex(std::span<const std::byte> bytes) {
    std::string text;
    char pair[3];
    for (std::byte b : bytes) {
        std::snprintf(pair, sizeof pair, "%02x", static_cast<unsigned>(b));
        text += pair;
    }
    return text;
}

using tool_support::JsonDocument;
using tool_support::ShortestFloat;

void Add(Answer& answer, JsonDocument value, const std::string& plain) {
    answer.values.push_back(std::move(value));
    answer.plain.push_back(plain);
}

JsonDocument Text(const std::string& text) { return tool_support::Utf8Text(text); }

}  // namespace

void DecodeValues(Answer& answer, int16_t format, std::span<const std::byte> buffer, int32_t count) {
    const int16_t code = vire::CanonicalFormat(format);
    if (code == vire::kFormatFltInt) {
        for (const vire::FltInt& record : vire::DecodeFltInt(buffer, count)) {
            Add(answer, {{"value", record.value}, {"time", record.time}},
                ShortestFloat(record.value) + "  " + std::to_string(record.time) + "  " + vire::CTIME(record.time));
        }
        return;
    }
    const size_t width = static_cast<size_t>(vire::FormatSize(format));
    for (int32_t i = 0; i < count; ++i) {
        const size_t at = static_cast<size_t>(i) * width;
        if (width == 0 || at + width > buffer.size()) break;
        const auto element = buffer.subspan(at, width);
        if (code == vire::kFormatSingle) {
            const float v = vire::LoadFloat(element, 0);
            Add(answer, v, ShortestFloat(v));
        } else if (code == vire::kFormatLong) {
            const int32_t v = vire::LoadInt32(element, 0);
            Add(answer, v, std::to_string(v));
        } else if (code == vire::kFormatShort) {
            const auto v = static_cast<int16_t>(static_cast<uint16_t>(element[0]) | (static_cast<uint16_t>(element[1]) << 8));
            Add(answer, v, std::to_string(v));
        } else if (vire::IsNameFormat(format) || code == vire::kFormatText) {
            const std::string v = vire::Bytes2String(element);
            Add(answer, Text(v), v);
        } else {
            Add(answer, Hex(element), Hex(element));
        }
    }
}

void AddNames(Answer& answer, const std::vector<std::string>& names) {
    for (const auto& name : names) Add(answer, Text(name), name);
}

int PrintAnswer(const Answer& answer, bool json, const std::string& what) {
    const std::string errorText = vire::ErrorText(answer.status);
    if (json) {
        JsonDocument document = {
            {"status", answer.status}, {"errorText", Text(errorText)}, {"format", Text(vire::FormatName(answer.format))}};
        if (answer.stamp != 0) document["stamp"] = answer.stamp;
        document["values"] = answer.values;
        std::cout << tool_support::JsonText(document) << "\n";
    } else {
        std::cout << what << ": " << answer.plain.size() << " " << vire::FormatName(answer.format) << "\n";
        if (answer.stamp != 0) std::cout << "stamp " << answer.stamp << "  " << vire::CTIME(answer.stamp) << "\n";
        for (size_t i = 0; i < answer.plain.size(); ++i) std::cout << i << "  " << answer.plain[i] << "\n";
        std::cout << "status " << answer.status << ": " << errorText << "\n";
    }
    return answer.status == 0 ? 0 : 1;
}
