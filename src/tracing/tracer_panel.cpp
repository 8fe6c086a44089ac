#include "tracing/tracer_panel.h"

#include <QCheckBox>
#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSlider>
#include <QSpinBox>
#include <QVBoxLayout>
#include <algorithm>

#include "widgets/short_combo_box.h"
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

  MakeBoxes();
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
  insideAxes_ = Named(new QCheckBox(tr("Inside the axes only")), "CHK_InsideAxes");
  insideAxes_->setToolTip(
      tr("Traces and scans end at the frame of the plot, or where the axes end"));
  column->addWidget(insideAxes_, 0, Qt::AlignLeft);

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
  connect(insideAxes_, &QCheckBox::clicked, this, &TracerPanel::InsideAxesSwitched);
  connect(blockSize_, &QSlider::valueChanged, this, &TracerPanel::BlockSizeChosen);
}

void TracerPanel::MakeBoxes() {
  const auto box = [](const char* name, const QString& caption, const QString& tip,
                      const QStringList& choices) {
    auto* made = Named(new ShortComboBox(9), name, caption);
    made->setToolTip(tip);
    made->addItems(choices);
    made->setFocusPolicy(Qt::TabFocus);
    return made;
  };
  traceType_ = box("CMB_TraceType", tr("Trace"), tr("What a right click on the picture does"),
                   {tr("Peaks, Edges, smooth"), tr("Smooth"), tr("Scan (all black points)")});
  snap_ = box("CMB_Snap", tr("Snap"), tr("Where a click is moved to"),
              {tr("no Snap"), tr("Snap to X"), tr("Snap to Y"), tr("Snap Center")});
  threshold_ = Named(new QSpinBox, "SPN_Threshold", tr("Black and white threshold"));
  threshold_->setToolTip(
      tr("What is darker becomes black when a picture is reduced to black and white"));
  threshold_->setPrefix(tr("BW "));
  threshold_->setRange(1, 255);
  threshold_->findChild<QLineEdit*>()->setAccessibleName(threshold_->accessibleName());
  threshold_->setFocusPolicy(Qt::StrongFocus);
  for (QWidget* made : std::initializer_list<QWidget*>{traceType_, snap_, threshold_})
    made->installEventFilter(this);
  auto* second = new QHBoxLayout;
  second->addWidget(snap_, 1);
  second->addWidget(threshold_);
  auto* column = static_cast<QVBoxLayout*>(layout());
  column->addWidget(traceType_);
  column->addLayout(second);
  connect(traceType_, &QComboBox::activated, this, &TracerPanel::TraceTypeChosen);
  connect(snap_, &QComboBox::activated, this, &TracerPanel::SnapChosen);
  connect(threshold_, &QSpinBox::valueChanged, this, &TracerPanel::ThresholdChosen);
}

bool TracerPanel::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::Wheel) return QGroupBox::eventFilter(watched, event);
  event->ignore();
  return true;
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

void TracerPanel::Render(const TracerControl& control, const Settings& settings, int blockSize) {
  const auto choose = [](QComboBox* box, int choice) {
    box->setCurrentIndex(choice >= 0 && choice < box->count() ? choice : -1);
  };
  choose(traceType_, settings.Trace);
  choose(snap_, settings.SnapMode);
  {
    const QSignalBlocker quiet(threshold_);
    threshold_->setValue(settings.Threshold);
  }
  graphize::Show(xRange_, control.Xrange);
  graphize::Show(yRange_, control.Yrange);
  for (QWidget* widget : std::initializer_list<QWidget*>{xRange_, yRange_, xSteps_, ySteps_})
    Enable(widget, control.IncrementsEnabled);
  Show(center_, control.Center, control.PointsEnabled);
  Show(above_, control.Above, control.PointsEnabled);
  Show(below_, control.Below, control.PointsEnabled);
  insideAxes_->setChecked(control.InsideAxes);
  const QSignalBlocker quiet(blockSize_);
  blockSize_->setValue(blockSize);
  graphize::Show(blockSizeShown_, std::to_string(blockSize));
}

}  // namespace graphize
