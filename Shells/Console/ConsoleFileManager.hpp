#pragma once

#include <utility>

#include "Platform/FileManager.hpp"
#include "Platform/MainQueue.hpp"

namespace ostrel {

/// Where there is no desktop: shows no file.
class ConsoleFileManager final : public FileManager {
 public:
  explicit ConsoleFileManager(MainQueue& mainQueue) : mainQueue_(mainQueue) {}

  void reveal(const std::string& /*path*/, std::function<void(bool)> answered) override {
    mainQueue_.post([answered = std::move(answered)] { answered(false); });
  }

 private:
  MainQueue& mainQueue_;
};

}  // namespace ostrel
