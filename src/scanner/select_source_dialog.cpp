#include "scanner/select_source_dialog.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "widgets/show.h"

namespace graphize {

SelectSourceDialog::SelectSourceDialog(QWidget* parent)
    : FormDialog("FRM_SelectSource", tr("Select Source"), parent) {
  auto* column = static_cast<QVBoxLayout*>(layout());
  list_ = Named(new QTreeWidget, "LST_Sources", tr("Scanners"));
  list_->setHeaderLabels({tr("Vendor"), tr("Model"), tr("Kind"), tr("Name")});
  list_->setRootIsDecorated(false);
  list_->setAllColumnsShowFocus(true);
  list_->setUniformRowHeights(true);
  list_->header()->setSectionsMovable(false);
  const int letter = fontMetrics().averageCharWidth();
  list_->setMinimumSize(84 * letter, 9 * fontMetrics().lineSpacing());
  auto* label = new QLabel(tr("Scann&ers:"));
  label->setBuddy(list_);
  column->addWidget(label);
  column->addWidget(list_, 1);

  hint_ = Named(new QLabel, "LBL_Hint", tr("Hint"));
  hint_->setTextFormat(Qt::PlainText);
  hint_->setWordWrap(true);
  hint_->setMinimumHeight(hint_->fontMetrics().lineSpacing());
  column->addWidget(hint_);

  auto* row = new QHBoxLayout;
  network_ = Named(new QCheckBox(tr("Look in the &network, too")), "CHK_Network");
  network_->setToolTip(tr("Find scanners that other computers share; takes some seconds"));
  refresh_ = Named(new QPushButton(tr("&Refresh")), "CMD_Refresh");
  refresh_->setToolTip(tr("Look for scanners again"));
  row->addWidget(network_);
  row->addStretch();
  row->addWidget(refresh_);
  column->addLayout(row);

  select_ = Named(new QPushButton(tr("&Select")), "CMD_Select");
  select_->setToolTip(tr("Scan with this scanner from now on"));
  auto* cancel = Named(new QPushButton(tr("&Cancel")), "CMD_Cancel");
  cancel->setToolTip(tr("Close this window"));
  refresh_->setAutoDefault(false);
  AddButtons({select_, cancel});

  connect(list_, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem* item) {
    if (item != nullptr) emit SourceSelected(list_->indexOfTopLevelItem(item));
  });
  connect(list_, &QTreeWidget::itemDoubleClicked, this, &SelectSourceDialog::SelectPressed);
  connect(network_, &QCheckBox::clicked, this, &SelectSourceDialog::LookPressed);
  connect(refresh_, &QPushButton::clicked, this,
          [this] { emit LookPressed(network_->isChecked()); });
  connect(select_, &QPushButton::clicked, this, &SelectSourceDialog::SelectPressed);
}

void SelectSourceDialog::RenderList(const SourceForm& form) {
  const QSignalBlocker quiet(list_);
  std::vector<std::string> names;
  for (const ScanSource& source : form.Sources) names.push_back(source.Name);
  if (shown_ != names) {
    shown_ = names;
    list_->clear();
    for (const ScanSource& source : form.Sources) {
      const QStringList texts = {ToQString(source.Vendor), ToQString(source.Model),
                                 ToQString(source.Kind), ToQString(source.Name)};
      auto* item = new QTreeWidgetItem(list_, texts);
      for (int i = 0; i < texts.size(); ++i) item->setToolTip(i, texts[i]);
    }
    for (int i = 0; i + 1 < list_->columnCount(); ++i) {  // the last one takes what is left
      list_->resizeColumnToContents(i);
      list_->setColumnWidth(i, list_->columnWidth(i) + fontMetrics().height());
    }
  }
  list_->setCurrentItem(list_->topLevelItem(form.Selected));
}

void SelectSourceDialog::Render(const SourceForm& form) {
  RenderList(form);
  network_->setChecked(form.Network);
  Show(hint_, form.Hint);
  const bool found = !form.Looking && !list_->isEnabled();
  Enable(list_, !form.Looking);
  if (found) list_->setFocus();
  Enable(network_, !form.Looking);
  Enable(refresh_, !form.Looking);
  Enable(select_, CanChooseSource(form));
}

}  // namespace graphize
