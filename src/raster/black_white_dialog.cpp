#include "raster/black_white_dialog.h"

#include <QGridLayout>
#include <QImage>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QStyle>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>
#include <utility>

#include "base/translation.h"
#include "widgets/show.h"

namespace graphize {

/// How many pixels there are of each luminance, on a scale that shows few beside many; what becomes
/// black is dark.
class BlackWhiteDialog::Histogram : public QWidget {
 public:
  explicit Histogram(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("Histogram"));
    setAccessibleName(QObject::tr("Histogram of the picture"));
    setToolTip(QObject::tr("How many pixels are how light, from black on the left to white"));
    setMinimumHeight(70);
  }
  void Look(const std::array<int, 256>& counts, int threshold) {
    if (counts_ == counts && threshold_ == threshold) return;
    counts_ = counts;
    threshold_ = threshold;
    update();
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Base));
    const double most = std::log1p(*std::max_element(counts_.begin(), counts_.end()));
    // The knob of the slider below stands under the line.
    const int knob = style()->pixelMetric(QStyle::PM_SliderLength);
    const double column = (width() - knob) / 254.0;
    const auto at = [&](int level) { return knob / 2.0 + (level - 1) * column; };
    const QColor dark = palette().color(QPalette::Text), light = palette().color(QPalette::Mid);
    for (int level = 0; level < 256 && most > 0; ++level) {
      const double share = std::log1p(counts_[static_cast<std::size_t>(level)]) / most;
      const double tall = share * (height() - 4);
      painter.fillRect(QRectF(at(level), height() - tall, column, tall),
                       level < threshold_ ? dark : light);
    }
    if (threshold_ <= 0) return;
    painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
    painter.drawLine(QPointF(at(threshold_), 0), QPointF(at(threshold_), height()));
  }

 private:
  std::array<int, 256> counts_{};
  int threshold_ = 0;  // 0: there is none
};

/// The part of the picture, pixel by pixel; a drag moves it.
class BlackWhiteDialog::Preview : public QWidget {
 public:
  explicit Preview(BlackWhiteDialog* dialog) : QWidget(dialog), dialog_(dialog) {
    setObjectName(QStringLiteral("PreviewOfPart"));
    setAccessibleName(QObject::tr("The picture in black and white"));
    setToolTip(QObject::tr("Drag it to see another part of the picture"));
    setMinimumSize(160, 90);  // on a small screen only its middle is seen
    setCursor(Qt::OpenHandCursor);
  }
  void Look(const Raster& part, int changes) {
    part_ = &part;
    if (std::exchange(changes_, changes) != changes) update();
  }
  QSize sizeHint() const override {
    return {BlackWhiteForm::kPartWidth, BlackWhiteForm::kPartHeight};
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Mid));
    if (part_ == nullptr || part_->IsEmpty()) return;
    const QImage image(reinterpret_cast<const uchar*>(part_->Pixels()), part_->Width(),
                       part_->Height(), part_->Width() * 4LL, QImage::Format_RGB32);
    painter.drawImage((width() - part_->Width()) / 2, (height() - part_->Height()) / 2, image);
  }
  void mousePressEvent(QMouseEvent* event) override { last_ = event->position().toPoint(); }
  void mouseMoveEvent(QMouseEvent* event) override {
    if (!event->buttons().testFlag(Qt::LeftButton)) return;
    const QPoint here = event->position().toPoint();
    const QPoint way = std::exchange(last_, here) - here;
    emit dialog_->PreviewDragged(way.x(), way.y());
  }

 private:
  BlackWhiteDialog* dialog_;
  const Raster* part_ = nullptr;
  int changes_ = 0;
  QPoint last_;
};

BlackWhiteDialog::BlackWhiteDialog(QWidget* parent)
    : FormDialog("FRM_BlackWhite", tr("Black & White"), parent) {
  auto* column = static_cast<QVBoxLayout*>(layout());
  preview_ = new Preview(this);
  column->addWidget(preview_, 1);
  const char* const captions[] = {Marked("&Fixed threshold"),
                                  Marked("&Local threshold, for uneven light and faded scans")};
  for (int i = 0; i < 2; ++i) {
    auto* option = new QRadioButton(tr(captions[i]));
    option->setObjectName(MemberName("OPT_Threshold", i));
    connect(option, &QRadioButton::clicked, this, [this, i] { emit LocalChosen(i == 1); });
    column->addWidget(option, 0, Qt::AlignLeft);
    threshold_[static_cast<std::size_t>(i)] = option;
  }
  threshold_[0]->setToolTip(tr("What is darker than one limit becomes black"));
  threshold_[1]->setToolTip(tr("What differs from the paper around it becomes black"));
  histogram_ = new Histogram(this);
  auto* grid = new QGridLayout;
  grid->addWidget(histogram_, 0, 0);
  level_ = Named(new QSlider(Qt::Horizontal), "SCRL_Threshold", tr("Threshold"));
  level_->setToolTip(tr("What is darker becomes black, by mouse or arrow keys"));
  level_->setRange(1, 255);
  level_->setPageStep(10);
  shown_ = Named(new QLabel, "LBL_Threshold", tr("Threshold"));
  shown_->setMinimumWidth(shown_->fontMetrics().horizontalAdvance(QStringLiteral("0000")));
  shown_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  grid->addWidget(level_, 1, 0);
  grid->addWidget(shown_, 1, 1);
  grid->setColumnStretch(0, 1);
  column->addLayout(grid);
  hint_ = Named(new QLabel, "LBL_Hint", tr("Hint"));
  hint_->setTextFormat(Qt::PlainText);
  hint_->setWordWrap(true);
  column->addWidget(hint_);
  reduce_ = Named(new QPushButton(tr("&Reduce")), "BTN_Reduce");
  reduce_->setToolTip(tr("Make the whole picture black and white; Undo brings its colours back"));
  auto* cancel = Named(new QPushButton(tr("&Cancel")), "BTN_Cancel");
  cancel->setToolTip(tr("Close this window and leave the picture as it is"));
  AddButtons({reduce_, cancel});
  connect(level_, &QSlider::valueChanged, this, &BlackWhiteDialog::ThresholdMoved);
  connect(reduce_, &QPushButton::clicked, this, &BlackWhiteDialog::ReducePressed);
}

void BlackWhiteDialog::Render(const BlackWhiteForm& form) {
  threshold_[form.Local ? 1 : 0]->setChecked(true);
  {
    const QSignalBlocker quiet(level_);
    level_->setValue(form.Threshold);
  }
  const bool isFixed = form.CanReduce && !form.Local;
  Enable(level_, isFixed);
  Enable(shown_, isFixed);
  for (QRadioButton* option : threshold_) Enable(option, form.CanReduce);
  Enable(reduce_, form.CanReduce);
  Show(shown_, std::to_string(form.Threshold));
  Show(hint_,
       form.CanReduce
           ? Tr("Tracers and scan follow only what is black.")
           : Tr("The picture is black and white already. Reload Image (F5) brings its colours "
                "back."));
  histogram_->Look(form.Histogram, isFixed ? form.Threshold : 0);
  preview_->Look(form.Preview, form.Changes);
}

}  // namespace graphize
