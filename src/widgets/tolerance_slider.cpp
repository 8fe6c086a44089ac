#include "widgets/tolerance_slider.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QSlider>
#include <string>

#include "widgets/show.h"

namespace graphize {

ToleranceSlider::ToleranceSlider(int narrowest, int asFound, int widest, QWidget* parent)
    : QWidget(parent) {
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  slider_ = Named(new QSlider(Qt::Horizontal), "SCRL_Tolerance", tr("Tolerance"));
  slider_->setRange(narrowest, widest);
  slider_->setValue(asFound);
  slider_->setPageStep(10);
  slider_->setToolTip(
      tr("How much another colour may differ and still count as this ink: what is marked"));
  shown_ = new QLabel;
  shown_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  shown_->setMinimumWidth(shown_->fontMetrics().horizontalAdvance(QStringLiteral("200 %")));
  row->addWidget(new QLabel(tr("Tolerance")));
  row->addWidget(slider_, 1);
  row->addWidget(shown_);
  connect(slider_, &QSlider::valueChanged, this, &ToleranceSlider::Chosen);
  connect(slider_, &QSlider::sliderReleased, this, [this] { emit Chosen(slider_->value()); });
}

void ToleranceSlider::Render(int percent) {
  const QSignalBlocker quiet(slider_);
  if (!slider_->isSliderDown()) slider_->setValue(percent);
  Show(shown_, std::to_string(percent) + " %");
}

bool ToleranceSlider::IsHeld() const {
  return slider_->isSliderDown();
}

}  // namespace graphize
