#include "workspace/propose_axes_panel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFocusEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <functional>

#include "widgets/show.h"
#include "widgets/wrapped_label.h"

namespace graphize {

namespace {

/// A value that is gone through with Return or the Tab key has been looked at.
class GoneThroughBox : public QLineEdit {
 public:
  std::function<void()> OnFocus, OnGoneThrough, OnReturn;

 protected:
  void focusInEvent(QFocusEvent* event) override {
    QLineEdit::focusInEvent(event);
    selectAll();
    OnFocus();
  }
  void keyPressEvent(QKeyEvent* event) override {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
      OnGoneThrough();
      return OnReturn();
    }
    QLineEdit::keyPressEvent(event);
  }
  bool focusNextPrevChild(bool next) override {
    if (next) OnGoneThrough();
    return QLineEdit::focusNextPrevChild(next);
  }
};

QColor ColourOf(AxesVerdict verdict) {
  if (verdict == AxesVerdict::Sure) return {0, 140, 50};
  return verdict == AxesVerdict::Proposal ? QColor(224, 138, 0) : QColor(144, 144, 144);
}

}  // namespace

ProposeAxesPanel::ProposeAxesPanel(QWidget* parent) : QGroupBox(tr("Propose Axes"), parent) {
  setObjectName(QStringLiteral("FRM_ProposeAxes"));
  auto* column = new QVBoxLayout(this);
  verdict_ = Named(new WrappedLabel, "LBL_Verdict", tr("How sure the axes are"));
  verdict_->setTextFormat(Qt::PlainText);
  verdict_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  // The verdict's colour stands beside its words, which so are read on every palette.
  strip_ = new QWidget;
  strip_->setFixedWidth(6);
  strip_->setAutoFillBackground(true);
  auto* verdict = new QHBoxLayout;
  verdict->addWidget(strip_);
  verdict->addWidget(verdict_, 1);
  column->addLayout(verdict);

  plot_ = MakeChoice("CMB_Plot", tr("Plot"), column);
  plot_->setToolTip(tr("The plot whose axes are looked for; a click on the picture, too"));
  xScale_ = MakeChoice("CMB_XScale", tr("X scale"), column);
  xScale_->setToolTip(tr("The scale of X that is meant"));
  yScale_ = MakeChoice("CMB_YScale", tr("Y scale"), column);
  yScale_->setToolTip(tr("The scale of Y that is meant"));
  connect(plot_, &QComboBox::activated, this, &ProposeAxesPanel::PlotChosen);
  connect(xScale_, &QComboBox::activated, this, &ProposeAxesPanel::XScaleChosen);
  connect(yScale_, &QComboBox::activated, this, &ProposeAxesPanel::YScaleChosen);

  auto* grid = new QGridLayout;
  grid->setHorizontalSpacing(4);
  const std::array<QString, 3> captions = {tr("Origin:"), tr("X Axis:"), tr("Y Axis:")};
  const auto heading = [&](const QString& text, int at) {
    auto* label = new QLabel(text);
    label->setAlignment(Qt::AlignCenter);
    grid->addWidget(label, 0, at);
  };
  heading(tr("X"), 1);
  heading(tr("Y"), 3);
  for (int row = 0; row < 3; ++row) {
    const QString plain = captions[static_cast<std::size_t>(row)].chopped(1);
    const auto i = static_cast<std::size_t>(row);
    x_[i] = MakeValue(row, true, tr("%1, X value").arg(plain));
    y_[i] = MakeValue(row, false, tr("%1, Y value").arg(plain));
    grid->addWidget(new QLabel(captions[i]), row + 1, 0);
    int at = 1;
    for (const Value& value : {x_[i], y_[i]}) {
      grid->addWidget(value.Box, row + 1, at);
      if (value.Check != nullptr) grid->addWidget(value.Check, row + 1, at + 1);
      at += 2;
    }
  }
  column->addLayout(grid);

  auto* switches = new QHBoxLayout;
  xLog_ = Named(new QCheckBox(tr("X Log")), "CHK_PXLog", tr("Logarithmic X axis"));
  xLog_->setToolTip(tr("Log X axis"));
  yLog_ = Named(new QCheckBox(tr("Y Log")), "CHK_PYLog", tr("Logarithmic Y axis"));
  yLog_->setToolTip(tr("Log Y Axis"));
  switches->addWidget(xLog_);
  switches->addWidget(yLog_);
  switches->addStretch();
  column->addLayout(switches);
  connect(xLog_, &QCheckBox::clicked, this, &ProposeAxesPanel::XLogSwitched);
  connect(yLog_, &QCheckBox::clicked, this, &ProposeAxesPanel::YLogSwitched);

  auto* buttons = new QHBoxLayout;
  accept_ = Named(new QPushButton(tr("&Accept")), "BTN_Accept");
  accept_->setToolTip(tr("Define the axes so, as three clicks would"));
  cancel_ = Named(new QPushButton(tr("Cancel")), "BTN_Cancel");
  cancel_->setToolTip(tr("Leave the axes as they are (Escape)"));
  for (QPushButton* button : {accept_, cancel_}) {
    button->setAutoDefault(true);
    buttons->addWidget(button);
  }
  column->addLayout(buttons);
  connect(accept_, &QPushButton::clicked, this, &ProposeAxesPanel::AcceptPressed);
  connect(cancel_, &QPushButton::clicked, this, &ProposeAxesPanel::CancelPressed);
}

