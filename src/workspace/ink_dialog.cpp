#include "workspace/ink_dialog.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

#include "widgets/show.h"
#include "widgets/swatch.h"
#include "widgets/tolerance_slider.h"

namespace graphize {

namespace {

constexpr int kSwatchesInRow = 8;

QPixmap LargeSwatch(const QWidget& on, std::uint32_t pixel) {
  return Swatch(on, pixel, 2 * on.fontMetrics().height());
}

}  // namespace

InkDialog::InkDialog(QWidget* parent) : FormDialog("FRM_Ink", tr("Ink from Colour"), parent) {
  // The picture takes the eyedropper's clicks.
  setWindowModality(Qt::NonModal);
  auto* column = static_cast<QVBoxLayout*>(layout());
  swatchesAt_ = new QGridLayout;
  swatchesAt_->setColumnStretch(kSwatchesInRow, 1);
  column->addLayout(swatchesAt_);

  auto* chosen = new QHBoxLayout;
  chosen_ = Named(new QLabel, "LBL_Colour", tr("The chosen ink"));
  ink_ = Named(new QLabel, "LBL_Ink", tr("What counts as this ink"));
  ink_->setTextFormat(Qt::PlainText);
  ink_->setWordWrap(true);
  // Room for the longest: the controls below seldom jump.
  ink_->setMinimumSize(32 * ink_->fontMetrics().averageCharWidth(),
                       2 * ink_->fontMetrics().height());
  chosen->addWidget(chosen_);
  chosen->addWidget(ink_, 1);
  column->addLayout(chosen);

  tolerance_ = new ToleranceSlider(InkForm::kNarrowest, InkForm::kAsFound, InkForm::kWidest);
  column->addWidget(tolerance_);

  accept_ = Named(new QPushButton(tr("As &Black and White")), "BTN_Accept");
  accept_->setToolTip(tr("Make this ink black and all else white, for tracers, scan and snapping"));
  showColours_ = Named(new QPushButton(tr("&Show Colours")), "BTN_ShowColours");
  showColours_->setToolTip(tr("The picture with its colours again"));
  auto* cancel = Named(new QPushButton(tr("&Cancel")), "BTN_Cancel");
  cancel->setToolTip(tr("Close this window and leave the picture as it is"));
  AddButtons({accept_, showColours_, cancel});
  connect(tolerance_, &ToleranceSlider::Chosen, this, &InkDialog::ToleranceChosen);
  connect(accept_, &QPushButton::clicked, this, &InkDialog::AcceptPressed);
  connect(showColours_, &QPushButton::clicked, this, &InkDialog::ShowColoursPressed);
}

QToolButton* InkDialog::MakeSwatch(const PictureInk& ink, int index) {
  const std::uint32_t pixel = PixelOf(ink.Colour);
  auto* button = new QToolButton;
  button->setObjectName(MemberName("BTN_Swatch", index));
  const QString what =
      tr("Ink %1: %2 % of what is drawn")
          .arg(QStringLiteral("%1,%2,%3").arg(qRed(pixel)).arg(qGreen(pixel)).arg(qBlue(pixel)))
          .arg(QString::number(100.0 * static_cast<double>(ink.Share), 'f', 1));
  button->setAccessibleName(what);
  button->setToolTip(what);
  const QPixmap swatch = LargeSwatch(*this, pixel);
  button->setIcon(QIcon(swatch));
  button->setIconSize(swatch.deviceIndependentSize().toSize());
  button->setCheckable(true);
  button->setFocusPolicy(Qt::StrongFocus);
  connect(button, &QToolButton::clicked, this, [this, index] { emit SwatchChosen(index); });
  return button;
}

void InkDialog::Render(const InkForm& form) {
  for (std::size_t i = swatches_.size(); i < form.Swatches.size(); ++i) {
    const int index = static_cast<int>(i);
    swatches_.push_back(MakeSwatch(form.Swatches[i], index));
    swatchesAt_->addWidget(swatches_.back(), index / kSwatchesInRow, index % kSwatchesInRow);
  }
  for (std::size_t i = 0; i < swatches_.size(); ++i)
    swatches_[i]->setChecked(form.Chosen && i < form.Swatches.size() &&
                             PixelOf(form.Swatches[i].Colour) == *form.Chosen);
  tolerance_->Render(form.Tolerance);
  const QColor colour = form.Chosen ? QColor::fromRgb(*form.Chosen) : QColor();
  if (chosen_->property("colour").value<QColor>() != colour) {
    chosen_->setProperty("colour", colour);
    chosen_->setPixmap(form.Chosen ? LargeSwatch(*this, *form.Chosen) : QPixmap());
  }
  graphize::Show(ink_, form.Hint);
  Enable(accept_, form.Chosen.has_value());
  Enable(showColours_, form.IsAlone);
}

bool InkDialog::IsSliding() const {
  return tolerance_->IsHeld();
}

}  // namespace graphize
