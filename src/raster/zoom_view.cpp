#include "raster/zoom_view.h"

#include <QImage>
#include <QMouseEvent>
#include <QPainter>
#include <QSlider>
#include <QVBoxLayout>
#include <algorithm>

#include "raster/plot_view.h"
#include "widgets/show.h"

namespace graphize {

namespace {

constexpr int kSmallestSide = 161;
constexpr int kEdge = 5;  // pixels around that size the window

Qt::CursorShape CursorFor(Qt::Edges edges) {
  const bool across = edges & (Qt::LeftEdge | Qt::RightEdge);
  const bool down = edges & (Qt::TopEdge | Qt::BottomEdge);
  if (across && down) {
    const bool falling =
        edges == (Qt::LeftEdge | Qt::TopEdge) || edges == (Qt::RightEdge | Qt::BottomEdge);
    return falling ? Qt::SizeFDiagCursor : Qt::SizeBDiagCursor;
  }
  if (across) return Qt::SizeHorCursor;
  return down ? Qt::SizeVerCursor : Qt::ArrowCursor;
}

}  // namespace

/// The enlarged pixels, the cross at the cursor and the frame of the pixel that is snapped to.
class ZoomView::Picture : public QWidget {
 public:
  Picture(const PlotImage& image, QWidget* parent) : QWidget(parent), image_(image) {
    setMinimumSize(kSmallestSide, kSmallestSide);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setCursor(Qt::SizeAllCursor);
  }

  void Show(const Look& look, bool pictureChanged) {
    if (look == look_ && !pictureChanged) return;
    look_ = look;
    update();
  }

  QSize sizeHint() const override { return minimumSize(); }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Dark));
    if (!image_.IsPresent()) return;
    // Whole pixels fill what is around the one in the middle.
    const auto pixels = [this](int middle, int first, int length) {
      const int before = (first + look_.Factor - 1) / look_.Factor;
      return std::pair(middle - before, (length + look_.Factor - 1) / look_.Factor + 1);
    };
    const auto [column, columns] = pixels(look_.X, At(look_.X, look_.Y).left(), width());
    const auto [row, rows] = pixels(look_.Y, At(look_.X, look_.Y).top(), height());
    const QRect source =
        QRect(column, row, columns, rows) & QRect(0, 0, image_.Width(), image_.Height());
    if (!source.isEmpty()) {
      painter.drawImage(At(source.left(), source.top()) | At(source.right(), source.bottom()),
                        AsImage(image_.Pixels), source);
      PaintGrid(painter, source);
    }
    if (look_.SnapsTo) PaintSnap(painter, At(look_.SnapsTo->x(), look_.SnapsTo->y()));
    PaintCross(painter);
    if (look_.SnapsWithin) PaintExactSnap(painter, *look_.SnapsWithin);
  }

 private:
  /// Where a pixel is shown.
  QRect At(int x, int y) const {
    return {width() / 2 - look_.Factor / 2 + (x - look_.X) * look_.Factor,
            height() / 2 - look_.Factor / 2 + (y - look_.Y) * look_.Factor, look_.Factor,
            look_.Factor};
  }

  /// Where pixels begin; narrow ones would be covered.
  void PaintGrid(QPainter& painter, const QRect& source) const {
    constexpr int kNarrow = 4;
    if (look_.Factor < kNarrow) return;
    const QColor line(128, 128, 128, look_.Factor > kNarrow ? 110 : 60);
    const QRect all = At(source.left(), source.top()) | At(source.right(), source.bottom());
    for (int x = source.left(); x <= source.right(); ++x)
      painter.fillRect(QRect(At(x, look_.Y).left(), all.top(), 1, all.height()), line);
    for (int y = source.top(); y <= source.bottom(); ++y)
      painter.fillRect(QRect(all.left(), At(look_.X, y).top(), all.width(), 1), line);
  }

  /// A frame that is seen on ink and on paper, around the pixel.
  static void PaintSnap(QPainter& painter, const QRect& pixel) {
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(Qt::white, 1));
    painter.drawRect(pixel.adjusted(-3, -3, 2, 2));
    painter.setPen(QPen(QColor(0, 120, 215), 2));
    painter.drawRect(pixel.adjusted(-1, -1, 1, 1));
  }

  /// A small cross that is seen on ink and on paper, to a part of a pixel.
  void PaintExactSnap(QPainter& painter, const QPointF& place) const {
    const QPointF first = At(0, 0).topLeft();
    const QPointF middle = first + (place + QPointF(0.5, 0.5)) * look_.Factor;
    constexpr double kCrossReach = 6;
    painter.setRenderHint(QPainter::Antialiasing);
    for (const auto& [width, colour] :
         {std::pair(3, QColor(Qt::white)), {1, QColor(0, 120, 215)}}) {
      painter.setPen(QPen(colour, width));
      painter.drawLine(middle - QPointF(kCrossReach, 0), middle + QPointF(kCrossReach, 0));
      painter.drawLine(middle - QPointF(0, kCrossReach), middle + QPointF(0, kCrossReach));
    }
    painter.setRenderHint(QPainter::Antialiasing, false);
  }

  void PaintCross(QPainter& painter) const {
    painter.setPen(QPen(Qt::red, 1));
    const int x = width() / 2, y = height() / 2;
    const int gap = look_.Factor / 2 + 2;
    painter.drawLine(0, y, x - gap, y);
    painter.drawLine(x + gap, y, width(), y);
    painter.drawLine(x, 0, x, y - gap);
    painter.drawLine(x, y + gap, x, height());
  }

  const PlotImage& image_;
  Look look_;
};

