#include "app/zoom_percent.h"

#include <QKeyEvent>
#include <QMenu>

#include "commands/view_commands.h"
#include "widgets/show.h"

namespace graphize {

ZoomPercent::ZoomPercent(QWidget* parent) : QLabel(parent) {
  Named(this, "zoompercent", tr("Zoom of the picture"));
  setToolTip(tr("How large the picture is shown; click to choose"));
  setFrameStyle(QFrame::Panel | QFrame::Sunken);
  setAlignment(Qt::AlignCenter);
  setFocusPolicy(Qt::TabFocus);
  setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("3200%")) + 12);
  Render(false, 1, false);
}

void ZoomPercent::Render(bool shown, double zoom, bool fits) {
  zoom_ = zoom;
  fits_ = fits;
  Show(this, shown ? ZoomText(zoom) : "");
  Enable(this, shown);
}

void ZoomPercent::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) OpenMenu();
}

void ZoomPercent::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Space:
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Down:
    case Qt::Key_Up:
      return OpenMenu();
    default:
      QLabel::keyPressEvent(event);
  }
}

void ZoomPercent::OpenMenu() {
  auto* menu = new QMenu(this);
  menu->setObjectName(QStringLiteral("MNU_ZoomPercent"));
  menu->setAttribute(Qt::WA_DeleteOnClose);
  const auto add = [menu](const QString& caption, bool checked) {
    QAction* action = menu->addAction(caption);
    action->setCheckable(true);
    action->setChecked(checked);
    return action;
  };
  connect(add(tr("Fit in Window"), fits_), &QAction::triggered, this, &ZoomPercent::FitChosen);
  menu->addSeparator();
  for (double zoom = kLargestZoom; zoom >= kSmallestZoom; zoom /= 2) {
    connect(add(ToQString(ZoomText(zoom)), !fits_ && zoom == zoom_), &QAction::triggered, this,
            [this, zoom] { emit ZoomChosen(zoom); });
  }
  menu->popup(mapToGlobal(QPoint(0, -menu->sizeHint().height())));
}

}  // namespace graphize
