// Numbers as the window writes and reads them in its text boxes and grids.
#pragma once

#include <string>

namespace viewer {

// A plot limit for a range box: the shortest text that reads back as the
// same single-precision value ("5", "-0.5", "1e+06").
std::string LimitText(double value);

// A range box's text as a number, read as leniently as the configuration
// files' numbers: leading blanks, a sign, digits; what follows is ignored;
// no number at all reads as 0.
double NumberOfText(const std::string& text);

// A value in the item grids: exactly 0 gives "0"; 0.01 <= |v| <= 9999 four
// decimals ("###0.0000"); anything else scientific ("1.23E+04").
std::string GridValueText(float value);

// A value in the machine overview grid: up to 10000 one decimal ("###0.0");
// above it "? (10^30)", the overview's no-reading marker.
std::string OverviewValueText(float value);

}  // namespace viewer
