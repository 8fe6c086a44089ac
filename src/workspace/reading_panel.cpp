#include "workspace/reading_panel.h"

#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "base/translation.h"
#include "widgets/show.h"
#include "widgets/tolerance_slider.h"
#include "widgets/wrapped_label.h"

namespace graphize {

namespace {

using Kind = ReadingDensity::Kind;

/// In the order of the box.
constexpr std::pair<Kind, const char*> kDensities[] = {
    {Kind::Each, Marked("each column")},
    {Kind::Every, Marked("every n pixels")},
    {Kind::AtX, Marked("at given X")},
    {Kind::Bends, Marked("where it bends")},
};

}  // namespace

ReadingPanel::ReadingPanel(QWidget* parent) : QWidget(parent) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(readCurve_ = MakeReadCurve());
  column->addWidget(findSymbols_ = MakeFindSymbols());
  findSymbols_->hide();
  ending_ = MakeEnding();
  readCurve_->layout()->addWidget(ending_);
}

QGroupBox* ReadingPanel::MakeReadCurve() {
  auto* frame = Named(new QGroupBox(tr("Read Curve")), "FRM_ReadCurve");
  auto* column = new QVBoxLayout(frame);
  auto* row = new QHBoxLayout;
  density_ = Named(new QComboBox, "CMB_Density", tr("Points"));
  density_->setToolTip(tr(
      "How dense the points are; \"each column\" takes each row as well where the curve is steep"));
  for (const auto& [kind, caption] : kDensities)
    density_->addItem(tr(caption), static_cast<int>(kind));
  densityText_ = Named(new QLineEdit, "TXT_Density");
  row->addWidget(new QLabel(tr("Points")));
  row->addWidget(density_);
  row->addWidget(densityText_, 1);
  column->addLayout(row);
  connect(density_, &QComboBox::activated, this,
          [this](int index) { emit DensityChosen(density_->itemData(index).toInt()); });
  connect(densityText_, &QLineEdit::textEdited, this,
          [this](const QString& text) { emit DensityTyped(text.toStdString()); });
  return frame;
}

QGroupBox* ReadingPanel::MakeFindSymbols() {
  auto* frame = Named(new QGroupBox(tr("Find Symbols")), "FRM_FindSymbols");
  auto* column = new QVBoxLayout(frame);
  auto* row = new QHBoxLayout;
  row->addWidget(new QLabel(tr("Centre")));
  const char* const captions[] = {Marked("of mass"), Marked("of the box")};
  const char* const tips[] = {Marked("The point is the middle of the symbol's ink"),
                              Marked("The point is the middle between the symbol's sides")};
  for (int i = 0; i < 2; ++i) {
    auto* option = new QRadioButton(tr(captions[i]));
    option->setObjectName(MemberName("OPT_Centre", i));
    option->setToolTip(tr(tips[i]));
    connect(option, &QRadioButton::clicked, this, [this, i] { emit CentreChosen(i); });
    row->addWidget(option);
    centre_[static_cast<std::size_t>(i)] = option;
  }
  row->addStretch();
  column->addLayout(row);
  auto* buttons = new QHBoxLayout;
  doubtful_ = Named(new QPushButton(tr("Next Doubtful")), "BTN_NextDoubtful");
  doubtful_->setToolTip(
      tr("Look at the next symbol that may be none (N; Shift+N: the one before)"));
  leaveOut_ = Named(new QPushButton(tr("Leave Out")), "BTN_LeaveOut");
  leaveOut_->setCheckable(true);
  leaveOut_->setToolTip(tr("Do not take the framed symbol over (Del; Ins keeps it)"));
  for (QPushButton* button : {doubtful_, leaveOut_}) {
    button->setAutoDefault(true);
    buttons->addWidget(button);
  }
  column->addLayout(buttons);
  connect(doubtful_, &QPushButton::clicked, this, [this] { emit DoubtfulStepped(1); });
  connect(leaveOut_, &QPushButton::clicked, this, &ReadingPanel::LeaveOutPressed);
  return frame;
}

QWidget* ReadingPanel::MakeEnding() {
  auto* ending = new QWidget;
  auto* column = new QVBoxLayout(ending);
  column->setContentsMargins(0, 0, 0, 0);

  tolerance_ = new ToleranceSlider(ReadingControl::kNarrowest, ReadingControl::kAsFound,
                                   ReadingControl::kWidest);
  column->addWidget(tolerance_);

  auto* buttons = new QHBoxLayout;
  accept_ = Named(new QPushButton(tr("&Accept")), "BTN_Accept");
  accept_->setToolTip(tr("Take the points over into the list (Return)"));
  cancel_ = Named(new QPushButton(tr("Cancel")), "BTN_Cancel");
  cancel_->setToolTip(tr("Leave what is shown (Escape)"));
  // Return presses the one that has the focus.
  for (QPushButton* button : {accept_, cancel_}) {
    button->setAutoDefault(true);
    buttons->addWidget(button);
  }
  column->addLayout(buttons);

  // Below the buttons, which stay where they are however much there is to say.
  reading_ = Named(new WrappedLabel, "LBL_Reading", tr("What was read"));
  reading_->setTextFormat(Qt::PlainText);
  reading_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  reading_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  // Room for what is said most often: what lies below seldom jumps.
  reading_->setMinimumHeight(3 * reading_->fontMetrics().lineSpacing());
  column->addWidget(reading_);

  connect(tolerance_, &ToleranceSlider::Chosen, this, &ReadingPanel::ToleranceChosen);
  connect(accept_, &QPushButton::clicked, this, &ReadingPanel::AcceptPressed);
  connect(cancel_, &QPushButton::clicked, this, &ReadingPanel::CancelPressed);
  return ending;
}

void ReadingPanel::RenderSymbols(const ReadingControl& control, const State& state) {
  // The frame that is shown has what both end with: its names stand once in the window.
  if (QGroupBox* frame = state.FindsSymbols ? findSymbols_ : readCurve_; frame->isHidden()) {
    QGroupBox* other = state.FindsSymbols ? readCurve_ : findSymbols_;
    other->layout()->removeWidget(ending_);
    frame->layout()->addWidget(ending_);
    other->hide();
    frame->show();
  }
  for (int i = 0; i < 2; ++i)
    centre_[static_cast<std::size_t>(i)]->setChecked(static_cast<int>(control.Centre) == i);
  Enable(doubtful_, state.HasDoubtful);
  Enable(leaveOut_, state.HasCurrent);
  leaveOut_->setChecked(state.IsLeftOut);
}

void ReadingPanel::Render(const ReadingControl& control, const State& state) {
  RenderSymbols(control, state);
  const bool every = control.Density == Kind::Every, atX = control.Density == Kind::AtX;
  density_->setCurrentIndex(density_->findData(static_cast<int>(control.Density)));
  densityText_->setVisible(every || atX);
  graphize::Show(densityText_, atX ? control.Xs : control.Pixels);
  const QString what = atX ? tr("X values") : tr("Pixels from one point to the next");
  if (densityText_->accessibleName() != what) {
    densityText_->setAccessibleName(what);
    densityText_->setToolTip(atX ? tr("X values, such as 0, 2.5, 7 or 0:0.5:10") : what);
  }
  tolerance_->Render(control.Tolerance);
  graphize::Show(reading_, control.Reading);
  Enable(accept_, state.CanTake);
  Enable(cancel_, state.CanCancel);
}

bool ReadingPanel::IsSliding() const {
  return tolerance_->IsHeld();
}

}  // namespace graphize
