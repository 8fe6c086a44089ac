#pragma once

#include <QPoint>
#include <QPointF>

class QSinglePointEvent;
class QWidget;

namespace graphize {

/// Where an event lies in `widget`: the upper left corner of its screen pixel, exactly. Where the
/// screen is scaled, the event's own position is rounded to the nearest logical pixel.
QPointF PlaceOf(const QWidget* widget, const QSinglePointEvent* event);
/// The same for an event that tells of the pointer coming over the widget: its position has gone
/// through whole pixels of the desktop, and the screen pointer itself corrects that.
QPointF EnteredPlace(const QWidget* widget, const QSinglePointEvent* event);
/// The same for the screen pointer as it stands now.
QPointF PointerPlace(const QWidget* widget);

/// Moves the screen pointer by so many logical pixels of `widget`, at least by one screen pixel
/// each way. False where the system does not let programs do that.
bool MovePointerBy(const QWidget* widget, int dx, int dy);

}  // namespace graphize
