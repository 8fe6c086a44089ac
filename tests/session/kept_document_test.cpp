// What is kept of a document brings all of it back.

#include "session/kept_document.h"

#include <gtest/gtest.h>

#include "codecs/picbuf.h"
#include "commands/plot_mouse.h"
#include "commands/replay.h"
#include "session/document.h"
#include "session/kept_points.h"
#include "session/kept_text.h"
#include "support/quiet_desktop.h"
#include "support/random_user.h"
#include "support/temporary_folder.h"
#include "workspace/step_text.h"

namespace graphize {
namespace {

template <class T>
bool IsSame(const std::vector<T>& a, const std::vector<T>& b) {
  return a.size() == b.size() && array_change::Same(a.data(), b.data(), a.size());
}

/// The arrays without empty ends, and without the places of points that are in no row.
ArrayCopies TrimmedArrays(PointStore store) {
  ArrayCopies arrays = ArraysOf(store);
  for (PointId id = 0; id < store.Places.size(); ++id)
    if (std::ranges::count(store.CaptureId, id) + std::ranges::count(store.ListId, id) == 0) {
      std::get<6>(arrays)[id] = {};
      if (id < store.Certainties.size()) std::get<7>(arrays)[id] = {};
      if (id < store.Rests.size()) std::get<8>(arrays)[id] = {};
    }
  const auto trim = [](auto& array) {
    const std::remove_reference_t<decltype(array[0])> zero{};
    while (!array.empty() && array_change::Same(&array.back(), &zero, 1)) array.pop_back();
  };
  std::apply([&](auto&... array) { (trim(array), ...); }, arrays);
  return arrays;
}

/// All that session/document.h lists, but for what differs between sessions and what lies unread
/// behind blockers and rows.
struct Compared {
  RecordCopies Records;
  std::vector<ArrayCopies> Arrays;  // of each curve
  std::vector<int> Unsaved;
  std::vector<std::string> Steps;

  explicit Compared(Workspace& ws) {
    const BlockerList blockers = ws.blockers;
    std::fill(ws.blockers.Blockers.begin() + 1 + ws.blockers.Count, ws.blockers.Blockers.end(),
              Blocker());
    const int number = std::exchange(ws.recipe.Number, 0);
    const auto folder = std::exchange(ws.picture.Folder, {});
    const PictureBox colours = std::exchange(ws.colours, nullptr);  // the picture's, as its pixels
    const std::vector<Curve> curves = ws.curves.Curves;
    for (Curve& curve : ws.curves.Curves) curve.Points = nullptr;
    Records = RecordsOf(ws);
    ws.blockers = blockers;
    ws.recipe.Number = number;
    ws.picture.Folder = folder;
    ws.curves.Curves = curves;
    ws.colours = colours;
    for (int i = 0; i < static_cast<int>(curves.size()); ++i)
      Arrays.push_back(TrimmedArrays(PointsOf(ws.curves, ws.store, i)));
    Unsaved = UnsavedCurves(ws.curves, ws.store);
    for (const Step& step : ws.recipe.Steps) Steps.push_back(TextOf(step));
  }
};

void ExpectSame(const Compared& now, const Compared& expected) {
  ForEachIn<RecordCopies>([&](auto number) {
    EXPECT_TRUE(std::get<number>(now.Records) == std::get<number>(expected.Records))
        << "record " << number;
  });
  ASSERT_EQ(now.Arrays.size(), expected.Arrays.size());
  for (std::size_t i = 0; i < now.Arrays.size(); ++i)
    ForEachIn<ArrayCopies>([&](auto number) {
      EXPECT_TRUE(IsSame(std::get<number>(now.Arrays[i]), std::get<number>(expected.Arrays[i])))
          << "curve " << i << ", array " << number;
    });
  EXPECT_EQ(now.Unsaved, expected.Unsaved);
  EXPECT_EQ(now.Steps, expected.Steps);
}

TEST(KeptDocument, BringsBackWhateverTheUserDid) {
  const test::TemporaryFolder folder;
  SavePicture(folder / "plot.bmp", 3, 0, test::PictureForRandomUser());
  for (unsigned seed = 1; seed <= 60 && !::testing::Test::HasFailure(); ++seed) {
    test::RandomUser user(seed, folder / "plot.bmp", folder / "saved.dat");
    for (int i = 0; i < 30; ++i) {
      user.DoSomething();
      if (i % 6 != 0) continue;
      EndDrag(user.ws);
      const std::vector<KeptPart> parts = PartsOf(Keep(user.ws));
      Workspace again;
      StartReplay(again);
      SetPicture(again.plot, user.ws.plot.Pixels.Clone());
      BringBack(again, test::QuietDesktop(), ReadParts(parts));
      SCOPED_TRACE("seed " + std::to_string(seed) + ", command " + std::to_string(i) + "\n" +
                   parts.front().Text);
      ExpectSame(Compared(again), Compared(user.ws));
      const std::vector<KeptPart> partsAgain = PartsOf(Keep(again));
      ASSERT_EQ(partsAgain.size(), parts.size());
      for (std::size_t part = 0; part < parts.size(); ++part)
        EXPECT_EQ(partsAgain[part].Text, parts[part].Text) << parts[part].Name;
    }
  }
}

TEST(KeptPoints, KeepPlacesToTheLastBitAndSingleOnesShort) {
  // 0.1 is another number in double precision, and its text that of the single-precision one.
  const struct {
    double Column;
    const char* Text;
  } cases[] = {{100, "100"},
               {0.1f, "0.1"},
               {12345.6f, "12345.6"},
               {1e-5f, "1e-05"},
               {0.1, "1.0000000000000001e-01"},
               {12345.6, "1.2345600000000000e+04"},
               {1e-5, "1.0000000000000001e-05"},
               {1000.0 / 3, "333.3333333333333"}};
  PointStore store;
  CommandStates commands;
  for (const auto& [column, text] : cases) {
    AddValuePoint(store, commands, test::QuietDesktop(), false, 1, 2);
    SetPlace(store, store.CaptureId[store.CaptureCount], {column, 7});
  }
  const std::string text = CapturedText(store);
  PointStore again;
  again.CaptureCount = store.CaptureCount;
  again.Places.resize(store.Places.size());
  ReadCaptured(again, text);
  for (PointId id = 1; id < store.Places.size(); ++id) {
    const auto& [column, written] = cases[id - 1];
    EXPECT_NE(text.find("\n" + std::to_string(id) + "," + written + ",7,1,2\n"), text.npos) << text;
    EXPECT_EQ(RealPlaceOf(again, id), (RealPlace{column, 7})) << written;
  }
}

}  // namespace
}  // namespace graphize
