// Text with attributes as the small HTML that the toolkit's text editor reads.
#pragma once

#include <QString>

#include "platform/ui/values/rich_text.h"

namespace qt {

QString toHtml(const ui::AttributedText& text, const ui::Font& base, ui::Color color);

}  // namespace qt
