#include "calibration/axis_panel.h"

#include <QCheckBox>
#include <QFocusEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMouseEvent>
#include <QPushButton>
#include <QVBoxLayout>
#include <utility>

#include "base/translation.h"
#include "widgets/show.h"
#include "widgets/wrapped_label.h"

namespace graphize {

namespace {

/// A value box: its whole text is selected when it gets the focus. The click that follows, or that
/// has given the focus, leaves it selected, so that what is typed replaces it; clicks after that
/// place the caret.
class ValueBox : public QLineEdit {
 public:
  ValueBox() {
    connect(this, &QLineEdit::textEdited, this, [this] { fresh_ = false; });
  }
  std::function<void()> OnFocus;

 protected:
  void focusInEvent(QFocusEvent* event) override {
    QLineEdit::focusInEvent(event);
    // What was typed before is done with: Undo is the document's then.
    const Qt::FocusReason reason = event->reason();
    if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason &&
        reason != Qt::MenuBarFocusReason)
      setText(text());
    selectAll();
    fresh_ = true;
    if (OnFocus) OnFocus();
  }
  void mousePressEvent(QMouseEvent* event) override {
    selecting_ = std::exchange(fresh_, false) && event->button() == Qt::LeftButton;
    if (!selecting_) QLineEdit::mousePressEvent(event);
  }
  void mouseMoveEvent(QMouseEvent* event) override {
    if (!selecting_) QLineEdit::mouseMoveEvent(event);
  }
  void mouseReleaseEvent(QMouseEvent* event) override {
    if (!std::exchange(selecting_, false)) QLineEdit::mouseReleaseEvent(event);
  }

 private:
  bool fresh_ = false;      // has the focus, and was neither clicked nor typed into since
  bool selecting_ = false;  // while the button of the first click is held
};

QLabel* Heading(const QString& text) {
  auto* label = new QLabel(text);
  label->setAlignment(Qt::AlignCenter);
  return label;
}

QLabel* PixelLabel(const QString& objectName, const QString& accessibleName) {
  auto* label = new QLabel;
  label->setObjectName(objectName);
  label->setAccessibleName(accessibleName);
  label->setAlignment(Qt::AlignCenter);
  label->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
  label->setMinimumWidth(label->fontMetrics().horizontalAdvance(QStringLiteral(" 00000 ")));
  return label;
}

}  // namespace

AxisPanelWidget::AxisPanelWidget(QWidget* parent) : QGroupBox(tr("Axis Definitions"), parent) {
  setObjectName(QStringLiteral("FRM_AxisDef"));
  auto* column = new QVBoxLayout(this);

  tips_ = Named(new QLabel, "LBL_Tips", tr("Instruction"));
  tips_->setWordWrap(true);
  tips_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  // Room for the longest instruction: the boxes below never jump.
  tips_->setMinimumHeight(3 * tips_->fontMetrics().lineSpacing());
  column->addWidget(tips_);

  propose_ = Named(new QPushButton(tr("Propose Axes")), "CMD_ProposeAxes");
  propose_->setToolTip(tr("Find the axes on the picture and show them before they are accepted"));
  column->addWidget(propose_);
  connect(propose_, &QPushButton::clicked, this, &AxisPanelWidget::ProposePressed);

  auto* grid = new QGridLayout;
  grid->setHorizontalSpacing(6);
  grid->addWidget(Heading(tr("X-Pixel")), 0, 1);
  grid->addWidget(Heading(tr("Y-Pixel")), 0, 2);
  off_ = Heading(tr("off"));
  grid->addWidget(off_, 0, 3);
  grid->addWidget(Heading(tr("X")), 1, 1);
  grid->addWidget(Heading(tr("Y")), 1, 2);
  const std::array<QString, 3> captions = {tr("Origin:"), tr("X Axis:"), tr("Y Axis:")};
  for (int i = 0; i < 3; ++i) rows_[i] = MakeRow(i, captions[i], grid);
  column->addLayout(grid);

  auto* live = new QHBoxLayout;
  live->addWidget(new QLabel(tr("Mouse:")));
  liveX_ = PixelLabel(QStringLiteral("LBL_XRTPixel"), tr("Pixel column under the mouse"));
  liveY_ = PixelLabel(QStringLiteral("LBL_YRTPixel"), tr("Pixel row under the mouse"));
  live->addWidget(liveX_);
  live->addWidget(liveY_);
  live->addStretch();
  column->addLayout(live);

  auto* switches = new QHBoxLayout;
  xLog_ = Named(new QCheckBox(tr("X Log")), "CHK_XLog", tr("Logarithmic X axis"));
  xLog_->setToolTip(tr("Log X axis"));
  yLog_ = Named(new QCheckBox(tr("Y Log")), "CHK_Ylog", tr("Logarithmic Y axis"));
  yLog_->setToolTip(tr("Log Y Axis"));
  switches->addWidget(xLog_);
  switches->addWidget(yLog_);
  switches->addStretch();
  switches->addWidget(new QLabel(tr("Rotation:")));
  angle_ = Named(new QLabel, "LBL_Angle", tr("Rotation in degrees"));
  angle_->setMinimumWidth(angle_->fontMetrics().horizontalAdvance(QStringLiteral("-00.0")));
  switches->addWidget(angle_);
  column->addLayout(switches);

  connect(xLog_, &QCheckBox::clicked, this, &AxisPanelWidget::XLogSwitched);
  connect(yLog_, &QCheckBox::clicked, this, &AxisPanelWidget::YLogSwitched);
  column->addWidget(MakeReferences());
}

