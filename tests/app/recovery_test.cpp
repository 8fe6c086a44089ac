// The program ends as it should not; the work is there again.

#include <signal.h>

#include <QAbstractButton>
#include <QProcess>
#include <QProcessEnvironment>
#include <QThread>
#include <algorithm>
#include <random>
#include <set>

#include "app/journaled_work.h"
#include "app/storm.h"
#include "app/window_driver.h"
#include "base/checksum.h"
#include "base/whole_file.h"
#include "codecs/file_format.h"
#include "codecs/picbuf.h"
#include "commands/replay.h"
#include "support/document_text.h"
#include "support/quiet_desktop.h"
#include "support/random_user.h"
#include "support/temporary_folder.h"

namespace graphize::test {
namespace {

namespace fs = std::filesystem;

std::string DigestOf(const KeptDocument& kept, std::optional<std::uint64_t> picture) {
  return HexText(Crc32(DocumentText(kept, picture)));
}

/// Work in a process of its own, which is killed.
class KilledWork {
 public:
  explicit KilledWork(const fs::path& folder) : folder_(folder) {}

  /// Kills it after so many events and this time more; -1: when it has done all.
  void Run(unsigned seed, int events, unsigned microseconds) {
    Digests.clear();
    fs::remove_all(folder_ / kWorkSessions);
    QProcess work;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    // What it leaves behind when it is killed goes with this test.
    environment.insert(QStringLiteral("TMPDIR"), QString::fromStdString(folder_.string()));
    work.setProcessEnvironment(environment);
    work.start(QCoreApplication::applicationFilePath(),
               {QLatin1String(kJournaledWork), QString::fromStdString(folder_.string()),
                QString::number(seed)});
    while (Digests.size() != static_cast<std::size_t>(events) && TakeLine(work)) continue;
    QThread::usleep(microseconds);
    work.kill();
    work.waitForFinished();
    while (TakeLine(work)) continue;
  }

  std::vector<std::string> Digests;  // after each event that it has told

 private:
  bool TakeLine(QProcess& work) {
    while (!work.canReadLine())
      if (work.state() == QProcess::NotRunning || !work.waitForReadyRead(30000)) break;
    const QStringList words = QString::fromLatin1(work.readLine()).simplified().split(u' ');
    if (words.size() != 2) return false;
    Digests.push_back(words[1].toStdString());
    return words[0].toInt() == static_cast<int>(Digests.size());
  }

