#pragma once

#include <QWidget>

class QLabel;
class QSlider;

namespace graphize {

/// How much another colour may differ and still count as an ink, in percent: SCRL_Tolerance between
/// its caption and what it says.
class ToleranceSlider : public QWidget {
  Q_OBJECT
 public:
  /// From `narrowest` to `widest`; it stands at `asFound` before anything is rendered.
  ToleranceSlider(int narrowest, int asFound, int widest, QWidget* parent = nullptr);
  /// A slider that is held stays under the hand.
  void Render(int percent);
  /// Whether it is held: it is not where the user wants it yet.
  bool IsHeld() const;

 signals:
  /// Also when it is let go.
  void Chosen(int percent);

 private:
  QSlider* slider_;
  QLabel* shown_;
};

}  // namespace graphize
