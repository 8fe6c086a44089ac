// The Escape that stops a command, held down on real keys.

#include <QKeyEvent>
#include <QTimer>
#include <memory>

#include "app/window_driver.h"
#include "raster/plot_view.h"

namespace graphize::test {
namespace {

/// Counts what the keyboard repeats while a key is held.
class Repeats : public QObject {
 public:
  Repeats() { qApp->installEventFilter(this); }
  int Count = 0;

 private:
  bool eventFilter(QObject*, QEvent* event) override {
    const bool repeated =
        event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->isAutoRepeat();
    Count += repeated ? 1 : 0;
    return false;
  }
};

class StoppingKey : public WindowTest {
 protected:
  StoppingKey() {
    window.show();
    Until([&] { return window.isActiveWindow(); }, "the window is active");
  }
  static bool IsOpen() { return QApplication::activeModalWidget() != nullptr; }

  QWidget window;
  const PlotImage image;
  const Viewport view;
  PlotView plot{image, view, {}, &window};
  QtDesktop desktop{&window, &plot, [] {}};
};

TEST_F(StoppingKey, DoesNotCloseTheBoxThatOpensWhileItIsHeld) {
  const Repeats repeats;
  desktop.BeginCommand();
  Xdo({"keydown", "Escape"});
  EXPECT_TRUE(desktop.Callbacks().EscapeHeld());

  bool openWhileHeld = false, openAfterwards = false;
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, &window, [&] {
    if (!IsOpen() || !QApplication::activeModalWidget()->isActiveWindow()) return;
    timer.stop();
    const int before = repeats.Count;
    Until([&] { return !IsOpen() || repeats.Count >= before + 10; }, "the key repeats");
    openWhileHeld = IsOpen();
    Xdo({"keyup", "Escape"});
    openAfterwards = IsOpen();
    Xdo({"key", "Escape"});
  });
  timer.start(20);
  desktop.Callbacks().ShowMessage({.Text = "The store is full"});
  EXPECT_TRUE(openWhileHeld);
  EXPECT_TRUE(openAfterwards) << "and its release";
  EXPECT_FALSE(IsOpen()) << "a press of its own closes it";
}

TEST_F(StoppingKey, ItsPressesThatDoNotSayTheyAreRepeatsAreDroppedToo) {
  const auto event = [](QEvent::Type type, quint64 at) {
    auto* key = new QKeyEvent(type, Qt::Key_Escape, Qt::NoModifier);
    key->setTimestamp(at);
    return key;
  };
  const auto send = [&](QEvent::Type type, quint64 at) {
    const std::unique_ptr<QKeyEvent> key(event(type, at));
    if (QWidget* box = QApplication::activeModalWidget()) QApplication::sendEvent(box, key.get());
  };
  desktop.BeginCommand();
  QApplication::postEvent(&window, event(QEvent::KeyPress, 1000));
  desktop.Callbacks().ShowNow();
  EXPECT_TRUE(desktop.Callbacks().EscapeHeld());

  QTimer timer;
  timer.setSingleShot(true);
  QObject::connect(&timer, &QTimer::timeout, &window, [&] {
    for (const quint64 at : {1500, 1530}) {
      send(QEvent::KeyRelease, at);
      send(QEvent::ShortcutOverride, at);
      send(QEvent::KeyPress, at);
    }
    EXPECT_TRUE(IsOpen()) << "a key that repeats";
    send(QEvent::KeyRelease, 1560);
    EXPECT_TRUE(IsOpen());
    send(QEvent::ShortcutOverride, 1700);
    send(QEvent::KeyPress, 1700);
    EXPECT_FALSE(IsOpen()) << "a press of its own";
    if (IsOpen()) QApplication::activeModalWidget()->close();
  });
  timer.start(50);
  desktop.Callbacks().ShowMessage({.Text = "The store is full"});
}

}  // namespace
}  // namespace graphize::test
