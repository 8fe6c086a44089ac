#include "faults/worked_document.h"

#include <gtest/gtest.h>

#include <utility>

#include "base/checksum.h"
#include "commands/replay.h"
#include "commands/view_commands.h"
#include "raster/plot_image.h"
#include "session/left_session.h"
#include "support/document_text.h"
#include "support/quiet_desktop.h"
#include "support/random_user.h"
#include "workspace/step_text.h"

namespace graphize::test {

WorkedDocument::WorkedDocument() : desktop(QuietDesktop()) {
  told.reserve(10'000);  // a message takes no memory of its own here
  desktop.ShowMessage = [this](const Message& message) {
    told.append(message.Text);
    return message.Buttons == MessageButtons::Ok ? Answer::Ok : Answer::No;
  };
  desktop.ChooseFile = [this](const FileQuestion&) { return chosen; };
  ws.settingsPath = folder / "graphize.ini";
  StartReplay(ws);
  history.Begin(ws);
}

CommandEnd WorkedDocument::Do(const std::function<void()>& command) {
  const CommandEnd end = RunCommand(ws, desktop, command);
  CommitCommand(ws, desktop, history, *journal, end);
  return end;
}

void WorkedDocument::DoSteps(const std::vector<std::string>& steps) {
  for (const std::string& line : steps)
    Do([&] {
      const Outcome outcome = graphize::Do(ws, desktop, std::get<Step>(StepOf(line)));
      EXPECT_TRUE(outcome.IsDone()) << line << ": " << outcome.Reason;
    });
}

void WorkedDocument::Begin() {
  Do([&] {
    const auto picture = std::make_shared<PictureInHand>();
    picture->Picture = PictureForRandomUser();
    picture->SourceName = "Pasted Plot";
    graphize::Do(ws, desktop, OpenStep{.InHand = picture});
    ResizeView(ws, 90, 80);
  });
  DoSteps({"mode axisdef", "axis 0 20 130 0 0", "axis 1 180 130 10 0", "axis 2 20 10 0 5",
           "mode drawerase", "erase 3 100 100 104 103", "mode graphize", "block 60 60 5",
           "point 30 90", "point 50 60", "point 70 40", "capture 25 70"});
}

std::string WorkedDocument::Text() {
  std::string text = DocumentText(
      Keep(ws), ws.plot.IsPresent() ? std::optional(PictureNumber(ws.plot)) : std::nullopt);
  const Raster& shown = ws.plot.Pixels;
  return text + "\nshown " +
         HexText(Crc32({reinterpret_cast<const char*>(shown.Pixels()), 4 * shown.PixelCount()}));
}

std::string WorkedDocument::JournalText() {
  static_cast<void>(journal->Flush());
  const JournalledDocument read = ReadJournal(BytesOf(journal->Folder() / kJournalName));
  EXPECT_EQ(read.Damage, "");
  return DocumentText(read.Document, read.Picture);
}

}  // namespace graphize::test
