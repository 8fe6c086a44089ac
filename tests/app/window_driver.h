#pragma once

#include <gtest/gtest.h>

#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QTemporaryDir>
#include <deque>
#include <functional>
#include <memory>

#include "app/main_window.h"

namespace graphize::test {

/// Drives the real window with real X events, by the names of its controls.
class WindowTest : public ::testing::Test {
 protected:
  ~WindowTest() override;

  /// Makes and shows the window; its settings file is `SettingsFile()`.
  void Start();
  std::filesystem::path Folder() const { return folder_.path().toStdString(); }
  std::filesystem::path SettingsFile() const { return Folder() / "graphize.ini"; }

  template <typename Control>
  Control* Find(const char* name) const {
    auto* control = window_->findChild<Control*>(QLatin1String(name));
    if (control == nullptr) ADD_FAILURE() << "no control " << name;
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
  void MoveOverPlot(int x, int y);
  void ClickPlot(int x, int y, int button = 1);
  void ClickControl(QWidget* control, int button = 1);
  void ClickTool(const char* key);
  void TypeInto(const char* box, const QString& text);
  void ChooseMenu(const char* action);

  // What is to be done with the modal windows that come next, in order.
  void OnMessage(const QString& text, QMessageBox::StandardButton button);
  void OnPrompt(const QString& answer);
  void OnFileDialog(const std::filesystem::path& path);

  MainWindow& Window() { return *window_; }
  const Workspace& State() const { return window_->State(); }

 private:
  void ServeModal();

  QTemporaryDir folder_;
  std::unique_ptr<MainWindow> window_;
  std::deque<std::function<void(QWidget*)>> modalScript_;
  QWidget* served_ = nullptr;
};

}  // namespace graphize::test
