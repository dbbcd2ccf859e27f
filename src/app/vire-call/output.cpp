#include "output.h"

#include <cstdio>
#include <iostream>

#include "tool_support/json_writer.h"
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

std::string Quoted(const std::string& text) { return "\"" + JsonEscape(text) + "\""; }

void Add(Answer& answer, const std::string& json, const std::string& plain) {
    answer.texts.push_back(json);
    answer.plain.push_back(plain);
}

}  // namespace

void DecodeValues(Answer& answer, int16_t format, std::span<const std::byte> buffer, int32_t count) {
    const int16_t code = vire::CanonicalFormat(format);
    if (code == vire::kFormatFltInt) {
        for (const vire::FltInt& record : vire::DecodeFltInt(buffer, count)) {
            const std::string v = ShortestFloat(record.value);
            const std::string t = std::to_string(record.time);
            Add(answer, "{\"value\":" + v + ",\"time\":" + t + "}", v + "  " + t + "  " + vire::CTIME(record.time));
        }
        return;
    }
    const size_t width = static_cast<size_t>(vire::FormatSize(format));
    for (int32_t i = 0; i < count; ++i) {
        const size_t at = static_cast<size_t>(i) * width;
        if (width == 0 || at + width > buffer.size()) break;
        const auto element = buffer.subspan(at, width);
        if (code == vire::kFormatSingle) {
            const std::string v = ShortestFloat(vire::LoadFloat(element, 0));
            Add(answer, v, v);
        } else if (code == vire::kFormatLong) {
            const std::string v = std::to_string(vire::LoadInt32(element, 0));
            Add(answer, v, v);
        } else if (code == vire::kFormatShort) {
            const auto v = std::to_string(static_cast<int16_t>(static_cast<uint16_t>(element[0]) |
                                                                (static_cast<uint16_t>(element[1]) << 8)));
            Add(answer, v, v);
        } else if (vire::IsNameFormat(format) || code == vire::kFormatText) {
            const std::string v = vire::Bytes2String(element);
            Add(answer, Quoted(v), v);
        } else {
            Add(answer, Quoted(Hex(element)), Hex(element));
        }
    }
}

void AddNames(Answer& answer, const std::vector<std::string>& names) {
    for (const auto& name : names) Add(answer, Quoted(name), name);
}

int PrintAnswer(const Answer& answer, bool json, const std::string& what) {
    const std::string errorText = vire::ErrorText(answer.status);
    if (json) {
        std::string doc = "{\"status\":" + std::to_string(answer.status) + ",\"errorText\":" + Quoted(errorText) +
                          ",\"format\":" + Quoted(vire::FormatName(answer.format));
        if (answer.stamp != 0) doc += ",\"stamp\":" + std::to_string(answer.stamp);
        doc += ",\"values\":[";
        for (size_t i = 0; i < answer.texts.size(); ++i) doc += (i ? "," : "") + answer.texts[i];
        std::cout << doc << "]}\n";
    } else {
        std::cout << what << ": " << answer.plain.size() << " " << vire::FormatName(answer.format) << "\n";
        if (answer.stamp != 0) std::cout << "stamp " << answer.stamp << "  " << vire::CTIME(answer.stamp) << "\n";
        for (size_t i = 0; i < answer.plain.size(); ++i) std::cout << i << "  " << answer.plain[i] << "\n";
        std::cout << "status " << answer.status << ": " << errorText << "\n";
    }
    return answer.status == 0 ? 0 : 1;
}
