#pragma once

#include <QObject>
#include <QTimer>
#include <filesystem>
#include <string>

#include "SimulatedEndpoint/ExtensionSettings.hpp"

namespace ostrel::simulated {

/// Whether the user is to be asked about the extension: from the moment a request waits for approval until
/// it is answered or put aside; a request that is made again asks again.
class ApprovalQuestion final : public QObject {
  Q_OBJECT
  Q_PROPERTY(bool isAsking READ isAsking NOTIFY changed)
  Q_PROPERTY(bool isRemoval READ isRemoval NOTIFY changed)

 public:
  /// Looks at the file of the extension's state, a real path, several times a second.
  ApprovalQuestion(const ExtensionSettings& settings, std::string stateFile);

  bool isAsking() const { return isAsking_; }
  bool isRemoval() const { return isRemoval_; }

  Q_INVOKABLE void approve();
  Q_INVOKABLE void deny();
  Q_INVOKABLE void leaveOpen();

 signals:
  void changed();

 private:
  void look();
  void show(bool isAsking);

  const ExtensionSettings& settings_;
  const std::string stateFile_;
  QTimer timer_;
  std::filesystem::file_time_type seen_;
  bool isAsking_ = false;
  bool isRemoval_ = false;
};

}  // namespace ostrel::simulated
