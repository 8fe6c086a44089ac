#include "data/export_dialog.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QStyle>
#include <QVBoxLayout>

#include "widgets/show.h"

namespace graphize {

ExportDialog::ExportDialog(QWidget* parent) : FormDialog("FRM_Export", tr("Export"), parent) {
  auto* column = static_cast<QVBoxLayout*>(layout());
  column->addWidget(MakeFormat());
  column->addWidget(MakeTable());

  allCurves_ = Named(new QCheckBox(tr("&All curves")), "CHK_AllCurves");
  allCurves_->setToolTip(tr("All curves instead of the one that is active"));
  errors_ = Named(new QCheckBox(tr("With &errors")), "CHK_Errors");
  errors_->setToolTip(
      tr("Two more values for each point: its standard uncertainty in X and in Y where the curve "
         "was read, else the size of one pixel"));
  pixelErrors_ = Named(new QCheckBox(tr("Errors of &one pixel everywhere")), "CHK_PixelErrors");
  pixelErrors_->setToolTip(tr("The size of one pixel also where the uncertainty is known"));
  // As wide as what answers to a click.
  column->addWidget(allCurves_, 0, Qt::AlignLeft);
  column->addWidget(errors_, 0, Qt::AlignLeft);
  column->addWidget(pixelErrors_, 0, Qt::AlignLeft);
  connect(allCurves_, &QCheckBox::clicked, this, &ExportDialog::AllCurvesSwitched);
  connect(errors_, &QCheckBox::clicked, this, &ExportDialog::ErrorsSwitched);
  connect(pixelErrors_, &QCheckBox::clicked, this, &ExportDialog::PixelErrorsSwitched);

  hint_ = Named(new QLabel, "LBL_Hint", tr("Hint"));
  hint_->setTextFormat(Qt::PlainText);
  hint_->setWordWrap(true);
  hint_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  // Room for the longest hint: the buttons below never jump.
  const QFontMetrics metrics = hint_->fontMetrics();
  hint_->setMinimumWidth(metrics.horizontalAdvance(
      QStringLiteral("20000 of 30000 rows are no places on the picture as it is:")));
  hint_->setMinimumHeight(4 * metrics.lineSpacing());
  column->addWidget(hint_);
  column->addStretch();

  auto* accept = Named(new QPushButton(tr("E&xport...")), "BTN_Accept");
  accept->setToolTip(tr("Choose a file and write it"));
  auto* cancel = Named(new QPushButton(tr("&Cancel")), "BTN_Cancel");
  cancel->setToolTip(tr("Close this window"));
  AddButtons({accept, cancel});
  connect(accept, &QPushButton::clicked, this, &ExportDialog::ExportPressed);
}

QWidget* ExportDialog::MakeFormat() {
  auto* frame = new QGroupBox(tr("Format"));
  auto* row = new QHBoxLayout(frame);
  const QString captions[kExportFormats] = {tr("CS&V"), tr("&JSON")};
  const QString tips[kExportFormats] = {tr("Columns with commas, for spreadsheets and programs"),
                                        tr("The points with picture, axes and units")};
  for (int i = 0; i < kExportFormats; ++i) {
    auto* option = new QRadioButton(captions[i]);
    option->setObjectName(MemberName("OPT_Format", i));
    option->setToolTip(tips[i]);
    connect(option, &QRadioButton::clicked, this, [this, i] { emit FormatChosen(i); });
    row->addWidget(option);
    format_[static_cast<std::size_t>(i)] = option;
  }
  row->addStretch();
  return frame;
}

QWidget* ExportDialog::MakeTable() {
  auto* frame = new QGroupBox(tr("Table"));
  auto* grid = new QGridLayout(frame);
  const QString captions[] = {tr("&Points as they are in the list"),
                              tr("One &table over these X:")};
  const QString tips[] = {tr("Each curve's points in the order of its list, curve by curve"),
                          tr("The same X for all curves, Y interpolated between the points")};
  for (int i = 0; i < 2; ++i) {
    auto* option = new QRadioButton(captions[i]);
    option->setObjectName(MemberName("OPT_Table", i));
    option->setToolTip(tips[i]);
    connect(option, &QRadioButton::clicked, this, [this, i] { emit CommonXChosen(i == 1); });
    grid->addWidget(option, i, 0, 1, 2, Qt::AlignLeft);
    table_[static_cast<std::size_t>(i)] = option;
  }
  xGrid_ = Named(new QLineEdit, "TXT_XGrid", tr("X grid"));
  xGrid_->setToolTip(
      tr("Numbers (0, 0.5, 1) or first:step:last (0:0.5:10). Nothing: all X of the curves"));
  xGrid_->setPlaceholderText(tr("all X of the curves"));
  xGrid_->setMinimumWidth(
      xGrid_->fontMetrics().horizontalAdvance(QStringLiteral("0:0.5:10, 12, 15, 20, 30, 50, 100")));
  // Below the caption of its option.
  const int indent = style()->pixelMetric(QStyle::PM_ExclusiveIndicatorWidth) +
                     style()->pixelMetric(QStyle::PM_RadioButtonLabelSpacing);
  grid->setColumnMinimumWidth(0, indent);
  grid->setHorizontalSpacing(0);
  grid->setColumnStretch(1, 1);
  grid->addWidget(xGrid_, 2, 1);
  connect(xGrid_, &QLineEdit::textEdited, this,
          [this](const QString& text) { emit XGridTyped(text.toStdString()); });
  return frame;
}

void ExportDialog::Render(const ExportForm& form) {
  format_[static_cast<std::size_t>(form.Format)]->setChecked(true);
  table_[form.CommonX ? 1 : 0]->setChecked(true);
  Show(xGrid_, form.XGrid);
  Enable(xGrid_, form.CommonX);
  allCurves_->setChecked(form.AllCurves);
  Enable(allCurves_, form.CanAllCurves());
  errors_->setChecked(form.Errors && form.CanErrors());
  Enable(errors_, form.CanErrors());
  pixelErrors_->setChecked(form.PixelErrors && form.CanPixelErrors());
  Enable(pixelErrors_, form.CanPixelErrors());
  Show(hint_, form.Hint);
}

}  // namespace graphize
