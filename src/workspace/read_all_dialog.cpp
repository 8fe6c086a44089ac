#include "workspace/read_all_dialog.h"

#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

#include "raster/paper.h"
#include "widgets/show.h"
#include "widgets/swatch.h"

namespace graphize {

namespace {

enum Column { kName, kPoints, kSure, kColumns };
constexpr int kRowsShown = 8;

void Show(QTableWidgetItem* cell, const QString& text) {
  if (cell->text() != text) cell->setText(text);
}

}  // namespace

ReadAllDialog::ReadAllDialog(QWidget* parent)
    : FormDialog("FRM_ReadAll", tr("Read All Curves"), parent) {
  auto* column = static_cast<QVBoxLayout*>(layout());
  curves_ = Named(new QTableWidget(0, kColumns), "LST_Curves", tr("Curves that were found"));
  curves_->setToolTip(tr("Ticked curves are taken over; a name can be edited (F2)"));
  curves_->setHorizontalHeaderLabels({tr("Curve"), tr("Points"), tr("How sure")});
  curves_->verticalHeader()->hide();
  curves_->verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
  curves_->setSelectionBehavior(QAbstractItemView::SelectRows);
  curves_->setSelectionMode(QAbstractItemView::SingleSelection);
  curves_->horizontalHeader()->setStretchLastSection(true);
  curves_->setWordWrap(false);  // the hint has it all
  curves_->setTabKeyNavigation(false);
  const QFontMetrics metrics = curves_->fontMetrics();
  curves_->setMinimumSize(80 * metrics.averageCharWidth(), (kRowsShown + 2) * metrics.height());
  column->addWidget(curves_, 1);
  hint_ = Named(new QLabel, "LBL_Hint", tr("Hint"));
  hint_->setTextFormat(Qt::PlainText);
  hint_->setWordWrap(true);
  column->addWidget(hint_);

  accept_ = Named(new QPushButton(tr("&Accept")), "BTN_Accept");
  accept_->setToolTip(tr("Take the ticked curves over, each as a curve of its own"));
  auto* cancel = Named(new QPushButton(tr("&Cancel")), "BTN_Cancel");
  cancel->setToolTip(tr("Take nothing over"));
  AddButtons({accept_, cancel});
  connect(accept_, &QPushButton::clicked, this, &ReadAllDialog::AcceptPressed);
  connect(curves_, &QTableWidget::itemChanged, this, [this](const QTableWidgetItem* cell) {
    if (cell->column() != kName) return;
    const int row = cell->row();
    const bool taken = cell->checkState() == Qt::Checked;
    const std::string name = cell->text().toStdString();
    emit Ticked(row, taken);
    emit NameTyped(row, name);
  });
  connect(curves_, &QTableWidget::currentCellChanged, this, &ReadAllDialog::RowChosen);
}

void ReadAllDialog::MakeRow(int row, const ReadAllForm::Item& item) {
  auto* name = new QTableWidgetItem(
      Swatch(*this, PixelOf(item.Curve.Colour), fontMetrics().height()), QString());
  name->setFlags(name->flags() | Qt::ItemIsUserCheckable | Qt::ItemIsEditable);
  curves_->setItem(row, kName, name);
  for (const int column : {kPoints, kSure}) {
    auto* cell = new QTableWidgetItem;
    cell->setFlags(cell->flags() & ~Qt::ItemIsEditable);
    curves_->setItem(row, column, cell);
  }
  curves_->item(row, kPoints)->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
}

void ReadAllDialog::RenderRow(int row, const ReadAllForm::Item& item) {
  QTableWidgetItem* name = curves_->item(row, kName);
  Show(name, ToQString(item.Name));
  const Qt::CheckState state = item.IsTaken ? Qt::Checked : Qt::Unchecked;
  if (name->checkState() != state) name->setCheckState(state);
  Show(curves_->item(row, kPoints), QString::number(item.Curve.Reading.Points.size()));
  Show(curves_->item(row, kSure), ToQString(item.Sure));
  curves_->item(row, kSure)->setToolTip(ToQString(item.Sure));
}

void ReadAllDialog::Render(const ReadAllForm& form, bool canTake) {
  {
    const QSignalBlocker quiet(curves_);
    const int count = static_cast<int>(form.Items.size());
    const bool isNew = curves_->rowCount() != count;
    if (isNew) curves_->setRowCount(count);
    for (int row = 0; row < count; ++row) {
      const ReadAllForm::Item& item = form.Items[static_cast<std::size_t>(row)];
      if (curves_->item(row, kName) == nullptr) MakeRow(row, item);
      RenderRow(row, item);
    }
    if (isNew) curves_->resizeColumnsToContents();
  }
  std::string hint = form.Hint;
  if (form.Current >= 0 && form.Current < static_cast<int>(form.Items.size())) {
    const ReadAllForm::Item& item = form.Items[static_cast<std::size_t>(form.Current)];
    hint += "\n" + item.Name + ": " + item.Sure;
  }
  graphize::Show(hint_, hint);
  Enable(accept_, canTake);
}

}  // namespace graphize
