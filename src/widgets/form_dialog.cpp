#include "widgets/form_dialog.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>
#include <QVBoxLayout>

namespace graphize {

FormDialog::FormDialog(const char* objectName, const QString& title, QWidget* parent)
    : QDialog(parent) {
  setObjectName(QLatin1String(objectName));
  setWindowTitle(title);
  new QVBoxLayout(this);
}

void FormDialog::AddButtons(std::initializer_list<QPushButton*> buttons) {
  auto* row = new QHBoxLayout;
  row->addStretch();
  for (QPushButton* button : buttons) row->addWidget(button);
  (*buttons.begin())->setDefault(true);
  (*(buttons.end() - 1))->setProperty(kStopsCommand, true);
  connect(*(buttons.end() - 1), &QPushButton::clicked, this, &FormDialog::CloseAsked);
  static_cast<QVBoxLayout*>(layout())->addLayout(row);
}

void FormDialog::keyPressEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_F1) return QDialog::keyPressEvent(event);
  emit HelpAsked();
}

}  // namespace graphize
