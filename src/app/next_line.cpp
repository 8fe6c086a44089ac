#include "app/next_line.h"

#include <QGridLayout>
#include <QLabel>
#include <utility>

#include "widgets/elided_label.h"
#include "widgets/show.h"

namespace graphize {

namespace {

constexpr int kSpacing = 4, kGap = 12;  // pixels
constexpr int kReadable = 75;           // letters of a hint
constexpr int kHintColumn = 2 * static_cast<int>(kWay.size());

}  // namespace

NextLine::NextLine(QWidget* parent) : QWidget(parent) {
  setObjectName(QStringLiteral("FRM_Next"));
  grid_ = new QGridLayout(this);
  grid_->setContentsMargins(2, 1, 2, 3);
  grid_->setSpacing(kSpacing);
  grid_->setVerticalSpacing(0);
  grid_->setColumnStretch(kHintColumn, 1);
  for (std::size_t i = 0; i < kWay.size(); ++i) {
    const int column = 2 * static_cast<int>(i);
    if (i > 0)
      grid_->addWidget(arrows_[i - 1] = new QLabel(QStringLiteral("\u2192")), 0, column - 1);
    stations_[i] = new QLabel(tr(kWay[i]));
    stations_[i]->setObjectName(MemberName("LBL_Station", static_cast<int>(i)));
    grid_->addWidget(stations_[i], 0, column);
  }
  grid_->setColumnMinimumWidth(kHintColumn - 1, kGap);
  hint_ = Named(new ElidedLabel, "LBL_Next", tr("What comes next"));
  grid_->addWidget(hint_, 0, kHintColumn);
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
  int way = 2 * kSpacing;
  for (const QLabel* station : stations_) way += station->sizeHint().width() + kSpacing;
  for (const QLabel* arrow : arrows_) way += arrow->sizeHint().width() + kSpacing;
  // Whatever the hint is: the picture below must not move while it is clicked.
  const bool isBelow = way + kGap + kReadable * fontMetrics().averageCharWidth() > width();
  if (std::exchange(isBelow_, isBelow) != isBelow) {
    grid_->removeWidget(hint_);
    isBelow ? grid_->addWidget(hint_, 1, 0, 1, kHintColumn + 1)
            : grid_->addWidget(hint_, 0, kHintColumn);
  }
  const bool all = way <= width();
  for (std::size_t i = 0; i < stations_.size(); ++i)
    stations_[i]->setVisible(all || static_cast<int>(i) == present_);
  for (QLabel* arrow : arrows_) arrow->setVisible(all);
}

void NextLine::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  MakeRoom();
}

}  // namespace graphize
