#include "tracing/tracer_panel.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QSlider>
#include <QVBoxLayout>
#include <algorithm>

#include "widgets/show.h"
#include "widgets/up_down.h"

namespace graphize {

namespace {

constexpr int kCheckColumn = 4;

QLineEdit* IncrementBox(const char* name, const QString& caption, const QString& tip) {
  auto* box = Named(new QLineEdit, name, caption);
  box->setToolTip(tip);
  box->setFixedWidth(box->fontMetrics().horizontalAdvance(QStringLiteral("00000")) + 16);
  return box;
}

void Show(QCheckBox* box, const TracerControl::CheckBox& from, bool enabled) {
  const QString caption = TracerPanel::tr(from.Caption.c_str());
  if (box->text() != caption) box->setText(caption);
  box->setChecked(from.Checked);
  Enable(box, enabled);
}

}  // namespace

TracerPanel::TracerPanel(int largestBlock, QWidget* parent)
    : QGroupBox(tr("Tracer Control"), parent) {
  setObjectName(QStringLiteral("FRM_Tracer"));
  auto* column = new QVBoxLayout(this);

  auto* grid = grid_ = new QGridLayout;
  grid->setHorizontalSpacing(4);
  xRange_ = IncrementBox("Xrange", tr("X increment"), tr("Columns to look ahead over a gap"));
  yRange_ = IncrementBox("Yrange", tr("Y increment"), tr("Rows to step over within a stroke"));
  xSteps_ = Named(new UpDown(tr("X increment")), "XrangeSel");
  ySteps_ = Named(new UpDown(tr("Y increment")), "YrangeSel");
  center_ = Named(new QCheckBox, "CHK_Center");
  above_ = Named(new QCheckBox, "CHK_Above");
  below_ = Named(new QCheckBox, "CHK_Below");
  center_->setToolTip(tr("Capture the centre of the stroke"));
  above_->setToolTip(tr("Capture the point just above the stroke"));
  below_->setToolTip(tr("Capture the point just below the stroke"));
  grid->addWidget(new QLabel(tr("X increment")), 0, 0);
  grid->addWidget(xRange_, 0, 1);
  grid->addWidget(xSteps_, 0, 2);
  grid->addWidget(new QLabel(tr("Y increment")), 1, 0);
  grid->addWidget(yRange_, 1, 1);
  grid->addWidget(ySteps_, 1, 2);
  grid->setColumnMinimumWidth(3, 8);
  auto* checks = new QVBoxLayout;
  checks->setSpacing(2);
  for (QCheckBox* box : {above_, center_, below_}) checks->addWidget(box, 0, Qt::AlignLeft);
  grid->addLayout(checks, 0, kCheckColumn, 2, 1);
  grid->setColumnStretch(kCheckColumn, 1);
  column->addLayout(grid);

  auto* block = new QGridLayout;
  block->addWidget(new QLabel(tr("Block/Erase Size")), 0, 0);
  blockSizeShown_ = new QLabel;
  blockSizeShown_->setAlignment(Qt::AlignRight);
  block->addWidget(blockSizeShown_, 0, 1);
  blockSize_ = Named(new QSlider(Qt::Horizontal), "BlockSize", tr("Block/Erase Size"));
  blockSize_->setRange(0, largestBlock);
  blockSize_->setPageStep(5);
  blockSize_->setToolTip(tr("Width of blockers and pen, size of the eraser"));
  block->addWidget(blockSize_, 1, 0, 1, 2);
  column->addLayout(block);

  connect(xRange_, &QLineEdit::textEdited, this,
          [this](const QString& text) { emit XIncrementTyped(text.toStdString()); });
  connect(yRange_, &QLineEdit::textEdited, this,
          [this](const QString& text) { emit YIncrementTyped(text.toStdString()); });
  connect(xSteps_, &UpDown::Stepped, this, &TracerPanel::XIncrementStepped);
  connect(ySteps_, &UpDown::Stepped, this, &TracerPanel::YIncrementStepped);
  connect(center_, &QCheckBox::clicked, this, &TracerPanel::CenterSwitched);
  connect(above_, &QCheckBox::clicked, this, &TracerPanel::AboveSwitched);
  connect(below_, &QCheckBox::clicked, this, &TracerPanel::BelowSwitched);
  connect(blockSize_, &QSlider::valueChanged, this, &TracerPanel::BlockSizeChosen);
}

void TracerPanel::ReserveCaptions() {
  QCheckBox box(this);
  int width = 0;
  for (int trace = -1; trace <= 2; ++trace) {
    TracerControl control;
    SetTraceType(control, trace);
    for (const auto* check : {&control.Center, &control.Above, &control.Below}) {
      box.setText(tr(check->Caption.c_str()));
      width = std::max(width, box.sizeHint().width());
    }
  }
  grid_->setColumnMinimumWidth(kCheckColumn, width);
}

void TracerPanel::Render(const TracerControl& control, int blockSize) {
  graphize::Show(xRange_, control.Xrange);
  graphize::Show(yRange_, control.Yrange);
  for (QWidget* widget : std::initializer_list<QWidget*>{xRange_, yRange_, xSteps_, ySteps_})
    Enable(widget, control.IncrementsEnabled);
  Show(center_, control.Center, control.PointsEnabled);
  Show(above_, control.Above, control.PointsEnabled);
  Show(below_, control.Below, control.PointsEnabled);
  const QSignalBlocker quiet(blockSize_);
  blockSize_->setValue(blockSize);
  graphize::Show(blockSizeShown_, std::to_string(blockSize));
}

}  // namespace graphize
