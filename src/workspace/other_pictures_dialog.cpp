#include "workspace/other_pictures_dialog.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QImage>
#include <QLabel>
#include <QPixmap>
#include <QProgressBar>
#include <QPushButton>
#include <QStyledItemDelegate>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <array>
#include <utility>

#include "base/translation.h"
#include "widgets/show.h"
#include "widgets/tool_tip.h"

namespace graphize {

namespace {

using State = OtherPicture::State;

enum Column { kPicture, kState, kPoints, kWorst, kReason, kColumns };

const char* TextOf(State state) {
  switch (state) {
    case State::Waiting:
      return Marked("waiting");
    case State::Done:
      return Marked("done");
    case State::Doubtful:
      return Marked("doubtful");
    case State::Refused:
      return Marked("refused");
    case State::Failed:
      return Marked("failed");
    case State::Mended:
      return Marked("mended");
    case State::There:
      break;
  }
  return Marked("there before");
}

QPixmap PixmapOf(const Raster& picture) {
  const QImage image(reinterpret_cast<const uchar*>(picture.Pixels()), picture.Width(),
                     picture.Height(), picture.Width() * 4LL, QImage::Format_RGB32);
  return QPixmap::fromImage(image);  // a copy
}

/// Rows that have room for a thumbnail before it is there: nothing moves when it comes.
class RowsOfThumbnails : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    return QStyledItemDelegate::sizeHint(option, index)
        .expandedTo({0, OtherPicturesForm::kThumbnailHeight});
  }
};

/// Of so many pictures, what came of them: "12 done, 2 doubtful, 26 waiting".
std::string Summary(const OtherPicturesForm& form) {
  if (form.Pictures.empty())
    return Tr(
        "Add pictures of the same layout. The points of each are kept in a project beside "
        "it.");
  std::array<int, 7> counts{};
  for (const OtherPicture& picture : form.Pictures) ++counts[static_cast<std::size_t>(picture.Is)];
  std::string text;
  for (std::size_t i = 0; i < counts.size(); ++i)
    if (counts[i] > 0)
      text += (text.empty() ? "" : ", ") + std::to_string(counts[i]) + " " +
              Tr(TextOf(static_cast<State>(i)));
  return text;
}

/// Of the selected picture the remark, which its column may be too narrow for.
std::string HintOf(const OtherPicturesForm& form) {
  std::string text = Summary(form);
  if (!form.KeepFault.empty()) text += "\n" + Tr("The list is not kept: %1", form.KeepFault);
  if (form.Selected < 0 || form.Selected >= static_cast<int>(form.Pictures.size())) return text;
  const OtherPicture& picture = form.Pictures[static_cast<std::size_t>(form.Selected)];
  if (!picture.Reason.empty())
    text += "\n" + picture.File.filename().string() + ": " + picture.Reason;
  return text;
}

}  // namespace

QSize OtherPicturesDialog::sizeHint() const {
  return FormDialog::sizeHint().expandedTo({960, 640});
}

OtherPicturesDialog::OtherPicturesDialog(QWidget* parent)
    : FormDialog("FRM_OtherPictures", tr("Do for Other Pictures"), parent) {
  auto* column = static_cast<QVBoxLayout*>(layout());
  calibrated_ = Named(new QLabel, "LBL_Calibrated", tr("The calibrated picture"));
  calibrated_->setTextFormat(Qt::PlainText);
  calibrated_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  column->addWidget(calibrated_);

  list_ = Named(new QTreeWidget, "LST_Pictures", tr("The other pictures"));
  list_->setToolTip(tr("What came of each picture; a double click opens it"));
  list_->setHeaderLabels(
      {tr("Picture"), tr("State"), tr("Points"), tr("Worst residual"), tr("Remark")});
  list_->setRootIsDecorated(false);
  list_->setUniformRowHeights(true);
  list_->setItemDelegate(new RowsOfThumbnails(list_));
  list_->setIconSize({OtherPicturesForm::kThumbnailWidth, OtherPicturesForm::kThumbnailHeight});
  list_->setMinimumSize(620, 240);
  list_->header()->setSectionResizeMode(QHeaderView::Interactive);
  column->addWidget(list_, 1);

  progress_ = Named(new QProgressBar, "PRG_Pictures", tr("Progress"));
  progress_->setTextVisible(false);
  column->addWidget(progress_);
  hint_ = Named(new QLabel, "LBL_Hint", tr("Hint"));
  hint_->setTextFormat(Qt::PlainText);
  hint_->setWordWrap(true);
  hint_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  // Room for a remark: the list keeps its height while it is stepped through.
  hint_->setMinimumHeight(3 * hint_->fontMetrics().lineSpacing());
  hint_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  column->addWidget(hint_);

  add_ = Named(new QPushButton(tr("&Add...")), "BTN_Add");
  add_->setToolTip(tr("Choose pictures of the same layout"));
  remove_ = Named(new QPushButton(tr("&Remove")), "BTN_Remove");
  remove_->setToolTip(tr("Take the selected picture off the list; its project stays"));
  next_ = Named(new QPushButton(tr("&Next to Look At")), "BTN_Next");
  next_->setToolTip(tr("Select the next picture that is doubtful or went wrong"));
  open_ = Named(new QPushButton(tr("&Open")), "BTN_Open");
  open_->setToolTip(tr("Open the selected picture with its axes and points"));
  auto* row = new QHBoxLayout;
  for (QPushButton* button : {add_, remove_, next_, open_}) row->addWidget(button);
  row->addStretch();
  column->addLayout(row);
  run_ = Named(new QPushButton(tr("&Start")), "BTN_Start");
  run_->setToolTip(tr("Do what was done on the calibrated picture on all that wait"));
  stop_ = Named(new QPushButton(tr("S&top")), "BTN_Stop");
  stop_->setToolTip(tr("Stop; what was begun is finished, the rest waits"));
  stop_->setProperty(kStopsCommand, true);
  auto* close = Named(new QPushButton(tr("&Close")), "BTN_Cancel");
  close->setToolTip(tr("Close this window; the list is kept beside the calibrated picture"));
  AddButtons({run_, stop_, close});

  connect(add_, &QPushButton::clicked, this, &OtherPicturesDialog::AddPressed);
  connect(remove_, &QPushButton::clicked, this, &OtherPicturesDialog::RemovePressed);
  connect(next_, &QPushButton::clicked, this, &OtherPicturesDialog::NextPressed);
  connect(open_, &QPushButton::clicked, this, &OtherPicturesDialog::OpenPressed);
  connect(run_, &QPushButton::clicked, this, &OtherPicturesDialog::RunPressed);
  connect(stop_, &QPushButton::clicked, this, &OtherPicturesDialog::StopPressed);
  // The focus alone makes a row the current one, but does not select it.
  connect(list_, &QTreeWidget::itemSelectionChanged, this, [this] {
    const auto items = list_->selectedItems();
    if (!items.isEmpty()) emit Selected(list_->indexOfTopLevelItem(items.front()));
  });
  connect(list_, &QTreeWidget::itemActivated, this, &OtherPicturesDialog::OpenPressed);
}

