// Points corrected on the picture: dragged, nudged, banded, deleted, undone and recalculated.

#include <QAction>
#include <QImage>
#include <QScreen>

#include "app/window_driver.h"
#include "support/points.h"

namespace graphize::test {
namespace {

class EditPointsWindow : public WindowTest {
 protected:
  /// Four points on the pendulum's picture; the switch is on.
  void Capture() {
    Start();
    OpenSample("pendulum.bmp");
    CalibratePendulum();
    for (const auto& [column, row] : {std::pair{160, 300}, {250, 120}, {340, 235}, {520, 80}})
      ClickPlot(column, row);
    captured_ = Rows();
    ASSERT_EQ(captured_.size(), 4u);
  }
  void EditPoints() {
    ChooseMenu("MNU_EDIT_EditPoints");
    ASSERT_EQ(State().mode, Mode::EditPoints);
    EXPECT_TRUE(Find<QAction>("MNU_EDIT_EditPoints")->isChecked());
    EXPECT_FALSE(Find<QAction>("graphize")->isChecked());
  }

  void Key(const char* name) { Xdo({QStringLiteral("key"), QString::fromLatin1(name)}); }
  void Button(const char* upOrDown) { Xdo({QString::fromLatin1(upOrDown), QStringLiteral("1")}); }
  void Drag(QPoint from, QPoint to) {
    MoveOverPlot(from.x(), from.y());
    Button("mousedown");
    MoveOverPlot((from.x() + to.x()) / 2, (from.y() + to.y()) / 2);
    MoveOverPlot(to.x(), to.y());
  }
  RowList Rows() const { return ListRows(State().store); }
  void ExpectUndoneBy(const char* name, const RowList& before) {
    const RowList now = Rows();
    EXPECT_EQ(Find<QAction>("MNU_EDIT_Undo")->text().toStdString(), std::string("Undo ") + name);
    Key("ctrl+z");
    EXPECT_EQ(Rows(), before);
    EXPECT_EQ(CapturedRows(State().store), before);
    Key("ctrl+shift+z");
    EXPECT_EQ(Rows(), now);
    EXPECT_EQ(CapturedRows(State().store), now);
  }
  /// Whether something is painted there that is not the picture's own.
  bool IsMarked(int x, int y) {
    Settle();
    const QPoint at = Find<QWidget>("Plot")->mapToGlobal(QPoint(x, y));
    const QImage seen = Window().screen()->grabWindow(0, at.x(), at.y(), 1, 1).toImage();
    return seen.pixelColor(0, 0).rgb() != PixelOfColour(GetPixel(State().plot, x, y));
  }
  float XAt(int column) const { return static_cast<float>(column - 70) * 12 / 540; }

  RowList captured_;
};

TEST_F(EditPointsWindow, DragsNudgesAndDeletesWithUndoAfterEach) {
  Capture();
  ASSERT_FALSE(HasFatalFailure());
  // Straight after the capture, without the mode.
  Key("alt+Right");
  Key("alt+Down");
  EXPECT_NEAR(Rows()[3].X, XAt(521), 1e-4);
  EXPECT_EQ(State().store.Places[4], (Place{521, 81}));
  ExpectUndoneBy("Move (1 point)", captured_);
  Key("ctrl+z");

  EditPoints();
  MoveOverPlot(252, 121);
  EXPECT_EQ(State().store.Page.PointedRow, 2);
  EXPECT_TRUE(IsMarked(250 - 6, 120 - 6)) << "the frame of the nearest";
  Drag({250, 120}, {300, 150});
  EXPECT_NEAR(ValueOf("XValue").toDouble(), XAt(300), 1e-3) << "the read-out follows the point";
  Key("Escape");
  Button("mouseup");
  EXPECT_EQ(Rows(), captured_);
  Drag({250, 120}, {300, 150});
  Button("mouseup");
  EXPECT_EQ(State().store.Places[2], (Place{300, 150}));
  EXPECT_NEAR(Rows()[1].X, XAt(300), 1e-4);
  ExpectUndoneBy("Move (1 point)", captured_);
  const RowList dragged = Rows();

  // A band takes two, keys move them together and Shift adds the third.
  Drag({140, 215}, {360, 320});
  EXPECT_TRUE(IsMarked(250, 215) || IsMarked(251, 215)) << "the band's edge";
  Button("mouseup");
  EXPECT_EQ(State().store.Page.Points, (PointSet{1, 3}));
  for (const char* key : {"Right", "Right", "shift+Down"}) Key(key);
  EXPECT_EQ(State().store.Places[1], (Place{162, 300.1f}));
  EXPECT_EQ(State().store.Places[3], (Place{342, 235.1f}));
  ExpectUndoneBy("Move (2 points)", dragged);
  Key("ctrl+z");
  Drag({140, 215}, {360, 320});
  Button("mouseup");
  Xdo({QStringLiteral("keydown"), QStringLiteral("shift")});
  ClickPlot(300, 150);
  Xdo({QStringLiteral("keyup"), QStringLiteral("shift")});
  Key("Delete");
  EXPECT_EQ(Rows(), RowList{dragged[3]});
  ExpectUndoneBy("Delete (3 points)", dragged);
  Key("ctrl+a");
  Key("Delete");
  EXPECT_EQ(TextOf("npts"), "0");
  EXPECT_FALSE(IsEnabled("save"));
  Key("ctrl+z");
  Key("ctrl+z");
  EXPECT_EQ(Rows(), dragged);

  ClickTool("blocktest");
  EXPECT_FALSE(Find<QAction>("MNU_EDIT_EditPoints")->isChecked()) << "any mode button ends it";
  ClickPlot(300, 150);
  EXPECT_EQ(State().blockers.Count, 1);
}

TEST_F(EditPointsWindow, ALineOfTheListShowsItsPointAndAMendedAxisRenewsTheValues) {
  Capture();
  ASSERT_FALSE(HasFatalFailure());
  EXPECT_FALSE(IsMarked(250 - 4, 120));
  ClickControl(Find<QWidget>("TXT_Line_1"));
  EXPECT_TRUE(IsMarked(250 - 4, 120));
  EXPECT_FALSE(IsMarked(160 - 4, 300));
  EditPoints();
  EXPECT_EQ(State().store.Page.Points, PointSet{2});
  ClickControl(Find<QWidget>("TXT_Line_0"));
  EXPECT_TRUE(IsMarked(160 - 4, 300));
  MoveOverPlot(400, 300);
  Key("Up");
  EXPECT_EQ(State().store.Places[1], (Place{160, 299}));
  Key("ctrl+z");

  OnMessage("already", QMessageBox::Ok);
  ChooseMenu("MNU_EDIT_Recalculate");
  ClickTool("axisdef");
  ClickControl(Find<QWidget>("CMD_ReDefine_1"));
  TypeInto("TXT_XPos_1", "24");
  ClickPlot(610, 430);
  TypeInto("TXT_YPos_2", "1");
  ClickPlot(70, 40);
  EXPECT_EQ(Rows(), captured_);
  EXPECT_TRUE(TextOf("hint").contains("Recalculate"));
  ChooseMenu("MNU_EDIT_Recalculate");
  for (std::size_t i = 0; i < captured_.size(); ++i) {
    EXPECT_NEAR(Rows()[i].X, 2 * captured_[i].X, 1e-4);
    EXPECT_EQ(Rows()[i].Y, captured_[i].Y);
  }
  EXPECT_EQ(TextOf("status"), "4 points recalculated");
  ExpectUndoneBy("Recalculate Points", captured_);
}

}  // namespace
}  // namespace graphize::test