QWidget* AxisPanelWidget::MakeReferences() {
  referencePart_ = new QWidget;
  auto* column = new QVBoxLayout(referencePart_);
  column->setContentsMargins(0, 0, 0, 0);
  addReference_ = Named(new QPushButton(tr("Add Reference")), "CMD_AddReference");
  addReference_->setCheckable(true);
  addReference_->setToolTip(tr("Click further places whose X, Y or both are known"));
  column->addWidget(addReference_);
  connect(addReference_, &QPushButton::clicked, this, &AxisPanelWidget::AddReferencePressed);

  entry_ = new QWidget;
  auto* values = new QHBoxLayout(entry_);
  values->setContentsMargins(0, 0, 0, 0);
  const auto makeBox = [&](const char* name, const QString& caption, const QString& tip) {
    auto* box = new ValueBox;
    Named(box, name, tip)->setToolTip(tip);
    box->setMinimumWidth(60);
    values->addWidget(new QLabel(caption));
    values->addWidget(box);
    return box;
  };
  referenceX_ = makeBox("TXT_RefX", tr("X"), tr("X of the next reference; empty where unknown"));
  referenceY_ = makeBox("TXT_RefY", tr("Y"), tr("Y of the next reference; empty where unknown"));
  column->addWidget(entry_);
  connect(referenceX_, &QLineEdit::textEdited, this,
          [this](const QString& text) { emit ReferenceXTyped(text.toStdString()); });
  connect(referenceY_, &QLineEdit::textEdited, this,
          [this](const QString& text) { emit ReferenceYTyped(text.toStdString()); });

  references_ = Named(new QListWidget, "LST_References", tr("References of the axes"));
  references_->setToolTip(tr("X, Y and how far the place lies off the fitted axes"));
  references_->setFixedHeight(5 * references_->fontMetrics().lineSpacing());
  references_->setMinimumWidth(60);
  column->addWidget(references_);
  connect(references_, &QListWidget::currentRowChanged, this, &AxisPanelWidget::ReferenceChosen);
  remove_ = Named(new QPushButton(tr("Remove Reference")), "CMD_RemoveReference");
  remove_->setToolTip(tr("Take the chosen reference out of the list"));
  column->addWidget(remove_);
  connect(remove_, &QPushButton::clicked, this, &AxisPanelWidget::RemoveReferencePressed);

  auto* switches = new QHBoxLayout;
  refined_ = Named(new QCheckBox(tr("Refined")), "CHK_Refined", tr("Refined axes"));
  refined_->setToolTip(
      tr("Read values by the axes that fit best all references and the places that clicks snapped "
         "to"));
  switches->addWidget(refined_);
  switches->addStretch();
  column->addLayout(switches);
  connect(refined_, &QCheckBox::clicked, this, &AxisPanelWidget::RefinedSwitched);
  residual_ = Named(new WrappedLabel, "LBL_Residual", tr("How well the references agree"));
  residual_->setTextFormat(Qt::PlainText);
  column->addWidget(residual_);
  return referencePart_;
}

