#include "data/data_list_panel.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QVBoxLayout>
#include <QWheelEvent>
#include <utility>

#include "data/list_text.h"
#include "widgets/show.h"

namespace graphize {

/// A line that shows the focus by a frame and never selects text.
class DataListPanel::Line : public QLineEdit {
 public:
  using QLineEdit::QLineEdit;

 protected:
  void focusInEvent(QFocusEvent* event) override {
    QLineEdit::focusInEvent(event);
    deselect();
  }
  void paintEvent(QPaintEvent* event) override {
    QLineEdit::paintEvent(event);
    if (!hasFocus()) return;
    QPainter painter(this);
    painter.setPen(QPen(palette().color(QPalette::Text), 1, Qt::DotLine));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
  }
};

DataListPanel::DataListPanel(QWidget* above, QWidget* below, QWidget* parent)
    : QGroupBox(tr("Graphized Data"), parent) {
  setObjectName(QStringLiteral("FRM_Data"));
  auto* column = new QVBoxLayout(this);
  // Close together: on a small screen nothing below is pushed out of sight.
  const QMargins margins = column->contentsMargins();
  column->setContentsMargins(margins.left(), margins.top() / 2, margins.right(),
                             margins.bottom() / 2);
  column->setSpacing(4);
  column->addWidget(above);

  auto* head = new QHBoxLayout;
  head->addWidget(new QLabel(tr("Graphized Points:")));
  count_ = Named(new QLabel(QStringLiteral("0")), "npts", tr("Number of graphized points"));
  head->addWidget(count_);
  head->addStretch();
  column->addLayout(head);

  auto* row = new QHBoxLayout;
  row->setSpacing(0);
  auto* list = new QVBoxLayout;
  list->setSpacing(0);
  for (int i = 0; i < kPageLines; ++i) {
    auto* line = new Line;
    line->setObjectName(MemberName("TXT_Line", i));
    line->setAccessibleName(tr("Data line %1").arg(i + 1));
    line->setToolTip(tr("Click selects a point, Shift+click up to another; arrow keys do, too"));
    line->setReadOnly(true);
    line->setFrame(false);
    line->setAutoFillBackground(true);
    line->setFocusPolicy(Qt::NoFocus);
    line->setCursor(Qt::ArrowCursor);
    line->setContextMenuPolicy(Qt::NoContextMenu);
    line->installEventFilter(this);
    list->addWidget(line);
    lines_[static_cast<std::size_t>(i)] = line;
  }
  row->addLayout(list, 1);
  scroll_ = Named(new QScrollBar(Qt::Vertical), "VScroll1", tr("Scroll the data list"));
  scroll_->setRange(1, 1);
  scroll_->setPageStep(kPageLines);
  scroll_->setEnabled(false);
  row->addWidget(scroll_);
  column->addLayout(row);
  column->addWidget(below);
  connect(scroll_, &QScrollBar::valueChanged, this, &DataListPanel::Scrolled);
}

bool DataListPanel::eventFilter(QObject* watched, QEvent* event) {
  for (int i = 0; i < kPageLines; ++i) {
    if (watched != lines_[static_cast<std::size_t>(i)]) continue;
    switch (event->type()) {
      case QEvent::MouseButtonPress:
      case QEvent::MouseButtonDblClick: {
        const auto* press = static_cast<QMouseEvent*>(event);
        if (press->button() == Qt::LeftButton)
          emit LinePressed(i, press->modifiers().testFlag(Qt::ShiftModifier));
        return true;
      }
      case QEvent::KeyPress:
        return TakeKey(i, *static_cast<QKeyEvent*>(event));
      case QEvent::ShortcutOverride:
        return true;  // Ctrl+C and Del are the menu's here, too
      case QEvent::MouseMove:
      case QEvent::MouseButtonRelease:
        return true;  // no text is ever selected inside a line
      default:
        return false;
    }
  }
  return QGroupBox::eventFilter(watched, event);
}

bool DataListPanel::TakeKey(int line, const QKeyEvent& key) {
  static constexpr std::pair<int, int> kSteps[] = {{Qt::Key_Up, -1},
                                                   {Qt::Key_Down, 1},
                                                   {Qt::Key_PageUp, -kPageLines},
                                                   {Qt::Key_Home, -0x10000},
                                                   {Qt::Key_PageDown, kPageLines},
                                                   {Qt::Key_End, 0x10000},
                                                   {Qt::Key_Space, 0}};
  for (const auto& [code, by] : kSteps) {
    if (key.key() != code) continue;
    emit LineStepped(line, by, key.modifiers().testFlag(Qt::ShiftModifier));
    return true;
  }
  return false;
}

void DataListPanel::wheelEvent(QWheelEvent* event) {
  if (scroll_->isEnabled())
    QCoreApplication::sendEvent(scroll_, event);
  else
    event->ignore();
}

void DataListPanel::RenderFocus(const ListPage& page) {
  // One stop for Tab: the line at the selection's end, else the first.
  std::size_t current = 0;
  bool focused = false;
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    if (page.SelectionActive && page.Lines[i].Point == page.SelectionEnd) current = i;
    focused = focused || lines_[i]->hasFocus();
  }
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    const bool used = page.Lines[i].Point > 0;
    lines_[i]->setFocusPolicy(!used          ? Qt::NoFocus
                              : i == current ? Qt::StrongFocus
                                             : Qt::ClickFocus);
  }
  if (focused && !lines_[current]->hasFocus()) lines_[current]->setFocus();
}

void DataListPanel::Render(const PointStore& store, const NumberFormats& formats,
                           bool decimalPoint) {
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    const ListPage::Line& line = store.Page.Lines[i];
    Show(lines_[i], LineText(store, line.Point, formats, decimalPoint));
    lines_[i]->setCursorPosition(0);
    QPalette colours = palette();
    const auto role = line.Highlighted ? QPalette::Highlight
                      : line.Pointed   ? QPalette::Midlight
                                       : QPalette::Button;
    const auto text = line.Highlighted ? QPalette::HighlightedText : QPalette::ButtonText;
    colours.setColor(QPalette::Base, palette().color(role));
    colours.setColor(QPalette::Text, palette().color(text));
    if (lines_[i]->palette() != colours) lines_[i]->setPalette(colours);
  }
  RenderFocus(store.Page);
  Show(count_, std::to_string(store.NPoints));

  const QSignalBlocker quiet(scroll_);
  scroll_->setRange(1, store.Page.ScrollMaximum);
  scroll_->setValue(store.Page.ScrollValue);
  Enable(scroll_, store.Page.ScrollEnabled);
}

}  // namespace graphize
