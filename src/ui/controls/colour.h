// Colours as the window logic writes them: 0x00BBGGRR values, and the system
// colours 0x800000NN (NN = the system colour index) that buttons and grids use
// for their "button face" and "window" defaults.
#pragma once

#include <QColor>
#include <cstdint>

class QPalette;

namespace ui {

// The system colour indices the window uses.
inline constexpr uint32_t kSystemWindow = 0x80000005;
inline constexpr uint32_t kSystemWindowText = 0x80000008;
inline constexpr uint32_t kSystemButtonFace = 0x8000000F;
inline constexpr uint32_t kSystemButtonText = 0x80000012;

// A colour value as a QColor. System colours are taken from `palette` (the
// application's when none is given); unknown system indices give the window
// colour. Any other high byte is ignored: only the low 24 bits name a colour.
QColor ResolveColour(uint32_t value, const QPalette* palette = nullptr);
// A QColor as a 0x00BBGGRR value (alpha dropped).
uint32_t ColourValue(const QColor& colour);

}  // namespace ui
