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
  const int beneath = side.bottom() + 1 - kMargin;
  const auto middle = [&side](int width) { return side.left() + (side.width() - width) / 2; };
  if (!zoomIsOver_) zoom_->SetHome({middle(zoom.width()), beneath - zoom.height()});
  // Above the zoom window, or alone.
  const bool zoomIsBeneath = !zoom_->isHidden() && !zoomIsOver_ && !zoom_->IsMoved();
  const int floor = zoomIsBeneath ? beneath - zoom.height() - kMargin : beneath;
  const int top = floor - overview.height();
  overviewIsOver_ = top < panelsEnd + kMargin;
  if (!overviewIsOver_) overview_->move(middle(overview.width()), top);
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
  if (!overviewIsOver_) return;
  int left = column(overview_->width(), overviewToTheLeft_);
  const int both = zoom_->height() + overview_->height() + 3 * kMargin;
  const int across = zoom_->width() + overview_->width() + 3 * kMargin;
  const bool isBesideZoom = zoomIsOver_ && !zoom_->isHidden() && !zoom_->IsMoved() &&
                            zoomToTheLeft_ == overviewToTheLeft_ && both > picture_.height() &&
                            across <= picture_.width();
  if (isBesideZoom) left += (overviewToTheLeft_ ? 1 : -1) * (zoom_->width() + kMargin);
  overview_->move(left, picture_.top() + kMargin);
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
