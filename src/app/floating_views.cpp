#include "app/floating_views.h"

#include <algorithm>

#include "raster/overview_view.h"
#include "raster/zoom_view.h"

namespace graphize {

namespace {

constexpr int kMargin = 8;

}  // namespace

void FloatingViews::Place(const QRect& side, int panelsEnd, const QRect& picture) {
  picture_ = picture;
  const QSize zoom = zoom_->WantedSize();
  const QSize overview = overview_->isHidden() ? QSize() : overview_->size();
  const int room = side.bottom() + 1 - panelsEnd;
  zoomIsOver_ = zoom.height() + 2 * kMargin > room;
  // Beside the zoom window, else alone.
  const bool zoomIsBeneath = !zoom_->isHidden() && !zoomIsOver_ && !zoom_->IsMoved();
  const int row = (zoomIsBeneath ? zoom.width() + kMargin : 0) + overview.width();
  overviewIsOver_ = row > side.width() - 2 || overview.height() + 2 * kMargin > room;
  const int beneath = side.bottom() + 1 - kMargin;
  const bool both = zoomIsBeneath && !overviewIsOver_ && !overview.isEmpty();
  const int left = side.left() + (side.width() - (both ? row : zoom.width())) / 2;
  if (!zoomIsOver_) zoom_->SetHome({left, beneath - zoom.height()});
  if (!overviewIsOver_)
    overview_->move(
        both ? left + row - overview.width() : side.left() + (side.width() - overview.width()) / 2,
        beneath - overview.height());
  PlaceOverPicture();
  overview_->raise();
}

void FloatingViews::PlaceOverPicture() {
  const auto column = [this](int width, bool toTheLeft) {
    return toTheLeft ? picture_.left() + kMargin : picture_.right() + 1 - kMargin - width;
  };
  if (zoomIsOver_) {
    const QSize size = zoom_->WantedSize();
    zoom_->SetHome(
        {column(size.width(), zoomToTheLeft_), picture_.bottom() + 1 - kMargin - size.height()});
  }
  if (overviewIsOver_)
    overview_->move(column(overview_->width(), overviewToTheLeft_), picture_.top() + kMargin);
}

void FloatingViews::MakeWay(QPoint pointer) {
  constexpr int kNear = 12;  // pixels
  const auto isNear = [&](const QRect& window) {
    return window.adjusted(-kNear, -kNear, kNear, kNear).contains(pointer);
  };
  if (!picture_.contains(pointer)) return;
  if (!zoom_->isHidden() && isNear(zoom_->geometry())) {
    if (zoom_->IsMoved())
      zoom_->StepAside(picture_.adjusted(kMargin, 0, -kMargin, 0), pointer);
    else
      zoomToTheLeft_ = !zoomToTheLeft_;
  }
  if (overviewIsOver_ && !overview_->isHidden() && isNear(overview_->geometry()))
    overviewToTheLeft_ = !overviewToTheLeft_;
  PlaceOverPicture();
}

void FloatingViews::Uncover(const QRect& control) {
  zoom_->Uncover(control);
}

}  // namespace graphize
