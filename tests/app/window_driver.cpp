#include "app/window_driver.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QMenu>
#include <QMenuBar>
#include <QProcess>
#include <QThread>
#include <QTimer>
#include <QToolBar>
#include <QWindow>
#include <cstdlib>
#include <string_view>

#include "app/journaled_work.h"
#include "app/program_style.h"
#include "app/storm.h"
#include "support/virtual_scanner.h"
#include "widgets/form_dialog.h"

namespace graphize::test {

namespace {

constexpr int kNeverComes = 30000;  // ms; only a broken program waits that long

QStringList Words(const char* words) {
  return QString::fromLatin1(words).split(u' ');
}

QStringList PointerTo(QPoint global) {
  return {QStringLiteral("mousemove"), QString::number(global.x()), QString::number(global.y())};
}

QStringList ClickAt(QPoint global, int button = 1) {
  return PointerTo(global) + QStringList{QStringLiteral("click"), QString::number(button)};
}

void StartXdo(const QStringList& arguments) {
  QProcess::startDetached(QStringLiteral("xdotool"), arguments);
}

/// Types into a dialog's line of text and presses Return until the dialog is gone: a list of
/// completions takes the first one when it is up by then. Text that does not arrive whole, which
/// happens on a busy machine, is typed again.
void TypeAndReturn(QWidget* dialog, const QString& text) {
  const auto type = [text] { StartXdo(Words("key ctrl+a type --delay 2 --") + QStringList{text}); };
  type();
  auto* timer = new QTimer(dialog);
  int looks = 0;
  bool arrived = false;
  QObject::connect(timer, &QTimer::timeout, dialog, [=]() mutable {
    const auto* box = dialog->findChild<QLineEdit*>();
    arrived = arrived || box == nullptr || box->text() == text;
    if (arrived)
      StartXdo(Words("key Return"));
    else if (++looks % 6 == 0)
      type();
  });
  timer->start(500);
}

/// The menu that shows `action`.
QMenu* MenuWith(const QAction* action) {
  for (QObject* owner : action->associatedObjects())
    if (auto* menu = qobject_cast<QMenu*>(owner)) return menu;
  return nullptr;
}

}  // namespace

WindowTest::~WindowTest() {
  EXPECT_TRUE(modalScript_.empty()) << modalScript_.size() << " modal windows never came";
}

void WindowTest::Start() {
  window_ = std::make_unique<MainWindow>(ProgramFiles{
      .Settings = SettingsFile(), .StartFolder = {}, .Help = helpFile_, .Sessions = Sessions()});
  auto* timer = new QTimer(window_.get());
  QObject::connect(timer, &QTimer::timeout, window_.get(), [this] { ServeModal(); });
  timer->start(20);
  window_->Start();
  window_->show();
  Until([this] { return window_->isActiveWindow() && window_->windowHandle()->isExposed(); },
        "the window is shown");
  Settle();
}

bool WindowTest::IsEnabled(const char* action) const {
  return Find<QAction>(action)->isEnabled();
}

void WindowTest::Until(const std::function<bool()>& condition, const char* what) {
  QElapsedTimer timer;
  timer.start();
  while (!condition()) {
    if (timer.elapsed() > kNeverComes) {
      ADD_FAILURE() << "waited in vain: " << what;
      return;
    }
    QApplication::processEvents();
    QThread::msleep(2);
  }
}

void WindowTest::Settle() {
  QElapsedTimer timer;
  timer.start();
  while (timer.elapsed() < 60) {
    QApplication::processEvents();
    QThread::msleep(2);
  }
}

void WindowTest::Xdo(const QStringList& arguments) {
  QProcess xdotool;
  xdotool.start(QStringLiteral("xdotool"), arguments);
  Until([&] { return xdotool.state() == QProcess::NotRunning; }, "xdotool ends");
  Settle();
}

void WindowTest::MoveTo(QWidget* widget, QPoint at) {
  QPoint to;
  do {  // the window manager may move the window meanwhile
    to = widget->mapToGlobal(at);
    Xdo(PointerTo(to));
  } while (widget->mapToGlobal(at) != to);
}

void WindowTest::MoveOverPlot(int x, int y) {
  MoveTo(Find<QWidget>("Plot"), QPoint(x, y));
}

void WindowTest::ClickPlot(int x, int y, int button) {
  MoveOverPlot(x, y);
  Xdo({QStringLiteral("click"), QString::number(button)});
}

void WindowTest::ClickControl(QWidget* control, int button) {
  Xdo(ClickAt(control->mapToGlobal(control->rect().center()), button));
}

void WindowTest::ClickTool(const char* key) {
  ClickControl(Find<QToolBar>("Toolbar1")->widgetForAction(Find<QAction>(key)));
}

void WindowTest::TypeInto(const char* box, const QString& text) {
  ClickControl(Find<QLineEdit>(box));
  Xdo(Words("key ctrl+a"));
  Xdo(Words("type --") + QStringList{text});
}

void WindowTest::ChooseMenu(const char* name) {
  QList<QAction*> path = {Find<QAction>(name)};
  const QMenuBar* bar = Window().menuBar();
  while (!bar->actions().contains(path.first())) path.prepend(MenuWith(path.first())->menuAction());
  Xdo(ClickAt(bar->mapToGlobal(bar->actionGeometry(path.first()).center())));
  for (qsizetype i = 1; i < path.size(); ++i) {
    QMenu* menu = path[i - 1]->menu();
    Until([&] { return menu->isVisible(); }, "the menu opens");
    Xdo(ClickAt(menu->mapToGlobal(menu->actionGeometry(path[i]).center())));
  }
}

QWidget* WindowTest::OpenForm() const {
  if (QWidget* modal = QApplication::activeModalWidget()) return modal;
  for (auto* form : window_->findChildren<FormDialog*>(QString(), Qt::FindDirectChildrenOnly))
    if (form->isVisible()) return form;
  return nullptr;
}

void WindowTest::ChooseForm(const char* action, const char* form) {
  ChooseMenu(action);
  Until(
      [&] {
        const QWidget* open = OpenForm();
        return open != nullptr && open->objectName() == QLatin1String(form) &&
               open->isActiveWindow();
      },
      form);
  Settle();
}

void WindowTest::OpenSample(const char* name) {
  OnFileDialog(kSamples / name);
  ClickTool("open");
  Until([this] { return State().plot.IsPresent(); }, "the picture is open");
  Settle();
}

void WindowTest::StartWith(const std::filesystem::path& picture) {
  Start();
  Window().OpenWhenShown({picture});
  Until([this] { return State().plot.IsPresent(); }, "the picture is open");
  Settle();
}

void WindowTest::OpenInColours(const std::filesystem::path& file) {
  OnFileDialog(file);
  OnMessage("reduce colors", QMessageBox::No);
  ClickTool("open");
  Until([this] { return State().plot.IsPresent(); }, "the picture is open");
  Settle();
}

void WindowTest::Calibrate(const std::array<AxisClick, 3>& clicks) {
  ClickTool("axisdef");
  TypeInto("TXT_XPos_0", clicks[0].X);
  TypeInto("TXT_YPos_0", clicks[0].Y);
  ClickPlot(clicks[0].Column, clicks[0].Row);
  TypeInto("TXT_XPos_1", clicks[1].X);
  ClickPlot(clicks[1].Column, clicks[1].Row);
  TypeInto("TXT_YPos_2", clicks[2].Y);
  ClickPlot(clicks[2].Column, clicks[2].Row);
  ASSERT_TRUE(State().calibration.IsComplete());
  ClickTool("graphize");
}

void WindowTest::CalibratePendulum() {
  Calibrate({{{70, 430, "0", "-1"}, {610, 430, "12", "-1"}, {70, 40, "0", "1"}}});
}

void WindowTest::ServeModal() {
  QWidget* modal = QApplication::activeModalWidget();
  if (qobject_cast<FormDialog*>(modal) != nullptr) modal = nullptr;  // no question
  if (modal == nullptr) served_ = nullptr;
  if (modal == nullptr || modal == served_ || !modal->isActiveWindow()) return;
  served_ = modal;
  if (modalScript_.empty()) {
    const auto* box = qobject_cast<QMessageBox*>(modal);
    ADD_FAILURE() << "unexpected window: " << modal->windowTitle().toStdString() << ": "
                  << (box != nullptr ? box->text().toStdString() : "");
    modal->close();
    return;
  }
  const auto serve = modalScript_.front();
  modalScript_.pop_front();
  serve(modal);
}

void WindowTest::OnMessage(const QString& text, QMessageBox::StandardButton button) {
  modalScript_.emplace_back([text, button](QWidget* modal) {
    auto* box = qobject_cast<QMessageBox*>(modal);
    ASSERT_NE(box, nullptr) << modal->windowTitle().toStdString();
    EXPECT_TRUE(box->text().contains(text)) << box->text().toStdString();
    QAbstractButton* wanted = box->button(button);
    ASSERT_NE(wanted, nullptr);
    StartXdo(ClickAt(wanted->mapToGlobal(wanted->rect().center())));
  });
}

void WindowTest::OnPrompt(const QString& answer) {
  modalScript_.emplace_back([answer](QWidget* dialog) { TypeAndReturn(dialog, answer); });
}

void WindowTest::OnFileDialog(const std::filesystem::path& path) {
  modalScript_.emplace_back(
      [path](QWidget* dialog) { TypeAndReturn(dialog, QString::fromStdString(path.string())); });
}

void WindowTest::OnFileDialogProposing(const QString& name) {
  modalScript_.emplace_back([name](QWidget* dialog) {
    auto* box = dialog->findChild<QLineEdit*>();
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->text(), name);
    StartXdo(Words("key Escape"));
  });
}

void WindowTest::UntilFormIsClosed() {
  Until([this] { return !FormIsOpen(); }, "the form closes");
  Until([this] { return QApplication::activeWindow() == window_.get(); },
        "the main window has the keys");
}

}  // namespace graphize::test

int main(int argc, char** argv) {
  graphize::test::HideRealScanners();
  QApplication application(argc, argv);
  graphize::SetLook();
  if (argc == 4 && std::string_view(argv[1]) == graphize::test::kJournaledWork)
    return graphize::test::DoJournaledWork(argv[2], static_cast<unsigned>(std::atoi(argv[3])));
  if (argc == 5 && std::string_view(argv[1]) == graphize::test::kStorm)
    return graphize::test::DoStorm(argv[2], static_cast<unsigned>(std::atoi(argv[3])),
                                   std::atoi(argv[4]));
  ::testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
