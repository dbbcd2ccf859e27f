// Back and fore colours of the window's plain controls (text boxes, check
// boxes, buttons), given as 0x00BBGGRR values. The values are also kept as
// the properties "backColour" and "foreColour", so that what the window
// asked for can be read back exactly.
#pragma once

#include <QWidget>
#include <cstdint>

namespace viewer {

void PaintControl(QWidget* control, uint32_t back, uint32_t fore);
uint32_t BackColourOf(const QWidget* control);
uint32_t ForeColourOf(const QWidget* control);

}  // namespace viewer
