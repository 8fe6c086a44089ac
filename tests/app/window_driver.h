#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QTemporaryDir>
#include <array>
#include <deque>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>

#include "app/main_window.h"

namespace graphize::test {

inline const std::filesystem::path kSamples = SAMPLES_DIR;

/// Drives the real window with real X events, by the names of its controls.
class WindowTest : public ::testing::Test {
 protected:
  ~WindowTest() override;

  /// Makes and shows the window; its settings file is `SettingsFile()`.
  void Start();
  /// The window is gone without having been closed.
  void Abandon() { window_.reset(); }
  /// Before Start: another help file than the one that was built.
  void UseHelp(const std::filesystem::path& file) { helpFile_ = file; }
  std::filesystem::path Folder() const { return folder_.path().toStdString(); }
  std::filesystem::path SettingsFile() const { return Folder() / "graphize.ini"; }
  std::filesystem::path Sessions() const { return Folder() / "sessions"; }

  /// A control of the form that is open, else of the main window.
  template <typename Control>
  Control* Find(const char* name) const {
    Control* control = nullptr;
    if (const QWidget* form = OpenForm()) control = form->findChild<Control*>(QLatin1String(name));
    if (control == nullptr) control = window_->findChild<Control*>(QLatin1String(name));
    // The test ends here, and the next one goes on.
    if (control == nullptr) throw std::runtime_error(std::string("no control ") + name);
    return control;
  }
  QString TextOf(const char* label) const { return Find<QLabel>(label)->text(); }
  QString ValueOf(const char* box) const { return Find<QLineEdit>(box)->text(); }
  bool IsEnabled(const char* action) const;

  /// Lets the event loop run until `condition` holds; fails when it never does.
  void Until(const std::function<bool()>& condition, const char* what);
  /// Lets the events that are on their way arrive.
  void Settle();

  // Real input through the X server, waited for.
  void Xdo(const QStringList& arguments);
  void MoveTo(QWidget* widget, QPoint at);
  void MoveOverPlot(int x, int y);
  void ClickPlot(int x, int y, int button = 1);
  void ClickControl(QWidget* control, int button = 1);
  void ClickTool(const char* key);
  void TypeInto(const char* box, const QString& text);
  void ChooseMenu(const char* action);
  /// Opens a form by its menu entry; it is open until the test closes it.
  void ChooseForm(const char* action, const char* form);
  /// The form is gone, and the keys are the main window's again.
  void UntilFormIsClosed();
  /// The one that is open, whether it locks the main window or not; null without one.
  QWidget* OpenForm() const;
  bool FormIsOpen() const { return OpenForm() != nullptr; }

  /// A picture that the command line names.
  void StartWith(const std::filesystem::path& picture);
  /// A picture whose colours are kept.
  void OpenInColours(const std::filesystem::path& file);
  // The way to captured points on the pendulum's picture: X from 0 to 12 at columns 70 to 610, Y
  // from -1 to 1 at rows 430 to 40.
  void OpenSample(const char* name);
  void CalibratePendulum();
  /// Origin, X-axis point and Y-axis point: picture pixels, row downward, and what is typed.
  struct AxisClick {
    int Column, Row;
    const char* X;
    const char* Y;
  };
  void Calibrate(const std::array<AxisClick, 3>& clicks);

  // What is to be done with the questions that commands ask next, in order.
  void OnMessage(const QString& text, QMessageBox::StandardButton button);
  void OnPrompt(const QString& answer);
  void OnFileDialog(const std::filesystem::path& path);
  /// Looks at the name that is proposed and cancels.
  void OnFileDialogProposing(const QString& name);

  MainWindow& Window() { return *window_; }
  const Workspace& State() const { return window_->State(); }

 private:
  void ServeModal();

  QTemporaryDir folder_;
  std::filesystem::path helpFile_ = HELP_FILE;
  std::unique_ptr<MainWindow> window_;
  std::deque<std::function<void(QWidget*)>> modalScript_;
  QWidget* served_ = nullptr;
};

}  // namespace graphize::test
