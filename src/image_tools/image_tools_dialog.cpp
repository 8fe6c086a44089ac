#include "image_tools/image_tools_dialog.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QVBoxLayout>
#include <algorithm>

#include "base/translation.h"
#include "widgets/show.h"

namespace graphize {

ImageToolsDialog::ImageToolsDialog(QWidget* parent)
    : FormDialog("FRM_ImageTools", tr("Image Tools"), parent) {
  auto* row = new QHBoxLayout;
  row->addWidget(MakeTools());
  auto* right = new QVBoxLayout;
  right->addWidget(MakeAmount());
  hint_ = Named(new QLabel, "LBL_Hint", tr("What the tool does"));
  hint_->setTextFormat(Qt::PlainText);
  hint_->setWordWrap(true);
  hint_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  // Room for the longest hint: the window never changes its size.
  hint_->setMinimumHeight(4 * hint_->fontMetrics().lineSpacing());
  hint_->setContentsMargins(4, 4, 4, 0);
  right->addWidget(hint_, 1);
  row->addLayout(right, 1);
  static_cast<QVBoxLayout*>(layout())->addLayout(row);

  process_ = Named(new QPushButton(tr("&Process")), "Preview");
  process_->setToolTip(tr("Run the tool on the whole picture"));
  undo_ = Named(new QPushButton(tr("&Undo")), "BTN_Undo");
  undo_->setToolTip(tr("The picture as it was before the last processing"));
  return_ = Named(new QPushButton(tr("&Return")), "BTN_Accept");
  return_->setToolTip(tr("Close this window and keep the picture as it is now"));
  AddButtons({process_, undo_, return_});
  connect(process_, &QPushButton::clicked, this, &ImageToolsDialog::ProcessPressed);
  connect(undo_, &QPushButton::clicked, this, &ImageToolsDialog::UndoPressed);
}

QWidget* ImageToolsDialog::MakeTools() {
  tools_ = new QGroupBox(tr("Tool"));
  auto* column = new QVBoxLayout(tools_);
  for (int i = 0; i < kPictureTools; ++i) {
    const ToolTexts& texts = TextsOf(static_cast<PictureTool>(i));
    auto* option = new QRadioButton(tr(texts.Caption));
    option->setObjectName(MemberName("ToolOption", i));
    option->setToolTip(tr(texts.Hint));
    connect(option, &QRadioButton::clicked, this, [this, i] { emit ToolChosen(i); });
    column->addWidget(option, 0, Qt::AlignLeft);  // as wide as what answers to a click
    toolOption_[static_cast<std::size_t>(i)] = option;
  }
  return tools_;
}

QWidget* ImageToolsDialog::MakeAmount() {
  amountFrame_ = Named(new QGroupBox, "FRM_Amount");
  auto* column = new QVBoxLayout(amountFrame_);
  amount_ = Named(new QLabel, "LBL_Amount", tr("Amount"));
  amount_->setAlignment(Qt::AlignCenter);
  QFont large = amount_->font();
  large.setPointSizeF(1.4 * large.pointSizeF());
  amount_->setFont(large);
  toolAmount_ = Named(new QSlider(Qt::Horizontal), "ToolAmount", tr("Amount"));
  toolAmount_->setToolTip(tr("How strong the tool is, by mouse or arrow keys"));
  toolAmount_->setMinimumWidth(240);
  connect(toolAmount_, &QSlider::valueChanged, this, &ImageToolsDialog::AmountMoved);
  min_ = Named(new QLabel, "LBL_Min", tr("Smallest amount"));
  max_ = Named(new QLabel, "LBL_Max", tr("Largest amount"));
  auto* ends = new QHBoxLayout;
  ends->addWidget(min_);
  ends->addStretch();
  ends->addWidget(max_);
  column->addWidget(amount_);
  column->addWidget(toolAmount_);
  column->addLayout(ends);
  return amountFrame_;
}

void ImageToolsDialog::Render(const ImageToolsForm& form) {
  toolOption_[static_cast<std::size_t>(form.Tool)]->setChecked(true);
  if (const QString caption = tr(form.AmountCaption.c_str()); amountFrame_->title() != caption)
    amountFrame_->setTitle(caption);
  {
    const QSignalBlocker quiet(toolAmount_);
    toolAmount_->setRange(form.Minimum, form.Maximum);
    toolAmount_->setPageStep(std::max((form.Maximum - form.Minimum) / 10, 1));
    toolAmount_->setValue(form.Amount);
  }
  Show(min_, std::to_string(form.Minimum));
  Show(max_, std::to_string(form.Maximum));
  Show(amount_, std::to_string(form.Amount));
  Show(hint_, form.Busy
                  ? Tr("Working on the picture. Escape stops it and leaves the picture as it was.")
                  : Tr(TextsOf(form.Tool).Hint));
  RenderBusy(form.Busy);
  Enable(toolAmount_, form.AmountEnabled);
  for (QLabel* label : {min_, max_, amount_}) Enable(label, form.AmountEnabled);
  const bool canUndo = form.UndoCopy != nullptr && !form.Busy;
  if (undo_->hasFocus() && !canUndo && !form.Busy) process_->setFocus();
  Enable(undo_, canUndo);
}

void ImageToolsDialog::RenderBusy(bool busy) {
  if (busy_ == busy) return;
  busy_ = busy;
  if (busy) focusBeforeBusy_ = focusWidget();
  for (QWidget* part : std::initializer_list<QWidget*>{tools_, amountFrame_, process_, return_})
    part->setEnabled(!busy);
  if (!busy && focusBeforeBusy_ != nullptr) focusBeforeBusy_->setFocus();
}

}  // namespace graphize
