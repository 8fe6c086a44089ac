#include "app/help_window.h"

#include <QAbstractTextDocumentLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QScrollBar>
#include <QShortcut>
#include <QSplitter>
#include <QStyle>
#include <QTextBlock>
#include <QTextBrowser>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>

#include "app/icons.h"
#include "app/main_window.h"
#include "widgets/show.h"
#include "widgets/tool_tip.h"

namespace graphize {

namespace {

constexpr int kAnchorRole = Qt::UserRole;
constexpr const char* kAddress = "help:Graphize.hlp";

/// Shows one text; pictures are in it, but for the toolbar's icons ("icon:open"), which have the
/// colours and the sharpness of this screen.
class HelpText : public QTextBrowser {
 public:
  QByteArray Html;

 private:
  QVariant loadResource(int type, const QUrl& name) override {
    if (type == QTextDocument::HtmlResource) return Html;
    if (name.scheme() == QLatin1String("icon")) {
      constexpr QSize kSize(24, 24);
      return ToolIcon(name.path().toStdString()).pixmap(kSize, devicePixelRatioF());
    }
    return QTextBrowser::loadResource(type, name);
  }
};

QToolButton* Button(const char* name, const QString& text, const QString& tip,
                    Qt::ArrowType arrow = Qt::NoArrow) {
  auto* button = Named(new QToolButton, name, tip);
  button->setText(text);
  button->setToolTip(tip);
  button->setArrowType(arrow);
  button->setAutoRaise(true);
  button->setMinimumSize(28, 28);
  button->setFocusPolicy(Qt::TabFocus);
  return button;
}

/// The anchor at a heading.
QString AnchorOf(const QTextBlock& block) {
  for (auto fragment = block.begin(); !fragment.atEnd(); ++fragment) {
    const QStringList names = fragment.fragment().charFormat().anchorNames();
    if (!names.isEmpty()) return names.constFirst();
  }
  return {};
}

}  // namespace

HelpWindow::HelpWindow() {
  setObjectName(QStringLiteral("Help"));
  setWindowTitle(tr("Using Graphize"));
  setWindowIcon(ProgramIcon());

  contents_ = Named(new QTreeWidget, "Contents", tr("Contents"));
  contents_->setHeaderHidden(true);
  contents_->setIndentation(14);
  contents_->setRootIsDecorated(true);
  contents_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  text_ = Named(new HelpText, "HelpText", tr("Help text"));
  text_->setOpenExternalLinks(true);
  text_->document()->setDocumentMargin(16);

  auto* splitter = new QSplitter;
  splitter->addWidget(contents_);
  splitter->addWidget(text_);
  splitter->setStretchFactor(1, 1);
  splitter->setChildrenCollapsible(false);
  splitter->setSizes({230, 820});

  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(6, 6, 6, 6);
  column->addWidget(BuildBar());
  column->addWidget(splitter, 1);
  // On a small screen, or with large pixels, most of it.
  resize(QSize(1060, 760).boundedTo(screen()->availableSize() * 9 / 10));

  connect(contents_, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem* item) {
    if (item == nullptr || jumping_) return;
    jumping_ = true;  // near the end a chapter cannot come to the top; it is chosen all the same
    text_->setSource(QUrl(QLatin1Char('#') + item->data(0, kAnchorRole).toString()));
    jumping_ = false;
  });
  connect(text_->verticalScrollBar(), &QScrollBar::valueChanged, this, &HelpWindow::FollowText);
}

