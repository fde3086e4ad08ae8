#pragma once

#include <utility>
#include <vector>

#include "Platform/FileManager.hpp"

namespace ostrel {

/// A file manager that answers when the test lets it.
class FakeFileManager final : public FileManager {
 public:
  void reveal(const std::string& path, std::function<void(bool)> answered) override {
    revealed.push_back(path);
    answer = std::move(answered);
  }

  std::vector<std::string> revealed;
  std::function<void(bool)> answer;  ///< to the latest request
};

}  // namespace ostrel
