#include "tracing/ink_check_panel.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "widgets/show.h"
#include "widgets/wrapped_label.h"

namespace graphize {

InkCheckPanel::InkCheckPanel(QWidget* parent) : QWidget(parent) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(2);
  text_ = Named(new WrappedLabel, "LBL_InkCheck", tr("Points held against the picture"));
  text_->setTextFormat(Qt::PlainText);
  column->addWidget(text_);
  show_ = Named(new QPushButton(tr("Sho&w")), "BTN_ShowDoubtful", tr("Show doubtful points"));
  show_->setToolTip(tr("Frame the doubtful points on the picture, and select them in the list"));
  show_->setCheckable(true);
  remove_ =
      Named(new QPushButton(tr("Remove")), "BTN_RemoveDoubtful", tr("Remove doubtful points"));
  remove_->setToolTip(tr("Delete the doubtful points; Undo brings them back"));
  undo_ = Named(new QPushButton(tr("Undo")), "BTN_UndoRemove", tr("Undo the removal"));
  undo_->setToolTip(tr("Bring the removed points back"));
  buttons_ = new QWidget;
  auto* row = new QHBoxLayout(buttons_);
  row->setContentsMargins(0, 0, 0, 0);
  for (QPushButton* button : {show_, remove_, undo_}) {
    button->setAutoDefault(false);
    // Each keeps its place: the second press of a double click does not undo the first.
    QSizePolicy policy = button->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    button->setSizePolicy(policy);
    row->addWidget(button);
  }
  column->addWidget(buttons_);
  connect(show_, &QPushButton::clicked, this, &InkCheckPanel::ShowPressed);
  connect(remove_, &QPushButton::clicked, this, &InkCheckPanel::RemovePressed);
  connect(undo_, &QPushButton::clicked, this, &InkCheckPanel::UndoPressed);
  hide();
}

void InkCheckPanel::Render(const std::string& text, bool isDoubtful, bool areShown,
                           bool areRemoved) {
  Show(text_, text);
  show_->setChecked(areShown);
  show_->setVisible(isDoubtful);
  remove_->setVisible(isDoubtful);
  undo_->setVisible(areRemoved);
  buttons_->setVisible(isDoubtful || areRemoved);
  setVisible(!text.empty());
}

}  // namespace graphize
