#pragma once

#include <QImage>
#include <optional>
#include <string>
#include <string_view>

#include "OstrelAgent/Status/MenuBarIcon.hpp"

namespace ostrel {

/// A glyph of the bundle's folder of data files, drawn for that many pixels a point or, if that file is
/// missing, for the next fewer; nullopt when no file can be read.
[[nodiscard]] std::optional<QImage> loadGlyph(const std::string& resources, std::string_view name, int scale);

/// Whether `loadGlyph` gives an image whatever the scale.
bool hasGlyph(const std::string& resources, std::string_view name);

/// The menu-bar image in the pixels of the glyph.
QImage iconImage(const QImage& glyph, MenuBarBadge badge, MenuBarPalette palette);

/// The title as a square image of that many pixels.
QImage titleImage(const menubarpicture::Title& title, int side);

}  // namespace ostrel
