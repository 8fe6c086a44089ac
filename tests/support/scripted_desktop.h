#pragma once

#include <deque>
#include <set>
#include <string>
#include <vector>

#include "desktop/desktop.h"

namespace graphize::test {

/// A desktop whose answers are written down before. Every message, prompt and file question must
/// find its answer, and every answer must be used: else the test fails.
class ScriptedDesktop {
 public:
  ScriptedDesktop();
  ~ScriptedDesktop();
  ScriptedDesktop(const ScriptedDesktop&) = delete;
  ScriptedDesktop& operator=(const ScriptedDesktop&) = delete;

  /// The next message must contain `text`; it is answered with `answer`.
  void ExpectMessage(const std::string& text, Answer answer = Answer::Ok);
  void ExpectPrompt(const std::string& answer);
  /// An empty path is Cancel.
  void ExpectFile(const std::filesystem::path& path);

  const Desktop& Callbacks() const { return desktop_; }
  operator const Desktop&() const { return desktop_; }  // NOLINT: reads as the thing it scripts

  // What was asked, oldest first.
  std::vector<Message> Messages;
  std::vector<TextPrompt> Prompts;
  std::vector<FileQuestion> FileQuestions;
  std::string CopiedText;
  std::vector<OutsideProgram> Started;
  int Pumps = 0;

  // What the desktop answers.
  Raster Clipboard;
  std::vector<std::filesystem::path> ClipboardFiles;
  int EscapeAfter = -1;  // Escape is held from this many questions for it on; -1 never
  bool PointerOver = false;
  bool PointerMoves = true;
  int PointerX = 0, PointerY = 0;  // where MovePointer and PointAt have led
  std::function<void()> OnPump;
  std::string CurrentDesktop;
  std::set<std::string> Installed;  // outside programs

 private:
  Desktop desktop_;
  std::deque<std::pair<std::string, Answer>> messages_;
  std::deque<std::string> prompts_;
  std::deque<std::filesystem::path> files_;
  int escapeQuestions_ = 0;
};

}  // namespace graphize::test
