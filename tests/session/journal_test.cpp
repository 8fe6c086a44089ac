// Whatever happens to the program, what was done is on the disk.

#include "session/journal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <utility>

#include "base/run_time_error.h"
#include "base/whole_file.h"
#include "codecs/picbuf.h"
#include "commands/do.h"
#include "commands/picture_commands.h"
#include "commands/plot_mouse.h"
#include "commands/replay.h"
#include "session/journal_frame.h"
#include "session/left_session.h"
#include "session/project_file.h"
#include "support/document_text.h"
#include "support/quiet_desktop.h"
#include "support/random_user.h"
#include "support/temporary_folder.h"

namespace graphize {
namespace {

namespace fs = std::filesystem;

std::string TextOf(Workspace& ws) {
  return test::DocumentText(
      Keep(ws), ws.plot.IsPresent() ? std::optional(PictureNumber(ws.plot)) : std::nullopt);
}

std::string TextOf(const JournalledDocument& read) {
  return test::DocumentText(read.Document, read.Picture);
}

void ExpectSame(const std::string& a, const std::string& b, const std::string& what) {
  const auto at = static_cast<std::size_t>(
      std::mismatch(a.begin(), a.end(), b.begin(), b.end()).first - a.begin());
  const std::size_t from = at < 60 ? 0 : at - 60;
  EXPECT_TRUE(a == b) << what << ":\n"
                      << a.substr(from, 200) << "\ninstead of\n"
                      << b.substr(from, 200);
}

/// Sessions of random users, whose every command is committed and journalled.
class JournalTest : public ::testing::Test {
 protected:
  JournalTest() { SavePicture(folder / "plot.bmp", 3, 0, test::PictureForRandomUser()); }

