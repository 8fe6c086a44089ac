#pragma once

#include <QHash>
#include <QMainWindow>
#include <QPointer>
#include <QSize>
#include <filesystem>
#include <functional>
#include <thread>
#include <vector>

#include "app/commands.h"
#include "app/qt_desktop.h"
#include "commands/do.h"
#include "session/history.h"
#include "session/journal.h"
#include "session/left_session.h"
#include "workspace/workspace.h"

class QAction;
class QMenu;
class QScrollArea;
class QScrollBar;
class QTimer;

namespace graphize {

class AxisPanelWidget;
class CurvePanel;
class DataListPanel;
class InkCheckPanel;
class NextLine;
class FormDialog;
class FloatingViews;
class HelpWindow;
class OverviewView;
class PictureArea;
class PlotView;
class ProposeAxesPanel;
class ReadingPanel;
class ReadOutPanel;
class RecoveryBar;
class StatusPanels;
class TracerPanel;
class ZoomPercent;
class ZoomView;

/// Where the program's files are. Without a path there is no such file.
struct ProgramFiles {
  std::filesystem::path Settings;
  std::filesystem::path StartFolder;  // where file dialogs start until a picture has been opened
  std::filesystem::path Help;
  std::filesystem::path Sessions;  // the folder in which sessions are kept
};

/// The main window `Graphize`: owns the records, turns events into commands and renders the records
/// after each.
class MainWindow : public QMainWindow {
  Q_OBJECT
 public:
  explicit MainWindow(ProgramFiles files);
  ~MainWindow() override;

  /// Reads the settings and takes the window's place over; before the window is shown.
  void Start();
  /// Opens the first of these pictures once the window is on the screen, and tells about the
  /// others.
  void OpenWhenShown(const std::vector<std::filesystem::path>& files);

  /// Ends the program without a question. What is not saved is offered at the next start.
  void LeaveForLater();
  /// It was asked to, perhaps before the event loop began, which would know nothing of it.
  bool IsLeaving() const { return leaving_; }

  const Workspace& State() const { return ws_; }

