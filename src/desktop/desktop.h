#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "base/raster.h"
#include "desktop/outside_program.h"

namespace graphize {

enum class MessageIcon { Information, Question, Exclamation, Critical };
enum class MessageButtons { Ok, YesNo, YesNoCancel };
enum class Answer { Ok, Yes, No, Cancel };

struct Message {
  std::string Text;
  MessageIcon Icon = MessageIcon::Information;
  MessageButtons Buttons = MessageButtons::Ok;
  std::string Caption = "Graphize";
  bool DefaultIsNo = false;  // of Yes and No, where Yes could lose something
};

/// A question for a file. `Filters` is pairs of a name and its patterns, as in
/// "BMP Files (*.bmp)|*.bmp|...", patterns separated by semicolons.
struct FileQuestion {
  bool ForSaving = false;  // asks before overwriting
  std::string Title;
  std::filesystem::path Folder;  // where to start; empty: the current folder
  std::string FileName;          // proposal
  std::string Filters;
  int FilterIndex = 1;           // 1-based, preselected
  std::string DefaultExtension;  // added to a name without one, no dot
  bool OnlyFilterTypes = false;  // other endings than the filters' are refused
};

/// Why the question does not take this answer, in plain words; empty when it does.
std::string Refusal(const FileQuestion& question, const std::filesystem::path& answer);

/// A line of text asked of the user, one of `Choices` or typed.
struct TextPrompt {
  std::string Prompt;
  std::string Caption;
  std::string Default;
  std::vector<std::string> Choices = {};
};

/// What an operation asks of the world outside the records. Every member is always filled: the
/// window fills them with real dialogs, a batch run with the console, a test with a script.
struct Desktop {
  /// Shows a message and returns the button pressed; closing the box is No, Cancel or Ok.
  std::function<Answer(const Message&)> ShowMessage;
  /// Empty text when the user presses Enter on an empty field or cancels.
  std::function<std::string(const TextPrompt&)> Prompt;
  /// The path exactly as chosen, or nothing after Cancel.
  std::function<std::optional<std::filesystem::path>(const FileQuestion&)> ChooseFile;
  /// Several files to open, in the order of their names, page 2 before page 10; none after Cancel.
  std::function<std::vector<std::filesystem::path>(const FileQuestion&)> ChooseFiles;

  /// A picture, or files that a file manager put there.
  std::function<bool()> ClipboardHasPicture;
  /// The clipboard's picture; empty raster when there is none. Throws RunTimeError when there is
  /// one that cannot be read.
  std::function<Raster()> ClipboardPicture;
  /// The clipboard's files, in its order; what lies elsewhere as its address.
  std::function<std::vector<std::filesystem::path>()> ClipboardFiles;
  std::function<void(const std::string&)> CopyText;

  /// Renders the records and lets pending window events run once. Input other than Escape is
  /// swallowed meanwhile. Operations hold nothing into growing containers across it. ShowNow does
  /// it each time: for what is to be seen before a step that takes its time. Pump does it now and
  /// then, so that a loop may call it at every turn and a short command pays nothing.
  std::function<void()> ShowNow, Pump;
  /// Whether Escape is held down now, or the window wants to close: the running operation stops.
  std::function<bool()> EscapeHeld;

  /// Moves the screen pointer by picture pixels; false where the system does not allow it.
  std::function<bool(int dx, int dy)> MovePointer;
  /// Puts it on a pixel of the picture, row downward, which then has the keys; false as above.
  std::function<bool(int x, int y)> PointAt;
  std::function<bool()> PointerOverPlot;

  /// Starts the first of these programs that is there, those of the running desktop before the
  /// others (InOrderFor), and does not wait for it; false when none could be started.
  std::function<bool(const std::vector<OutsideProgram>& programs)> StartProgram;
};

/// The common forms of a message. A literal is translated.
void Tell(const Desktop& desktop, const std::string& text,
          MessageIcon icon = MessageIcon::Information);
void Tell(const Desktop& desktop, const char* english, MessageIcon icon = MessageIcon::Information);
bool AskYesNo(const Desktop& desktop, const std::string& text);
bool AskYesNo(const Desktop& desktop, const char* english);

}  // namespace graphize
