#pragma once

#include <QFrame>
#include <string>

class QLabel;
class QPushButton;

namespace graphize {

/// The bar above the picture that offers a session which has not ended as it should. Hidden until
/// there is one; it waits and is in nobody's way.
class RecoveryBar : public QFrame {
  Q_OBJECT
 public:
  explicit RecoveryBar(QWidget* parent = nullptr);
  void Offer(const std::string& session, bool canRecover);

 signals:
  void RecoverPressed();
  void DeletePressed();
  void LaterPressed();

 private:
  QLabel* text_;
  QPushButton* recover_;
};

}  // namespace graphize