void OtherPicturesDialog::RenderList(const OtherPicturesForm& form) {
  const QSignalBlocker quiet(list_);
  const int count = static_cast<int>(form.Pictures.size());
  while (list_->topLevelItemCount() > count) delete list_->takeTopLevelItem(count);
  while (list_->topLevelItemCount() < count) {
    auto* item = new QTreeWidgetItem(list_);
    item->setTextAlignment(kPoints, Qt::AlignRight | Qt::AlignVCenter);
    item->setTextAlignment(kWorst, Qt::AlignRight | Qt::AlignVCenter);
  }
  for (int i = 0; i < count; ++i) {
    const OtherPicture& picture = form.Pictures[static_cast<std::size_t>(i)];
    QTreeWidgetItem* item = list_->topLevelItem(i);
    const bool waits = picture.Is == State::Waiting;
    const auto show = [&](Column column, const QString& text) {
      if (item->text(column) != text) item->setText(column, text);
    };
    show(kPicture, ToQString(picture.File.filename().string()));
    show(kState, ToQString(Tr(TextOf(picture.Is))));
    show(kPoints, waits ? QString() : QString::number(picture.Points));
    show(kWorst, picture.Worst ? QString::number(*picture.Worst, 'f', 2) : QString());
    show(kReason, ToQString(picture.Reason));
    item->setToolTip(kReason, ToolTipOf(ToQString(picture.Reason)));
    item->setToolTip(kPicture, ToolTipOf(ToQString(picture.File.string())));
    const void* shown = item->data(kPicture, Qt::UserRole).value<void*>();
    if (shown == picture.Thumbnail.get()) continue;
    item->setData(
        kPicture, Qt::UserRole,
        QVariant::fromValue(const_cast<void*>(static_cast<const void*>(picture.Thumbnail.get()))));
    const bool isThere = picture.Thumbnail != nullptr && !picture.Thumbnail->IsEmpty();
    item->setIcon(kPicture, isThere ? QIcon(PixmapOf(*picture.Thumbnail)) : QIcon());
  }
  for (const Column column : {kPicture, kState, kPoints, kWorst})
    list_->resizeColumnToContents(column);
}

std::pair<int, int> OtherPicturesDialog::ShownRows() const {
  const QRect sight = list_->viewport()->rect();
  const int first = list_->indexAt(sight.topLeft()).row();
  const int last = list_->indexAt(sight.bottomLeft()).row();
  // Below the last row is none.
  return first < 0 ? std::pair(0, -1)
                   : std::pair(first, last < 0 ? list_->topLevelItemCount() - 1 : last);
}

void OtherPicturesDialog::Render(const OtherPicturesForm& form) {
  if (std::exchange(changes_, form.Changes) != form.Changes) RenderList(form);
  {
    const QSignalBlocker quiet(list_);
    QTreeWidgetItem* wanted = list_->topLevelItem(form.Selected);
    if (list_->currentItem() != wanted) list_->setCurrentItem(wanted);
    if (wanted != nullptr) wanted->setSelected(true);
  }
  Show(calibrated_, Tr("Like %1:", form.Calibrated));
  Show(hint_, HintOf(form));
  const auto is = [&](const auto& test) {
    return std::any_of(form.Pictures.begin(), form.Pictures.end(), test);
  };
  const auto waits = [](const OtherPicture& picture) { return picture.Is == State::Waiting; };
  const auto isDone = [&](const OtherPicture& picture) { return !waits(picture); };
  const int count = static_cast<int>(form.Pictures.size());
  progress_->setRange(0, std::max(count, 1));
  progress_->setValue(
      static_cast<int>(std::count_if(form.Pictures.begin(), form.Pictures.end(), isDone)));
  const bool selected = form.Selected >= 0 && form.Selected < count;
  Enable(add_, !form.IsRunning);
  Enable(remove_, !form.IsRunning && selected);
  Enable(next_, !form.IsRunning && is([](const auto& picture) { return picture.AsksForALook(); }));
  Enable(open_, !form.IsRunning && selected);
  Enable(run_, !form.IsRunning && is(waits));
  const QString run = is(isDone) ? tr("&Go On") : tr("&Start");
  if (run_->text() != run) run_->setText(run);
  Enable(stop_, form.IsRunning);
}

}  // namespace graphize
