#pragma once

#include <QWidget>
#include <string>
#include <vector>

class QLabel;
class QLineEdit;
class QPushButton;
class QTextBrowser;
class QTextCursor;
class QToolButton;
class QTreeWidget;
class QTreeWidgetItem;

namespace graphize {

/// The window Help: the help file with its contents beside it and a search. What is read in it is
/// nothing that commands know of, so it keeps its state itself.
class HelpWindow : public QWidget {
  Q_OBJECT
 public:
  HelpWindow();

  /// Comes up, to the front if it is there already, with this text (HTML), at a chapter's anchor or
  /// where it was left.
  void ShowAt(const std::string& html, const std::string& chapter);

 private:
  struct Chapter {
    int Position = 0;  // of its heading in the text
    QTreeWidgetItem* Item = nullptr;
  };

  QWidget* BuildBar();
  void Load(const std::string& html);
  void FillContents();
  /// The contents show what is being read.
  void FollowText();
  void ShowChapterAt(int position);
  void FindAll();
  void GoToHit(int index);
  /// To the next (1) or the previous (-1) place, around the end.
  void Step(int by);
  void ShowHits();
  bool eventFilter(QObject* watched, QEvent* event) override;

  QTreeWidget* contents_;
  QTextBrowser* text_;
  QLineEdit* search_;
  QLabel* count_;
  std::vector<QToolButton*> steps_;
  std::string html_;
  std::vector<Chapter> chapters_;  // in reading order
  std::vector<QTextCursor> hits_;  // in reading order
  int hit_ = -1;                   // the one shown
  bool jumping_ = false;
};

}  // namespace graphize
