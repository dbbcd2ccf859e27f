// Index checks of the controls: an index outside a control's rows, columns or
// counts is the program's run-time error (catalogue::RuntimeError, kind
// OutOfBounds), which the window's handlers report and survive.
#pragma once

#include <string>

#include "catalogue/runtime_error.h"

namespace ui {

// Throws unless lower <= index <= upper. `what` names the control and the
// index ("GridSelected row").
inline void CheckIndex(const std::string& what, long index, long lower, long upper) {
    if (index >= lower && index <= upper) return;
    throw catalogue::RuntimeError(catalogue::ErrorKind::OutOfBounds,
                                  what + ": index " + std::to_string(index) + " outside " +
                                      std::to_string(lower) + ".." + std::to_string(upper));
}

}  // namespace ui
