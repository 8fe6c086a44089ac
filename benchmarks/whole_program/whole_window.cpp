// whole_window FOLDER            ends after the first paint of Graphize's window; FOLDER is for its
//                                settings and sessions
// whole_window FOLDER PICTURE    opens the picture, prints the process's memory, and times moves of
//                                the mouse and scrolling on it

#include <QApplication>
#include <QElapsedTimer>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPushButton>
#include <QScrollBar>
#include <QTimer>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "app/fonts.h"
#include "app/main_window.h"
#include "app/program_style.h"
#include "process_memory.h"

namespace {

class AfterFirstPaint : public QObject {
 public:
  std::function<void()> Then;
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Paint && watched->objectName() == QLatin1String("Graphize")) {
      watched->removeEventFilter(this);
      QTimer::singleShot(0, qApp, Then);
    }
    return false;
  }
};

/// When the server has painted, too: what comes after that is not measured.
[[noreturn]] void EndAtOnce() {
  QGuiApplication::sync();
  std::_Exit(0);
}

/// Microseconds that one event and the painting it causes take.
template <typename Step>
double MicrosecondsEach(int count, const Step& step) {
  QElapsedTimer timer;
  timer.start();
  for (int i = 0; i < count; ++i) {
    step(i);
    QApplication::processEvents();
  }
  return static_cast<double>(timer.nsecsElapsed()) / 1000 / count;
}

void Measure(graphize::MainWindow& window, double before) {
  const graphize::PlotImage& plot = window.State().plot;
  const double raster = 4.0 * static_cast<double>(plot.Pixels.PixelCount());
  std::printf("%d x %d\n", plot.Width(), plot.Height());
  std::printf("memory over the empty program's, in rasters: open %.2f, peak %.2f\n",
              (graphize::StatusBytes("VmRSS:") - before) / raster,
              (graphize::StatusBytes("VmHWM:") - before) / raster);
  auto* view = window.findChild<QWidget*>(QStringLiteral("Plot"));
  std::printf("mouse move %.1f us\n", MicrosecondsEach(2000, [&](int i) {
                const QPointF at(100 + i % 200, 100 + i % 150);
                QMouseEvent move(QEvent::MouseMove, at, view->mapToGlobal(at), Qt::NoButton,
                                 Qt::NoButton, Qt::NoModifier);
                QApplication::sendEvent(view, &move);
              }));
  auto* scroll = window.findChild<QScrollBar*>(QStringLiteral("VpScroll"));
  std::printf("scroll step %.1f us\n",
              MicrosecondsEach(200, [&](int i) { scroll->setValue(scroll->maximum() * i / 200); }));
}

}  // namespace

int main(int argc, char** argv) {
  const std::jthread fonts = graphize::ReadFonts();
  QApplication application(argc, argv);
  graphize::SetLook();
  if (argc < 2) return 2;
  const std::filesystem::path folder = argv[1];
  graphize::MainWindow window({.Settings = folder / "graphize.ini",
                               .StartFolder = {},
                               .Help = {},
                               .Sessions = folder / "sessions"});
  AfterFirstPaint first;
  window.installEventFilter(&first);
  first.Then = [&] {
    if (argc < 3) EndAtOnce();
    const double before = graphize::StatusBytes("VmRSS:");
    window.OpenWhenShown({argv[2]});
    auto* poll = new QTimer(&window);
    QObject::connect(poll, &QTimer::timeout, &window, [&window, before, poll] {
      // A picture in colours stays so.
      if (auto* question = qobject_cast<QMessageBox*>(QApplication::activeModalWidget()))
        return question->button(QMessageBox::No)->click();
      if (!window.State().plot.IsPresent() || window.State().commandRuns) return;
      poll->stop();
      Measure(window, before);
      QApplication::quit();
    });
    poll->start(20);
  };
  window.Start();
  window.show();
  return QApplication::exec();
}
