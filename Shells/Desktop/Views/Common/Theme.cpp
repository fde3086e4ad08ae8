#include "Shells/Desktop/Views/Common/Theme.hpp"

#include <QFontDatabase>
#include <QFontMetricsF>

#include <algorithm>

#include "Shells/Desktop/Views/Common/Change.hpp"

namespace ostrel {

void Theme::set(const DesktopTheme& theme) {
  change(*this, isDark_, theme.appearance == Appearance::dark, &Theme::isDarkChanged);
  change(*this, textScale_, std::clamp(theme.textScale, 1.0, 3.0), &Theme::textScaleChanged);
}

QString Theme::codeFamily() const { return QFontDatabase::systemFont(QFontDatabase::FixedFont).family(); }

double Theme::widthOf(const QString& text, const QFont& font) const {
  return QFontMetricsF(font).horizontalAdvance(text);
}

}  // namespace ostrel
