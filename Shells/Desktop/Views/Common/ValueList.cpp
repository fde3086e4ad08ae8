#include "Shells/Desktop/Views/Common/ValueList.hpp"

#include <algorithm>

namespace ostrel {

namespace {

constexpr int entryRole = Qt::UserRole;

}  // namespace

void ValueList::show(const std::vector<Entry>& entries) {
  removeGone(entries);
  const int count = static_cast<int>(entries.size());
  for (int row = 0; row < count; ++row) place(row, entries[static_cast<std::size_t>(row)]);
  while (rowCount() > count) removeRow(rowCount() - 1);
}

int ValueList::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(entries_.size());
}

QVariant ValueList::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid) || role != entryRole) return {};
  return entries_[static_cast<std::size_t>(index.row())].value;
}

QHash<int, QByteArray> ValueList::roleNames() const { return {{entryRole, "entry"}}; }

void ValueList::removeGone(const std::vector<Entry>& entries) {
  for (int row = rowCount() - 1; row >= 0; --row) {
    const auto& key = entries_[static_cast<std::size_t>(row)].key;
    if (!std::ranges::any_of(entries, [&](const Entry& entry) { return entry.key == key; })) removeRow(row);
  }
}

/// Puts the entry into the row; the rows before it are in place.
void ValueList::place(int row, const Entry& entry) {
  const int found = rowOf(entry.key, row);
  const auto at = entries_.begin() + row;
  if (found < 0) {
    beginInsertRows({}, row, row);
    entries_.insert(at, entry);
    endInsertRows();
    return;
  }
  if (found != row) {
    beginMoveRows({}, found, found, {}, row);
    std::rotate(at, entries_.begin() + found, entries_.begin() + found + 1);
    endMoveRows();
  }
  if (at->value == entry.value) return;
  at->value = entry.value;
  emit dataChanged(index(row), index(row));
}

int ValueList::rowOf(const QString& key, int from) const {
  const auto found = std::ranges::find(entries_.begin() + from, entries_.end(), key, &Entry::key);
  return found == entries_.end() ? -1 : static_cast<int>(found - entries_.begin());
}

void ValueList::removeRow(int row) {
  beginRemoveRows({}, row, row);
  entries_.erase(entries_.begin() + row);
  endRemoveRows();
}

}  // namespace ostrel
