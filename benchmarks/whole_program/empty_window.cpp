// The yardstick: an empty main window that ends after its first paint.

#include "yardstick_window.h"

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  graphize::YardstickWindow window;
  window.showMaximized();  // as large as Graphize's: both fill and send the same pixels
  return QApplication::exec();
}
