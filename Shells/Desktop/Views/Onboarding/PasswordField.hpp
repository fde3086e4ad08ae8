#pragma once

#include <QColor>
#include <QQuickPaintedItem>

#include "Shells/Desktop/Views/Onboarding/PasswordLine.hpp"

namespace ostrel {

/// A line for a secret, of which drawing, assistive tools and input methods get a dot for each character or
/// less; nothing of it can be copied. The toolkit's TextInput (Qt 6.4) hides its text on the screen only: the
/// accessible value and the surrounding text of input methods are the secret, whatever its echo mode.
class PasswordField : public QQuickPaintedItem {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(QString text READ dots NOTIFY textChanged)  // assistive tools read the property of this name
  Q_PROPERTY(int dotSize MEMBER dotSize_ NOTIFY styleChanged)
  Q_PROPERTY(QColor ink MEMBER ink_ NOTIFY styleChanged)
  Q_PROPERTY(QColor selectionColor MEMBER selectionColor_ NOTIFY styleChanged)
  Q_PROPERTY(QColor selectedInk MEMBER selectedInk_ NOTIFY styleChanged)

 public:
  explicit PasswordField(QQuickItem* parent = nullptr);

  Q_INVOKABLE QString secret() const { return line_.text(); }

  /// Forgets the secret and all that would bring it back.
  Q_INVOKABLE void clear();

  void paint(QPainter* painter) override;
  QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;

 signals:
  void textChanged();
  void styleChanged();

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

  PasswordLine line_;
  qsizetype announcedLength_ = 0;
  qreal scrolled_ = 0;
  int dotSize_ = 7;
  QColor ink_;
  QColor selectionColor_;
  QColor selectedInk_;
};

}  // namespace ostrel