QComboBox* ProposeAxesPanel::MakeChoice(const char* name, const QString& caption, QLayout* column) {
  auto* line = new QWidget;
  auto* row = new QHBoxLayout(line);
  row->setContentsMargins(0, 0, 0, 0);
  auto* box = Named(new QComboBox, name, caption);
  row->addWidget(new QLabel(caption));
  row->addWidget(box, 1);
  column->addWidget(line);
  line->hide();
  return box;
}

ProposeAxesPanel::Value ProposeAxesPanel::MakeValue(int row, bool isX,
                                                    const QString& accessibleName) {
  auto* box = new GoneThroughBox;
  box->setObjectName(MemberName(isX ? "TXT_PXPos" : "TXT_PYPos", row));
  box->setAccessibleName(accessibleName);
  box->setToolTip(tr("Return confirms the value and goes on to the next"));
  box->setMinimumWidth(60);
  const auto confirm = [this, row, isX](bool on) {
    isX ? emit XConfirmed(row, on) : emit YConfirmed(row, on);
  };
  box->OnFocus = [this, row] { emit RowFocused(row); };
  box->OnGoneThrough = [confirm] { confirm(true); };
  box->OnReturn = [this] { FocusNext(); };
  connect(box, &QLineEdit::textEdited, this, [this, row, isX](const QString& text) {
    isX ? emit XTyped(row, text.toStdString()) : emit YTyped(row, text.toStdString());
  });
  // The X-axis point has the origin's Y, the Y-axis point its X.
  if (isX ? row == 2 : row == 1) {
    box->setEnabled(false);
    return {box, nullptr};
  }
  auto* check = new QCheckBox;
  check->setObjectName(MemberName(isX ? "CHK_PXConfirmed" : "CHK_PYConfirmed", row));
  check->setAccessibleName(tr("%1 is right").arg(accessibleName));
  check->setToolTip(tr("This value is right"));
  check->setFocusPolicy(Qt::ClickFocus);  // the keys go from box to box
  connect(check, &QCheckBox::clicked, this, confirm);
  return {box, check};
}

void ProposeAxesPanel::Render(const ProposedAxesForm& form, const std::string& verdict,
                              bool canTake) {
  if (!form.Shown) return;
  graphize::Show(verdict_, verdict);
  QPalette colours = strip_->palette();
  colours.setColor(QPalette::Window, ColourOf(form.Found.Verdict));
  strip_->setPalette(colours);
  const auto choice = [](QComboBox* box, const QStringList& texts, int chosen) {
    box->parentWidget()->setVisible(texts.size() > 1);
    QStringList shown;
    for (int i = 0; i < box->count(); ++i) shown << box->itemText(i);
    if (shown != texts) {
      box->clear();
      box->addItems(texts);
    }
    box->setCurrentIndex(chosen);
  };
  QStringList plots;
  for (std::size_t i = 0; i < form.Found.Plots.size(); ++i) plots << QString::number(i + 1);
  choice(plot_, plots, form.Found.Choice.Plot.value_or(-1));
  const auto scales = [&](QComboBox* box, const ProposedAxis& axis) {
    QStringList texts;
    for (const std::string& text : axis.Scales) texts << ToQString(text);
    choice(box, texts, axis.Scale);
  };
  scales(xScale_, form.Found.X);
  scales(yScale_, form.Found.Y);
  const bool hasRows = !form.Found.Rows.empty();
  const auto value = [&](const Value& shown, const ProposedValue& from) {
    graphize::Show(shown.Box, from.Text);
    if (shown.Check == nullptr) return;
    Enable(shown.Box, hasRows);
    Enable(shown.Check, hasRows);
    shown.Check->setChecked(from.Confirmed);
  };
  for (std::size_t row = 0; row < 3; ++row) {
    value(x_[row], form.X[row]);
    value(y_[row], form.Y[row]);
  }
  xLog_->setChecked(form.XLog);
  yLog_->setChecked(form.YLog);
  Enable(xLog_, hasRows);
  Enable(yLog_, hasRows);
  Enable(accept_, canTake);
}

void ProposeAxesPanel::FocusNext() {
  for (std::size_t row = 0; row < 3; ++row)
    for (const Value& value : {x_[row], y_[row]})
      if (value.Check != nullptr && value.Box->isEnabled() && !value.Check->isChecked())
        return value.Box->setFocus(Qt::TabFocusReason);
  (accept_->isEnabled() ? accept_ : cancel_)->setFocus(Qt::TabFocusReason);
}

}  // namespace graphize
