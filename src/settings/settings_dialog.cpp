#include "settings/settings_dialog.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QTabBar>
#include <QTabWidget>
#include <QToolButton>
#include <QVBoxLayout>

#include "base/palette.h"
#include "widgets/colour_grid.h"
#include "widgets/plot_cursor.h"
#include "widgets/show.h"
#include "widgets/swatch.h"
#include "widgets/up_down.h"

namespace graphize {

namespace {

/// A member of an array of option buttons; `index` is its number in the array and in the settings.
QRadioButton* Option(QButtonGroup* group, const char* array, int index, const QString& caption,
                     const QString& tip = {}) {
  auto* button = new QRadioButton(caption);
  button->setObjectName(MemberName(array, index));
  button->setToolTip(tip);
  group->addButton(button, index);
  return button;
}

/// A frame with its controls one below the other.
QGroupBox* Frame(const QString& caption, std::initializer_list<QWidget*> controls) {
  auto* frame = new QGroupBox(caption);
  auto* column = new QVBoxLayout(frame);
  // Each as wide as its caption: a click beside it is none.
  for (QWidget* control : controls) column->addWidget(control, 0, Qt::AlignLeft);
  return frame;
}

/// A tab of frames, which stay as high as they need.
QWidget* Tab(std::initializer_list<QWidget*> frames) {
  auto* tab = new QWidget;
  auto* column = new QVBoxLayout(tab);
  for (QWidget* frame : frames) column->addWidget(frame);
  column->addStretch();
  return tab;
}

/// Scrolls what a small screen or large type leaves no room for.
class ScrollingTab : public QScrollArea {
 public:
  explicit ScrollingTab(QWidget* tab) {
    setWidget(tab);
    setWidgetResizable(true);
    setFrameStyle(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
  }
  QSize sizeHint() const override { return widget()->sizeHint(); }
};

/// A number that only its up-down changes.
QLabel* NumberShown(const QString& name, const QString& accessibleName) {
  auto* label = new QLabel;
  label->setObjectName(name);
  label->setAccessibleName(accessibleName);
  label->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
  label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  label->setFixedWidth(label->fontMetrics().horizontalAdvance(QStringLiteral("00000")) + 12);
  return label;
}

QHBoxLayout* Row(std::initializer_list<QWidget*> controls) {
  auto* row = new QHBoxLayout;
  row->setSpacing(4);
  for (QWidget* control : controls) row->addWidget(control);
  row->addStretch();
  return row;
}

void Check(QButtonGroup* group, int index) {
  if (QAbstractButton* button = group->button(index)) return button->setChecked(true);
  // None stands for this number: none is shown as chosen.
  group->setExclusive(false);
  if (QAbstractButton* checked = group->checkedButton()) checked->setChecked(false);
  group->setExclusive(true);
}

/// A cursor as it looks over a picture, whatever the desktop's colours are.
QPixmap OnPaper(const QPixmap& cursor) {
  QPixmap paper(cursor.size());
  paper.setDevicePixelRatio(cursor.devicePixelRatio());
  paper.fill(Qt::white);
  QPainter(&paper).drawPixmap(0, 0, cursor);
  return paper;
}

}  // namespace

SettingsDialog::SettingsDialog(QWidget* parent)
    : FormDialog("frmOptions", tr("Graphize settings"), parent) {
  auto* tabs = Named(new QTabWidget, "Tabs", tr("Groups of options"));
  tabs->setUsesScrollButtons(false);  // all are there to be chosen, whatever the font
  tabs->tabBar()->setAccessibleName(tr("Groups of options"));
  const auto add = [tabs](QWidget* tab, const QString& caption) {
    tabs->addTab(new ScrollingTab(tab), caption);
  };
  add(MakeTrace(), tr("Trace"));
  add(MakeGeneral(), tr("General"));
  add(MakeSnap(), tr("Snap"));
  add(MakeColours(), tr("Colors"));
  add(MakeCursor(), tr("Cursor"));
  add(MakeFormat(), tr("Format"));
  auto* column = static_cast<QVBoxLayout*>(layout());
  column->addWidget(tabs);
  note_ = Named(new QLabel, "LBL_Note", tr("Note"));
  note_->setWordWrap(true);
  note_->setTextFormat(Qt::PlainText);
  note_->hide();
  column->addWidget(note_);
  MakeButtons();
}

QWidget* SettingsDialog::MakeTrace() {
  trace_ = new QButtonGroup(this);
  connect(trace_, &QButtonGroup::idClicked, this, &SettingsDialog::TraceChosen);
  return Tab(
      {Frame(tr("Trace Algorithm"),
             {Option(trace_, "OPT_TraceType", 2, tr("Scan (all black points)"),
                     tr("A right drag selects a rectangle; every black pixel in it is captured")),
              Option(trace_, "OPT_TraceType", 1, tr("Smooth"),
                     tr("A right click follows a curve by the middle of its ink")),
              Option(trace_, "OPT_TraceType", 0, tr("Peaks, Edges, smooth"),
                     tr("A right click follows a curve, its peaks and its edges"))})});
}

QWidget* SettingsDialog::MakeGeneral() {
  auto* jumps = new QGroupBox(tr("Scroll Jumps"));
  auto* grid = new QGridLayout(jumps);
  const auto addJump = [&](int row, const QString& caption, const char* name, const char* upDown,
                           auto stepped) {
    QLabel* number = NumberShown(QLatin1String(name), caption);
    auto* steps = Named(new UpDown(caption), upDown);
    steps->setToolTip(
        tr("Pixels that the picture moves at a step of its scroll bar and while a "
           "trace runs"));
    connect(steps, &UpDown::Stepped, this, stepped);
    grid->addWidget(new QLabel(caption), row, 0);
    grid->addLayout(Row({number, steps}), row, 1);
    return number;
  };
  xJump_ = addJump(0, tr("X Jump"), "LBL_XJump", "XUpDown", &SettingsDialog::XJumpStepped);
  yJump_ = addJump(1, tr("Y Jump"), "LBL_YJump", "YUpDown", &SettingsDialog::YJumpStepped);

  refreshList_ = Named(new QCheckBox(tr("Refresh List")), "CHK_RefreshList");
  refreshList_->setToolTip(tr("Show every point in the data list while a trace runs"));
  zoomWindow_ = Named(new QCheckBox(tr("Zoom Window")), "CHK_ZoomWindow");
  zoomWindow_->setToolTip(tr("Show the picture around the pointer enlarged"));
  subPixelClicks_ = Named(new QCheckBox(tr("Sub-pixel Clicks")), "CHK_SubPixelClicks");
  subPixelClicks_->setToolTip(
      tr("Where the picture is enlarged, clicks without snapping capture parts of pixels"));
  connect(subPixelClicks_, &QCheckBox::clicked, this, &SettingsDialog::SubPixelClicksSwitched);
  connect(refreshList_, &QCheckBox::clicked, this, &SettingsDialog::RefreshListSwitched);
  connect(zoomWindow_, &QCheckBox::clicked, this, &SettingsDialog::ZoomWindowSwitched);
  return Tab({jumps, Frame(tr("Options"), {refreshList_, zoomWindow_, subPixelClicks_})});
}

QWidget* SettingsDialog::MakeSnap() {
  snapMode_ = new QButtonGroup(this);
  auto* frame =
      Frame(tr("Select snap mode"),
            {Option(snapMode_, "Opt_Snap", 0, tr("no Snap"), tr("Capture exactly where you press")),
             Option(snapMode_, "Opt_Snap", 3, tr("Snap Center"),
                    tr("Capture the centre of the black pixels around the pointer")),
             Option(snapMode_, "Opt_Snap", 2, tr("Snap to Y"),
                    tr("Move up or down to the centre of the black pixels")),
             Option(snapMode_, "Opt_Snap", 1, tr("Snap to X"),
                    tr("Move left or right to the centre of the black pixels"))});
  snapDistance_ = Named(new QLineEdit, "TXT_SnapDistance", tr("Snap distance"));
  snapDistance_->setFixedWidth(
      snapDistance_->fontMetrics().horizontalAdvance(QStringLiteral("00000")) + 16);
  snapDistance_->setToolTip(
      tr("How many pixels around the pointer are looked at, 0 to %1").arg(kLargestSnapDistance));
  auto* caption = new QLabel(tr("Snap distance:"));
  caption->setBuddy(snapDistance_);
  auto* steps = Named(new UpDown(tr("Snap distance")), "UpDown1");
  static_cast<QVBoxLayout*>(frame->layout())
      ->addLayout(Row({caption, snapDistance_, steps, new QLabel(tr("pixels"))}));
  connect(snapMode_, &QButtonGroup::idClicked, this, &SettingsDialog::SnapModeChosen);
  connect(snapDistance_, &QLineEdit::textEdited, this,
          [this](const QString& text) { emit SnapDistanceTyped(text.toStdString()); });
  connect(steps, &UpDown::Stepped, this, &SettingsDialog::SnapDistanceStepped);
  return Tab({frame});
}

QWidget* SettingsDialog::MakeColours() {
  colourOf_ = new QButtonGroup(this);
  colours_ = Named(new ColourGrid, "ColorPic", tr("Palette of 16 colours"));
  colours_->setToolTip(tr("The colour of the marks chosen above"));
  // Its given letter, D, is that of "Default" below.
  auto* defaults = Named(new QPushButton(tr("De&fualt Colors")), "Command1");
  defaults->setToolTip(tr("The colours that the program comes with"));
  auto* frame = new QGroupBox(tr("Select Trace and Block Colors"));
  auto* column = new QVBoxLayout(frame);
  column->addLayout(Row({Option(colourOf_, "OPT_Color", 0, tr("Trace"),
                                tr("Marks of traced points and of the data overlay")),
                         Option(colourOf_, "OPT_Color", 1, tr("Block"), tr("Blockers"))}));
  column->addLayout(Row({colours_}));
  column->addLayout(Row({defaults}));
  connect(colourOf_, &QButtonGroup::idClicked, this, &SettingsDialog::ColourOfChosen);
  connect(colours_, &ColourGrid::Chosen, this, &SettingsDialog::ColourChosen);
  connect(defaults, &QPushButton::clicked, this, &SettingsDialog::DefaultColoursPressed);
  return Tab({frame});
}

QWidget* SettingsDialog::MakeCursor() {
  cursors_ = new QButtonGroup(this);
  constexpr int kColumns = 5;
  auto* pictures = new QGridLayout;
  pictures->setSpacing(4);
  for (int index = 0; index < kPlotCursors; ++index) {
    auto* button = new QToolButton;
    button->setObjectName(MemberName("IMG_RevCursor", index));
    button->setAccessibleName(PlotCursorName(index));
    button->setToolTip(PlotCursorName(index));
    button->setCheckable(true);
    button->setFocusPolicy(Qt::StrongFocus);
    button->setIcon(OnPaper(PlotCursorPicture(index, devicePixelRatioF())));
    button->setIconSize({33, 33});
    cursors_->addButton(button, index + 1);
    pictures->addWidget(button, index / kColumns, index % kColumns);
  }
  auto* byDefault =
      Named(new QPushButton(tr("Default")), "BTN_DefaultCursor", tr("Default cursor"));
  byDefault->setCheckable(true);
  byDefault->setToolTip(tr("The desktop's own cross"));
  cursors_->addButton(byDefault, 0);
  pictures->addWidget(byDefault, kPlotCursors / kColumns, 0, 1, kColumns, Qt::AlignLeft);
  connect(cursors_, &QButtonGroup::idClicked, this, &SettingsDialog::CursorChosen);

  testArea_ = Named(new QLabel, "Picture3", tr("Area to test the cursor in"));
  testArea_->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
  testArea_->setMinimumSize(150, 120);
  // Paper with a curve's ink and a mid tone: the grounds that a cursor must stand out from.
  testArea_->setAutoFillBackground(true);
  QPixmap ground(150, 120);
  ground.fill(Qt::white);
  {
    QPainter painter(&ground);
    painter.fillRect(100, 0, 50, 60, Qt::gray);
    painter.fillRect(100, 60, 50, 60, Qt::black);
    painter.setPen(QPen(Qt::black, 2));
    painter.setRenderHint(QPainter::Antialiasing);
    painter.drawLine(8, 108, 92, 12);
  }
  testArea_->setPixmap(ground);
  testArea_->setFixedSize(ground.size() + QSize(4, 4));

  auto* frame = new QGroupBox(tr("Select cursor type"));
  auto* row = new QHBoxLayout(frame);
  row->addLayout(pictures);
  row->addSpacing(12);
  auto* test = new QVBoxLayout;
  test->addWidget(new QLabel(tr("Test the cursor here:")));
  test->addWidget(testArea_);
  test->addStretch();
  row->addLayout(test);
  row->addStretch();
  return Tab({frame});
}

QWidget* SettingsDialog::MakeFormat() {
  auto* format = new QGroupBox(tr("Data Format"));
  auto* grid = new QGridLayout(format);
  grid->setHorizontalSpacing(16);
  grid->addWidget(new QLabel(tr("Digits:")), 0, 1);
  grid->addWidget(new QLabel(tr("Decimals:")), 0, 2);
  static const QString kWhat[] = {tr("X digits"), tr("X decimals"), tr("Y digits"),
                                  tr("Y decimals")};
  for (int index = 0; index < 4; ++index) {
    places_[index] = NumberShown(MemberName("LBL_FMT", index), kWhat[index]);
    auto* steps = new UpDown(kWhat[index]);
    steps->setObjectName(MemberName("UpDown", index));
    connect(steps, &UpDown::Stepped, this,
            [this, index](int step) { emit PlacesStepped(index, step); });
    grid->addLayout(Row({places_[index], steps}), 1 + index / 2, 1 + index % 2);
  }
  xExp_ = new QCheckBox(tr("Exponent"));
  yExp_ = new QCheckBox(tr("Exponent"));
  int row = 0;
  for (QCheckBox* box : {xExp_, yExp_}) {
    box->setObjectName(MemberName("CHK_Exp", row));
    box->setAccessibleName(row == 0 ? tr("Exponent of X") : tr("Exponent of Y"));
    box->setToolTip(tr("Scientific notation"));
    ++row;
    grid->addWidget(new QLabel(row == 1 ? tr("X") : tr("Y")), row, 0);
    grid->addWidget(box, row, 3, Qt::AlignLeft);
  }
  grid->setColumnStretch(4, 1);
  connect(xExp_, &QCheckBox::clicked, this, &SettingsDialog::XExpSwitched);
  connect(yExp_, &QCheckBox::clicked, this, &SettingsDialog::YExpSwitched);

  point_ = Named(new QRadioButton(tr("Point")), "OPT_Point", tr("Decimal point"));
  comma_ = Named(new QRadioButton(tr("Comma")), "OPT_Comma", tr("Decimal comma"));
  connect(point_, &QRadioButton::clicked, this, [this] { emit DecimalPointChosen(true); });
  connect(comma_, &QRadioButton::clicked, this, [this] { emit DecimalPointChosen(false); });

  example_ = Named(new QLineEdit, "Text1", tr("Example"));
  example_->setReadOnly(true);
  example_->setToolTip(tr("A point as it will be written"));
  auto* caption = new QLabel(tr("Example:"));
  caption->setBuddy(example_);

  auto* tab = new QWidget;
  auto* layout = new QGridLayout(tab);
  layout->addWidget(format, 0, 0, 1, 2);
  layout->addWidget(Frame(tr("Decimal Point"), {point_, comma_}), 1, 0);
  layout->addWidget(MakeDelimiter(), 1, 1);
  auto* example = new QHBoxLayout;
  example->addWidget(caption);
  example->addWidget(example_);
  layout->addLayout(example, 2, 0, 1, 2);
  layout->setRowStretch(3, 1);
  return tab;
}

QWidget* SettingsDialog::MakeDelimiter() {
  delimiter_ = new QButtonGroup(this);
  auto* frame = new QGroupBox(tr("Delimiter"));
  auto* grid = new QGridLayout(frame);
  const QString captions[] = {tr("TAB"), tr("Comma"), tr("Space"), tr("Semicolon")};
  for (int index = 0; index < 4; ++index)
    grid->addWidget(Option(delimiter_, "CHK_Delimiter", index, captions[index],
                           tr("Between the values of a line")),
                    index % 2, index / 2, Qt::AlignLeft);
  connect(delimiter_, &QButtonGroup::idClicked, this, &SettingsDialog::DelimiterChosen);
  return frame;
}

void SettingsDialog::MakeButtons() {
  const auto button = [](const char* name, const QString& caption, const QString& tip) {
    auto* made = Named(new QPushButton(caption), name);
    made->setToolTip(tip);
    return made;
  };
  auto* ok = button("cmdOK", tr("OK"), tr("Take over and close"));
  auto* apply = button("Command5", tr("&Apply"), tr("Take over"));
  auto* save = button("Command4", tr("&Save"), tr("Take over and write the settings file"));
  auto* load = button("Command3", tr("&Load"), tr("Read the settings file"));
  auto* byDefault = button("Command2", tr("&Default"), tr("The settings the program comes with"));
  auto* cancel = button("cmdCancel", tr("&Cancel"),
                        tr("Close; format, cursor and colours are again what they were"));
  AddButtons({ok, apply, save, load, byDefault, cancel});
  connect(ok, &QPushButton::clicked, this, &SettingsDialog::OkPressed);
  connect(apply, &QPushButton::clicked, this, &SettingsDialog::ApplyPressed);
  connect(save, &QPushButton::clicked, this, &SettingsDialog::SavePressed);
  connect(load, &QPushButton::clicked, this, &SettingsDialog::LoadPressed);
  connect(byDefault, &QPushButton::clicked, this, &SettingsDialog::DefaultPressed);
}

void SettingsDialog::Render(const OptionsForm& form, const Settings& settings) {
  Check(trace_, form.Trace);
  Show(xJump_, std::to_string(form.XJump));
  Show(yJump_, std::to_string(form.YJump));
  refreshList_->setChecked(form.RefreshList);
  zoomWindow_->setChecked(form.ZoomWindow);
  subPixelClicks_->setChecked(form.SubPixelClicks);
  Check(snapMode_, form.SnapMode);
  Show(snapDistance_, form.SnapDistance);

  Check(colourOf_, static_cast<int>(form.Colour));
  const auto show = [this](int button, int colour) {
    constexpr int kSide = 14;
    colourOf_->button(button)->setIcon(Swatch(*this, PixelOfColour(PaletteColour(colour)), kSide));
  };
  show(0, settings.TraceColor);
  show(1, settings.BlockColor);
  colours_->Render(ChosenColour(form, settings));
  Check(cursors_, settings.CursorType);
  testArea_->setCursor(PlotCursor(settings.CursorType, devicePixelRatioF()));

  for (int index = 0; index < 4; ++index)
    Show(places_[index], std::to_string(PlacesOf(settings, index)));
  xExp_->setChecked(settings.XExp);
  yExp_->setChecked(settings.YExp);
  (settings.DecimalPoint ? point_ : comma_)->setChecked(true);
  Check(delimiter_, settings.Delimiter);
  Show(example_, form.Example);
  Show(note_, form.Note);
  note_->setVisible(!form.Note.empty());
}

}  // namespace graphize
