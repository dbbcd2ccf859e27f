// Object and accessible names of the window's controls: the system name as
// the object name (arrays as "ChkProps_0"), the caption as the accessible
// name, so that keyboard users, screen readers and scripted checks find them.
#pragma once

#include <QString>
#include <QWidget>

namespace viewer {

inline QString IndexedName(const char* name, int index) {
    return QString("%1_%2").arg(QLatin1String(name)).arg(index);
}

template <typename W>
W* Named(W* widget, const QString& objectName, const QString& caption) {
    widget->setObjectName(objectName);
    widget->setAccessibleName(caption);
    return widget;
}

}  // namespace viewer
