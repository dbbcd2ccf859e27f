#include "vire/formats.h"

#include <array>
#include <utility>

namespace vire {
namespace {

struct FormatInfo {
    int16_t code;
    const char* name;
    int32_t size;  // bytes per element
};

// Sizes follow the names: a NAMEn field is n characters, an "I" after it a
// 32-bit integer; FLT and LNG/INT parts are 4 bytes, DBL 8, SHT 2.
constexpr std::array<FormatInfo, 38> kFormats{{
    {512, "DOUBLE", 8},     {513, "SHORT", 2},         {514, "BYTE", 1},
    {515, "LONG", 4},       {516, "TEXT", 1},          {517, "SINGLE", 4},
    {519, "STRUCT", 0},     {520, "NAME8", 8},         {521, "NAME16", 16},
    {522, "NAME16FI", 24},  {523, "BIT", 4},           {524, "HITTS", 8},
    {525, "NAME32", 32},    {526, "FLTINT", 8},        {527, "LNGINT", 8},
    {528, "DBLINT", 12},    {530, "INTFLTINT", 12},    {531, "NAME48", 48},
    {532, "NAME8I", 12},    {533, "NAME16I", 20},      {534, "NAME32I", 36},
    {535, "NAME48I", 52},   {536, "USTRING", 0},       {537, "FLTFLTINT", 12},
    {538, "FLTINTINT", 12}, {539, "INTFLTFLTFLT", 16}, {540, "SPECTRUM", 0},
    {541, "INTINTINTINT", 16}, {542, "WINDOW", 0},     {543, "FLTFLT", 8},
    {544, "INTFLTSHTSHT", 12}, {545, "BOOLEAN", 1},    {546, "INTINTFLTFLT", 16},
    {547, "FLTINTFLTINT", 16}, {548, "NAME64", 64},    {549, "NAME64I", 68},
    {550, "LNGDBL", 12},    {552, "DBLDBL", 16},
}};

const FormatInfo* Find(int16_t code) {
    const int16_t canonical = CanonicalFormat(code);
    for (const auto& info : kFormats)
        if (info.code == canonical) return &info;
    return nullptr;
}

}  // namespace

int16_t CanonicalFormat(int16_t code) {
    return code < 512 ? static_cast<int16_t>(code + 512) : code;
}

std::string FormatName(int16_t code) {
    const FormatInfo* info = Find(code);
    return info ? info->name : "NULL";
}

int32_t FormatSize(int16_t code) {
    const FormatInfo* info = Find(code);
    return info ? info->size : 0;
}

bool IsNameFormat(int16_t code) {
    const std::string name = FormatName(code);
    return name.rfind("NAME", 0) == 0 && name.back() != 'I';
}

int16_t FormatCode(const std::string& name) {
    for (const auto& info : kFormats)
        if (name == info.name) return info.code;
    return 0;
}

}  // namespace vire
