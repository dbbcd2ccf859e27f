#include "ui/controls/colour.h"

#include <QGuiApplication>
#include <QPalette>

#include "ui/plot/colour.h"

namespace ui {

QColor ResolveColour(uint32_t value, const QPalette* palette) {
    if ((value & 0xFF000000u) == 0x80000000u) {
        const QPalette colours = palette ? *palette : QGuiApplication::palette();
        switch (value) {
            case kSystemWindowText: return colours.color(QPalette::WindowText);
            case kSystemButtonFace: return colours.color(QPalette::Button);
            case kSystemButtonText: return colours.color(QPalette::ButtonText);
            default: return colours.color(QPalette::Base);
        }
    }
    return ToQColor(value);
}

uint32_t ColourValue(const QColor& colour) {
    const QColor rgb = colour.toRgb();
    return static_cast<uint32_t>(rgb.red()) | (static_cast<uint32_t>(rgb.green()) << 8) |
           (static_cast<uint32_t>(rgb.blue()) << 16);
}

}  // namespace ui
