#pragma once

#include <QtQml/qqmlregistration.h>
#include <QAbstractListModel>

#include <vector>

namespace ostrel {

/// A list whose rows are told apart by a key. What shows it is told row by row what changed.
class ValueList : public QAbstractListModel {
  Q_OBJECT
  QML_ANONYMOUS

 public:
  struct Entry {
    QString key;
    QVariant value;
  };

  using QAbstractListModel::QAbstractListModel;

  void show(const std::vector<Entry>& entries);

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QHash<int, QByteArray> roleNames() const override;

 private:
  void removeGone(const std::vector<Entry>& entries);
  void place(int row, const Entry& entry);
  int rowOf(const QString& key, int from) const;
  void removeRow(int row);

  std::vector<Entry> entries_;
};

}  // namespace ostrel
