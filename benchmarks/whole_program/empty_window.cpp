// The yardstick: an empty main window that ends after its first paint.

#include <QApplication>
#include <QMainWindow>
#include <QTimer>

namespace {

class EmptyWindow : public QMainWindow {
  void paintEvent(QPaintEvent* event) override {
    QMainWindow::paintEvent(event);
    QTimer::singleShot(0, qApp, &QApplication::quit);
  }
};

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  EmptyWindow window;
  window.resize(1000, 800);
  window.show();
  return QApplication::exec();
}
