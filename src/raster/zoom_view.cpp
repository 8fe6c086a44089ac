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

/// The enlarged pixels and the cross at the cursor.
class ZoomView::Picture : public QWidget {
 public:
  Picture(const PlotImage& image, QWidget* parent) : QWidget(parent), image_(image) {
    setFixedSize(161, 161);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setCursor(Qt::SizeAllCursor);
  }

  void Look(int x, int y, int factor, bool pictureChanged) {
    if (x == x_ && y == y_ && factor == factor_ && !pictureChanged) return;
    x_ = x;
    y_ = y;
    factor_ = factor;
    update();
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Dark));
    if (!image_.IsPresent()) return;
    // The pixel under the cursor stands in the middle; whole pixels around it fill the rest.
    const int left = width() / 2 - factor_ / 2, top = height() / 2 - factor_ / 2;
    const int before = (left + factor_ - 1) / factor_;
    const int count = (width() + factor_ - 1) / factor_ + 1;
    const QRect wanted(x_ - before, y_ - before, count, count);
    const QRect source = wanted & QRect(0, 0, image_.Width(), image_.Height());
    if (!source.isEmpty()) {
      const QRect target(left + (source.x() - x_) * factor_, top + (source.y() - y_) * factor_,
                         source.width() * factor_, source.height() * factor_);
      painter.drawImage(target, AsImage(image_.Pixels), source);
    }
    painter.setPen(QPen(Qt::red, 1));
    const int middle = width() / 2;
    const int gap = factor_ / 2 + 2;
    painter.drawLine(0, middle, middle - gap, middle);
    painter.drawLine(middle + gap, middle, width(), middle);
    painter.drawLine(middle, 0, middle, middle - gap);
    painter.drawLine(middle, middle + gap, middle, height());
  }

 private:
  const PlotImage& image_;
  int x_ = 0, y_ = 0, factor_ = 4;
};

ZoomView::ZoomView(const PlotImage& image, int minimumFactor, int maximumFactor, QWidget* parent)
    : QFrame(parent) {
  setObjectName(QStringLiteral("FRM_Zoom"));
  setFrameStyle(QFrame::Panel | QFrame::Raised);
  setAutoFillBackground(true);
  setCursor(Qt::ArrowCursor);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(3, 3, 3, 3);
  column->setSpacing(3);
  picture_ = Named(new Picture(image, this), "Zoom", tr("Zoom window"));
  picture_->setToolTip(tr("Click & Drag to move the zoom window"));
  picture_->installEventFilter(this);
  column->addWidget(picture_);
  slider_ = Named(new QSlider(Qt::Horizontal), "zoomer", tr("Zoom factor"));
  slider_->setRange(minimumFactor, maximumFactor);
  slider_->setPageStep(2);
  slider_->setToolTip(tr("Zoom factor (keys < and >)"));
  column->addWidget(slider_);
  connect(slider_, &QSlider::valueChanged, this, &ZoomView::FactorChosen);
  hide();
}

void ZoomView::Render(bool shown, int x, int y, int factor, bool pictureChanged) {
  if (shown != !isHidden()) {
    setVisible(shown);
    StayInside();
  }
  if (!shown) return;
  {
    const QSignalBlocker quiet(slider_);
    slider_->setValue(factor);
  }
  picture_->Look(x, y, factor, pictureChanged);
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

void ZoomView::enterEvent(QEnterEvent* event) {
  QFrame::enterEvent(event);
  emit Entered();
}

void ZoomView::StayInside() {
  const QSize room = parentWidget()->size() - sizeHint();
  QPoint place = moved_ ? pos() : home_;
  place.setX(std::clamp(place.x(), 0, std::max(room.width(), 0)));
  place.setY(std::clamp(place.y(), 0, std::max(room.height(), 0)));
  resize(sizeHint());
  move(place);
  raise();
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
