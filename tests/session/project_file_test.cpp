// A project holds the whole of a document, and nothing that is not one is taken for it.

#include "session/project_file.h"

#include <gtest/gtest.h>

#include <fstream>
#include <random>

#include "base/numbers.h"
#include "base/run_time_error.h"
#include "base/translation.h"
#include "base/zip_file.h"
#include "codecs/file_format.h"
#include "codecs/picbuf.h"
#include "commands/do.h"
#include "commands/export_points.h"
#include "commands/picture_commands.h"
#include "commands/plot_mouse.h"
#include "commands/recipe_file.h"
#include "commands/replay.h"
#include "commands/shown_picture.h"
#include "data/data_file.h"
#include "data/waiting_points.h"
#include "session/history.h"
#include "session/kept_text.h"
#include "session/project_commands.h"
#include "support/colour_plot.h"
#include "support/quiet_desktop.h"
#include "support/random_user.h"
#include "support/scripted_desktop.h"
#include "support/temporary_folder.h"

namespace graphize {
namespace {

std::string BytesOf(Workspace& ws) {
  return ProjectBytes(ws, test::QuietDesktop()).value();
}

ProjectContent Read(std::string_view bytes) {
  return ReadProject(bytes, ProjectPicture::Decoded).value();
}

/// The project in a workspace of its own.
Workspace Opened(std::string_view bytes) {
  Workspace ws;
  StartReplay(ws);
  PutProject(ws, test::QuietDesktop(), Read(bytes));
  return ws;
}

std::vector<std::uint32_t> PixelsOf(const Raster& raster) {
  return {raster.Pixels(), raster.Pixels() + raster.PixelCount()};
}

bool HasSameBits(const BitMap& a, const BitMap& b) {
  for (int y = 0; y < a.Height(); ++y)
    for (int x = 0; x < a.Width(); ++x)
      if (a.Get(x, y) != b.Get(x, y)) return false;
  return a.Width() == b.Width() && a.Height() == b.Height();
}

class ProjectTest : public ::testing::Test {
 protected:
  ProjectTest() { SavePicture(folder / "plot.bmp", 3, 0, test::PictureForRandomUser()); }
  /// A project with marks, an edit and two curves, the first of them with points that no reader
  /// has found.
  std::string SmallProject() {
    for (unsigned seed = 1;; ++seed) {
      test::RandomUser user(seed, folder / "plot.bmp", folder / "saved.dat");
      for (int i = 0; i < 60; ++i) user.DoSomething();
      EndDrag(user.ws);
      const Workspace& ws = user.ws;
      const PointStore& first = PointsOf(ws.curves, ws.store, 0);
      if (ws.curves.Curves.size() == 2 && first.CaptureCount > 9 && first.Certainties.empty() &&
          ws.plot.HasUndo && !ws.plot.Marks.empty())
        return BytesOf(user.ws);
    }
  }

