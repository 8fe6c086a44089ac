#include "data/sample_dialog.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "widgets/show.h"

namespace graphize {

namespace {

QLineEdit* Box(const char* name, const QString& tip) {
  auto* box = Named(new QLineEdit, name, tip);
  box->setToolTip(tip);
  box->setMinimumWidth(box->fontMetrics().horizontalAdvance(QStringLiteral("Log -0.00000E+00")) +
                       12);
  return box;
}

}  // namespace

SampleDialog::SampleDialog(QWidget* parent) : FormDialog("Sample", tr("Resample"), parent) {
  auto* column = static_cast<QVBoxLayout*>(layout());
  column->addWidget(
      new QLabel(tr("Use ReSample to decrease or increase the number of points by interpolation")));
  column->addWidget(MakeSpacing());
  column->addWidget(MakeRange());

  hint_ = Named(new QLabel, "LBL_Hint", tr("Hint"));
  hint_->setTextFormat(Qt::PlainText);
  hint_->setWordWrap(true);
  hint_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  // Room for the longest hint: the buttons below never jump.
  hint_->setMinimumHeight(2 * hint_->fontMetrics().lineSpacing());
  column->addWidget(hint_);
  column->addStretch();

  auto* reSample = Named(new QPushButton(tr("&ReSample")), "Command2");
  reSample->setToolTip(tr("Replace the data list by the new points"));
  auto* cancel = Named(new QPushButton(tr("&Cancel")), "Command1");
  cancel->setToolTip(tr("Close this window"));
  AddButtons({reSample, cancel});
  connect(reSample, &QPushButton::clicked, this, &SampleDialog::ReSamplePressed);

  // A click does not leave the box Steps: what is wrong there is told by the button, or not at all
  // when the window closes.
  for (auto* button : findChildren<QAbstractButton*>()) button->setFocusPolicy(Qt::TabFocus);
}

void SampleDialog::showEvent(QShowEvent* event) {
  FormDialog::showEvent(event);
  steps_->selectAll();
}

QWidget* SampleDialog::MakeSpacing() {
  auto* frame = new QGroupBox(tr("New X Spacing"));
  auto* row = new QHBoxLayout(frame);
  steps_ = Box("Steps", tr("Enter new no. of X values"));
  dX_ = Box("dXBox", tr("Enter new X spacing"));
  auto* calculate = Named(new QPushButton(tr("&Calculate dX")), "Command3");
  calculate->setToolTip(tr("The spacing from the number of values, or the number from a spacing"));
  row->addWidget(new QLabel(tr("Steps n=")));
  row->addWidget(steps_, 1);
  row->addSpacing(8);
  row->addWidget(new QLabel(tr("dX=")));
  row->addWidget(dX_, 1);
  row->addSpacing(8);
  row->addWidget(calculate);

  connect(steps_, &QLineEdit::textEdited, this,
          [this](const QString& text) { emit StepsTyped(text.toStdString()); });
  connect(steps_, &QLineEdit::editingFinished, this, &SampleDialog::StepsLeft);
  connect(dX_, &QLineEdit::textEdited, this,
          [this](const QString& text) { emit dXTyped(text.toStdString()); });
  connect(calculate, &QPushButton::clicked, this, &SampleDialog::CalculatePressed);
  return frame;
}

QWidget* SampleDialog::MakeRange() {
  auto* frame = new QGroupBox(tr("Min Max values"));
  auto* grid = new QGridLayout(frame);
  minX_ = Box("MinXBox", tr("First X of the new list"));
  maxX_ = Box("MaxXBox", tr("Last X of the new list"));
  minY_ = Box("MinYBox", tr("Smallest Y of the captured points"));
  maxY_ = Box("MaxYBox", tr("Largest Y of the captured points"));
  for (QLineEdit* box : {minY_, maxY_}) {
    box->setReadOnly(true);
    QPalette colours = palette();  // it does not look as if one could type
    colours.setColor(QPalette::Base, colours.color(QPalette::Window));
    box->setPalette(colours);
  }
  xLog_ = Named(new QCheckBox(tr("X - Log")), "SampleXLog");
  xLog_->setToolTip(tr("Even steps of the logarithm of X"));
  yLog_ = Named(new QCheckBox(tr("Y - Log")), "SampleYLog");
  yLog_->setToolTip(tr("Interpolate the logarithm of Y"));
  const auto addRow = [grid](int row, const QString& least, QLineEdit* min, const QString& most,
                             QLineEdit* max, QCheckBox* log) {
    grid->addWidget(new QLabel(least), row, 0);
    grid->addWidget(min, row, 1);
    grid->addWidget(new QLabel(most), row, 3);
    grid->addWidget(max, row, 4);
    grid->addWidget(log, row, 6);
  };
  addRow(0, tr("Min X:"), minX_, tr("Max X:"), maxX_, xLog_);
  addRow(1, tr("Min Y:"), minY_, tr("Max Y:"), maxY_, yLog_);
  for (const int gap : {2, 5}) grid->setColumnMinimumWidth(gap, 8);
  for (const int box : {1, 4}) grid->setColumnStretch(box, 1);

  connect(minX_, &QLineEdit::textEdited, this,
          [this](const QString& text) { emit MinXTyped(text.toStdString()); });
  connect(maxX_, &QLineEdit::textEdited, this,
          [this](const QString& text) { emit MaxXTyped(text.toStdString()); });
  connect(xLog_, &QCheckBox::clicked, this, &SampleDialog::XLogSwitched);
  connect(yLog_, &QCheckBox::clicked, this, &SampleDialog::YLogSwitched);
  return frame;
}

void SampleDialog::Render(const SampleForm& form) {
  Show(steps_, form.Steps);
  Show(dX_, form.dXBox);
  Show(minX_, form.MinXBox);
  Show(maxX_, form.MaxXBox);
  Show(minY_, form.MinYBox);
  Show(maxY_, form.MaxYBox);
  xLog_->setChecked(form.SampleXLog);
  yLog_->setChecked(form.SampleYLog);
  Show(hint_, form.Hint);
}

}  // namespace graphize
