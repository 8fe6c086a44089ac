#pragma once

#include <string>

#include "widgets/form_dialog.h"
#include "workspace/read_all_form.h"

class QLabel;
class QTableWidget;

namespace graphize {

/// The window FRM_ReadAll: a row for each curve that was found, with its yes or no, its colour, its
/// name, which can be edited, its points and how sure they are.
class ReadAllDialog : public FormDialog {
  Q_OBJECT
 public:
  explicit ReadAllDialog(QWidget* parent);
  void Render(const ReadAllForm& form, bool canTake);

 signals:
  void Ticked(int row, bool taken);
  void NameTyped(int row, const std::string& name);
  void RowChosen(int row);
  void AcceptPressed();

 private:
  void MakeRow(int row, const ReadAllForm::Item& item);
  void RenderRow(int row, const ReadAllForm::Item& item);

  QTableWidget* curves_;
  QLabel* hint_;
  QPushButton* accept_;
};

}  // namespace graphize