AxisPanelWidget::Row AxisPanelWidget::MakeRow(int row, const QString& caption, QGridLayout* grid) {
  static constexpr std::array<const char*, 3> kXTips = {Marked("X origin"), Marked("X Axis"),
                                                        Marked("X origin")};
  static constexpr std::array<const char*, 3> kYTips = {Marked("Y origin"), Marked("Y origin"),
                                                        Marked("Y axis")};
  const QString plain = caption.chopped(1);
  Row r{};
  r.XPixel = PixelLabel(MemberName("LBL_Xpixel", row), tr("%1, pixel column").arg(plain));
  r.YPixel = PixelLabel(MemberName("LBL_Ypixel", row), tr("%1, pixel row").arg(plain));

  const auto makeBox = [&](const char* array, const char* tip, const QString& accessibleName) {
    auto* box = new ValueBox;
    box->setObjectName(MemberName(array, row));
    box->setToolTip(tr(tip));
    box->setAccessibleName(accessibleName);
    box->setMinimumWidth(60);
    return box;
  };
  ValueBox* x = makeBox("TXT_XPos", kXTips[row], tr("%1, X value").arg(plain));
  ValueBox* y = makeBox("TXT_YPos", kYTips[row], tr("%1, Y value").arg(plain));
  r.X = x;
  r.Y = y;
  connect(x, &QLineEdit::textEdited, this,
          [this, row](const QString& text) { emit XTyped(row, text.toStdString()); });
  connect(y, &QLineEdit::textEdited, this,
          [this, row](const QString& text) { emit YTyped(row, text.toStdString()); });
  if (row == 0) y->OnFocus = [this] { emit OriginYFocused(); };

  r.ReDefine = new QPushButton(tr("Redefine"));
  r.ReDefine->setObjectName(MemberName("CMD_ReDefine", row));
  r.ReDefine->setAccessibleName(tr("Redefine %1").arg(plain));
  r.ReDefine->setToolTip(tr("Click this point on the plot again"));
  connect(r.ReDefine, &QPushButton::clicked, this, [this, row] { emit ReDefinePressed(row); });

  r.Residual = new QLabel;
  r.Residual->setObjectName(MemberName("LBL_RowResidual", row));
  r.Residual->setAccessibleName(tr("%1, pixels off the fitted axes").arg(plain));
  r.Residual->setToolTip(tr("Pixels off the fitted axes"));
  // The panel keeps its width, and the picture its place, when the first reference comes.
  r.Residual->setMinimumWidth(
      r.Residual->fontMetrics().horizontalAdvance(ToQString(Tr("%1 px", "00.00") + " \u26a0")));
  QSizePolicy kept = r.Residual->sizePolicy();
  kept.setRetainSizeWhenHidden(true);
  r.Residual->setSizePolicy(kept);

  // Two lines a row: where it is on the picture, what it means on the graph.
  const int line = 2 + 2 * row;
  grid->addWidget(new QLabel(caption), line, 0);
  grid->addWidget(r.XPixel, line, 1);
  grid->addWidget(r.YPixel, line, 2);
  grid->addWidget(r.Residual, line, 3);
  grid->addWidget(r.ReDefine, line + 1, 0);
  grid->addWidget(r.X, line + 1, 1);
  grid->addWidget(r.Y, line + 1, 2);
  return r;
}

void AxisPanelWidget::Render(const AxisPanel& panel, const AxisCalibration& calibration) {
  for (std::size_t i = 0; i < rows_.size(); ++i) {
    const AxisPanel::Row& from = panel.Rows[i];
    Show(rows_[i].XPixel, from.XPixel);
    Show(rows_[i].YPixel, from.YPixel);
    Show(rows_[i].X, from.XText);
    Show(rows_[i].Y, from.YText);
    Enable(rows_[i].X, from.XEnabled);
    Enable(rows_[i].Y, from.YEnabled);
    Enable(rows_[i].ReDefine, from.ReDefineEnabled);
  }
  Show(tips_, Instruction(panel));
  Show(liveX_, panel.LiveXPixel);
  Show(liveY_, panel.LiveYPixel);
  xLog_->setChecked(calibration.XLog);
  yLog_->setChecked(calibration.YLog);
}

void AxisPanelWidget::RenderReferences(const ReferenceView& view, const ReferenceEntry& entry,
                                       bool refined, bool canPropose) {
  Enable(propose_, canPropose);
  Enable(addReference_, view.CanAdd);
  addReference_->setChecked(entry.Armed);
  entry_->setVisible(entry.Armed);
  Show(referenceX_, entry.X);
  Show(referenceY_, entry.Y);
  for (std::size_t i = 0; i < rows_.size(); ++i) {
    Show(rows_[i].Residual, view.OfRows[i]);
    rows_[i].Residual->setVisible(!view.OfRows[i].empty());
  }
  off_->setVisible(!view.OfRows[0].empty());
  QStringList lines, shown;
  for (const std::string& line : view.Lines) lines << ToQString(line);
  for (int i = 0; i < references_->count(); ++i) shown << references_->item(i)->text();
  {
    const QSignalBlocker quiet(references_);
    if (shown != lines) {
      references_->clear();
      references_->addItems(lines);
    }
    references_->setCurrentRow(entry.Chosen);
  }
  references_->setVisible(!lines.isEmpty());
  remove_->setVisible(!lines.isEmpty());
  Enable(remove_, view.CanRemove);
  Enable(refined_, view.CanRefine);
  refined_->setChecked(refined);
  Show(residual_, view.Summary);
  residual_->setVisible(!view.Summary.empty());
  Show(angle_, view.Angle);
}

void AxisPanelWidget::FocusReference() {
  if (referenceX_->isVisible()) referenceX_->setFocus(Qt::OtherFocusReason);
}

void AxisPanelWidget::Focus(FocusTarget target) {
  if (target == FocusTarget::None) return;
  const int member = static_cast<int>(target) - 1;
  const Row& row = rows_[static_cast<std::size_t>(member / 2)];
  QLineEdit* box = member % 2 == 0 ? row.X : row.Y;
  if (box->isEnabled() && !box->hasFocus()) box->setFocus(Qt::OtherFocusReason);
}

}  // namespace graphize
