#pragma once

#include <QList>
#include <QObject>
#include <QWindow>
#include <chrono>

namespace ostrel {

/// Counts the frames of windows without linking the drawing library.
class FrameCounter final : public QObject {
  Q_OBJECT

 public:
  /// Watches these windows from now on, each once.
  void watch(const QList<QWindow*>& windows) {
    for (auto* window : windows) {
      connect(window, SIGNAL(frameSwapped()), this, SLOT(countFrame()),
              static_cast<Qt::ConnectionType>(Qt::DirectConnection | Qt::UniqueConnection));
    }
  }

  int count() const { return count_; }
  std::chrono::steady_clock::time_point lastFrame() const { return lastFrame_; }

 private slots:
  void countFrame() {
    ++count_;
    lastFrame_ = std::chrono::steady_clock::now();
  }

 private:
  int count_ = 0;
  std::chrono::steady_clock::time_point lastFrame_;
};

}  // namespace ostrel
