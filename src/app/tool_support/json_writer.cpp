#include "tool_support/json_writer.h"

#include <charconv>
#include <cmath>

namespace {

// Length of a valid UTF-8 sequence at text[i], or 0.
std::size_t Utf8SequenceLength(std::string_view text, std::size_t i) {
    const auto byte = [&](std::size_t k) { return static_cast<unsigned char>(text[k]); };
    const unsigned char lead = byte(i);
    std::size_t length = 0;
    uint32_t code = 0;
    if (lead >= 0xC2 && lead <= 0xDF) length = 2, code = lead & 0x1F;
    else if (lead >= 0xE0 && lead <= 0xEF) length = 3, code = lead & 0x0F;
    else if (lead >= 0xF0 && lead <= 0xF4) length = 4, code = lead & 0x07;
    else return 0;
    if (i + length > text.size()) return 0;
    for (std::size_t k = 1; k < length; ++k) {
        if ((byte(i + k) & 0xC0) != 0x80) return 0;
        code = (code << 6) | (byte(i + k) & 0x3F);
    }
    // Overlong forms, surrogates and code points past U+10FFFF are not UTF-8.
    if ((length == 3 && code < 0x800) || (length == 4 && (code < 0x10000 || code > 0x10FFFF)) ||
        (code >= 0xD800 && code <= 0xDFFF))
        return 0;
    return length;
}

}  // namespace

std::string JsonEscape(std::string_view value) {
    static const char* hex = "0123456789abcdef";
    std::string out;
    out.reserve(value.size() + 2);
    for (std::size_t i = 0; i < value.size(); ++i) {
        const auto c = static_cast<unsigned char>(value[i]);
        if (c == '"') out += "\\\"";
        else if (c == '\\') out += "\\\\";
        else if (c == '\n') out += "\\n";
        else if (c == '\r') out += "\\r";
        else if (c == '\t') out += "\\t";
        else if (c < 0x20) {
            out += "\\u00";
            out += hex[c >> 4];
            out += hex[c & 0xF];
        } else if (c < 0x80) {
            out += static_cast<char>(c);
        } else if (const std::size_t length = Utf8SequenceLength(value, i)) {
            out.append(value.substr(i, length));
            i += length - 1;
        } else {  // a Latin-1 byte
            out += static_cast<char>(0xC0 | (c >> 6));
            out += static_cast<char>(0x80 | (c & 0x3F));
        }
    }
    return out;
}

std::string ShortestFloat(float value) {
    if (!std::isfinite(value)) return "null";  // the readers never store these
    char buffer[64];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    return std::string(buffer, result.ptr);
}

void JsonWriter::Separate() {
    if (afterKey_) {
        afterKey_ = false;
        return;
    }
    if (!firstInScope_.empty()) {
        if (!firstInScope_.back()) text_ += ',';
        firstInScope_.back() = false;
    }
}

JsonWriter& JsonWriter::BeginObject() {
    Separate();
    text_ += '{';
    firstInScope_.push_back(true);
    return *this;
}

JsonWriter& JsonWriter::EndObject() {
    text_ += '}';
    firstInScope_.pop_back();
    return *this;
}

JsonWriter& JsonWriter::BeginArray() {
    Separate();
    text_ += '[';
    firstInScope_.push_back(true);
    return *this;
}

JsonWriter& JsonWriter::EndArray() {
    text_ += ']';
    firstInScope_.pop_back();
    return *this;
}

JsonWriter& JsonWriter::Key(std::string_view key) {
    Separate();
    text_ += '"';
    text_ += JsonEscape(key);
    text_ += "\":";
    afterKey_ = true;
    return *this;
}

JsonWriter& JsonWriter::String(std::string_view value) {
    Separate();
    text_ += '"';
    text_ += JsonEscape(value);
    text_ += '"';
    return *this;
}

JsonWriter& JsonWriter::Int(int64_t value) {
    Separate();
    text_ += std::to_string(value);
    return *this;
}

JsonWriter& JsonWriter::Float(float value) {
    Separate();
    text_ += ShortestFloat(value);
    return *this;
}

JsonWriter& JsonWriter::Bool(bool value) {
    Separate();
    text_ += value ? "true" : "false";
    return *this;
}

JsonWriter& JsonWriter::StringArray(const std::vector<std::string>& values) {
    BeginArray();
    for (const auto& value : values) String(value);
    return EndArray();
}

JsonWriter& JsonWriter::FloatArray(const std::vector<float>& values) {
    BeginArray();
    for (float value : values) Float(value);
    return EndArray();
}