  test::TemporaryFolder folder;
};

TEST_F(ProjectTest, GivesTheSameBytesAndPixelsWhenOpened) {
  int withEdit = 0, withMarks = 0, withFaint = 0;
  for (unsigned seed = 1; seed <= 35 && !HasFailure(); ++seed) {
    test::RandomUser user(seed, folder / "plot.bmp", folder / "saved.dat");
    for (int i = 0; i < 40; ++i) user.DoSomething();
    EndDrag(user.ws);
    const std::string bytes = BytesOf(user.ws);
    Workspace again = Opened(bytes);
    EXPECT_TRUE(BytesOf(again) == bytes) << "seed " << seed;
    EXPECT_TRUE(PixelsOf(again.plot.Pixels) == PixelsOf(user.ws.plot.Pixels)) << "seed " << seed;
    ASSERT_EQ(again.colours == nullptr, user.ws.colours == nullptr) << "seed " << seed;
    EXPECT_TRUE(!again.colours || PixelsOf(*again.colours) == PixelsOf(*user.ws.colours));
    EXPECT_TRUE(again.plot.Marks == user.ws.plot.Marks);
    EXPECT_TRUE(again.plot.LastEdit == user.ws.plot.LastEdit);
    EXPECT_TRUE(HasSameBits(again.plot.Pixels.Faint, user.ws.plot.Pixels.Faint));
    EXPECT_TRUE(UnsavedCurves(again.curves, again.store).empty());
    withEdit += !again.plot.LastEdit.empty();
    withMarks += !again.plot.Marks.empty();
    withFaint += !again.plot.Pixels.Faint.IsEmpty();
    // The picture's file is in it.
    if (seed != 35) continue;
    std::filesystem::remove(folder / "plot.bmp");
    EXPECT_TRUE(BytesOf(again) == bytes);
    EXPECT_TRUE(Do(again, test::QuietDesktop(), ReloadStep{}).IsDone());
    EXPECT_TRUE(PixelsOf(again.plot.Pixels) == PixelsOf(test::PictureForRandomUser()));
  }
  EXPECT_GT(withEdit, 3);
  EXPECT_GT(withMarks, 3);
  EXPECT_GT(withFaint, 3);
}

TEST_F(ProjectTest, AndRecipesAndDataAreTheSameInEveryLanguage) {
  const auto written = [&](unsigned seed, Translator translator) {
    SetTranslator(translator);
    test::RandomUser user(seed, folder / "plot.bmp", folder / "saved.dat");
    for (int i = 0; i < 60; ++i) user.DoSomething();
    EndDrag(user.ws);
    std::string all = BytesOf(user.ws) + RecipeText(user.ws, folder.Path());
    all += DataFileText("title", user.ws.store, user.ws.formats, false);
    SetTranslator(nullptr);
    return all;
  };
  for (unsigned seed = 1; seed <= 12; ++seed)
    EXPECT_TRUE(
        written(seed, nullptr) ==
        written(seed, [](const char* text, long long) { return "\u00bf" + std::string(text); }))
        << "seed " << seed;
}

TEST_F(ProjectTest, KeepsAPastedPictureAndOneWhoseFileHasChanged) {
  Workspace ws;
  StartReplay(ws);
  TakeInHand(ws, test::QuietDesktop(), test::PictureForRandomUser(), "Pasted Plot");
  const auto expectKept = [&](const char* file) {
    const std::string bytes = BytesOf(ws);
    EXPECT_NE(ZipReader(bytes, 100).Find(file), nullptr);
    Workspace again = Opened(bytes);
    EXPECT_EQ(Read(bytes).PictureFault, "");
    EXPECT_TRUE(PixelsOf(again.plot.Pixels) == PixelsOf(ws.plot.Pixels));
    EXPECT_EQ(again.window.Caption, ws.window.Caption);
    EXPECT_TRUE(BytesOf(again) == bytes);
  };
  expectKept("picture/original.png");
  Do(ws, test::QuietDesktop(), ResetStep{});
  KeepPictureUsable(ws);
  expectKept("picture/original.png");
  Do(ws, test::QuietDesktop(), BlackWhiteStep{});
  expectKept("picture/base.png");
  Do(ws, test::QuietDesktop(), OpenStep{.Path = folder / "plot.bmp"});
  expectKept("picture/original.bmp");
  std::ofstream(folder / "plot.bmp", std::ios::app) << "x";
  expectKept("picture/base.png");
}

TEST_F(ProjectTest, KeepsTheColoursOfAnInkAloneAndPointsThatWaitForAxes) {
  const Desktop desktop = test::QuietDesktop();
  test::ColourPlot drawn;
  drawn.Curve([](double u) { return 0.7 - 0.2 * u; }, {.Thickness = 2}, 0xff1f77b4);
  drawn.Curve([](double u) { return 0.2 + 0.3 * u; }, {.Thickness = 2}, 0xffd62728);
  SavePicture(folder / "colours.bmp", kBmpFormat, 0, drawn.Picture);
  for (const bool isEdited : {false, true}) {
    Workspace ws;
    StartReplay(ws);
    OpenPicture(ws, desktop, folder / "colours.bmp");
    if (isEdited) Do(ws, desktop, ImageToolStep{PictureTool::Soften, 3});
    const std::vector<std::uint32_t> colours = PixelsOf(ws.plot.Pixels);
    ASSERT_GT(Do(ws, desktop, ReadAllStep{}).Points, 400);
    ASSERT_TRUE(Do(ws, desktop, InkStep{0xd6, 0x27, 0x28}).IsDone());
    EndDrag(ws);
    const std::string bytes = BytesOf(ws);
    EXPECT_EQ(bytes.find("picture/colours.png") != bytes.npos, isEdited);
    Workspace again = Opened(bytes);
    EXPECT_TRUE(BytesOf(again) == bytes);
    EXPECT_EQ(CountWaiting(again.store), ws.store.CaptureCount);
    EXPECT_TRUE(Do(again, desktop, InkStep{0x1f, 0x77, 0xb4}).IsDone());
    EXPECT_FALSE(PixelsOf(again.plot.Pixels) == PixelsOf(ws.plot.Pixels));
    EXPECT_TRUE(Do(again, desktop, ShowColoursStep{}).IsDone());
    EXPECT_TRUE(PixelsOf(again.plot.Pixels) == colours);
  }
}

TEST_F(ProjectTest, IsOneStepForUndo) {
  const std::string bytes = SmallProject();
  for (unsigned seed = 1; seed <= 15 && !HasFailure(); ++seed) {
    SCOPED_TRACE(seed);
    History history;
    bool begun = false;
    test::RandomUser user(seed, folder / "plot.bmp", folder / "saved.dat", [&](Workspace& ws) {
      if (!std::exchange(begun, true)) history.Begin(ws);
      history.Commit(ws);
    });
    Workspace& ws = user.ws;
    for (int i = 0; i < 20; ++i) user.DoSomething();
    EndDrag(ws);
    history.Commit(ws);
    // Options are no part of the document.
    const auto state = [&] {
      std::string text = ws.window.Caption;
      const std::vector<KeptPart> parts = PartsOf(Keep(ws));
      for (std::size_t i = 1; i < parts.size(); ++i) text += parts[i].Name + parts[i].Text;
      return std::pair(text, PixelsOf(ws.plot.Pixels));
    };
    const auto before = state();
    PutProject(ws, test::QuietDesktop(), Read(bytes));
    const auto after = state();
    history.Commit(ws);
    EXPECT_EQ(ws.undoNames.Undo, "Open project");
    EXPECT_TRUE(history.Undo(ws));
    EXPECT_TRUE(state() == before);
    EXPECT_TRUE(history.Redo(ws));
    EXPECT_TRUE(state() == after);
    while (history.Undo(ws)) continue;
    while (history.Redo(ws)) continue;
    EXPECT_TRUE(state() == after);
  }
}

TEST_F(ProjectTest, IsToldOnceWhereItCannotBeWrittenAndLeavesTheOldOne) {
  test::RandomUser user(5, folder / "plot.bmp", folder / "saved.dat");
  Workspace& ws = user.ws;
  Do(ws, test::QuietDesktop(), ModeStep{Mode::Graphize});
  Do(ws, test::QuietDesktop(), PointStep{30, 40});
  const auto save = [&](const std::filesystem::path& file, const char* message) {
    test::ScriptedDesktop desktop;
    desktop.ExpectFile(file);
    if (message != nullptr) desktop.ExpectMessage(message);
    SaveProject(ws, desktop);
  };
  save(folder / "no folder" / "a.graphize", "Cannot save the project \"a.graphize\".");
  EXPECT_FALSE(ws.project.IsOf(ws.recipe) || UnsavedCurves(ws.curves, ws.store).empty());
  save(folder / "a.graphize", nullptr);
  EXPECT_TRUE(UnsavedCurves(ws.curves, ws.store).empty());
  EXPECT_TRUE(ws.project.IsOf(ws.recipe));
  const std::string bytes = ReadProjectFile(folder / "a.graphize");
  // The picture's file has gone: kept as it is shown, and said.
  std::filesystem::remove(folder / "plot.bmp");
  std::filesystem::permissions(folder / "a.graphize", std::filesystem::perms::owner_read);
  save(folder / "a.graphize", "Cannot save the project");
  EXPECT_TRUE(ReadProjectFile(folder / "a.graphize") == bytes);
  save(folder / "b.graphize", nullptr);
  EXPECT_NE(ws.status.Status.find("without the picture's file"), std::string::npos);
  EXPECT_NE(ReadProjectFile(folder / "b.graphize"), bytes);
}

TEST_F(ProjectTest, IsAskedAboutWhereTheDocumentIsAnother) {
  test::RandomUser user(5, folder / "plot.bmp", folder / "saved.dat");
  Workspace& ws = user.ws;
  const auto step = [&](Step what) { Do(ws, test::QuietDesktop(), std::move(what)); };
  const auto leaves = [&](std::optional<Answer> answer) {
    test::ScriptedDesktop desktop;
    if (answer) desktop.ExpectMessage("save the project", *answer);
    return MayLeave(ws, desktop);
  };
  step(ClearDataStep{});
  step(DrawStep{{3, {{9, 9}}}});
  EXPECT_TRUE(leaves(std::nullopt)) << "there is no project";
  const std::filesystem::path file = folder / "a.graphize";
  {
    test::ScriptedDesktop desktop;
    desktop.ExpectFile(file);
    SaveProject(ws, desktop);
  }
  step(RefreshStep{});
  EXPECT_TRUE(leaves(std::nullopt));
  const Step kChanges[] = {EraseStep{{3, {{9, 9}}}}, BlockStep{20, 20, 4}, RedefineStep{2},
                           RenameCurveStep{"other"}};
  for (const Step& change : kChanges) {
    if (Is<EraseStep>(change)) step(ModeStep{Mode::DrawErase});
    if (Is<BlockStep>(change)) step(ModeStep{Mode::BlockTest});
    if (Is<RedefineStep>(change)) step(ModeStep{Mode::AxisDef});
    step(change);
    EXPECT_FALSE(leaves(Answer::Cancel)) << change.index();
    EXPECT_TRUE(leaves(Answer::No));
    EXPECT_TRUE(leaves(Answer::Yes));
    EXPECT_TRUE(leaves(std::nullopt)) << "it is saved";
  }
  EXPECT_EQ(Opened(ReadProjectFile(file)).curves.Curves.front().Name, "other");
}

/// What reading gives: the project again, or a reason in words.
enum class Came { Whole, WithoutPicture, Refused };
Came ComesOf(const std::string& bytes, const std::string& whole) {
  try {
    ProjectContent project = Read(bytes);
    if (!project.PictureFault.empty()) return Came::WithoutPicture;
    Workspace ws;
    StartReplay(ws);
    PutProject(ws, test::QuietDesktop(), std::move(project));
    EXPECT_TRUE(BytesOf(ws) == whole) << "something else was read";
    return Came::Whole;
  } catch (const RunTimeError& error) {
    EXPECT_GT(std::string(error.what()).size(), 15u);
    return Came::Refused;
  }
}

TEST_F(ProjectTest, IsRefusedInWordsWhenItIsCutOrDamaged) {
  const std::string whole = SmallProject();
  for (std::size_t size = 0; size < whole.size(); size += 1 + size / 400)
    EXPECT_EQ(ComesOf(whole.substr(0, size), whole), Came::Refused) << size;
  std::mt19937 random(1);
  int withoutPicture = 0, refused = 0;
  for (std::size_t at = 0; at < whole.size(); at += 1 + random() % (whole.size() / 700)) {
    std::string damaged = whole;
    damaged[at] = static_cast<char>(damaged[at] ^ (1 << random() % 8));
    const Came came = ComesOf(damaged, whole);
    withoutPicture += came == Came::WithoutPicture;
    refused += came == Came::Refused;
  }
  EXPECT_GT(withoutPicture, 100);
  EXPECT_GT(refused, 100);
}

/// The archive with one of its files replaced, and all checksums right.
std::string With(const std::string& whole, const std::string& name, const std::string& from,
                 const std::string& to) {
  const ZipReader zip(whole, 100);
  std::vector<std::string> texts;
  for (const ZipReader::Entry& entry : zip.Entries()) {
    texts.push_back(zip.Read(entry, whole.size()));
    if (entry.Name != name) continue;
    const std::size_t at = texts.back().find(from);
    EXPECT_NE(at, std::string::npos) << from;
    if (at != std::string::npos) texts.back().replace(at, from.size(), to);
  }
  std::vector<ZipMember> members;
  for (std::size_t i = 0; i < texts.size(); ++i)
    members.push_back({zip.Entries()[i].Name, texts[i]});
  return ZipBytes(members);
}

TEST_F(ProjectTest, RefusesWhatCannotBe) {
  const std::string whole = SmallProject();
  EXPECT_EQ(ComesOf(With(whole, "", "", ""), whole), Came::Whole);
  const std::tuple<const char*, const char*, const char*, const char*> kCases[] = {
      {"project.json", "\"version\": 1", "\"version\": 7", "of version 7, from a newer program"},
      {"project.json", "\"width\": ", "\"width\": 99999", "picture.width is no whole number"},
      {"project.json", "\"next_id\": ", "\"next_id\": 99999999", "next_id is no whole number"},
      {"project.json", "\"active_curve\": ", "\"active_curve\": 9", "active_curve"},
      {"project.json", "\"x_log\": ", "\"x_log\": 1, \"x\": ", "x_log is neither true nor false"},
      {"project.json", "\"snap\": \"", "\"snap\": \"?", "snap cannot be"},
      {"project.json", "{", "[", "no JSON object"},
      {"project.json", "{", "{\"a\":[[[[[[[[[[[[[[[[[[[[", "project.json"},
      {"curves/1.csv", "\n", "\n0,,,1,1\n", "line "},
      {"curves/1.csv", "\n", "\n1,x,1,1,1\n", "a column is no number"},
      {"curves/1.csv", "\n", "\n1,1,1,nan,1\n", "line 2: a value is no number"},
      {"project.json", "\"x_axis_length\": ", "\"x_axis_length\": 9", "axes cannot be"},
      {"project.json", "\"sin_angle\": ", "\"sin_angle\": 0.5, \"was\": ", "axes cannot be"},
      {"steps.txt", "mode ", "walk ", "there is no step \"walk\""},
      {"mimetype", "graphize", "graphite", "no project of this program"}};
  for (const auto& [file, from, to, reason] : kCases) {
    try {
      Read(With(whole, file, from, to));
      ADD_FAILURE() << "taken: " << to;
    } catch (const RunTimeError& error) {
      EXPECT_NE(std::string(error.what()).find(reason), std::string::npos) << error.what();
    }
  }
  const ProjectContent other = Read(With(whole, "picture/original.bmp", "BM", "BM "));
  EXPECT_NE(other.PictureFault.find("checksum"), std::string::npos);
  EXPECT_EQ(other.Picture.Width(), other.Kept.Width);
  EXPECT_EQ(other.Kept.Picture.Bytes, nullptr);
  const ProjectContent sound = Read(With(whole, "picture/base.png", "IDAT", "IDAX"));
  EXPECT_NE(sound.PictureFault, "");
  EXPECT_NE(sound.Kept.Picture.Bytes, nullptr) << "the picture as it was opened stays";
}

/// What a user does next.
void GoOn(Workspace& ws) {
  const Desktop desktop = test::QuietDesktop();
  History history;
  history.Begin(ws);
  const auto step = [&](Step toDo) {
    Do(ws, desktop, std::move(toDo));
    history.Commit(ws);
  };
  step(ModeStep{Mode::Graphize});
  step(PointStep{30, 40});
  step(SortStep{});
  step(ClearRowsStep{1, 2});
  step(UndoListStep{});
  step(UndoEditStep{});
  step(RefreshStep{});
  for (const Curve& curve : std::vector<Curve>(ws.curves.Curves)) step(SelectCurveStep{curve.Name});
  ShowExport(ws, desktop);
  while (history.Undo(ws)) continue;
}

TEST_F(ProjectTest, CanBeWorkedOnWhateverItSaysWhenItIsTaken) {
  const std::string whole = SmallProject();
  const ZipReader zip(whole, 100);
  std::mt19937 random(2);
  constexpr std::string_view kDigits = "0123456789-.e,\n\"truefals{}[]#";
  int taken = 0;
  for (int i = 0; i < 1500; ++i) {
    const ZipReader::Entry& entry = zip.Entries()[1 + random() % (zip.Entries().size() - 1)];
    std::string text = zip.Read(entry, whole.size());
    if (entry.Name.starts_with("picture/original") || text.empty()) continue;
    for (unsigned changes = 1 + random() % 2; changes > 0; --changes)
      text[random() % text.size()] = kDigits[random() % kDigits.size()];
    try {
      Workspace ws = Opened(With(whole, entry.Name, zip.Read(entry, whole.size()), text));
      ++taken;
      GoOn(ws);
    } catch (const RunTimeError&) {
      // Refused in words.
    }
  }
  EXPECT_GT(taken, 150);
}

TEST_F(ProjectTest, IsReadAndPackedAgainByOthers) {
  const std::string whole = SmallProject();
  std::ofstream(folder / "plot.graphize", std::ios::binary) << whole;
  std::string help = test::BytesOf(GRAPHIZE_SOURCE_DIR "/help/graphize.html");
  help = help.substr(help.find("<pre id=\"python\">") + 17);
  std::ofstream(folder / "read.py") << help.substr(0, help.find("</pre>")) << R"(
print(len(points), points[0]["x"])
again = zipfile.ZipFile("again.graphize", "w", zipfile.ZIP_DEFLATED)
for name in project.namelist(): again.writestr(name, project.read(name))
again.close()
)";
  const std::string run = "cd '" + folder.Path().string() + "' && python3 read.py > told.txt";
  if (std::system("command -v python3 > /dev/null") != 0) GTEST_SKIP() << "there is no python3";
  ASSERT_EQ(std::system(run.c_str()), 0);
  const PointStore store = *Read(whole).Kept.Curves.front().Points;
  EXPECT_EQ(test::BytesOf(folder / "told.txt"),
            std::to_string(store.CaptureCount) + " " + ShortestText(store.CaptureX[1]) + "\n");
  EXPECT_EQ(ComesOf(ReadProjectFile(folder / "again.graphize"), whole), Came::Whole);
}

}  // namespace
}  // namespace graphize
