#include "Shells/Desktop/Views/Common/Look.hpp"

#include <QFontMetricsF>

#include <algorithm>

#include "Shells/Desktop/Views/Common/Change.hpp"

namespace ostrel {

void Look::set(const DesktopLook& look) {
  change(*this, isDark_, look.appearance == Appearance::dark, &Look::isDarkChanged);
  change(*this, textScale_, std::clamp(look.textScale, 1.0, 3.0), &Look::textScaleChanged);
}

double Look::widthOf(const QString& text, const QFont& font) const {
  return QFontMetricsF(font).horizontalAdvance(text);
}

}  // namespace ostrel
