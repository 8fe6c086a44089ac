// traced_window   times a trace over 30000 columns in the shown window, with the list refresh off,
//                 against the same trace without a window

#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QTemporaryDir>
#include <QTimer>
#include <cstdio>

#include "app/fonts.h"
#include "app/main_window.h"
#include "bare_reads.h"
#include "codecs/picbuf.h"
#include "commands/do.h"
#include "commands/replay.h"
#include "support/quiet_desktop.h"

namespace {

using graphize::MainWindow;

constexpr QPointF kStart{40, 1040};
constexpr const char* kValues[] = {"0", "0", "128", "", "", "128"};  // typed, X and Y in turn

void Click(QWidget* plot, QPointF at, Qt::MouseButton button) {
  for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
    const bool press = type == QEvent::MouseButtonPress;
    QMouseEvent event(type, at, plot->mapToGlobal(at), button, press ? button : Qt::NoButton,
                      Qt::NoModifier);
    QApplication::sendEvent(plot, &event);
  }
}

void Type(QWidget* box, const char* text) {
  for (; *text != 0; ++text) {
    QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QString(QLatin1Char(*text)));
    QApplication::sendEvent(box, &press);
  }
}

void Calibrate(MainWindow& window, QWidget* plot) {
  window.findChild<QAction*>(QStringLiteral("axisdef"))->trigger();
  const QPointF places[] = {{10, 1900}, {138, 1900}, {10, 1772}};
  for (int row = 0; row < 3; ++row) {
    for (const int y : {0, 1}) {
      const auto name = QStringLiteral("TXT_%1Pos_%2").arg(y == 0 ? "X" : "Y").arg(row);
      Type(window.findChild<QLineEdit*>(name), kValues[2 * row + y]);
    }
    Click(plot, places[row], Qt::LeftButton);
  }
  window.findChild<QAction*>(QStringLiteral("graphize"))->trigger();
}

double Milliseconds(const QElapsedTimer& timer) {
  return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

int Measure(MainWindow& window) {
  auto* plot = window.findChild<QWidget*>(QStringLiteral("Plot"));
  Calibrate(window, plot);
  if (!window.State().calibration.IsComplete()) return std::fputs("no axes\n", stderr), 1;
  // The same records again, without the window.
  graphize::Workspace alone;
  graphize::StartReplay(alone);
  graphize::SetPicture(alone.plot, window.State().plot.Pixels.Clone());
  alone.view = window.State().view;
  alone.calibration = window.State().calibration;
  alone.mode = graphize::Mode::Graphize;
  const graphize::Desktop quiet = graphize::test::QuietDesktop();

  for (int i = 0; i < 20; ++i) QApplication::processEvents();  // what is still to be painted
  // Once: afterwards the store is full.
  QElapsedTimer timer;
  timer.start();
  Click(plot, kStart, Qt::RightButton);
  const double shown = Milliseconds(timer);
  timer.start();
  graphize::Do(
      alone, quiet,
      graphize::TraceStep{static_cast<float>(kStart.x()), static_cast<float>(kStart.y()), {}});
  const double bare = Milliseconds(timer);
  const int points = window.State().store.CaptureCount;
  if (alone.store.CaptureCount != points) return std::fputs("other points\n", stderr), 1;
  std::printf("trace of %d points: window %.1f ms, without %.1f ms, ratio %.2f\n", points, shown,
              bare, shown / bare);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  const std::jthread fonts = graphize::ReadFonts();
  QApplication application(argc, argv);
  QTemporaryDir folder;
  const std::string picture = folder.filePath(QStringLiteral("wide.tif")).toStdString();
  graphize::SavePicture(picture, 1, 0, graphize::WideCurve().Pixels);
  MainWindow window({.Settings = folder.filePath(QStringLiteral("graphize.ini")).toStdString(),
                     .StartFolder = {},
                     .Help = {},
                     .Sessions = folder.filePath(QStringLiteral("sessions")).toStdString()});
  window.Start();
  window.show();
  window.OpenWhenShown({picture});
  QTimer poll;
  QObject::connect(&poll, &QTimer::timeout, &window, [&] {
    if (!window.State().plot.IsPresent() || window.State().commandRuns) return;
    poll.stop();
    QApplication::exit(Measure(window));
  });
  poll.start(20);
  return QApplication::exec();
}
