// Whatever call to the disk fails while a file is written: the file that was there stays whole, the
// user is told why, nothing lies about, and nothing counts as saved.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "codecs/picbuf.h"
#include "commands/export_points.h"
#include "commands/options_commands.h"
#include "commands/picture_commands.h"
#include "commands/recipe_file.h"
#include "commands/save_points.h"
#include "faults/faults.h"
#include "faults/worked_document.h"
#include "session/left_session.h"
#include "session/project_commands.h"
#include "support/document_text.h"
#include "support/random_user.h"

namespace graphize::test {
namespace {

using ::testing::HasSubstr;

constexpr Call kDiskCalls[] = {Call::Create, Call::Write, Call::Sync, Call::Rename};
constexpr const char* kReason = "No space left on device";

struct FileCase {
  const char* Name;
  const char* File;
  std::function<void(WorkedDocument&)> Save;
  bool SavesPoints = false;
};

const FileCase kFiles[] = {
    {"DataFile", "points.dat", [](auto& doc) { SavePoints(doc.ws, doc.desktop); }, true},
    {"Project", "work.graphize", [](auto& doc) { SaveProject(doc.ws, doc.desktop); }, true},
    {"Recipe", "work.recipe", [](auto& doc) { SaveRecipe(doc.ws, doc.desktop); }},
    {"Bmp", "plot.bmp", [](auto& doc) { SaveImageAs(doc.ws, doc.desktop); }},
    {"Png", "plot.png", [](auto& doc) { SaveImageAs(doc.ws, doc.desktop); }},
    {"Tif", "plot.tif", [](auto& doc) { SaveImageAs(doc.ws, doc.desktop); }},
    {"Export", "points.csv",
     [](auto& doc) {
       ShowExport(doc.ws, doc.desktop);
       ExportPoints(doc.ws, doc.desktop);
     }},
    {"Settings", "graphize.ini",
     [](auto& doc) { ChooseLanguage(doc.ws, doc.desktop, doc.ws.language == "en" ? "de" : "en"); }},
};

void PrintTo(const FileCase& file, std::ostream* out) {
  *out << file.Name;
}

class Files : public ::testing::TestWithParam<FileCase> {};

TEST_P(Files, StayWholeAndTheReasonIsTold) {
  WorkedDocument doc;
  doc.Begin();
  doc.chosen = doc.folder / GetParam().File;
  const auto save = [&] {
    doc.told.clear();
    doc.Do([&] { GetParam().Save(doc); });
  };
  save();
  std::string old = BytesOf(doc.chosen);
  int changes = 0;
  for (const Call call : kDiskCalls) {
    for (int number = 1;; ++number) {
      SCOPED_TRACE(std::to_string(static_cast<int>(call)) + ", " + std::to_string(number));
      // Something is other than in the file.
      const std::string line = "draw 3 30,30 150," + std::to_string(30 + 7 * ++changes);
      doc.DoSteps({"point 90 50", "mode drawerase", line, "mode graphize"});
      const auto names = doc.folder.Names();
      ASSERT_TRUE(HasUnsaved(doc.ws.store));
      bool happened = false;
      {
        const Fault fault(call, number);
        doc.told.clear();
        RunCommand(doc.ws, doc.desktop, [&] { GetParam().Save(doc); });
        happened = fault.Happened();
      }
      EXPECT_EQ(doc.folder.Names(), names);
      EXPECT_FALSE(doc.ws.commandRuns || doc.ws.window.Hourglass || doc.ws.status.ProgressVisible);
      if (doc.told.empty() || !happened) {
        // The file is written: of its folder's flush nobody needs to know.
        EXPECT_TRUE(!happened || call == Call::Sync);
        EXPECT_NE(BytesOf(doc.chosen), old);
        EXPECT_EQ(HasUnsaved(doc.ws.store), !GetParam().SavesPoints);
      } else {
        EXPECT_THAT(doc.told, HasSubstr(kReason));
        EXPECT_EQ(BytesOf(doc.chosen), old);
        EXPECT_TRUE(HasUnsaved(doc.ws.store));
      }
      save();
      EXPECT_EQ(doc.told.find(kReason), std::string::npos);
      old = BytesOf(doc.chosen);
      if (!happened) {
        EXPECT_GT(number, 1) << "no such call";
        break;
      }
      if (HasFailure()) return;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Kinds, Files, ::testing::ValuesIn(kFiles),
                         [](const auto& kind) { return kind.param.Name; });

/// A session of a random user, in which a call fails now and then.
TEST(JournalFaults, AreToldAndMadeUpFor) {
  int told = 0;
  for (unsigned seed = 1; seed <= 12; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    WorkedDocument doc;
    SavePicture(doc.folder / "plot.bmp", 3, 0, PictureForRandomUser());
    doc.journal = std::make_unique<Journal>(doc.folder / "sessions", 8'000);
    std::vector<std::string> states;
    std::string note;
    bool begun = false;
    RandomUser user(seed, doc.folder / "plot.bmp", doc.chosen, [&](Workspace& ws) {
      if (!std::exchange(begun, true)) doc.history.Begin(ws);
      CommitCommand(ws, doc.desktop, doc.history, *doc.journal, CommandEnd::Done);
      if (ws.status.Status.find("being kept") != std::string::npos) note = ws.status.Status;
      if (ws.pen.Down) return;
      states.push_back(DocumentText(
          Keep(ws), ws.plot.IsPresent() ? std::optional(PictureNumber(ws.plot)) : std::nullopt));
    });
    const Call call = kDiskCalls[seed % 4];
    for (int i = 0; i < 25; ++i) {
      const Fault fault(call, 1 + user.Pick(4));
      user.DoSomething();
      static_cast<void>(doc.journal->Flush());
    }
    // What is there after a fault is the document as it was after an event.
    for (const std::filesystem::path& session : SessionFolders(doc.folder / "sessions")) {
      if (!std::filesystem::exists(session / kJournalName)) continue;
      const JournalledDocument read = ReadJournal(BytesOf(session / kJournalName));
      EXPECT_EQ(read.Damage, "");
      EXPECT_THAT(states, ::testing::Contains(DocumentText(read.Document, read.Picture)));
    }
    if (const std::string last = doc.journal->TakeNote(); !last.empty()) note = last;
    told += !note.empty();
    // And when all is well again, the whole of it.
    for (int i = 0; i < 3; ++i) user.Do(BlockStep{70, 70, 5});
    ASSERT_TRUE(doc.journal->Flush());
    const JournalledDocument read = ReadJournal(BytesOf(doc.journal->Folder() / kJournalName));
    EXPECT_EQ(DocumentText(read.Document, read.Picture), states.back());
    EXPECT_TRUE(note.empty() || note.find("kept again") != std::string::npos) << note;
    if (HasFailure()) return;
  }
  EXPECT_GT(told, 6);
}

/// A picture that has come from no file is kept beside the journal.
TEST(JournalFaults, APictureThatCannotBeKeptIsToldAndTheNextOneIs) {
  for (const Call call : kDiskCalls) {
    WorkedDocument doc;
    {
      const Fault fault(call, call == Call::Create ? 4 : 1);  // behind two folders and a lock
      doc.Do([&] {
        const auto picture = std::make_shared<PictureInHand>();
        picture->Picture = PictureForRandomUser();
        Do(doc.ws, doc.desktop, OpenStep{.InHand = picture});
      });
      EXPECT_TRUE(fault.Happened());
    }
    EXPECT_THAT(doc.ws.status.Status, HasSubstr(kReason));
    EXPECT_TRUE(doc.ws.plot.IsPresent());
    doc.Begin();
    const std::string text = doc.Text();
    EXPECT_EQ(doc.JournalText(), text.substr(0, text.rfind("\nshown ")));
    EXPECT_TRUE(std::filesystem::exists(doc.journal->Folder() / doc.ws.picture.KeptCopy));
    EXPECT_FALSE(doc.ws.picture.KeptCopy.empty());
  }
}

}  // namespace
}  // namespace graphize::test
