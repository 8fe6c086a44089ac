// What the toolkit itself asks for a window like Graphize's: as many of its controls, in its own
// style and with nothing behind them. Ends after its first paint.

#include <QtWidgets>

#include "app/fonts.h"
#include "yardstick_window.h"

namespace {

struct Controls {
  int Labels, Lines, Checks, Boxes, Buttons;
};

QGroupBox* MakeGroup(const QString& title, const Controls& controls) {
  auto* group = new QGroupBox(title);
  auto* grid = new QGridLayout(group);
  const auto add = [grid](int count, const auto& make) {
    for (int i = 0; i < count; ++i) grid->addWidget(make(i), grid->count() / 3, grid->count() % 3);
  };
  add(controls.Labels, [](int i) { return new QLabel(QStringLiteral("Label %1").arg(i)); });
  add(controls.Lines, [](int) { return new QLineEdit; });
  add(controls.Checks, [](int i) { return new QCheckBox(QStringLiteral("Option %1").arg(i)); });
  add(controls.Boxes, [](int) {
    auto* box = new QComboBox;
    box->addItems({QStringLiteral("one"), QStringLiteral("two"), QStringLiteral("three")});
    return box;
  });
  add(controls.Buttons, [](int i) {
    auto* button = new QToolButton;
    button->setText(QString::number(i));
    return button;
  });
  return group;
}

}  // namespace

int main(int argc, char** argv) {
  const std::jthread fonts = graphize::ReadFonts();
  QApplication application(argc, argv);
  graphize::YardstickWindow window;
  for (int i = 0; i < 9; ++i) {
    QMenu* menu = window.menuBar()->addMenu(QStringLiteral("Menu %1").arg(i));
    for (int entry = 0; entry < 8; ++entry) menu->addAction(QStringLiteral("Entry %1").arg(entry));
  }
  QToolBar* bar = window.addToolBar(QStringLiteral("Toolbar"));
  for (int i = 0; i < 16; ++i) bar->addAction(QString::number(i));

  auto* centre = new QWidget;
  auto* grid = new QGridLayout(centre);
  auto* side = new QVBoxLayout;
  for (const Controls& shown :
       {Controls{4, 2, 3, 0, 0}, Controls{6, 5, 2, 1, 5}, Controls{7, 2, 5, 2, 6}})
    side->addWidget(MakeGroup(QStringLiteral("Group"), shown));
  for (const Controls& hidden :
       {Controls{20, 18, 4, 0, 6}, Controls{14, 9, 5, 1, 6}, Controls{16, 12, 5, 2, 6}}) {
    QGroupBox* group = MakeGroup(QStringLiteral("Group"), hidden);
    side->addWidget(group);
    group->hide();
  }
  side->addWidget(new QSlider(Qt::Horizontal));
  grid->addLayout(side, 0, 0);
  grid->addWidget(new QLabel(QStringLiteral("Open a picture of a graph")), 0, 1);
  grid->addWidget(new QScrollBar(Qt::Vertical), 0, 2);
  grid->addWidget(new QScrollBar(Qt::Horizontal), 1, 1);
  grid->setColumnStretch(1, 1);
  window.setCentralWidget(centre);
  for (int i = 0; i < 6; ++i) window.statusBar()->addWidget(new QLabel(QStringLiteral("panel")));
  window.showMaximized();
  return QApplication::exec();
}
