#pragma once

#include <QColor>
#include <QQuickPaintedItem>

#include "Shells/Desktop/Views/Onboarding/SecretLine.hpp"

namespace ostrel {

/// A line for a secret. It shows a dot for each character and tells assistive tools no more; nothing of it
/// can be copied. The toolkit's own line would tell such tools the text.
class SecretField : public QQuickPaintedItem {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(QString text READ dots NOTIFY textChanged)  // by this name assistive tools ask for it
  Q_PROPERTY(int dotSize MEMBER dotSize_ NOTIFY looksChanged)
  Q_PROPERTY(QColor ink MEMBER ink_ NOTIFY looksChanged)
  Q_PROPERTY(QColor selectionColor MEMBER selectionColor_ NOTIFY looksChanged)
  Q_PROPERTY(QColor selectedInk MEMBER selectedInk_ NOTIFY looksChanged)

 public:
  explicit SecretField(QQuickItem* parent = nullptr);

  Q_INVOKABLE QString secret() const { return line_.text(); }

  /// Forgets the secret and all that would bring it back.
  Q_INVOKABLE void clear();

  void paint(QPainter* painter) override;
  QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;

 signals:
  void textChanged();
  void looksChanged();

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void inputMethodEvent(QInputMethodEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void geometryChange(const QRectF& now, const QRectF& before) override;

 private:
  QString dots() const;
  bool edit(const QKeyEvent& event);
  bool move(const QKeyEvent& event);
  void paste(int mode);
  void changed();
  void reveal();
  qreal pitch() const { return 1.6 * dotSize_; }
  qreal caretX() const { return static_cast<qreal>(line_.caret()) * pitch() - scrolled_; }
  qsizetype placeAt(qreal x) const;

  SecretLine line_;
  qsizetype told_ = 0;  ///< the length of which was told last
  qreal scrolled_ = 0;
  int dotSize_ = 7;
  QColor ink_;
  QColor selectionColor_;
  QColor selectedInk_;
};

}  // namespace ostrel
