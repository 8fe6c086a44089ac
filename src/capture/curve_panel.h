#pragma once

#include <QWidget>
#include <vector>

#include "capture/curve_list.h"

class QCheckBox;
class QComboBox;
class QIcon;
class QLineEdit;
class QStackedLayout;
class QToolButton;

namespace graphize {

/// The curve box: the curves with their colours, the active one chosen, and what can be done with
/// it. A name is typed in the place of the box itself.
class CurvePanel : public QWidget {
  Q_OBJECT
 public:
  explicit CurvePanel(const CurveList& curves, QWidget* parent = nullptr);
  void SetIcons(const QIcon& add, const QIcon& rename, const QIcon& remove);
  void Render();

  /// The active curve's name can be typed: Enter takes it over, Escape does not, and leaving the
  /// line does when the name can be.
  void EditName();
  bool IsNaming() const;
  /// As if the line was left.
  void FinishNaming() { TakeName(false); }

 signals:
  void Chosen(int curve);
  void NewPressed();
  void RenamePressed();
  void DeletePressed();
  void ShownSwitched(bool on);
  void NameTyped(const std::string& name);
  /// What was typed and left is no name, for this reason.
  void NameDropped(const std::string& reason);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  struct Item {
    std::string Name;
    Colour MarkColour;
    bool Shown;

    bool operator==(const Item&) const = default;
  };
  bool eventFilter(QObject* watched, QEvent* event) override;
  QToolButton* MakeButton(const char* name, const QString& caption, const QString& tip);
  QIcon IconOf(const Item& item) const;
  void ShowItems();
  void TakeName(bool byKey);
  void EndNaming();

  const CurveList& curves_;
  QStackedLayout* stack_;
  QComboBox* box_;
  QLineEdit* name_;
  QCheckBox* shown_;
  QToolButton* new_;
  QToolButton* rename_;
  QToolButton* delete_;
  std::vector<Item> items_;  // in the box
  std::string named_;        // what the curve was called when its name came to be edited
  bool taking_ = false;      // the name, while a message on it may be open
};

}  // namespace graphize
