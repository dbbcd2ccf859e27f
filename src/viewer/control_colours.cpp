#include "viewer/control_colours.h"

#include <QPalette>

#include "ui/plot/colour.h"

namespace viewer {

void PaintControl(QWidget* control, uint32_t back, uint32_t fore) {
    QPalette palette = control->palette();
    const QColor backColour = ui::ToQColor(back);
    const QColor foreColour = ui::ToQColor(fore);
    for (QPalette::ColorRole role : {QPalette::Window, QPalette::Base, QPalette::Button}) palette.setColor(role, backColour);
    for (QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(role, foreColour);
    control->setPalette(palette);
    control->setAutoFillBackground(true);
    control->setProperty("backColour", back);
    control->setProperty("foreColour", fore);
}

uint32_t BackColourOf(const QWidget* control) { return control->property("backColour").toUInt(); }
uint32_t ForeColourOf(const QWidget* control) { return control->property("foreColour").toUInt(); }

}  // namespace viewer
