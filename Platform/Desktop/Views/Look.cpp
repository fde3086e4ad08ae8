#include "Platform/Desktop/Views/Look.hpp"

#include <QFontMetricsF>

#include <algorithm>

namespace ostrel {

namespace {

template <class Value, class Signal>
void change(Look& look, Value& member, Value value, Signal changed) {
  if (member == value) return;
  member = value;
  emit(look.*changed)();
}

}  // namespace

void Look::set(const DesktopLook& look) {
  change(*this, isDark_, look.appearance == Appearance::dark, &Look::isDarkChanged);
  change(*this, textScale_, std::clamp(look.textScale, 1.0, 3.0), &Look::textScaleChanged);
}

double Look::widthOf(const QString& text, const QFont& font) const {
  return QFontMetricsF(font).horizontalAdvance(text);
}

}  // namespace ostrel
