// The window FRM_OtherPictures: pages of one layout, one by one and all together.

#include <QAbstractButton>
#include <QProcess>
#include <QTimer>
#include <QTreeWidget>
#include <algorithm>
#include <chrono>
#include <cstddef>
#include <fstream>
#include <sstream>

#include "app/window_driver.h"
#include "batch/batch.h"
#include "codecs/file_format.h"
#include "codecs/picbuf.h"
#include "support/recorder_page.h"

namespace graphize::test {
namespace {

using State = OtherPicture::State;

class OtherPictures : public WindowTest {
 protected:
  std::filesystem::path Page(int number, const char* ending = ".tif") const {
    return Folder() / ("page" + std::to_string(number) + ending);
  }
  /// A calibrated page 0 whose curve was read is open, and the window is, too.
  void ShowOnFirstPage() {
    SavePicture(Page(0), kTifFormat, 0, RecorderPage(0));
    std::ostringstream out, err;
    const std::vector<std::string> words = {"digitize",
                                            Page(0).string(),
                                            "--origin=90,420:0,-1",
                                            "--x-axis=570,420:12",
                                            "--y-axis=90,60:1",
                                            "--read=96,226",
                                            "-o",
                                            Page(0, ".graphize").string()};
    ASSERT_EQ(RunBatch(words, {out, err}), 0) << err.str();
    OpenFirstPage();
  }
  void OpenFirstPage() {
    Start();
    EXPECT_FALSE(IsEnabled("MNU_FILE_OtherPictures"));
    Window().OpenWhenShown({Page(0, ".graphize")});
    Until([this] { return State().store.ListCount > 300; }, "the calibrated page is there");
    ChooseForm("MNU_FILE_OtherPictures", "FRM_OtherPictures");
  }
  void Add(int page, const Raster& picture) {
    SavePicture(Page(page), kTifFormat, 0, picture);
    const std::size_t before = State().otherPictures.Pictures.size();
    OnFileDialog(Page(page));
    Press("BTN_Add");
    Until([&] { return State().otherPictures.Pictures.size() == before + 1; }, "it is in the list");
  }
  void Press(const char* button) { ClickControl(Find<QAbstractButton>(button)); }
  void UntilAllAreDone() {
    Until(
        [this] {
          const auto& form = State().otherPictures;
          return !form.IsRunning &&
                 std::ranges::none_of(form.Pictures, [](const OtherPicture& picture) {
                   return picture.Is == State::Waiting;
                 });
        },
        "all pictures are done");
  }
  const OtherPicture& At(std::size_t i) const { return State().otherPictures.Pictures.at(i); }
  QString Cell(int row, int column) const {
    return Find<QTreeWidget>("LST_Pictures")->topLevelItem(row)->text(column);
  }
  bool HasIcon(int row) const {
    return !Find<QTreeWidget>("LST_Pictures")->topLevelItem(row)->icon(0).isNull();
  }
  /// Its thumbnail's pixels that are a point.
  std::ptrdiff_t PointsOn(std::size_t i) const {
    const Raster& thumbnail = *At(i).Thumbnail;
    return std::count(thumbnail.Pixels(), thumbnail.Pixels() + thumbnail.PixelCount(), 0xffd02020u);
  }
};

TEST_F(OtherPictures, AreDoneSteppedThroughAndMended) {
  ShowOnFirstPage();
  Add(1, RecorderPage(1, SlipOf(1)));
  Add(2, RecorderPage(2, SlipOf(2), 100));
  EXPECT_FALSE(Find<QAbstractButton>("BTN_Open")->isEnabled());
  Press("BTN_Start");
  UntilAllAreDone();
  EXPECT_EQ(At(0).Is, State::Done) << At(0).Reason;
  EXPECT_EQ(At(1).Is, State::Refused) << At(1).Reason;
  EXPECT_EQ(Cell(0, 1), "done");
  EXPECT_GT(Cell(0, 2).toInt(), 300);
  EXPECT_EQ(Cell(1, 1), "refused");
  EXPECT_FALSE(Cell(1, 4).isEmpty());
  EXPECT_TRUE(HasIcon(1));
  EXPECT_TRUE(std::filesystem::exists(Page(1, ".graphize")));
  EXPECT_FALSE(std::filesystem::exists(Page(2, ".graphize")));
  Press("BTN_Next");
  EXPECT_EQ(State().otherPictures.Selected, 1);
  // The first one is opened with its axes and points, mended and saved.
  auto* list = Find<QTreeWidget>("LST_Pictures");
  MoveTo(list->viewport(), list->visualItemRect(list->topLevelItem(0)).center());
  Xdo({"click", "1"});
  Until([this] { return State().otherPictures.Selected == 0; }, "it is selected");
  Press("BTN_Open");
  UntilFormIsClosed();
  Until([this] { return State().project.File == Page(1, ".graphize"); }, "its project is open");
  EXPECT_TRUE(State().calibration.IsComplete());
  EXPECT_EQ(State().store.ListCount, At(0).Points);
  for (int row = 1; row <= State().store.ListCount; row += 50)
    EXPECT_NEAR(State().store.ListY[row], RecordedCurve(1, State().store.ListX[row]), 0.01) << row;
  ChooseMenu("MNU_DATA_SwapXY");
  std::filesystem::remove(Page(1, ".graphize"));
  OnFileDialog(Page(1, ".graphize"));
  Find<QAction>("MNU_FILE_SaveProject")->trigger();
  Until([this] { return State().projectsSaved == 1; }, "it is saved");
  ChooseForm("MNU_FILE_OtherPictures", "FRM_OtherPictures");
  EXPECT_EQ(At(0).Is, State::Mended);
  EXPECT_EQ(Cell(0, 1), "mended");
  EXPECT_EQ(Cell(1, 1), "refused");
  Xdo({"key", "Escape"});
  UntilFormIsClosed();
}

/// A page with a word more above its Y axis, as a factor stands there.
Raster PageWithFactor(int page) {
  Raster picture = RecorderPage(page);
  for (int y = 0; y < 14; ++y)
    for (int x = 0; x < 36; ++x) picture.Row(30 + y)[80 + x] = picture.Row(53 + y)[44 + x];
  return picture;
}

TEST_F(OtherPictures, ComeBackInTheNextRunAsTheyWereLeft) {
  ShowOnFirstPage();
  Add(10, RecorderPage(10, SlipOf(10), 100));
  Add(3, PageWithFactor(3));
  Add(4, RecorderPage(4));
  Add(5, PageWithFactor(5));
  Press("BTN_Start");
  UntilAllAreDone();
  const auto states = [this] {
    std::vector<OtherPicture::State> all;
    for (const OtherPicture& picture : State().otherPictures.Pictures) all.push_back(picture.Is);
    return all;
  };
  ASSERT_EQ(states(), (std::vector{State::Refused, State::Doubtful, State::Done, State::Doubtful}));
  Find<QTreeWidget>("LST_Pictures")->setFocus();
  Press("BTN_Next");
  EXPECT_EQ(State().otherPictures.Selected, 0) << "nobody has looked at the first";
  Press("BTN_Next");
  EXPECT_EQ(State().otherPictures.Selected, 1);
  const std::string remark = At(1).Reason;
  EXPECT_TRUE(TextOf("LBL_Hint").contains(QString::fromStdString(remark))) << remark;
  OpenForm()->resize(OpenForm()->size() + QSize(40, 30));
  const QSize size = OpenForm()->size();
  Xdo({"key", "Escape"});
  UntilFormIsClosed();
  ChooseForm("MNU_FILE_OtherPictures", "FRM_OtherPictures");
  EXPECT_EQ(OpenForm()->size(), size);
  Abandon();

  // In the meantime one is copied, one changed, one goes, and there is one more.
  const auto project = [this](int page) { return Page(page, ".graphize"); };
  const auto hour = std::chrono::hours(1);
  std::filesystem::last_write_time(project(3), std::filesystem::last_write_time(project(3)) + hour);
  std::filesystem::copy_file(project(0), project(5),
                             std::filesystem::copy_options::overwrite_existing);
  std::filesystem::remove(project(4));
  std::filesystem::copy_file(project(0), project(6));
  std::ofstream(Page(10)) << "II";
  OpenFirstPage();
  Add(6, RecorderPage(6));
  EXPECT_EQ(states(), (std::vector{State::Refused, State::Doubtful, State::Waiting, State::Mended,
                                   State::There}));
  EXPECT_EQ(At(1).Reason, remark);
  EXPECT_TRUE(At(1).Worst.has_value());
  EXPECT_EQ(Cell(0, 1), "refused");
  Until(
      [this] {
        return std::ranges::all_of(State().otherPictures.Pictures, [](const OtherPicture& picture) {
          return picture.Thumbnail != nullptr;
        });
      },
      "the thumbnails are back");
  for (int row = 1; row <= 4; ++row) EXPECT_TRUE(HasIcon(row)) << row;
  EXPECT_FALSE(HasIcon(0)) << "its picture cannot be read";
  EXPECT_EQ(At(0).Is, State::Refused);
  EXPECT_EQ(PointsOn(2), 0) << "it waits";
  for (const std::size_t done : {1, 3, 4}) EXPECT_GT(PointsOn(done), 30) << done;
  Press("BTN_Start");
  UntilAllAreDone();
  EXPECT_EQ(At(2).Is, State::Done);
  EXPECT_GT(PointsOn(2), 30);
  Xdo({"key", "Escape"});
  UntilFormIsClosed();
  Abandon();

  // What cannot be read is told and stays.
  const auto list = Page(0, ".tif.pages");
  std::ofstream(list) << "{";
  OnMessage("cannot be read", QMessageBox::Ok);
  OpenFirstPage();
  EXPECT_TRUE(State().otherPictures.Pictures.empty());
  Add(7, RecorderPage(7));
  EXPECT_EQ(std::filesystem::file_size(list), 1u);
  EXPECT_TRUE(TextOf("LBL_Hint").contains("not kept"));
}

TEST_F(OtherPictures, AreStoppedAndGoneOnWith) {
  ShowOnFirstPage();
  constexpr int kPages = 24;  // more than are done before the key comes
  for (int page = 1; page <= kPages; ++page) Add(page, RecorderPage(page, SlipOf(page)));
  // Escape is pressed while it runs, and held.
  QTimer watch;
  bool isHeld = false;
  QObject::connect(&watch, &QTimer::timeout, [&] {
    if (!isHeld && State().otherPictures.IsRunning)
      isHeld = QProcess::startDetached("xdotool", {"keydown", "Escape"});
  });
  watch.start(5);
  Press("BTN_Start");
  Until([&] { return isHeld && !State().otherPictures.IsRunning; }, "it has stopped");
  Xdo({"keyup", "Escape"});
  EXPECT_TRUE(FormIsOpen());
  EXPECT_EQ(At(kPages - 1).Is, State::Waiting);
  Press("BTN_Start");
  UntilAllAreDone();
  for (int page = 1; page <= kPages; ++page)
    EXPECT_TRUE(std::filesystem::exists(Page(page, ".graphize"))) << page;
  Xdo({"key", "Escape"});
  UntilFormIsClosed();
}

}  // namespace
}  // namespace graphize::test
