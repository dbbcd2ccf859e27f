// A small JSON writer for the tool's documents.
//
// Strings are written as stored; bytes that are not valid UTF-8 (tables
// written on other systems are often in a single-byte code page) are taken as
// Latin-1 so the document stays valid UTF-8. Floats are written as the
// shortest text that reads back to the same 32-bit value.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

class JsonWriter {
public:
    JsonWriter& BeginObject();
    JsonWriter& EndObject();
    JsonWriter& BeginArray();
    JsonWriter& EndArray();
    JsonWriter& Key(std::string_view key);
    JsonWriter& String(std::string_view value);
    JsonWriter& Int(int64_t value);
    JsonWriter& Float(float value);
    JsonWriter& Bool(bool value);
    JsonWriter& StringArray(const std::vector<std::string>& values);
    JsonWriter& FloatArray(const std::vector<float>& values);

    // Key and value in one call.
    template <typename T>
    JsonWriter& Field(std::string_view key, const T& value);

    const std::string& Text() const { return text_; }

private:
    void Separate();
    std::string text_;
    std::vector<bool> firstInScope_;  // per open scope: no value written yet
    bool afterKey_ = false;
};

std::string JsonEscape(std::string_view value);
std::string ShortestFloat(float value);

template <>
inline JsonWriter& JsonWriter::Field(std::string_view key, const std::string& value) {
    return Key(key).String(value);
}
template <>
inline JsonWriter& JsonWriter::Field(std::string_view key, const bool& value) {
    return Key(key).Bool(value);
}
template <>
inline JsonWriter& JsonWriter::Field(std::string_view key, const float& value) {
    return Key(key).Float(value);
}
template <typename T>
JsonWriter& JsonWriter::Field(std::string_view key, const T& value) {
    return Key(key).Int(static_cast<int64_t>(value));
}
