#include "app/status_panels.h"

#include <QLabel>
#include <QProgressBar>
#include <QStatusBar>
#include <utility>

#include "widgets/elided_label.h"
#include "widgets/show.h"

namespace graphize {

namespace {

template <typename Label = QLabel>
Label* Panel(QStatusBar* bar, const char* key, const QString& accessibleName, int stretch,
             const QString& widest) {
  auto* label = Named(new Label, key, accessibleName);
  label->setFrameStyle(QFrame::Panel | QFrame::Sunken);
  label->setMinimumWidth(label->fontMetrics().horizontalAdvance(widest) + 12);
  bar->addWidget(label, stretch);
  return label;
}

}  // namespace

/// A progress bar that says, beside the percentage, what the panel under it says.
class StatusPanels::Progress : public QProgressBar {
 public:
  using QProgressBar::QProgressBar;
  void Say(const QString& what) {
    if (std::exchange(what_, what) != what) update();
  }
  QString text() const override {
    QString percent = QProgressBar::text();
    if (what_.trimmed().isEmpty()) return percent;
    constexpr int kMargins = 16;
    const QString gap = QStringLiteral("  ");
    const int room = width() - fontMetrics().horizontalAdvance(gap + percent) - kMargins;
    return fontMetrics().elidedText(what_, Qt::ElideRight, room) + gap + percent;
  }

 private:
  QString what_;
};

StatusPanels::StatusPanels(QStatusBar* bar)
    : status_(Panel<ElidedLabel>(bar, "status", QObject::tr("Status"), 1, {})),
      hint_(Panel<ElidedLabel>(bar, "hint", QObject::tr("Hint"), 1, {})),
      points_(Panel(bar, "points", QObject::tr("Number of points"), 0, QStringLiteral("32767"))),
      sizeX_(Panel(bar, "sizex", QObject::tr("Picture width"), 0, QStringLiteral("W=32767"))),
      sizeY_(Panel(bar, "sizey", QObject::tr("Picture height"), 0, QStringLiteral("H=32767"))),
      progress_(Named(new Progress(bar), "ProgressBar1", QObject::tr("Progress"))) {
  progress_->setRange(0, 100);
  progress_->hide();
}

void StatusPanels::Render(const StatusBar& status, int points, bool hintElsewhere) {
  status_->ShowText(status.Status);
  hint_->ShowText(status.Hint);
  hint_->setVisible(!hintElsewhere);
  Show(points_, std::to_string(points));
  Show(sizeX_, status.SizeX);
  Show(sizeY_, status.SizeY);
  progress_->setVisible(status.ProgressVisible);
  if (!status.ProgressVisible) return;
  const QRect panels = status_->geometry();
  progress_->setGeometry(hintElsewhere ? panels : panels.united(hint_->geometry()));
  progress_->raise();
  progress_->Say(ToQString(status.Status));
  progress_->setValue(status.ProgressValue);
}

}  // namespace graphize
