#pragma once

#include <QPixmap>
#include <QWidget>

#include "scanner/scan_form.h"

namespace graphize {

/// The scanner's glass, its preview and the area to scan, which dragging the mouse chooses.
class ScanAreaView : public QWidget {
  Q_OBJECT
 public:
  explicit ScanAreaView(QWidget* parent = nullptr);
  void Render(const ScanForm& form);

  QSize sizeHint() const override;

 signals:
  void AreaDragged(const PageArea& area);

 private:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

  /// The whole glass in this widget, and the way between its pixels and the device's units.
  QRectF Glass() const;
  QRectF OnWidget(const PageArea& area) const;
  PageArea OnGlass(const QRectF& rectangle) const;
  void ReadPreview(const Raster& preview);

  PageArea whole_{0, 0, 210, 297};
  PageArea area_;
  bool mayDrag_ = false;
  QPixmap preview_;
  int previewNumber_ = 0;
  QPointF pressed_, dragged_;
  bool dragging_ = false;
};

}  // namespace graphize
