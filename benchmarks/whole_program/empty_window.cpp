// The yardstick: an empty main window that ends after its first paint.

#include <QApplication>
#include <QMainWindow>
#include <QTimer>
#include <cstdlib>

namespace {

class EmptyWindow : public QMainWindow {
  void paintEvent(QPaintEvent* event) override {
    QMainWindow::paintEvent(event);
    QTimer::singleShot(0, qApp, [] {
      QGuiApplication::sync();
      std::_Exit(0);
    });
  }
};

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  EmptyWindow window;
  window.showMaximized();  // as large as Graphize's: both fill and send the same pixels
  return QApplication::exec();
}
