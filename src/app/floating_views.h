#pragma once

#include <QRect>

class QWidget;

namespace graphize {

class OverviewView;
class ZoomView;

/// Where the zoom window and the overview stand: beneath the panels where there is room, so that
/// they cover nothing of the picture; else in its corners, where they make way for the pointer.
class FloatingViews {
 public:
  FloatingViews(ZoomView* zoom, OverviewView* overview) : zoom_(zoom), overview_(overview) {}

  /// Areas of their parent: the side with the panels, which end at `panelsEnd`, and the picture.
  void Place(const QRect& side, int panelsEnd, const QRect& picture);
  /// The pointer has come to this place of the parent, where the picture is needed.
  void MakeWay(QPoint pointer);
  /// A control that is needed.
  void Uncover(const QRect& control);

 private:
  void PlaceOverPicture();

  ZoomView* zoom_;
  OverviewView* overview_;
  QRect picture_;
  bool zoomIsOver_ = false, overviewIsOver_ = false;
  bool zoomToTheLeft_ = false, overviewToTheLeft_ = false;
};

}  // namespace graphize
