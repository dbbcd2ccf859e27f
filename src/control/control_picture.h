// The picture the control shows on the host's window: a small spectrum, so
// that an operator recognises what double-clicking it opens.
#pragma once

#include <QPixmap>

namespace control {

QPixmap ControlPicture();

}  // namespace control
