#pragma once

#include <QIcon>

#include "widgets/form_dialog.h"
#include "workspace/about_form.h"

class QLabel;

namespace graphize {

/// The window frmAbout: which program this is, and what it stands on.
class AboutDialog : public FormDialog {
  Q_OBJECT
 public:
  AboutDialog(const QIcon& icon, QWidget* parent);
  void Render(const AboutForm& form);

 signals:
  void SystemInformationPressed();

 private:
  QLabel* title_;
  QLabel* version_;
  QLabel* libraries_;
  QLabel* decoding_;
};

}  // namespace graphize
