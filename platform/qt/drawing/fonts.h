// The house's fonts as the toolkit's. The system faces are one sans-serif family; icon
// families are looked for among the installed fonts. Kept for the life of the process;
// main thread, points.
#pragma once

#include <QFont>

#include "platform/ui/values/font.h"

namespace qt {

// The reader's text size: a factor on every font from now on.
void setTextScale(double scale);
double textScale();
// What an enlarged font may be shrunk by before words are left out: back to the size that
// it was made with. Who asks for larger text loses nothing by it.
double unenlarged();

// At the reader's text size. Metrics don't depend on the screen's scale: a text breaks alike
// on each.
const QFont& toQFont(const ui::Font& font);

}  // namespace qt