QWidget* HelpWindow::BuildBar() {
  auto* bar = new QWidget;
  auto* row = new QHBoxLayout(bar);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(4);
  auto* back = Button("Back", tr("Back"), tr("Back to where you were (Alt+Left)"), Qt::LeftArrow);
  auto* forward = Button("Forward", tr("Forward"), tr("Forward again (Alt+Right)"), Qt::RightArrow);
  auto* previous =
      Button("SearchPrevious", tr("Previous"), tr("The place before (Shift+F3)"), Qt::UpArrow);
  auto* next = Button("SearchNext", tr("Next"), tr("The next place (F3)"), Qt::DownArrow);
  for (QToolButton* button : {back, forward})
    button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  steps_ = {previous, next};
  search_ = Named(new QLineEdit, "Search", tr("Search the help"));
  search_->setPlaceholderText(tr("Search (Ctrl+F)"));
  search_->setClearButtonEnabled(true);
  search_->setMaximumWidth(260);
  search_->installEventFilter(this);
  count_ = Named(new QLabel, "SearchCount", tr("Places found"));
  count_->setMinimumWidth(count_->fontMetrics().horizontalAdvance(QStringLiteral("not found 0")));
  row->addWidget(back);
  row->addWidget(forward);
  row->addStretch();
  row->addWidget(count_);
  row->addSpacing(6);
  row->addWidget(search_);
  row->addWidget(previous);
  row->addWidget(next);
  count_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);

  connect(back, &QToolButton::clicked, text_, &QTextBrowser::backward);
  connect(forward, &QToolButton::clicked, text_, &QTextBrowser::forward);
  connect(text_, &QTextBrowser::backwardAvailable, back, &QWidget::setEnabled);
  connect(text_, &QTextBrowser::forwardAvailable, forward, &QWidget::setEnabled);
  connect(previous, &QToolButton::clicked, this, [this] { Step(-1); });
  connect(next, &QToolButton::clicked, this, [this] { Step(1); });
  connect(search_, &QLineEdit::textChanged, this, &HelpWindow::FindAll);
  for (QWidget* button : std::initializer_list<QWidget*>{back, forward, previous, next})
    button->setEnabled(false);

  const auto key = [this](const QKeySequence& keys, auto action) {
    connect(new QShortcut(keys, this), &QShortcut::activated, this, action);
  };
  key(QKeySequence::Find, [this] {
    search_->setFocus(Qt::ShortcutFocusReason);
    search_->selectAll();
  });
  key(QKeySequence(Qt::Key_F3), [this] { Step(1); });
  key(QKeySequence(Qt::SHIFT | Qt::Key_F3), [this] { Step(-1); });
  key(QKeySequence(Qt::ALT | Qt::Key_Left), [this] { text_->backward(); });
  key(QKeySequence(Qt::ALT | Qt::Key_Right), [this] { text_->forward(); });
  key(QKeySequence::Close, [this] { close(); });
  return bar;
}

void HelpWindow::ShowAt(const std::string& html, const std::string& chapter) {
  if (html != html_) Load(html);
  const bool wasThere = isVisible();
  show();
  if (isMinimized()) showNormal();
  raise();
  activateWindow();
  if (!wasThere) text_->setFocus();
  if (!chapter.empty()) text_->setSource(QUrl(QLatin1Char('#') + ToQString(chapter)));
}

void HelpWindow::Load(const std::string& html) {
  html_ = html;
  static_cast<HelpText*>(text_)->Html = QByteArray::fromStdString(html);
  text_->setSource(QUrl(QLatin1String(kAddress)), QTextDocument::HtmlResource);
  if (!text_->documentTitle().isEmpty())
    setWindowTitle(tr(text_->documentTitle().toUtf8().constData()));
  FillContents();
  FindAll();
}

void HelpWindow::FillContents() {
  jumping_ = true;
  contents_->clear();
  chapters_.clear();
  QTreeWidgetItem* parent = nullptr;
  const QTextDocument* document = text_->document();
  for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
    const int level = block.blockFormat().headingLevel();
    if (level != 1 && level != 2) continue;
    auto* item = level == 2 && parent != nullptr ? new QTreeWidgetItem(parent)
                                                 : new QTreeWidgetItem(contents_);
    if (level == 1) parent = item;
    item->setText(0, block.text());
    item->setToolTip(0, ToolTipOf(block.text()));
    item->setSizeHint(0, QSize(0, fontMetrics().height() + 8));
    item->setData(0, kAnchorRole, AnchorOf(block));
    chapters_.push_back({block.position(), item});
  }
  jumping_ = false;
  FollowText();
}

