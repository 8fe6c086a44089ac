#pragma once

#include <QElapsedTimer>
#include <QObject>

struct xcb_connection_t;

namespace graphize {

/// Whether Escape is held down now, asked of the X server at most every two milliseconds. Where
/// there is no key state to ask for, presses and releases are remembered as they are pumped.
class HeldEscape : public QObject {
 public:
  explicit HeldEscape(QObject* parent);

  bool IsHeld();
  /// Called for every key event that is swallowed while a command runs.
  void Remember(bool pressed) { remembered_ = pressed; }
  /// A new command starts: what was remembered of the last one is void.
  void Forget() { remembered_ = false; }

 private:
  bool AskServer();

  xcb_connection_t* connection_ = nullptr;
  unsigned char keycode_ = 0;
  bool looked_ = false;
  bool held_ = false;
  bool remembered_ = false;
  QElapsedTimer sinceAsked_;
};

}  // namespace graphize
