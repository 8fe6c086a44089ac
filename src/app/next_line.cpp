#include "app/next_line.h"

#include <QHBoxLayout>
#include <QLabel>

#include "widgets/elided_label.h"
#include "widgets/show.h"

namespace graphize {

namespace {

constexpr int kSpacing = 4, kGap = 12;  // pixels

}  // namespace

NextLine::NextLine(QWidget* parent) : QWidget(parent) {
  setObjectName(QStringLiteral("FRM_Next"));
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(2, 1, 2, 3);
  row->setSpacing(kSpacing);
  for (std::size_t i = 0; i < kWay.size(); ++i) {
    if (i > 0) row->addWidget(arrows_[i - 1] = new QLabel(QStringLiteral("\u2192")));
    stations_[i] = new QLabel(tr(kWay[i]));
    stations_[i]->setObjectName(MemberName("LBL_Station", static_cast<int>(i)));
    row->addWidget(stations_[i]);
  }
  row->addSpacing(kGap);
  hint_ = Named(new ElidedLabel, "LBL_Next", tr("What comes next"));
  row->addWidget(hint_, 1);
}

void NextLine::Render(const NextStep& next, bool shown) {
  setVisible(shown);
  hint_->ShowText(next.Hint);
  if (present_ != next.Present) {
    present_ = next.Present;
    for (std::size_t i = 0; i < stations_.size(); ++i) {
      QFont font = this->font();
      font.setBold(static_cast<int>(i) == present_);
      stations_[i]->setFont(font);
    }
  }
  MakeRoom();
}

void NextLine::MakeRoom() {
  int needed = hint_->fontMetrics().horizontalAdvance(hint_->text()) + 2 * kGap;
  for (const QLabel* station : stations_) needed += station->sizeHint().width() + kSpacing;
  for (const QLabel* arrow : arrows_) needed += arrow->sizeHint().width() + kSpacing;
  const bool all = needed <= width();
  for (std::size_t i = 0; i < stations_.size(); ++i)
    stations_[i]->setVisible(all || static_cast<int>(i) == present_);
  for (QLabel* arrow : arrows_) arrow->setVisible(all);
}

void NextLine::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  MakeRoom();
}

}  // namespace graphize
