// A process that works as a random user is killed, by the clock or at one of its calls to the disk:
// at most the event that was being done is lost.

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <random>

#include "base/checksum.h"
#include "codecs/file_format.h"
#include "codecs/picbuf.h"
#include "commands/replay.h"
#include "faults/faults.h"
#include "raster/plot_image.h"
#include "session/commit.h"
#include "session/left_session.h"
#include "support/document_text.h"
#include "support/quiet_desktop.h"
#include "support/random_user.h"
#include "support/temporary_folder.h"

namespace graphize::test {
namespace {

namespace fs = std::filesystem;

std::uint32_t DigestOf(const KeptDocument& kept, std::optional<std::uint64_t> picture) {
  return Crc32(DocumentText(kept, picture));
}
std::uint32_t DigestOf(Workspace& ws) {
  return DigestOf(Keep(ws),
                  ws.plot.IsPresent() ? std::optional(PictureNumber(ws.plot)) : std::nullopt);
}

/// In memory that outlives the process.
struct Work {
  std::atomic<int> Events = 0;
  std::atomic<std::uint32_t> Being = 0, Done = 0;  // digests of the document
};

[[noreturn]] void WorkUntilKilled(Work& work, const fs::path& folder, unsigned seed, int dieAt) {
  History history;
  Journal journal(folder / "sessions", 6'000);
  const Desktop desktop = QuietDesktop();
  bool begun = false;
  RandomUser user(seed, folder / "plot.bmp", folder / "saved.dat", [&](Workspace& ws) {
    if (!std::exchange(begun, true)) {
      history.Begin(ws);
      if (dieAt > 0) DieAtCall(dieAt);
    }
    journal.KeepPicture(ws, desktop);
    history.Commit(ws);
    work.Being = DigestOf(ws);
    const DocumentDelta delta = history.TakeDelta();
    journal.Append(ws, delta);
    // What is drawn is noted when the pen goes up; what began with it may be noted before.
    if (!ws.pen.Down || delta.Any) work.Done = work.Being.load();
    ++work.Events;
  });
  while (true) user.DoSomething();
}

TEST(Kills, LoseAtMostTheEventThatWasBeingDone) {
  const char* asked = std::getenv("GRAPHIZE_KILLS");
  const int kills = asked != nullptr ? std::atoi(asked) : 60;
  auto* work =
      new (mmap(nullptr, sizeof(Work), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0))
          Work;
  std::mt19937 random(11);
  int restoredByCall = 0, restoredByClock = 0, lastEventLost = 0;
  for (int i = 0; i < kills && !HasFailure(); ++i) {
    const TemporaryFolder folder;
    SavePicture(folder / "plot.bmp", kBmpFormat, 0, PictureForRandomUser());
    const auto seed = static_cast<unsigned>(random() % 1000);
    const int events = 12 + static_cast<int>(random() % 200);
    const bool byCall = i % 2 == 0;
    const auto microseconds = static_cast<useconds_t>(random() % 3000);
    SCOPED_TRACE("kill " + std::to_string(i) + ", seed " + std::to_string(seed));
    new (work) Work;
    PrepareToDecode(DecodersReady::None);  // they decode for this process alone
    const pid_t child = fork();
    if (child == 0) WorkUntilKilled(*work, folder.Path(), seed, byCall ? events : 0);
    while (!byCall && work->Events < events && waitpid(child, nullptr, WNOHANG) == 0) usleep(50);
    if (!byCall) {
      usleep(microseconds);
      kill(child, SIGKILL);
    }
    int status = 0;
    waitpid(child, &status, 0);
    ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);

    const auto sessions = SessionFolders(folder / "sessions");
    ASSERT_LE(sessions.size(), 1u);
    if (sessions.empty()) continue;
    const auto left = FindLeftSession(sessions.front());
    // A picture that was opened and nothing more is not offered.
    if (!left) {
      EXPECT_LT(work->Events, 12);
      continue;
    }
    ASSERT_EQ(left->Fault + left->Kept.Damage, "");
    const std::uint32_t digest = DigestOf(left->Kept.Document, left->Kept.Picture);
    EXPECT_TRUE(digest == work->Done || digest == work->Being) << work->Events;
    lastEventLost += digest != work->Being;
    if (i % 3 != 0) continue;
    Workspace made, again;
    StartReplay(again);
    EXPECT_EQ(RestorePicture(*left, made, QuietDesktop()), "");
    BringBackSession(again, QuietDesktop(), *left, &made);
    // A mode that its last event has left without what it needs is left.
    KeptDocument kept = left->Kept.Document;
    if (again.mode == Mode::None) kept.InMode = Mode::None;
    EXPECT_EQ(DigestOf(again), DigestOf(kept, left->Kept.Picture));
    ++(byCall ? restoredByCall : restoredByClock);
  }
  munmap(work, sizeof(Work));
  EXPECT_GE(restoredByCall, kills / 12);
  EXPECT_GE(restoredByClock, kills / 12);
  RecordProperty("LastEventLost", lastEventLost);
  RecordProperty("RestoredByCall", restoredByCall);
  RecordProperty("RestoredByClock", restoredByClock);
}

}  // namespace
}  // namespace graphize::test
