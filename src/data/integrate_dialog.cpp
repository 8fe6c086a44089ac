#include "data/integrate_dialog.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QSlider>
#include <QVBoxLayout>

#include "widgets/number_label.h"
#include "widgets/show.h"

namespace graphize {

namespace {

QSlider* LimitSlider(const char* name, const QString& caption, const QString& tip) {
  auto* slider = Named(new QSlider(Qt::Horizontal), name, caption);
  slider->setToolTip(tip);
  slider->setMinimumWidth(120);
  return slider;
}

void ShowLimit(QSlider* slider, int points, int limit) {
  const QSignalBlocker quiet(slider);
  slider->setRange(1, points);
  slider->setPageStep(std::max(points / 10, 1));
  slider->setValue(limit);
}

}  // namespace

IntegrateDialog::IntegrateDialog(QWidget* parent)
    : FormDialog("FRM_Integrate", tr("Integrate"), parent) {
  auto* grid = new QGridLayout;
  min_ = LimitSlider("SCRL_Min", tr("Low Limit"), tr("The first point of the range"));
  max_ = LimitSlider("SCRL_Max", tr("High Limit"), tr("The last point of the range"));
  xMin_ = Named(new NumberLabel, "LBL_Xmin", tr("X at the low limit"));
  xMax_ = Named(new NumberLabel, "LBL_Xmax", tr("X at the high limit"));
  area_ = Named(new NumberLabel, "LBL_Area", tr("Area"));
  xMin_->setToolTip(tr("X at the low limit"));
  xMax_->setToolTip(tr("X at the high limit"));
  grid->addWidget(new QLabel(tr("Low Limit")), 0, 0);
  grid->addWidget(min_, 0, 1);
  grid->addWidget(xMin_, 0, 2);
  grid->addWidget(new QLabel(tr("High Limit")), 1, 0);
  grid->addWidget(max_, 1, 1);
  grid->addWidget(xMax_, 1, 2);
  grid->addWidget(new QLabel(tr("Area=")), 2, 0);
  grid->addWidget(area_, 2, 1, 1, 2);
  grid->setColumnStretch(1, 1);
  grid->setVerticalSpacing(10);
  static_cast<QVBoxLayout*>(layout())->addLayout(grid);

  auto* integrate = Named(new QPushButton(tr("&Integrate")), "Command1");
  integrate->setToolTip(tr("Compute the area and shade it on the picture"));
  auto* close = Named(new QPushButton(tr("&Return")), "Command2");
  close->setToolTip(tr("Close this window"));
  AddButtons({integrate, close});

  connect(min_, &QSlider::valueChanged, this, &IntegrateDialog::LowLimitMoved);
  connect(max_, &QSlider::valueChanged, this, &IntegrateDialog::HighLimitMoved);
  connect(integrate, &QPushButton::clicked, this, &IntegrateDialog::IntegratePressed);
}

void IntegrateDialog::Render(const IntegrateForm& form) {
  ShowLimit(min_, form.Points, form.LowLimit);
  ShowLimit(max_, form.Points, form.HighLimit);
  Show(xMin_, form.Xmin);
  Show(xMax_, form.Xmax);
  Show(area_, form.AreaText);
}

}  // namespace graphize