ZoomView::ZoomView(const PlotImage& image, int minimumFactor, int maximumFactor, QWidget* parent)
    : QFrame(parent) {
  setObjectName(QStringLiteral("FRM_Zoom"));
  setFrameStyle(QFrame::Panel | QFrame::Raised);
  setAutoFillBackground(true);
  setMouseTracking(true);
  setCursor(Qt::ArrowCursor);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(3, 3, 3, 3);
  column->setSpacing(3);
  picture_ = Named(new Picture(image, this), "Zoom", tr("Zoom window"));
  picture_->setToolTip(tr("Click & Drag to move the zoom window"));
  picture_->installEventFilter(this);
  column->addWidget(picture_, 1);
  slider_ = Named(new QSlider(Qt::Horizontal), "zoomer", tr("Zoom factor"));
  slider_->setRange(minimumFactor, maximumFactor);
  slider_->setPageStep(2);
  slider_->setToolTip(tr("Zoom factor (keys < and >)"));
  slider_->setCursor(Qt::ArrowCursor);
  column->addWidget(slider_);
  connect(slider_, &QSlider::valueChanged, this, &ZoomView::FactorChosen);
  hide();
}

void ZoomView::Render(bool shown, const Look& look, bool pictureChanged) {
  if (shown != !isHidden()) {
    setVisible(shown);
    StayInside();
  }
  if (!shown) return;
  {
    const QSignalBlocker quiet(slider_);
    slider_->setValue(look.Factor);
  }
  picture_->Show(look, pictureChanged);
}

QSize ZoomView::WantedSize() const {
  return sizeHint().expandedTo(dragged_).boundedTo(parentWidget()->size());
}

void ZoomView::SetHome(QPoint home) {
  home_ = home;
  StayInside();
}

void ZoomView::Uncover(const QRect& area) {
  if (!moved_ || !geometry().intersects(area)) return;
  moved_ = false;
  StayInside();
}

void ZoomView::StepAside(const QRect& room, QPoint needed) {
  const bool toTheLeft = needed.x() - room.left() > room.right() - needed.x();
  move(toTheLeft ? room.left() : room.right() + 1 - width(), y());
}

void ZoomView::enterEvent(QEnterEvent* event) {
  QFrame::enterEvent(event);
  emit Entered();
}

void ZoomView::StayInside() {
  resize(WantedSize());
  const QSize room = parentWidget()->size() - size();
  QPoint place = moved_ ? pos() : home_;
  place.setX(std::clamp(place.x(), 0, std::max(room.width(), 0)));
  place.setY(std::clamp(place.y(), 0, std::max(room.height(), 0)));
  move(place);
  raise();
}

Qt::Edges ZoomView::EdgesAt(QPoint at) const {
  Qt::Edges edges;
  // Near a corner both.
  constexpr int kCorner = 3 * kEdge;
  const bool border = !rect().adjusted(kEdge, kEdge, -kEdge, -kEdge).contains(at);
  if (!border) return edges;
  edges.setFlag(Qt::LeftEdge, at.x() < kCorner);
  edges.setFlag(Qt::RightEdge, at.x() >= width() - kCorner);
  edges.setFlag(Qt::TopEdge, at.y() < kCorner);
  edges.setFlag(Qt::BottomEdge, at.y() >= height() - kCorner);
  return edges;
}

void ZoomView::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  edges_ = EdgesAt(event->position().toPoint());
  grabbed_ = event->globalPosition().toPoint();
  pressed_ = geometry();
}

void ZoomView::mouseMoveEvent(QMouseEvent* event) {
  if (!event->buttons().testFlag(Qt::LeftButton)) {
    edges_ = {};
    setCursor(CursorFor(EdgesAt(event->position().toPoint())));
    return;
  }
  if (!edges_) return;
  const QPoint by = event->globalPosition().toPoint() - grabbed_;
  QRect wanted = pressed_;
  if (edges_ & Qt::LeftEdge) wanted.setLeft(wanted.left() + by.x());
  if (edges_ & Qt::RightEdge) wanted.setRight(wanted.right() + by.x());
  if (edges_ & Qt::TopEdge) wanted.setTop(wanted.top() + by.y());
  if (edges_ & Qt::BottomEdge) wanted.setBottom(wanted.bottom() + by.y());
  dragged_ = wanted.size();
  // The edges that are not dragged stay.
  const QSize size = WantedSize();
  QPoint place = pressed_.topLeft();
  if (edges_ & Qt::LeftEdge) place.setX(pressed_.right() + 1 - size.width());
  if (edges_ & Qt::TopEdge) place.setY(pressed_.bottom() + 1 - size.height());
  moved_ = true;
  move(place);
  StayInside();
  emit Resized();
}

bool ZoomView::eventFilter(QObject* watched, QEvent* event) {
  const bool isPress = event->type() == QEvent::MouseButtonPress;
  if (watched != picture_ || (!isPress && event->type() != QEvent::MouseMove))
    return QFrame::eventFilter(watched, event);
  const auto* mouse = static_cast<QMouseEvent*>(event);
  if (!mouse->buttons().testFlag(Qt::LeftButton)) return false;
  const QPoint at = mouse->globalPosition().toPoint();
  if (isPress) {
    grabbed_ = mapFromGlobal(at);
  } else {
    moved_ = true;
    move(parentWidget()->mapFromGlobal(at) - grabbed_);
    StayInside();
  }
  return true;
}

}  // namespace graphize