  void Start(unsigned seed, std::size_t most = std::size_t{8} << 20) {
    user.reset();
    history = History();
    journal =
        std::make_unique<Journal>(Sessions(), most, [] { return std::int64_t{1'700'000'000}; });
    user = std::make_unique<test::RandomUser>(seed, folder / "plot.bmp", folder / "saved.dat",
                                              [this, begun = false](Workspace& ws) mutable {
                                                if (!std::exchange(begun, true)) history.Begin(ws);
                                                Commit(ws);
                                              });
  }
  void Commit(Workspace& ws) {
    journal->KeepPicture(ws, test::QuietDesktop());
    history.Commit(ws);
    journal->Append(ws, history.TakeDelta());
    if (afterEvent) afterEvent(ws);
  }
  /// One of its commands, an undo or a redo.
  void DoSomething() {
    const int what = user->Pick(12);
    if (what > 1) return user->DoSomething();
    what == 0 ? history.Undo(user->ws) : history.Redo(user->ws);
    Commit(user->ws);
    while (!user->ws.plot.IsPresent() && history.Redo(user->ws)) Commit(user->ws);
  }

  fs::path Sessions() const { return folder / "sessions"; }
  /// What a reader finds now.
  std::string Bytes() const {
    // A new one takes the old one's place at any time.
    std::string bytes;
    if (ReadWholeFile(journal->Folder() / kNewJournalName, 1 << 30, bytes))
      bytes = test::BytesOf(journal->Folder() / kJournalName);
    return bytes;
  }
  /// The session as the next start finds it.
  std::optional<LeftSession> Leave() {
    const fs::path left = journal->Folder();
    journal.reset();
    return FindLeftSession(left);
  }

  test::TemporaryFolder folder;
  History history;
  std::unique_ptr<Journal> journal;
  std::unique_ptr<test::RandomUser> user;
  std::function<void(Workspace&)> afterEvent;
};

TEST_F(JournalTest, TellsTheDocumentAfterEveryEvent) {
  int events = 0, anew = 0, restored = 0;
  for (unsigned seed = 1; seed <= 40 && !HasFailure(); ++seed) {
    std::size_t size = 0;
    afterEvent = [&](Workspace& ws) {
      if (journal->Folder().empty() || ws.pen.Down) return;
      const std::string bytes = Bytes();
      anew += bytes.size() < size;
      size = bytes.size();
      const JournalledDocument read = ReadJournal(bytes);
      events += read.Events > 0;
      ExpectSame(TextOf(read), TextOf(ws),
                 "seed " + std::to_string(seed) + ", event " + std::to_string(read.Events));
    };
    Start(seed, seed % 2 == 0 ? 8'000 : std::size_t{8} << 20);
    for (int i = 0; i < 40 && !HasFailure(); ++i) DoSomething();
    EndDrag(user->ws);
    Commit(user->ws);
    if (HasFailure()) break;

    // The next start.
    const auto left = Leave();
    if (!left) continue;  // all but the picture was taken back
    ASSERT_EQ(left->Fault + left->Kept.Damage, "");
    Workspace made, again;
    StartReplay(again);
    const std::string fault = RestorePicture(*left, made, test::QuietDesktop());
    ASSERT_EQ(fault, "") << "seed " << seed;
    BringBackSession(again, test::QuietDesktop(), *left, &made);
    ExpectSame(TextOf(again), TextOf(user->ws), "seed " + std::to_string(seed));
    BasePictureShown base(user->ws.plot), baseAgain(again.plot);
    const Raster &a = user->ws.plot.Pixels, &b = again.plot.Pixels;
    EXPECT_TRUE(std::equal(a.Pixels(), a.Pixels() + a.PixelCount(), b.Pixels()));
    restored += !HasFailure();
    RemoveSession(left->Folder);
  }
  EXPECT_GT(events, 3000);
  EXPECT_GT(anew, 20) << "journals that were written anew";
  EXPECT_GT(restored, 36);
}

TEST_F(JournalTest, DamageCostsTheLastEventOrIsTold) {
  std::vector<std::string> states = {""};
  std::vector<std::size_t> ends = {JournalStart().size()};
  afterEvent = [&](Workspace& ws) {
    if (journal->Folder().empty() || Bytes().size() == ends.back()) return;
    ends.push_back(Bytes().size());
    states.push_back(TextOf(ws));
  };
  Start(5);
  for (int i = 0; i < 20; ++i) DoSomething();
  const std::string bytes = Bytes();
  const int last = static_cast<int>(states.size()) - 1;
  // Never another document than after one of the events.
  const auto read = [&](const std::string& damaged, const std::string& what) {
    try {
      const JournalledDocument found = ReadJournal(damaged);
      EXPECT_TRUE(TextOf(found) == states.at(static_cast<std::size_t>(found.Events))) << what;
      return std::pair(found.Events, found.Damage);
    } catch (const RunTimeError& error) {
      return std::pair(0, std::string(error.what()));
    }
  };
  for (std::size_t size = 0; size < bytes.size() && !HasFailure(); size += 1 + size % 17) {
    const auto whole = std::upper_bound(ends.begin(), ends.end(), size) - ends.begin() - 1;
    const auto [events, told] = read(bytes.substr(0, size), "cut to " + std::to_string(size));
    EXPECT_EQ(events, std::max<std::ptrdiff_t>(whole, 0));
    EXPECT_EQ(told.empty(), events > 0);
  }
  for (std::size_t at = 0; at < bytes.size() && !HasFailure(); at += 1 + at % 17) {
    std::string damaged = bytes;
    damaged[at] = static_cast<char>(damaged[at] ^ 1 << at % 8);
    const auto [events, told] = read(damaged, "flipped at " + std::to_string(at));
    EXPECT_TRUE(events >= last - 1 || !told.empty()) << at;
  }
  EXPECT_GT(last, 15);
  std::string newer = bytes;
  newer.replace(0, JournalStart().size(), "graphize journal 27\n");
  EXPECT_THAT(read(newer, "").second, ::testing::HasSubstr("version 27"));
}

TEST_F(JournalTest, AFullDiskIsToldOnceAndCostsNothingWhenThereIsRoomAgain) {
  Start(1);
  EXPECT_EQ(journal->TakeNote(), "");
  std::vector<std::string> notes;
  afterEvent = [&](Workspace&) {
    if (std::string note = journal->TakeNote(); !note.empty()) notes.push_back(note);
  };
  const auto fill = [&](std::size_t most) {
    notes.clear();
    const test::FullDisk full(most);
    while (notes.empty()) DoSomething();
  };
  const auto expectAllKept = [&] {
    for (int i = 0; i < 5; ++i) DoSomething();
    EndDrag(user->ws);
    Commit(user->ws);
    EXPECT_THAT(notes, ::testing::ElementsAre(::testing::HasSubstr("not being kept"),
                                              ::testing::HasSubstr("kept again")));
    ExpectSame(TextOf(ReadJournal(Bytes())), TextOf(user->ws), "when there is room again");
  };
  const fs::path file = journal->Folder() / kJournalName;
  fill(100);
  EXPECT_EQ(ReadJournal(test::BytesOf(file)).Damage, "") << "it holds what was there before";
  expectAllKept();
  // An event of which a part is written already; a new file then has the room.
  static_cast<void>(journal->Flush());
  fill(test::BytesOf(file).size() + 20);
  static_cast<void>(ReadJournal(test::BytesOf(file)));
  expectAllKept();
  // One that cannot begin leaves nothing, and begins with its picture when there is room.
  const fs::path sessions = folder / "late";
  Workspace late;
  History lately;
  const Desktop quiet = test::QuietDesktop();
  StartReplay(late);
  lately.Begin(late);
  journal = std::make_unique<Journal>(sessions);
  const auto step = [&](Step what) {
    Do(late, quiet, std::move(what));
    journal->KeepPicture(late, quiet);
    lately.Commit(late);
    journal->Append(late, lately.TakeDelta());
  };
  const auto pasted = std::make_shared<PictureInHand>();
  pasted->Picture = Raster::Filled(3, 3, kWhitePixel);
  {
    const test::FullDisk full(200);
    step(OpenStep{.InHand = pasted});
    EXPECT_TRUE(SessionFolders(sessions).empty());
  }
  step(DrawStep{{1, {{1, 1}}}});
  step(DrawStep{{1, {{2, 2}}}});
  EXPECT_TRUE(fs::exists(journal->Folder() / late.picture.KeptCopy));
  EXPECT_FALSE(late.picture.KeptCopy.empty());
  // Nowhere to write at all.
  test::WriteBytes(folder / "file", "");
  journal = std::make_unique<Journal>(folder / "file" / "sessions");
  notes.clear();
  for (int i = 0; i < 15; ++i) DoSomething();
  EXPECT_EQ(notes.size(), 1u);
}

TEST_F(JournalTest, SessionsAreFoundWhenNobodyHasThem) {
  const auto found = [this] {
    int sessions = 0;
    for (const fs::path& left : SessionFolders(Sessions()))
      sessions += FindLeftSession(left).has_value();
    return sessions;
  };
  Journal empty(Sessions());
  Workspace nothing;
  history.Begin(nothing);
  empty.Append(nothing, history.TakeDelta());
  EXPECT_FALSE(fs::exists(Sessions())) << "an empty session leaves nothing behind";

  Start(2);
  const auto first = std::exchange(journal, nullptr);
  Start(3);
  EXPECT_NE(first->Folder(), journal->Folder());
  EXPECT_EQ(found(), 0) << "both run";
  fs::create_directories(Sessions() / "20200101-000000-1");
  test::WriteBytes(Sessions() / "20200101-000000-2" / kLockName, "");
  std::optional<LeftSession> left = Leave();
  ASSERT_TRUE(left);
  EXPECT_EQ(left->Describe(1'700'000'000 + 864'000).substr(0, 31),
            "The work on plot.bmp, 2023-11-1");
  EXPECT_EQ(found(), 0) << "somebody else has it";
  left.reset();
  EXPECT_EQ(found(), 1);
  first->Close();
  EXPECT_EQ(found(), 1);
  EXPECT_EQ(SessionFolders(Sessions()).size(), 1u) << "what is closed or empty is gone";

  // What cannot be read is told, and stays.
  test::WriteBytes(SessionFolders(Sessions()).front() / kJournalName, "graphize journal 2\n");
  left = FindLeftSession(SessionFolders(Sessions()).front());
  ASSERT_TRUE(left);
  EXPECT_THAT(left->Describe(0), ::testing::HasSubstr("newer program"));
}

TEST_F(JournalTest, PicturesOfNoFileComeBackAndMissingOnesAreTold) {
  const Desktop quiet = test::QuietDesktop();
  Start(7);
  Workspace& ws = user->ws;
  const auto step = [&](Step what) {
    Do(ws, quiet, std::move(what));
    Commit(ws);
  };
  step(ResetStep{});
  TakeInHand(ws, quiet, test::PictureForRandomUser(), "Pasted Plot");
  Commit(ws);
  step(DrawStep{{5, {{20, 20}, {60, 90}}}});
  step(ImageToolStep{PictureTool::Rotate, 90});
  TakeInHand(ws, quiet, Raster::Filled(30, 20, kWhitePixel), "Pasted Plot");
  Commit(ws);
  ASSERT_TRUE(history.Undo(ws)) << "the first pasted picture is there again";
  Commit(ws);
  const std::string expected = TextOf(ws);
  auto left = Leave();
  ASSERT_TRUE(left);
  EXPECT_EQ(left->Describe(1'700'000'000).substr(0, 24), "The work on Pasted Plot,");
  Workspace made, again;
  StartReplay(again);
  ASSERT_EQ(RestorePicture(*left, made, quiet), "");
  BringBackSession(again, quiet, *left, &made);
  ExpectSame(TextOf(again), expected, "brought back");
  // In the session that goes on, its copy is there, too.
  journal = std::make_unique<Journal>(Sessions());
  EXPECT_TRUE(journal->TakePicture(again, left->Folder / again.picture.KeptCopy));
  RemoveSession(left->Folder);
  EXPECT_TRUE(fs::exists(journal->Folder() / again.picture.KeptCopy));

  Start(8);
  const fs::path picture = folder / "plot.bmp";
  left = Leave();
  ASSERT_TRUE(left);
  std::string bytes = test::BytesOf(picture);
  bytes[bytes.size() / 2] ^= 1;
  test::WriteBytes(picture, bytes);
  Workspace other, gone, alone;
  EXPECT_THAT(RestorePicture(*left, other, quiet), ::testing::HasSubstr("another picture"));
  fs::remove(picture);
  EXPECT_THAT(RestorePicture(*left, gone, quiet), ::testing::HasSubstr("No such file"));
  StartReplay(alone);
  BringBackSession(alone, quiet, *left, nullptr);
  EXPECT_FALSE(alone.plot.IsPresent() || alone.commands.Picture);
  EXPECT_TRUE(alone.calibration.IsComplete());

  // It is found elsewhere; the first file stays missing.
  SavePicture(folder / "found.bmp", 3, 0, test::PictureForRandomUser());
  journal = std::make_unique<Journal>(Sessions());
  history.Begin(alone);
  Do(alone, quiet, OpenStep{.Path = folder / "found.bmp"});
  Commit(alone);
  left = Leave();
  ASSERT_TRUE(left);
  Workspace found;
  EXPECT_EQ(RestorePicture(*left, found, quiet), "");
}

TEST_F(JournalTest, WorkOnAProjectComesBackWithoutItsFiles) {
  const Desktop quiet = test::QuietDesktop();
  const fs::path inside = folder / "inside.bmp";
  int withEdit = 0, withFaint = 0;
  for (unsigned seed = 1; seed <= 25 && !HasFailure(); ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    SavePicture(inside, 3, 0, test::PictureForRandomUser());
    test::RandomUser before(seed, inside, folder / "saved.dat");
    for (int i = 0; i < 40; ++i) before.DoSomething();
    EndDrag(before.ws);
    const std::string project = ProjectBytes(before.ws, quiet).value();
    fs::remove(inside);

    Start(seed + 100);
    Workspace& ws = user->ws;
    PutProject(ws, quiet, ReadProject(project, ProjectPicture::Decoded).value());
    Commit(ws);
    withEdit += ws.plot.HasUndo;
    if (seed % 2 == 0) Do(ws, quiet, UndoEditStep{});
    Commit(ws);
    const std::string expected = TextOf(ws);
    const bool hasFaint = !ws.plot.Pixels.Faint.IsEmpty();
    const auto edit = ws.plot.LastEdit;
    const auto left = Leave();
    ASSERT_TRUE(left);
    Workspace made, again;
    StartReplay(again);
    EXPECT_EQ(RestorePicture(*left, made, quiet), "");
    history = History();
    history.Begin(again);
    BringBackSession(again, quiet, *left, &made);
    ExpectSame(TextOf(again), expected, "brought back");
    history.Commit(again);
    ASSERT_TRUE(history.Undo(again));
    EXPECT_FALSE(again.plot.IsPresent() || again.plot.HasUndo);
    ASSERT_TRUE(history.Redo(again));
    ExpectSame(TextOf(again), expected, "and again after Undo");
    EXPECT_EQ(!again.plot.Pixels.Faint.IsEmpty(), hasFaint);
    EXPECT_TRUE(again.plot.LastEdit == edit);
    ListPage page;
    ShowNewest(page, again.store.ListCount);
    EXPECT_TRUE(again.store.Page == page) << "the list shows its newest rows";
    withFaint += hasFaint;
  }
  EXPECT_GT(withEdit, 3);
  EXPECT_GT(withFaint, 3);
}

}  // namespace
}  // namespace graphize
