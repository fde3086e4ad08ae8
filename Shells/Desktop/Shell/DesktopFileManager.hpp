#pragma once

#include <QObject>
#include <chrono>
#include <functional>
#include <string>
#include <string_view>

#include "Platform/FileManager.hpp"
#include "Shells/Desktop/Shell/DesktopBus.hpp"

namespace ostrel {

/// The file manager of the session bus (org.freedesktop.FileManager1), which is never waited for. The bus may
/// have to start it first, and it may still show the file after it has been given up.
class DesktopFileManager final : public QObject, public FileManager {
  Q_OBJECT

 public:
  /// `realPath` turns a path of the program into one that the file manager finds. One that has not answered
  /// within `timeout` counts as missing.
  DesktopFileManager(DesktopBus& bus, std::function<std::string(std::string_view)> realPath,
                     std::chrono::milliseconds timeout = std::chrono::seconds(1));

  void reveal(const std::string& path, std::function<void(bool)> answered) override;

 private:
  DesktopBus& bus_;
  std::function<std::string(std::string_view)> realPath_;
  std::chrono::milliseconds timeout_;
};

}  // namespace ostrel
