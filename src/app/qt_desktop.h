#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <filesystem>
#include <functional>
#include <optional>
#include <vector>

#include "app/held_escape.h"
#include "desktop/desktop.h"

class QKeyEvent;
class QWidget;

namespace graphize {

class PlotView;

/// The callbacks of Desktop with real dialogs, clipboard, pointer and keys. While events are pumped
/// inside a command, input is swallowed: it would otherwise be delivered after it.
class QtDesktop : public QObject {
 public:
  /// `render` shows the records before events are let run.
  QtDesktop(QWidget* window, PlotView* plot, std::function<void()> render);

  const Desktop& Callbacks() const { return desktop_; }

  /// Around every command: Escape and close requests are those of this command.
  void BeginCommand();
  /// Drops input that came while a long command ran.
  void EndCommand();
  bool IsPumping() const { return pumping_; }
  void AskToStop() { stopAsked_ = true; }

 private:
  bool eventFilter(QObject* watched, QEvent* event) override;
  /// Whether an event of the key Escape is the one's that stopped a command, and goes no further.
  bool DropsStopKey(const QKeyEvent& key);
  void Pump(bool always);
  /// Drops the press of the Escape that stopped the command, when it has not come yet.
  void TakeStopKey();

  /// The window that a question stands over: the form that is open, else the main window.
  QWidget* Owner() const;
  Answer ShowMessage(const Message& message);
  std::string Prompt(const TextPrompt& prompt);
  std::optional<std::filesystem::path> ChooseFile(const FileQuestion& question);
  std::vector<std::filesystem::path> ChooseFiles(const FileQuestion& question);
  std::vector<std::filesystem::path> AskForFiles(const FileQuestion& question, bool several);
  QWidget* window_;
  PlotView* plot_;
  std::function<void()> render_;
  Desktop desktop_;
  HeldEscape escape_;
  QElapsedTimer sincePump_;
  QElapsedTimer sinceBegin_;
  bool pumping_ = false;
  bool pumped_ = false;
  bool stopAsked_ = false;
  bool swallowEscape_ = false;  // until the key that stopped a command is up
  std::optional<quint64> stopKeyPressed_, stopKeyReleased_;  // timestamps, where they were seen
};

}  // namespace graphize
