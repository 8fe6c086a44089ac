#include "widgets/pointer.h"

#include <xcb/xcb.h>

#include <QCursor>
#include <QGuiApplication>
#include <QSinglePointEvent>
#include <QWidget>
#include <QWindow>
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <memory>
#include <optional>

namespace graphize {

namespace {

struct FreeReply {
  void operator()(void* reply) const { std::free(reply); }
};

/// None on other platforms, which hand out an interface whose connection is not to be touched.
xcb_connection_t* XConnection() {
  if (QGuiApplication::platformName() != QLatin1String("xcb")) return nullptr;
  const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  return x11 != nullptr ? x11->connection() : nullptr;
}

/// The pointer in screen pixels of the widget's window: QCursor knows it in rounded logical ones.
std::optional<QPoint> ScreenPixelInWindow(const QWidget* widget) {
  xcb_connection_t* connection = XConnection();
  const QWindow* window = widget->window()->windowHandle();
  if (connection == nullptr || window == nullptr) return std::nullopt;
  const std::unique_ptr<xcb_query_pointer_reply_t, FreeReply> reply(xcb_query_pointer_reply(
      connection, xcb_query_pointer(connection, static_cast<xcb_window_t>(window->winId())),
      nullptr));
  if (!reply || reply->same_screen == 0) return std::nullopt;
  return QPoint(reply->win_x, reply->win_y);
}

QPoint Floor(QPointF position) {
  constexpr double kScaling = 1e-6;  // is not exact where a pixel begins
  return {static_cast<int>(std::floor(position.x() + kScaling)),
          static_cast<int>(std::floor(position.y() + kScaling))};
}

/// Screen pixels to go from `from` into logical pixel `to`, near its middle; `by` says which way.
int ScreenWay(int from, int to, int by, double scale) {
  if (by == 0) return 0;
  const int first = static_cast<int>(std::ceil(to * scale - 1e-6));
  const int middle = static_cast<int>(std::floor((to + 0.5) * scale));
  const int way = std::max(first, middle) - from;
  return by > 0 ? std::max(way, 1) : std::min(way, -1);
}

bool IsNear(QPointF a, QPointF b) {
  constexpr double kRounding = 2;
  return std::abs(a.x() - b.x()) < kRounding && std::abs(a.y() - b.y()) < kRounding;
}

}  // namespace

QPointF PlaceOf(const QWidget* widget, const QSinglePointEvent* event) {
  const QPointF position = widget->mapFrom(widget->window(), event->scenePosition());
  // Some events that Qt makes up itself have no place in the window.
  return IsNear(position, event->position()) ? position : EnteredPlace(widget, event);
}

QPointF EnteredPlace(const QWidget* widget, const QSinglePointEvent* event) {
  const QPointF pointer = PointerPlace(widget);
  return IsNear(pointer, event->position()) ? pointer : event->position();
}

QPointF PointerPlace(const QWidget* widget) {
  const auto screen = ScreenPixelInWindow(widget);
  if (!screen) return widget->mapFromGlobal(QCursor::pos());
  return widget->mapFrom(widget->window(),
                         QPointF(*screen) / widget->window()->devicePixelRatioF());
}

bool MovePointerBy(const QWidget* widget, int dx, int dy) {
  if (QGuiApplication::platformName().startsWith(QLatin1String("wayland"))) return false;
  const auto from = ScreenPixelInWindow(widget);
  if (!from) {
    QCursor::setPos(QCursor::pos() + QPoint(dx, dy));
    return true;
  }
  const QPoint to = widget->mapTo(widget->window(), Floor(PointerPlace(widget)) + QPoint(dx, dy));
  const double scale = widget->window()->devicePixelRatioF();
  xcb_connection_t* connection = XConnection();
  xcb_warp_pointer(connection, XCB_NONE, XCB_NONE, 0, 0, 0, 0,
                   static_cast<std::int16_t>(ScreenWay(from->x(), to.x(), dx, scale)),
                   static_cast<std::int16_t>(ScreenWay(from->y(), to.y(), dy, scale)));
  xcb_flush(connection);
  return true;
}

}  // namespace graphize
