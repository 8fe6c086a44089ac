#include "scanner/scan_dialog.h"

#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

#include "scanner/scan_area_view.h"
#include "widgets/show.h"

namespace graphize {

namespace {

QString NumberText(double number) {
  return QString::number(number, 'g', 6);
}

/// Shows the choices with the present one; a choice of one is no choice.
void ShowChoices(QComboBox* box, const QStringList& texts, const QString& now) {
  const QSignalBlocker quiet(box);
  QStringList shown;
  for (int i = 0; i < box->count(); ++i) shown << box->itemText(i);
  if (shown != texts) {
    box->clear();
    box->addItems(texts);
  }
  box->setCurrentIndex(static_cast<int>(texts.indexOf(now)));
  if (box->isEditable() && box->currentText() != now) box->setEditText(now);
}

QDoubleSpinBox* EdgeBox(const char* name, const QString& caption) {
  auto* box = Named(new QDoubleSpinBox, name, caption);
  box->setLocale(QLocale::c());
  box->setGroupSeparatorShown(false);
  box->setKeyboardTracking(false);  // a number is taken when it is whole
  return box;
}

void ShowEdge(QDoubleSpinBox* box, double least, double most, double value, double step) {
  const QSignalBlocker quiet(box);
  box->setRange(least, std::max(least, most));
  box->setSingleStep(step >= 1 ? step : 1);
  if (box->value() != value) box->setValue(value);
}

}  // namespace

ScanDialog::ScanDialog(QWidget* parent) : FormDialog("FRM_Scan", tr("Aquire"), parent) {
  auto* column = static_cast<QVBoxLayout*>(layout());
  auto* row = new QHBoxLayout;
  view_ = Named(new ScanAreaView, "PIC_Area", tr("Preview of the page"));
  view_->setToolTip(tr("Drag the mouse to choose the area to scan"));
  row->addWidget(view_, 1);
  settings_ = new QWidget;
  auto* side = new QVBoxLayout(settings_);
  side->setContentsMargins(0, 0, 0, 0);
  side->addWidget(MakeChoices());
  side->addWidget(MakeArea());
  size_ = Named(new QLabel, "LBL_Size", tr("Size of the picture"));
  size_->setTextFormat(Qt::PlainText);
  side->addWidget(size_);
  hint_ = Named(new QLabel, "LBL_Hint", tr("Hint"));
  hint_->setTextFormat(Qt::PlainText);
  hint_->setWordWrap(true);
  hint_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  hint_->setMinimumHeight(3 * hint_->fontMetrics().lineSpacing());
  side->addWidget(hint_);
  side->addStretch();
  row->addWidget(settings_);
  column->addLayout(row, 1);

  progress_ = Named(new QProgressBar, "PRG_Scan", tr("Progress of the scan"));
  QSizePolicy keepsItsRoom = progress_->sizePolicy();
  keepsItsRoom.setRetainSizeWhenHidden(true);
  progress_->setSizePolicy(keepsItsRoom);
  progress_->hide();
  column->addWidget(progress_);
  scan_ = Named(new QPushButton(tr("&Scan")), "CMD_Scan");
  scan_->setToolTip(tr("Scan the page and take it as the picture"));
  preview_ = Named(new QPushButton(tr("&Preview")), "CMD_Preview");
  preview_->setToolTip(tr("A quick look at all of the page"));
  cancel_ = Named(new QPushButton(tr("&Cancel")), "CMD_Cancel");
  cancel_->setToolTip(tr("Stop scanning and keep the picture that is open"));
  AddButtons({scan_, preview_, cancel_});

  connect(view_, &ScanAreaView::AreaDragged, this, &ScanDialog::ChooseArea);
  connect(preview_, &QPushButton::clicked, this, &ScanDialog::PreviewPressed);
  connect(scan_, &QPushButton::clicked, this, &ScanDialog::ScanPressed);
}

QWidget* ScanDialog::MakeChoices() {
  auto* frame = new QGroupBox(tr("Page"));
  choices_ = new QFormLayout(frame);
  device_ = Named(new QLabel, "LBL_Source", tr("Scanner"));
  device_->setTextFormat(Qt::PlainText);
  choices_->addRow(tr("Scanner:"), device_);
  const auto add = [this](const char* name, const QString& caption, const QString& tip) {
    auto* box = Named(new QComboBox, name, QString(caption).remove(u'&').remove(u':'));
    box->setToolTip(tip);
    choices_->addRow(caption, box);
    return box;
  };
  paperSource_ = add("CMB_PaperSource", tr("P&aper from:"), tr("The glass or the document feeder"));
  mode_ = add("CMB_Mode", tr("&Mode:"), tr("Colours, greys or black and white"));
  depth_ = add("CMB_Depth", tr("&Bits per colour:"), tr("8 are all that a picture keeps"));
  resolution_ = add("CMB_Resolution", tr("&Resolution (dpi):"), tr("Dots per inch"));
  resolution_->setInsertPolicy(QComboBox::NoInsert);

  const auto chosen = [this](QComboBox* box, auto setter) {
    connect(box, &QComboBox::textActivated, this, [this, setter](const QString& text) {
      ScanSettings settings = can_.Now;
      setter(settings, text);
      emit SettingsChosen(settings);
    });
  };
  chosen(paperSource_, [](ScanSettings& s, const QString& t) { s.PaperSource = t.toStdString(); });
  chosen(mode_, [](ScanSettings& s, const QString& t) { s.Mode = t.toStdString(); });
  chosen(depth_, [](ScanSettings& s, const QString& t) { s.Depth = t.toInt(); });
  connect(resolution_, &QComboBox::textActivated, this,
          [this](const QString& text) { emit ResolutionTyped(text.toStdString()); });
  return frame;
}

QWidget* ScanDialog::MakeArea() {
  auto* frame = new QGroupBox(tr("Area"));
  auto* grid = new QGridLayout(frame);
  left_ = EdgeBox("TXT_Left", tr("Left edge of the area"));
  top_ = EdgeBox("TXT_Top", tr("Top edge of the area"));
  width_ = EdgeBox("TXT_Width", tr("Width of the area"));
  height_ = EdgeBox("TXT_Height", tr("Height of the area"));
  const auto add = [grid](int row, int at, const QString& caption, QDoubleSpinBox* box) {
    auto* label = new QLabel(caption);
    label->setBuddy(box);
    grid->addWidget(label, row, at);
    grid->addWidget(box, row, at + 1);
  };
  add(0, 0, tr("&Left:"), left_);
  add(0, 3, tr("&Top:"), top_);
  add(1, 0, tr("&Width:"), width_);
  add(1, 3, tr("&Height:"), height_);
  grid->setColumnMinimumWidth(2, 8);
  for (const int box : {1, 4}) grid->setColumnStretch(box, 1);
  auto* whole = Named(new QPushButton(tr("Wh&ole Page")), "CMD_WholePage");
  whole->setToolTip(tr("All that the scanner can scan"));
  whole->setAutoDefault(false);
  grid->addWidget(whole, 2, 0, 1, 5, Qt::AlignRight);
  // One edge at a time: the others are kept finer than their boxes show them.
  const std::pair<QDoubleSpinBox*, double PageArea::*> edges[] = {{left_, &PageArea::Left},
                                                                  {top_, &PageArea::Top},
                                                                  {width_, &PageArea::Width},
                                                                  {height_, &PageArea::Height}};
  for (const auto& [box, edge] : edges)
    connect(box, &QDoubleSpinBox::valueChanged, this, [this, edge = edge](double value) {
      PageArea area = can_.Now.Area;
      area.*edge = value;
      ChooseArea(area);
    });
  connect(whole, &QPushButton::clicked, this, [this] { ChooseArea(WholeArea(can_)); });
  areaFrame_ = frame;
  return frame;
}

void ScanDialog::ChooseArea(PageArea area) {
  ScanSettings settings = can_.Now;
  settings.Area = WithinReach(area, can_);
  emit SettingsChosen(settings);
}

void ScanDialog::RenderChoices(const ScanForm& form) {
  const auto texts = [](const std::vector<std::string>& list) {
    QStringList result;
    for (const std::string& text : list) result << ToQString(text);
    return result;
  };
  const auto numbers = [](const auto& list) {
    QStringList result;
    for (const double number : list) result << NumberText(number);
    return result;
  };
  Show(device_, form.Device);
  ShowChoices(paperSource_, texts(form.Can.PaperSources), ToQString(form.Can.Now.PaperSource));
  ShowChoices(mode_, texts(form.Can.Modes), ToQString(form.Can.Now.Mode));
  ShowChoices(depth_, numbers(form.Can.Depths), NumberText(form.Can.Now.Depth));
  if (resolution_->isEditable() != MayTypeResolution(form)) {
    resolution_->setEditable(MayTypeResolution(form));
    if (QLineEdit* line = resolution_->lineEdit()) {
      line->setAccessibleName(resolution_->accessibleName());
      resolution_->setCompleter(nullptr);  // it would make 1200 of a typed 120
      connect(line, &QLineEdit::editingFinished, this,
              [this] { emit ResolutionTyped(resolution_->currentText().toStdString()); });
    }
  }
  const bool typing = resolution_->isEditable() && resolution_->lineEdit()->isModified() &&
                      resolution_->lineEdit()->hasFocus();
  if (!typing)
    ShowChoices(resolution_, numbers(form.Resolutions), NumberText(form.Can.Now.Resolution));
  for (QComboBox* box : {paperSource_, mode_, depth_, resolution_}) {
    const bool shown = box->count() > 1 || (box == resolution_ && box->isEditable());
    if (box->isHidden() == shown) {
      box->setVisible(shown);
      choices_->labelForField(box)->setVisible(shown);
    }
  }
}

void ScanDialog::RenderArea(const ScanForm& form) {
  const ScanAbilities& can = form.Can;
  const PageArea& now = can.Now.Area;
  const bool shown = HasArea(can);
  if (areaFrame_->isHidden() == shown) areaFrame_->setVisible(shown);
  if (!shown) return;
  const PageArea whole = WholeArea(can);
  for (QDoubleSpinBox* box : {left_, top_, width_, height_}) {
    const QSignalBlocker quiet(box);
    const QString unit = can.AreaInPixels ? tr(" px") : tr(" mm");
    if (box->suffix() != unit) box->setSuffix(unit);
    const int decimals = can.AreaInPixels ? 0 : 1;
    if (box->decimals() != decimals) box->setDecimals(decimals);
  }
  // At least one unit of the glass is left to scan.
  ShowEdge(left_, whole.Left, can.Across.Max - 1, now.Left, can.Across.Step);
  ShowEdge(width_, 1, whole.Width, now.Width, can.Across.Step);
  ShowEdge(top_, whole.Top, can.Down.Max - 1, now.Top, can.Down.Step);
  ShowEdge(height_, 1, whole.Height, now.Height, can.Down.Step);
}

void ScanDialog::RenderWork(const ScanForm& form) {
  const bool idle = form.Doing == ScanForm::Work::None;
  // The buttons that go dark pass the focus on: Space then stops.
  if (!idle && scan_->isEnabled()) cancel_->setFocus();
  Enable(settings_, idle);
  Enable(preview_, idle);
  const bool scannedBefore = !scan_->isEnabled();
  Enable(scan_, idle);
  if (idle && scannedBefore) scan_->setFocus();
  const int most = form.Percent < 0 && !idle ? 0 : 100;
  if (progress_->maximum() != most) progress_->setMaximum(most);
  progress_->setValue(std::max(form.Percent, 0));
  if (progress_->isHidden() != idle) progress_->setHidden(idle);
}

void ScanDialog::Render(const ScanForm& form) {
  can_ = form.Can;
  RenderChoices(form);
  RenderArea(form);
  view_->Render(form);
  Show(size_, form.Size);
  Show(hint_, form.Hint);
  RenderWork(form);
}

}  // namespace graphize
