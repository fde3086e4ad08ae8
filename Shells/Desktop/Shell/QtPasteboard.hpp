#pragma once

#include <QClipboard>
#include <QGuiApplication>

#include "Platform/Pasteboard.hpp"

namespace ostrel {

/// The desktop's clipboard.
class QtPasteboard final : public Pasteboard {
 public:
  void setText(std::string_view text) override {
    QGuiApplication::clipboard()->setText(
        QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
  }
};

}  // namespace ostrel
