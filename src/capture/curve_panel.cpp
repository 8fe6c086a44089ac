#include "capture/curve_panel.h"

#include <QCheckBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QStackedLayout>
#include <QToolButton>
#include <utility>

#include "widgets/short_combo_box.h"
#include "widgets/show.h"
#include "widgets/swatch.h"

namespace graphize {

namespace {

constexpr int kSwatch = 12;  // pixels

}  // namespace

CurvePanel::CurvePanel(const CurveList& curves, QWidget* parent)
    : QWidget(parent), curves_(curves) {
  setObjectName(QStringLiteral("FRM_Curve"));
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(3);

  // It shows its first widget at once, which would be a window of its own without a parent.
  stack_ = new QStackedLayout;
  row->addLayout(stack_, 1);
  box_ = Named(new ShortComboBox(7), "CMB_Curve", tr("Curve"));
  box_->setToolTip(tr("The curve that is worked on (Ctrl+Tab: the next one)"));
  box_->setIconSize(QSize(kSwatch, kSwatch));
  box_->installEventFilter(this);
  name_ = Named(new QLineEdit, "TXT_CurveName", tr("Name of the curve"));
  name_->setToolTip(tr("Enter: the curve gets this name; Escape: it keeps its own"));
  name_->installEventFilter(this);
  stack_->addWidget(box_);
  stack_->addWidget(name_);

  shown_ = Named(new QCheckBox(tr("Shown")), "CHK_CurveShown");
  shown_->setToolTip(tr("Mark the curve's points on the picture, when there are several curves"));
  row->addWidget(shown_);
  new_ = MakeButton("CMD_NewCurve", tr("New curve"),
                    tr("A new curve: the next points are its own (Ctrl+N)"));
  rename_ =
      MakeButton("CMD_RenameCurve", tr("Rename curve"), tr("Give the curve another name (F2)"));
  delete_ =
      MakeButton("CMD_DeleteCurve", tr("Delete curve"), tr("Delete the curve and its points"));
  for (QToolButton* button : {new_, rename_, delete_}) row->addWidget(button);

  connect(box_, &QComboBox::activated, this, &CurvePanel::Chosen);
  connect(shown_, &QCheckBox::clicked, this, &CurvePanel::ShownSwitched);
  connect(new_, &QToolButton::clicked, this, &CurvePanel::NewPressed);
  connect(rename_, &QToolButton::clicked, this, &CurvePanel::RenamePressed);
  connect(delete_, &QToolButton::clicked, this, &CurvePanel::DeletePressed);
}

QToolButton* CurvePanel::MakeButton(const char* name, const QString& caption, const QString& tip) {
  auto* button = Named(new QToolButton, name, caption);
  button->setToolTip(tip);
  button->setFocusPolicy(Qt::StrongFocus);
  button->setAutoRaise(true);
  return button;
}

void CurvePanel::SetIcons(const QIcon& add, const QIcon& rename, const QIcon& remove) {
  new_->setIcon(add);
  rename_->setIcon(rename);
  delete_->setIcon(remove);
}

QIcon CurvePanel::IconOf(const Item& item) const {
  const std::uint32_t pixel = PixelOfColour(item.MarkColour);
  QPixmap pixmap = Swatch(*this, pixel, kSwatch);
  if (item.Shown) return pixmap;
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  painter.setPen(QPen(QColor::fromRgb(pixel), 2));
  painter.drawRect(QRect(1, 1, kSwatch - 2, kSwatch - 2));
  return pixmap;
}

void CurvePanel::ShowItems() {
  const QSignalBlocker quiet(box_);
  box_->clear();
  for (const Item& item : items_) {
    box_->addItem(IconOf(item), ToQString(item.Name));
    box_->setItemData(box_->count() - 1, ToQString(item.Name), Qt::ToolTipRole);
  }
}

void CurvePanel::Render() {
  std::vector<Item> items;
  for (const Curve& curve : curves_.Curves)
    items.push_back({curve.Name, curve.MarkColour, curve.Shown});
  if (items != items_) {
    items_ = std::move(items);
    ShowItems();
  }
  // Its curve has gone, or is not the active one.
  if (!taking_ && items_[curves_.Active].Name != named_) EndNaming();
  if (box_->currentIndex() != curves_.Active) box_->setCurrentIndex(curves_.Active);
  const bool several = items_.size() > 1;
  shown_->setChecked(items_[curves_.Active].Shown);
  Enable(shown_, several);
  Enable(delete_, several);
}

void CurvePanel::EditName() {
  named_ = ActiveCurve(curves_).Name;
  name_->setText(ToQString(named_));
  stack_->setCurrentWidget(name_);
  name_->setFocus(Qt::OtherFocusReason);
  name_->selectAll();
}

bool CurvePanel::IsNaming() const {
  return stack_->currentWidget() == name_;
}

void CurvePanel::TakeName(bool byKey) {
  if (!IsNaming() || std::exchange(taking_, true)) return;
  const std::string typed = name_->text().toStdString();
  const std::string fault = CurveNameFault(curves_, CurveNameOf(typed), curves_.Active);
  if (fault.empty() || byKey)
    emit NameTyped(typed);
  else
    emit NameDropped(fault);
  taking_ = false;
  if (fault.empty() || !byKey) return EndNaming();
  name_->setFocus(Qt::OtherFocusReason);
  name_->selectAll();
}

void CurvePanel::EndNaming() {
  if (!IsNaming()) return;
  const bool focused = name_->hasFocus();
  taking_ = true;  // nothing: the line loses the focus as it goes
  stack_->setCurrentWidget(box_);
  taking_ = false;
  if (focused) box_->setFocus(Qt::OtherFocusReason);
}

bool CurvePanel::eventFilter(QObject* watched, QEvent* event) {
  if (watched == box_) {
    // The wheel scrolls the list, and never changes the curve in passing.
    if (event->type() != QEvent::Wheel) return false;
    event->ignore();
    return true;
  }
  if (event->type() == QEvent::FocusOut) {
    const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
    if (reason != Qt::PopupFocusReason && reason != Qt::ActiveWindowFocusReason) TakeName(false);
  } else if (event->type() == QEvent::KeyPress) {
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key == Qt::Key_Return || key == Qt::Key_Enter) return TakeName(true), true;
    if (key == Qt::Key_Escape) return EndNaming(), true;
  }
  return QWidget::eventFilter(watched, event);
}

void CurvePanel::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) ShowItems();  // the swatches' edges
}

}  // namespace graphize
