// Pixels on scaled screens. The scaling is chosen as a program starts: each runs in a process of
// its own.

#include <QProcess>
#include <QScreen>
#include <QWindow>
#include <cmath>

#include "app/window_driver.h"

namespace graphize::test {
namespace {

class ScaledScreen : public WindowTest {};
class ScaledScreens : public WindowTest {};

TEST_F(ScaledScreens, EveryScreenPixelIsReadAsThePicturePixelItShows) {
  for (const char* scale : {"1.25", "1.5", "2", "3"}) {
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_SCALE_FACTOR"), QLatin1String(scale));
    process.setProcessEnvironment(environment);
    process.start(
        QCoreApplication::applicationFilePath(),
        {"--gtest_filter=ScaledScreen.*", "--gtest_also_run_disabled_tests", "--gtest_brief=1"});
    // The clipboard that an earlier test has filled is asked for meanwhile.
    Until([&] { return process.state() == QProcess::NotRunning; }, "the other process ends");
    EXPECT_EQ(process.exitCode(), 0) << scale << process.readAll().toStdString();
  }
}

TEST_F(ScaledScreen, DISABLED_PixelsAreExact) {
  StartWith(kSamples / "pendulum.bmp");
  const auto* plot = Find<QWidget>("Plot");
  const double scale = Window().devicePixelRatioF();
  const QPoint origin = plot->mapTo(&Window(), QPoint());
  const QString window = QString::number(Window().winId());
  const auto go = [&](int x, int y) {
    Xdo({"mousemove", "--window", window, QString::number(x), QString::number(y)});
  };
  const auto pixelAt = [&](int screen, int start) {
    return static_cast<int>(std::floor(screen / scale + 1e-6)) - start;
  };
  const auto read = [this] { return QPoint(State().readOut.PlotX, State().readOut.PlotY); };
  const int left = static_cast<int>(std::ceil((origin.x() + 4) * scale)),
            top = static_cast<int>(std::ceil((origin.y() + 12) * scale));
  for (int i = 0; i < 7; ++i) {
    const QPoint pixel(pixelAt(left + i, origin.x()), pixelAt(top + i, origin.y()));
    go(left + i, top + i);
    EXPECT_EQ(read(), pixel) << "moved " << i;
    Xdo({"click", "1"});
    EXPECT_EQ(QPoint(State().mouse.DownPixelX, State().mouse.DownPixelY), pixel) << "pressed " << i;
    EXPECT_EQ(read(), pixel) << "pressed " << i;
  }
  // Every key goes one picture pixel, wherever the window lies.
  QPoint at = read();
  const std::pair<const char*, QPoint> keys[] = {{"Right", {1, 0}},
                                                 {"Next", {1, 1}},
                                                 {"Left", {-1, 0}},
                                                 {"Home", {-1, -1}},
                                                 {"ctrl+Down", {0, 10}}};
  for (int round = 0; round < 4; ++round) {
    for (const auto& [key, way] : keys) {
      Xdo({"key", QString::fromLatin1(key)});
      at += way;
      EXPECT_EQ(read(), at) << key << round;
    }
  }
  // Enlarged or not, each screen pixel shows the pixel that a pointer there reads.
  for (const double zoom : {1.0, 2.0, 3.0}) {
    const QPoint start = plot->mapTo(&Window(), QPoint());
    const QImage shown = Window().screen()->grabWindow(Window().winId()).toImage();
    // The window may be larger than the screen, whose last logical pixel may be half a one.
    const QRect screen(plot->mapFromGlobal(Window().screen()->geometry().topLeft()),
                       Window().screen()->geometry().size() - QSize(1, 1));
    QRegion seen = plot->visibleRegion() & screen & plot->rect().adjusted(1, 1, -1, -1);
    for (const char* above : {"FRM_Zoom", "Overview"}) {
      const auto* view = Find<QWidget>(above);
      seen -= QRect(plot->mapFromGlobal(view->mapToGlobal(QPoint())), view->size())
                  .adjusted(-2, -2, 2, 2);
    }
    int looked = 0, differ = 0;
    for (int y = 0; y < shown.height(); ++y) {
      for (int x = 0; x < shown.width(); ++x) {
        const QPointF place = QPointF(x, y) / scale - start;
        if (!seen.contains(QPoint(PixelAt(1, place.x()), PixelAt(1, place.y())))) continue;
        ++looked;
        const Colour colour =
            GetPixel(State().plot, PixelAt(zoom, place.x()), PixelAt(zoom, place.y()));
        differ += (shown.pixel(x, y) & 0xffffffu) != (PixelOfColour(colour) & 0xffffffu) ? 1 : 0;
      }
    }
    EXPECT_GT(looked, 20000);
    EXPECT_EQ(differ, 0) << "zoom " << zoom;
    Xdo({"key", zoom < 3 ? "ctrl+plus" : "ctrl+1"});
  }
  ClickControl(Find<QLabel>("npts"));
  // From beside the picture one key brings the pointer back to the pixel it was over.
  for (int i = 0; i < 3; ++i) {
    go(left + i, top + i);
    at = read();
    go(2, top);
    Xdo({"key", "F6"});
    EXPECT_TRUE(plot->underMouse());
    EXPECT_EQ(read(), at) << "put there " << i;
  }
  // The same pixel, read anew where the picture is scrolled below the pointer.
  Window().resize(400, 300);
  Settle();
  go(left, top);
  const int row = read().y(), scrolled = State().view.Y;
  Xdo({"click", "5"});
  EXPECT_GT(State().view.Y, scrolled);
  EXPECT_EQ(read().y(), row + State().view.Y - scrolled);
}

}  // namespace
}  // namespace graphize::test
