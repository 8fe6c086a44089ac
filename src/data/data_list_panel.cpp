#include "data/data_list_panel.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QScrollBar>
#include <QVBoxLayout>

#include "data/list_text.h"
#include "widgets/show.h"

namespace graphize {

DataListPanel::DataListPanel(QWidget* parent) : QGroupBox(tr("Graphized Data"), parent) {
  setObjectName(QStringLiteral("FRM_Data"));
  auto* column = new QVBoxLayout(this);

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
    auto* line = new QLineEdit;
    line->setObjectName(MemberName("TXT_Line", i));
    line->setAccessibleName(tr("Data line %1").arg(i + 1));
    line->setToolTip(tr("Click selects a point, Shift+click up to another"));
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
      case QEvent::MouseMove:
      case QEvent::MouseButtonRelease:
        return true;  // no text is ever selected inside a line
      default:
        return false;
    }
  }
  return QGroupBox::eventFilter(watched, event);
}

void DataListPanel::Render(const PointStore& store, const NumberFormats& formats,
                           bool decimalPoint) {
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    const ListPage::Line& line = store.Page.Lines[i];
    Show(lines_[i], LineText(store, line.Point, formats, decimalPoint));
    lines_[i]->setCursorPosition(0);
    QPalette colours = palette();
    const auto role = line.Highlighted ? QPalette::Highlight : QPalette::Button;
    const auto text = line.Highlighted ? QPalette::HighlightedText : QPalette::ButtonText;
    colours.setColor(QPalette::Base, palette().color(role));
    colours.setColor(QPalette::Text, palette().color(text));
    if (lines_[i]->palette() != colours) lines_[i]->setPalette(colours);
  }
  Show(count_, std::to_string(store.NPoints));

  const QSignalBlocker quiet(scroll_);
  scroll_->setRange(1, store.Page.ScrollMaximum);
  scroll_->setValue(store.Page.ScrollValue);
  Enable(scroll_, store.Page.ScrollEnabled);
}

}  // namespace graphize
