#pragma once

#include <QLabel>
#include <QLineEdit>
#include <QString>
#include <string>

namespace graphize {

inline QString ToQString(const std::string& text) {
  return QString::fromStdString(text);
}

/// Sets what differs, so that an unchanged control is not painted again and keeps its caret.
inline void Show(QLabel* label, const std::string& text) {
  const QString wanted = ToQString(text);
  if (label->text() != wanted) label->setText(wanted);
}

inline void Show(QLineEdit* box, const std::string& text) {
  const QString wanted = ToQString(text);
  if (box->text() != wanted) box->setText(wanted);
}

inline void Enable(QWidget* widget, bool enabled) {
  if (widget->isEnabled() != enabled) widget->setEnabled(enabled);
}

/// Names a control for programs (object name) and for people who cannot see it.
template <typename Control>
Control* Named(Control* control, const char* objectName, const QString& accessibleName = {}) {
  control->setObjectName(QLatin1String(objectName));
  if (!accessibleName.isEmpty()) control->setAccessibleName(accessibleName);
  return control;
}

/// The name of member `index` of an array of controls: "TXT_XPos_0".
inline QString MemberName(const char* array, int index) {
  return QStringLiteral("%1_%2").arg(QLatin1String(array)).arg(index);
}

}  // namespace graphize
