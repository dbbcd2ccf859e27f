// Colours as the window logic gives them: 24-bit values written 0x00BBGGRR.
#pragma once

#include <QColor>
#include <cstdint>

namespace ui {

using Colour = uint32_t;

inline constexpr Colour kBlack = 0x000000;
inline constexpr Colour kWhite = 0xFFFFFF;

// Red is the low byte. Anything above the 24 colour bits (system colour
// indices of other controls) is ignored rather than misread as a colour.
inline QColor ToQColor(Colour colour) {
    return QColor(static_cast<int>(colour & 0xFF), static_cast<int>((colour >> 8) & 0xFF),
                  static_cast<int>((colour >> 16) & 0xFF));
}

}  // namespace ui