  fs::path folder_;
};

TEST(Recovery, WorkThatWasKilledAtAnyMomentIsThereToItsLastEvent) {
  constexpr int kKills = 200, kSeeds = 4;
  const TemporaryFolder folder;
  Raster picture = PictureForRandomUser();
  for (int x = 0; x < 20; ++x) picture.Row(3)[x] = kWhitePixel;  // black and white: no question
  SavePicture(folder / kWorkPicture, kBmpFormat, 0, picture);
  KilledWork work(folder.Path());
  std::array<std::vector<std::string>, kSeeds> all;
  for (unsigned seed = 0; seed < kSeeds; ++seed) {
    work.Run(seed, -1, 0);
    all[seed] = work.Digests;
    ASSERT_GT(std::set(all[seed].begin(), all[seed].end()).size(), 30u);
  }

  std::mt19937 random(1);
  int restored = 0;
  for (int kill = 0; kill < kKills && !::testing::Test::HasFailure(); ++kill) {
    const auto seed = static_cast<unsigned>(random() % kSeeds);
    const std::vector<std::string>& digests = all[seed];
    work.Run(seed, 1 + static_cast<int>(random() % digests.size()),
             static_cast<unsigned>(random() % 4000));
    const std::size_t told = work.Digests.size();
    SCOPED_TRACE("seed " + std::to_string(seed) + ", killed after event " + std::to_string(told));
    ASSERT_TRUE(std::equal(work.Digests.begin(), work.Digests.end(), digests.begin()));
    const auto folders = SessionFolders(folder / kWorkSessions);
    ASSERT_EQ(folders.size(), 1u);
    std::string bytes;
    if (ReadWholeFile(folders[0] / kNewJournalName, 1 << 30, bytes))
      bytes = BytesOf(folders[0] / kJournalName);
    const JournalledDocument read = ReadJournal(bytes);
    EXPECT_EQ(read.Damage, "");
    // What was told, or the event that was just being done.
    const std::string digest = DigestOf(read.Document, read.Picture);
    EXPECT_TRUE(digest == digests[told - 1] || (told < digests.size() && digest == digests[told]));
    const auto left = FindLeftSession(folders[0]);
    if (!left) continue;  // a picture was opened and nothing more
    Workspace made, again;
    StartReplay(again);
    EXPECT_EQ(RestorePicture(*left, made, QuietDesktop()), "");
    BringBackSession(again, QuietDesktop(), *left, &made);
    EXPECT_EQ(DigestOf(Keep(again), PictureNumber(again.plot)), digest);
    ++restored;
  }
  EXPECT_GT(restored, 150);
}

/// A storm in a process of its own ends as it should and finds nothing.
TEST(Storm, RandomEventsBreakNoPromise) {
  for (const char* seed : {"1", "2"}) {
    const TemporaryFolder folder;
    QProcess storm;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    storm.setProcessEnvironment(environment);
    storm.setProcessChannelMode(QProcess::MergedChannels);
    storm.start(QCoreApplication::applicationFilePath(),
                {QLatin1String(kStorm), QString::fromStdString(folder.Path().string()),
                 QLatin1String(seed), QStringLiteral("600")});
    storm.waitForFinished(-1);
    EXPECT_TRUE(storm.exitStatus() == QProcess::NormalExit && storm.exitCode() == 0)
        << storm.readAll().toStdString();
  }
}

using RecoveryWindow = WindowTest;

TEST_F(RecoveryWindow, WhatWasLeftIsOfferedBroughtBackOrDeleted) {
  Start();
  EXPECT_TRUE(Find<QWidget>("RecoveryBar")->isHidden());
  OpenSample("pendulum.bmp");
  EXPECT_EQ(SessionFolders(Sessions()).size(), 1u);
  CalibratePendulum();
  ClickPlot(77, 58, 3);
  const int points = State().store.CaptureCount;
  ASSERT_GT(points, 200);
  ClickTool("drawerase");
  ClickPlot(300, 100, 3);
  ClickTool("graphize");
  const auto digest = [this] { return DigestOf(Keep(State()), State().plot.Number); };
  const std::string before = digest();
  const fs::path first = SessionFolders(Sessions()).front();
  {
    // Another window that runs beside sees nothing of it, and leaves it alone.
    MainWindow other({.Settings = SettingsFile(), .Help = {}, .Sessions = Sessions()});
    other.Start();
    other.show();
    Settle();
    EXPECT_TRUE(other.findChild<QWidget*>(QStringLiteral("RecoveryBar"))->isHidden());
  }
  EXPECT_TRUE(fs::exists(first / kJournalName));

  Abandon();
  Start();
  const auto* bar = Find<QWidget>("RecoveryBar");
  Until([&] { return bar->isVisible(); }, "the bar");
  Settle();
  EXPECT_FALSE(State().plot.IsPresent());
  EXPECT_TRUE(
      TextOf("LBL_Session").startsWith(QStringLiteral("%1 points of pendulum.bmp, ").arg(points)))
      << TextOf("LBL_Session").toStdString();
  ClickControl(Find<QAbstractButton>("BTN_Recover"));
  Until([&] { return State().store.CaptureCount == points; }, "the points");
  Settle();
  EXPECT_EQ(digest(), before);
  EXPECT_EQ(Window().windowTitle(), "Graphize - pendulum.bmp (640x480)");
  EXPECT_TRUE(bar->isHidden());
  EXPECT_FALSE(fs::exists(first)) << "the new session has all of it";
  ClickPlot(400, 235);
  EXPECT_EQ(State().store.CaptureCount, points + 1) << "and work goes on";

  Abandon();
  Start();
  Until([&] { return Find<QWidget>("RecoveryBar")->isVisible(); }, "the bar");
  Settle();
  EXPECT_TRUE(TextOf("LBL_Session").startsWith(QString::number(points + 1)));
  OnMessage("delete this for good", QMessageBox::No);
  ClickControl(Find<QAbstractButton>("BTN_DeleteSession"));
  EXPECT_FALSE(SessionFolders(Sessions()).empty());
  OnMessage("delete this for good", QMessageBox::Yes);
  ClickControl(Find<QAbstractButton>("BTN_DeleteSession"));
  EXPECT_TRUE(Find<QWidget>("RecoveryBar")->isHidden());
  EXPECT_TRUE(SessionFolders(Sessions()).empty());

  // The picture has gone: the points alone.
  fs::copy_file(kSamples / "pendulum.bmp", Folder() / "gone.bmp");
  Window().OpenWhenShown({Folder() / "gone.bmp"});
  Until([this] { return State().plot.IsPresent() && !State().commandRuns; }, "open");
  CalibratePendulum();
  ClickPlot(400, 235);
  Abandon();
  fs::remove(Folder() / "gone.bmp");
  Start();
  Until([&] { return Find<QWidget>("RecoveryBar")->isVisible(); }, "the bar");
  Settle();
  OnMessage("\"gone.bmp\": No such file", QMessageBox::Yes);
  ClickControl(Find<QAbstractButton>("BTN_Recover"));
  Until([&] { return State().store.CaptureCount == 1; }, "the point");
  EXPECT_FALSE(State().plot.IsPresent());

  // Closed by the user, nothing stays of it; what lacks its picture does.
  OnMessage("Do you want to save graphized points ?", QMessageBox::No);
  ChooseMenu("MNU_FILE_Exit");
  EXPECT_FALSE(Window().isVisible());
  EXPECT_EQ(SessionFolders(Sessions()).size(), 1u);
}

TEST_F(RecoveryWindow, WithoutAPlaceToKeepItWorkGoesOn) {
  WriteBytes(Sessions(), "a file, no folder");
  Start();
  OpenSample("pendulum.bmp");
  EXPECT_TRUE(TextOf("status").contains("not being kept")) << TextOf("status").toStdString();
  CalibratePendulum();
  ClickPlot(400, 235);
  EXPECT_EQ(State().store.CaptureCount, 1);
  EXPECT_FALSE(TextOf("status").contains("not being kept")) << "told once";
}

TEST_F(RecoveryWindow, TheProgramEndsInOrderWhenItIsAskedTo) {
  const fs::path sessions = Folder() / "graphize" / "sessions";
  const auto journals = [&] {
    int count = 0;
    for (const fs::path& session : SessionFolders(sessions))
      count += exists(session / kJournalName);
    return count;
  };
  for (const int number : {SIGTERM, SIGHUP}) {
    fs::remove_all(sessions);
    // What the test itself was told to ignore, as by nohup, its children would ignore as well.
    signal(number, SIG_DFL);
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("XDG_STATE_HOME"), QString::fromStdString(Folder().string()));
    program.setProcessEnvironment(environment);
    program.start(QStringLiteral(GRAPHIZE_PROGRAM),
                  {QString::fromStdString((kSamples / "pendulum.bmp").string())});
    Until([&] { return journals() == 1; }, "the session");
    Settle();
    kill(static_cast<pid_t>(program.processId()), number);
    Until([&] { return program.state() == QProcess::NotRunning; }, "its end");
    EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(program.exitCode(), 0);
    ASSERT_EQ(journals(), 1);
    const auto read = ReadJournal(BytesOf(SessionFolders(sessions).front() / kJournalName));
    EXPECT_FALSE(read.Closed);
    EXPECT_EQ(read.Damage, "");
  }
}

}  // namespace
}  // namespace graphize::test
