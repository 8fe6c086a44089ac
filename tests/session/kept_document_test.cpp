// What is kept of a document brings all of it back.

#include "session/kept_document.h"

#include <gtest/gtest.h>

#include "codecs/picbuf.h"
#include "session/document.h"
#include "session/kept_text.h"
#include "support/quiet_desktop.h"
#include "support/random_user.h"
#include "support/temporary_folder.h"
#include "workspace/plot_mouse.h"
#include "workspace/replay.h"
#include "workspace/step_text.h"

namespace graphize {
namespace {

/// What session/document.h lists, without what differs between sessions and what lies unread behind
/// blockers and rows.
struct Compared {
  RecordCopies Records;
  ArrayCopies Arrays;
  std::vector<std::string> Steps;

  explicit Compared(Workspace& ws) {
    const auto blockers = ws.blockers;
    std::fill(ws.blockers.Blockers.begin() + 1 + ws.blockers.Count, ws.blockers.Blockers.end(),
              Blocker());
    const int number = std::exchange(ws.recipe.Number, 0);
    const auto folder = std::exchange(ws.picture.Folder, {});
    Records = RecordsOf(ws);
    Arrays = ArraysOf(ws.store);
    std::apply([](auto&... array) { (TrimZeros(array), ...); }, Arrays);
    ForgetUnusedPlaces();
    ws.blockers = blockers;
    ws.recipe.Number = number;
    ws.picture.Folder = folder;
    for (const Step& step : ws.recipe.Steps) Steps.push_back(TextOf(step));
  }

  /// Of points that are in no row.
  void ForgetUnusedPlaces() {
    auto& [captureX, captureY, captureIds, listX, listY, listIds, places] = Arrays;
    for (PointId id = 0; id < places.size(); ++id)
      if (std::ranges::count(captureIds, id) + std::ranges::count(listIds, id) == 0)
        places[id] = {};
    TrimZeros(places);
  }
  template <class T>
  static void TrimZeros(std::vector<T>& array) {
    const T zero{};
    while (!array.empty() && array_change::Same(&array.back(), &zero, 1)) array.pop_back();
  }
  template <class T>
  static bool IsSame(const std::vector<T>& a, const std::vector<T>& b) {
    return a.size() == b.size() && array_change::Same(a.data(), b.data(), a.size());
  }
};

void ExpectSame(const Compared& now, const Compared& expected) {
  ForEachIn<RecordCopies>([&](auto number) {
    EXPECT_TRUE(std::get<number>(now.Records) == std::get<number>(expected.Records))
        << "record " << number;
  });
  ForEachIn<ArrayCopies>([&](auto number) {
    EXPECT_TRUE(Compared::IsSame(std::get<number>(now.Arrays), std::get<number>(expected.Arrays)))
        << "array " << number;
  });
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
      EXPECT_EQ(HasUnsaved(again.store), HasUnsaved(user.ws.store));
      const std::vector<KeptPart> partsAgain = PartsOf(Keep(again));
      ASSERT_EQ(partsAgain.size(), parts.size());
      for (std::size_t part = 0; part < parts.size(); ++part)
        EXPECT_EQ(partsAgain[part].Text, parts[part].Text) << parts[part].Name;
    }
  }
}

}  // namespace
}  // namespace graphize
