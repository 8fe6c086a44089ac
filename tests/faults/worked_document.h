#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "commands/do.h"
#include "session/commit.h"
#include "support/temporary_folder.h"

namespace graphize::test {

/// A document that is worked on as the window does it: every command is committed and journalled.
class WorkedDocument {
 public:
  WorkedDocument();

  CommandEnd Do(const std::function<void()>& command);
  /// Lines of a recipe, such as "trace 140 220".
  void DoSteps(const std::vector<std::string>& steps);
  /// A picture in hand, its axes, some points, a mark, a blocker and an edit.
  void Begin();

  /// All of the document, its picture with the marks on it included.
  std::string Text();
  /// What a next start would find.
  std::string JournalText();

  TemporaryFolder folder;
  std::filesystem::path chosen = folder / "saved";  // the answer to every question for a file
  Workspace ws;
  Desktop desktop;
  /// Of all messages and of what the status bar says at a failure.
  std::string told;
  History history;
  std::unique_ptr<Journal> journal = std::make_unique<Journal>(folder / "sessions");
};

}  // namespace graphize::test
