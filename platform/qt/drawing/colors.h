// The view tree's colours as the toolkit's.
#pragma once

#include <QColor>

#include "platform/ui/values/color.h"

namespace qt {

inline QColor toQColor(ui::Color c) { return QColor::fromRgba(c.argb); }

}  // namespace qt
