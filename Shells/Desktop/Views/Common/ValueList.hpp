#pragma once

#include <QtQml/qqmlregistration.h>
#include <QAbstractListModel>

#include <vector>

namespace ostrel {

/// A list model whose rows are identified by a key. It notifies its views row by row, so that the items of
/// unchanged rows stay.
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