 protected:
  void closeEvent(QCloseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void moveEvent(QMoveEvent* event) override;
  void changeEvent(QEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  using Command = std::function<void(Workspace&, const Desktop&)>;

  void BuildMenus();
  void BuildToolbar();
  void BuildCentre();
  QScrollArea* BuildSidePanel();
  /// The modes that the toolbar has no button for.
  QWidget* MakeModeButtons();
  QAction* MakeAction(const MenuEntry& entry);
  void ConnectPanels();
  void ConnectCurves();
  void ConnectView();
  /// The place of the opening that stays while the zoom changes: the pointer's, else the middle.
  QPointF ZoomMiddle() const;
  /// Space held over the picture lets the left button drag the view; not that which is pressed for
  /// a control that the Tab key has led to.
  bool TakeSpace(QObject* watched, QEvent* event);
  /// Shift holds the snap of axis clicks off, also while the pointer rests.
  void FollowShift(const QObject* watched, const QEvent* event);
  void ConnectReading();
  void ConnectAxes();
  void RenderReading();
  void ConnectInkCheck();
  void FitSidePanel();
  void FinishStart();
  /// The program's icon, which the first paint does not wait for.
  void ShowIcon();
  void PlaceFloatingViews();
  /// In a mode, what floats over the picture leaves the place that the pointer has come to; not
  /// while Ctrl is held.
  void MakeWay(QPoint pointer);
  FormDialog* MakeIntegrateForm();
  FormDialog* MakeSampleForm();
  FormDialog* MakeOptionsForm();
  FormDialog* MakeImageToolsForm();
  FormDialog* MakeExportForm();
  FormDialog* MakeBlackWhiteForm();
  FormDialog* MakeInkForm();
  FormDialog* MakeReadAllForm();
  FormDialog* MakeOtherPicturesForm();
  FormDialog* MakeAboutForm();
  FormDialog* MakeSelectSourceForm();
  FormDialog* MakeScanForm();
  /// Finds out beside whether there is something to scan with.
  void AskForScanner();

  /// Runs a command and shows what it has done; `redraw` repaints the visible picture, too.
  void Do(const Command& command, bool redraw = true);
  void Do(const Step& step);
  /// Fills the menu MNU_FILE_Recent; files that are not there are grey.
  void ShowRecentFiles();
  void NoteRecentFiles();
  std::filesystem::path RecentList() const;
  bool IsBusy() const;
  void OpenWaiting();
  /// Offers the next of the sessions that were left.
  void OfferSession();
  void RecoverSession();
  void DeleteSession();
  void PrepareForSessionEnd();
  /// Changes a record from an event that may come while a command runs.
  void Note(const std::function<void(Workspace&)>& change);
  void Render();
  void RenderActions();
  void RenderModeFrame();
  void RenderAxes();
  /// The side panel's frame that belongs to the mode.
  QWidget* ModeFrame() const;
  void RenderPicture();
  void RenderFrame();
  /// Opens, shows and closes the form that the records name.
  void RenderForm();
  void RenderHelp();
  /// Into the lower left corner: the data list and most of the picture stay in view.
  void PlaceForm();
  /// Whether a window that wants to close has to wait for the command that runs.
  bool MustWaitToClose(QWidget* window);
  bool TakeKey(QKeyEvent* key);
  /// Keys that select and move captured points.
  bool TakePointKey(const QKeyEvent& key);
  /// Escape while axes are proposed or a click adds a reference.
  bool TakeProposalKey(const QKeyEvent& key);
  /// Keys that take, leave or mend what was read and is shown; Escape closes the window for an ink.
  bool TakeReadingKey(const QKeyEvent& key);
  /// Those that go through the symbols that are shown.
  bool TakeSymbolKey(const QKeyEvent& key);
  /// Whether keys are meant for the picture, and not for a box or the list.
  bool KeysAreForPicture() const;
  void NotePlacement();

  Workspace ws_;
  History history_;
  Journal journal_;
  std::filesystem::path sessions_;
  std::vector<std::filesystem::path> leftFolders_;  // not looked at yet, the newest first
  std::optional<LeftSession> leftSession_;          // that is offered
  std::vector<std::pair<QAction*, const MenuEntry*>> menuActions_;
  std::vector<QAction*> toolActions_;  // in the order of ToolButtons()

  RecoveryBar* recoveryBar_ = nullptr;
  PictureArea* pictureArea_ = nullptr;
  PlotView* plot_ = nullptr;
  ZoomView* zoom_ = nullptr;
  OverviewView* overview_ = nullptr;
  std::unique_ptr<FloatingViews> floating_;
  QSize overviewPlaced_, zoomPlaced_;
  QRect viewShown_;
  ZoomPercent* zoomPercent_ = nullptr;
  QScrollBar* horizontal_ = nullptr;
  QScrollBar* vertical_ = nullptr;
  QScrollArea* sidePanel_ = nullptr;
  AxisPanelWidget* axisPanel_ = nullptr;
  ProposeAxesPanel* proposePanel_ = nullptr;
  TracerPanel* tracerPanel_ = nullptr;
  QWidget* modeButtons_ = nullptr;
  ReadingPanel* readingPanel_ = nullptr;
  QTimer* readAgain_ = nullptr;
  ReadOutPanel* readOut_ = nullptr;
  CurvePanel* curvePanel_ = nullptr;
  InkCheckPanel* inkCheck_ = nullptr;
  DataListPanel* dataList_ = nullptr;
  NextLine* nextLine_ = nullptr;
  std::unique_ptr<StatusPanels> status_;
  Form formShown_ = Form::None;
  FormDialog* form_ = nullptr;
  QSize formPlaced_;                 // its size as it was opened
  QHash<QString, QSize> formSizes_;  // of those that were made larger or smaller, by their names
  std::function<void()> renderForm_;
  QtDesktop* desktop_ = nullptr;
  std::unique_ptr<HelpWindow> help_;  // made when first asked for

  std::jthread scannerQuestion_;
  std::vector<std::filesystem::path> openWhenShown_;
  bool hourglassShown_ = false;
  int cursorShown_ = 0;
  QPointer<QWidget> closeAfterCommand_;
  bool spaceIsForControl_ = false, spacePans_ = false;
  bool placing_ = false;
  bool shown_ = false;
  bool painted_ = false;
  QMenu* recentMenu_ = nullptr;
  bool recentFailureTold_ = false;
  bool sessionEnds_ = false;  // the desktop's; nothing has changed since it said so
  bool leaving_ = false;
};

}  // namespace graphize
