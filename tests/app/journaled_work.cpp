#include "app/journaled_work.h"

#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QMouseEvent>
#include <QThread>
#include <array>
#include <cstdio>
#include <random>

#include "app/main_window.h"
#include "base/checksum.h"
#include "support/document_text.h"

namespace graphize::test {

namespace {

class Work {
 public:
  Work(const std::filesystem::path& folder, unsigned seed)
      : random_(seed),
        window_({.Settings = folder / "graphize.ini",
                 .StartFolder = {},
                 .Help = {},
                 .Sessions = folder / kWorkSessions}) {
    window_.Start();
    window_.resize(900, 700);
    window_.show();
    window_.OpenWhenShown({folder / kWorkPicture});
    while (!State().plot.IsPresent() || State().commandRuns) QApplication::processEvents();
    plot_ = window_.findChild<QWidget*>(QStringLiteral("Plot"));
    Acknowledge();
  }

  void Run() {
    Trigger("axisdef");
    DefineAxis(0, "0", "0", 20, 130);
    DefineAxis(1, "10", nullptr, 180, 130);
    DefineAxis(2, nullptr, "5", 20, 10);
    Trigger("graphize");
    for (int i = 0; i < 45; ++i) Something();
  }

 private:
  const Workspace& State() const { return window_.State(); }
  int Pick(int count) { return static_cast<int>(random_() % static_cast<unsigned>(count)); }

  void Acknowledge() {
    // The pen's way is done when its button is released.
    if (!State().pen.Down)
      digest_ = HexText(Crc32(DocumentText(Keep(State()), State().plot.Number)));
    std::printf("%d %s\n", ++events_, digest_.c_str());
    std::fflush(stdout);
  }
  void Send(QWidget* widget, QEvent&& event) {
    QApplication::sendEvent(widget, &event);
    Acknowledge();
  }
  void Mouse(QEvent::Type type, QPoint at, Qt::MouseButton button, Qt::MouseButtons held) {
    const QPointF global = plot_->mapToGlobal(QPointF(at));
    Send(plot_, QMouseEvent(type, QPointF(at), global, button, held, Qt::NoModifier));
  }
  void Drag(QPoint from, QPoint to, Qt::MouseButton button) {
    Mouse(QEvent::MouseMove, from, Qt::NoButton, Qt::NoButton);
    Mouse(QEvent::MouseButtonPress, from, button, button);
    if (from != to) Mouse(QEvent::MouseMove, to, Qt::NoButton, button);
    Mouse(QEvent::MouseButtonRelease, to, button, Qt::NoButton);
  }
  void Click(QPoint at, Qt::MouseButton button = Qt::LeftButton) { Drag(at, at, button); }
  void Trigger(const char* action) {
    window_.findChild<QAction*>(QLatin1String(action))->trigger();
    Acknowledge();
  }
  void Type(const char* array, int row, const char* text) {
    if (text == nullptr) return;
    auto* box =
        window_.findChild<QLineEdit*>(QStringLiteral("%1_%2").arg(QLatin1String(array)).arg(row));
    box->selectAll();
    Send(box, QKeyEvent(QEvent::KeyPress, 0, Qt::NoModifier, QString::fromLatin1(text)));
  }
  void DefineAxis(int row, const char* x, const char* y, int column, int line) {
    Type("TXT_XPos", row, x);
    Type("TXT_YPos", row, y);
    Click({column, line});
  }
  void Something() {
    const QPoint at(22 + Pick(150), 15 + Pick(110));
    switch (Pick(12)) {
      case 0:
        return Trigger("MNU_EDIT_Undo");
      case 1:
        return Trigger("MNU_EDIT_Redo");
      case 2:
        Trigger("drawerase");
        Drag(at, at + QPoint(9, 12), Pick(2) == 0 ? Qt::LeftButton : Qt::RightButton);
        return Trigger("graphize");
      case 3:
        Trigger("blocktest");
        Click(at);
        return Trigger("graphize");
      case 4:
        return Trigger("MNU_DATA_SORT_Dec");
      case 5:
        return Trigger("MNU_DATA_SwapXY");
      case 6:
      case 7:
        return Click({25, 70 - 4 + Pick(9)}, Qt::RightButton);
      default:
        return Click(at);
    }
  }

  std::mt19937 random_;
  MainWindow window_;
  QWidget* plot_ = nullptr;
  int events_ = 0;
  std::string digest_;
};

}  // namespace

int DoJournaledWork(const std::filesystem::path& folder, unsigned seed) {
  Work work(folder, seed);
  work.Run();
  std::printf("end\n");
  std::fflush(stdout);
  while (true) QThread::sleep(1000);
}

}  // namespace graphize::test
