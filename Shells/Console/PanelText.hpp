#pragma once

#include <string>

#include "OstrelAgent/Panel/PanelContent.hpp"

namespace ostrel {

/// How buttons are written: "[3] Check now", to be pressed by their number, or "[Check now]".
enum class ButtonMarks { numbered, plain };

/// The panel as text in lines of at most 80 columns where words allow. Numbers count
/// `PanelContent::buttons()`.
std::string panelText(const PanelContent& content, ButtonMarks marks);

}  // namespace ostrel