void HelpWindow::FollowText() {
  if (jumping_ || chapters_.empty()) return;
  // What stands a little below the upper edge is being read.
  constexpr int kReading = 40;
  ShowChapterAt(text_->cursorForPosition(QPoint(kReading, kReading)).position());
}

void HelpWindow::ShowChapterAt(int position) {
  const auto after = std::ranges::upper_bound(chapters_, position, {}, &Chapter::Position);
  QTreeWidgetItem* item =
      after == chapters_.begin() ? chapters_.front().Item : std::prev(after)->Item;
  jumping_ = true;
  contents_->setCurrentItem(item);
  jumping_ = false;
}

void HelpWindow::FindAll() {
  const QString wanted = search_->text();
  const int from = hit_ >= 0 && hit_ < static_cast<int>(hits_.size())
                       ? hits_[hit_].selectionStart()
                       : text_->cursorForPosition(QPoint(0, 0)).position();
  hits_.clear();
  hit_ = -1;
  if (!wanted.isEmpty()) {
    QTextCursor found = text_->document()->find(wanted, 0);
    for (; !found.isNull(); found = text_->document()->find(wanted, found)) hits_.push_back(found);
  }
  if (hits_.empty()) return ShowHits();
  const auto first = std::ranges::lower_bound(hits_, from, {}, &QTextCursor::selectionStart);
  GoToHit(first == hits_.end() ? 0 : static_cast<int>(first - hits_.begin()));
}

void HelpWindow::GoToHit(int index) {
  hit_ = index;
  QTextCursor place = hits_[index];
  place.setPosition(place.selectionStart());
  text_->setTextCursor(place);
  // Not at the very edge: what stands around it is read, too.
  const QRect at = text_->cursorRect();
  const int height = text_->viewport()->height();
  if (at.bottom() > height * 3 / 4 || at.top() < height / 8) {
    QScrollBar* bar = text_->verticalScrollBar();
    bar->setValue(bar->value() + at.top() - height / 3);
  }
  ShowChapterAt(hits_[index].selectionStart());
  ShowHits();
}

void HelpWindow::Step(int by) {
  const int count = static_cast<int>(hits_.size());
  if (count > 0) GoToHit((hit_ + by + count) % count);
}

void HelpWindow::ShowHits() {
  QList<QTextEdit::ExtraSelection> marks;
  for (int i = 0; i < static_cast<int>(hits_.size()); ++i) {
    QTextEdit::ExtraSelection mark;
    mark.cursor = hits_[i];
    mark.format.setForeground(Qt::black);
    mark.format.setBackground(i == hit_ ? QColor(0xff, 0x96, 0x32) : QColor(0xff, 0xf0, 0x80));
    marks << mark;
  }
  text_->setExtraSelections(marks);
  if (!hits_.empty())
    count_->setText(tr("%1 of %2").arg(hit_ + 1).arg(hits_.size()));
  else
    count_->setText(search_->text().isEmpty() ? QString() : tr("not found"));
  for (QToolButton* step : steps_) step->setEnabled(!hits_.empty());
}

bool HelpWindow::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return QWidget::eventFilter(watched, event);
  const auto* key = static_cast<QKeyEvent*>(event);
  switch (key->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      Step(key->modifiers().testFlag(Qt::ShiftModifier) ? -1 : 1);
      return true;
    case Qt::Key_Escape:
      search_->clear();
      text_->setFocus();
      return true;
    default:
      return QWidget::eventFilter(watched, event);
  }
}

void MainWindow::RenderHelp() {
  if (!std::exchange(ws_.help.Asked, false)) return;
  if (!help_) help_ = std::make_unique<HelpWindow>();
  help_->ShowAt(std::exchange(ws_.help.Text, {}), ws_.help.Chapter);
}

}  // namespace graphize
