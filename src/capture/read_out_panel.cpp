#include "capture/read_out_panel.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QRadioButton>
#include <QVBoxLayout>

#include "widgets/show.h"

namespace graphize {

namespace {

const QString kWidestValue = QStringLiteral("-0.00000E+00");

QLineEdit* ValueBox(const char* name, const QString& tip) {
  auto* box = Named(new QLineEdit, name, tip);
  box->setToolTip(tip);
  box->setReadOnly(true);
  box->setMinimumWidth(box->fontMetrics().horizontalAdvance(kWidestValue) + 16);
  box->setFocusPolicy(Qt::ClickFocus);  // for copying a number
  return box;
}

QLabel* PositionLabel(const char* name, const QString& tip) {
  auto* label = Named(new QLabel, name, tip);
  label->setToolTip(tip);
  label->setMinimumWidth(label->fontMetrics().horizontalAdvance(kWidestValue));
  return label;
}

/// Keeps its place while it is not shown.
QLabel* PlusMinus(const char* name) {
  auto* label = Named(new QLabel(QStringLiteral("\u00b1")), name, QObject::tr("plus or minus"));
  QSizePolicy policy = label->sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  label->setSizePolicy(policy);
  return label;
}

}  // namespace

ReadOutPanel::ReadOutPanel(QWidget* parent) : QWidget(parent) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);

  auto* grid = new QGridLayout;
  grid->setHorizontalSpacing(6);
  xValue_ = ValueBox("XValue", tr("X value"));
  yValue_ = ValueBox("YValue", tr("Y value"));
  xPos_ = PositionLabel("XPOS", tr("X pixel/error"));
  yPos_ = PositionLabel("YPos", tr("Y pixel/error"));
  pmX_ = PlusMinus("pmX");
  pmY_ = PlusMinus("pmY");
  grid->addWidget(new QLabel(tr("X:")), 0, 0);
  grid->addWidget(xValue_, 0, 1);
  grid->addWidget(pmX_, 0, 2);
  grid->addWidget(xPos_, 0, 3);
  grid->addWidget(new QLabel(tr("Y:")), 1, 0);
  grid->addWidget(yValue_, 1, 1);
  grid->addWidget(pmY_, 1, 2);
  grid->addWidget(yPos_, 1, 3);
  grid->setColumnStretch(1, 1);
  column->addLayout(grid);

  refined_ = Named(new QLabel(tr("Values of the refined axes")), "LBL_Refined");
  refined_->setToolTip(tr("Define Axis, \"Refined\": the axes that fit all references best"));
  refined_->setAutoFillBackground(true);
  refined_->setBackgroundRole(QPalette::ToolTipBase);
  refined_->setForegroundRole(QPalette::ToolTipText);
  refined_->setMargin(2);
  refined_->hide();
  column->addWidget(refined_);

  auto* frame = Named(new QGroupBox(tr("Pixel/Error")), "FRM_PixelError");
  auto* row = new QHBoxLayout(frame);
  pixel_ = Named(new QRadioButton(tr("Pixel")), "OPT_Pixel", tr("Show pixels"));
  error_ = Named(new QRadioButton(tr("Error")), "OPT_Error", tr("Show errors"));
  percent_ = Named(new QCheckBox(QStringLiteral("%")), "OPT_Pct", tr("Errors in percent"));
  pixel_->setToolTip(tr("Show the pixel under the mouse"));
  error_->setToolTip(tr("Show the size of one pixel in graph units"));
  percent_->setToolTip(tr("Show errors in percent of the value"));
  row->addWidget(pixel_);
  row->addWidget(error_);
  row->addWidget(percent_);
  row->addStretch();
  column->addWidget(frame);

  connect(pixel_, &QRadioButton::clicked, this, &ReadOutPanel::PixelChosen);
  connect(error_, &QRadioButton::clicked, this, &ReadOutPanel::ErrorChosen);
  connect(percent_, &QCheckBox::clicked, this, &ReadOutPanel::PercentSwitched);
}

void ReadOutPanel::Render(const ReadOut& readOut, bool refined) {
  refined_->setVisible(refined);
  Show(xValue_, readOut.XValue);
  Show(yValue_, readOut.YValue);
  Show(xPos_, readOut.XPOS);
  Show(yPos_, readOut.YPos);
  (readOut.ShowError ? error_ : pixel_)->setChecked(true);
  percent_->setChecked(readOut.Percent);
  Enable(percent_, readOut.ShowError);
  pmX_->setVisible(readOut.ShowError);
  pmY_->setVisible(readOut.ShowError);
}

}  // namespace graphize
