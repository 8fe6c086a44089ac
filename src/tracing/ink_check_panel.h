#pragma once

#include <QWidget>

class QLabel;
class QPushButton;

namespace graphize {

/// The line under the list: what the picture says of the points. Not there until it has been asked.
class InkCheckPanel : public QWidget {
  Q_OBJECT
 public:
  explicit InkCheckPanel(QWidget* parent = nullptr);
  /// `isDoubtful`: there are points to show and to remove; `areShown`: they are selected.
  void Render(const std::string& text, bool isDoubtful, bool areShown);

 signals:
  void ShowPressed();
  void RemovePressed();

 private:
  QLabel* text_;
  QPushButton* show_;
  QPushButton* remove_;
};

}  // namespace graphize
