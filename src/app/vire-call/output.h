// How vire-call shows an answer: as text for people, or as one JSON document.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "tool_support/json_document.h"
#include "vire/data_object.h"

// One answer: values decoded from the buffer by format, or names.
struct Answer {
    vire::Status status = 0;
    int16_t format = 0;
    int32_t stamp = 0;
    tool_support::JsonDocument values = tool_support::JsonDocument::array();  // decoded values
    std::vector<std::string> plain;  // the same values for the text output
};

// Decodes `count` elements of `format` from buffer. Formats without a known
// layout show each element as hexadecimal bytes.
void DecodeValues(Answer& answer, int16_t format, std::span<const std::byte> buffer, int32_t count);
void AddNames(Answer& answer, const std::vector<std::string>& names);

// Prints the answer; returns the exit status (0 only for status 0).
int PrintAnswer(const Answer& answer, bool json, const std::string& what);
