// The image tools' window, once through.

#include <QGroupBox>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>

#include "app/window_driver.h"
#include "support/picture_bytes.h"

namespace graphize::test {
namespace {

class ImageTools : public WindowTest {
 protected:
  void Choose(int tool) {
    ClickControl(Find<QRadioButton>(qPrintable(QStringLiteral("ToolOption_%1").arg(tool))));
  }
  void Press(const char* button) { ClickControl(Find<QPushButton>(button)); }
  void Key(const char* name) { Xdo({QStringLiteral("key"), QString::fromLatin1(name)}); }

  void ExpectAmount(const QString& caption, const QString& min, const QString& max,
                    const QString& amount, bool enabled) {
    EXPECT_EQ(Find<QGroupBox>("FRM_Amount")->title(), caption);
    EXPECT_EQ(TextOf("LBL_Min"), min);
    EXPECT_EQ(TextOf("LBL_Max"), max);
    EXPECT_EQ(TextOf("LBL_Amount"), amount);
    EXPECT_EQ(Find<QSlider>("ToolAmount")->minimum(), min.toInt());
    EXPECT_EQ(Find<QSlider>("ToolAmount")->maximum(), max.toInt());
    EXPECT_EQ(Find<QSlider>("ToolAmount")->isEnabled(), enabled);
  }
};

TEST_F(ImageTools, ResizeUndoRotateAndReturn) {
  Start();
  EXPECT_FALSE(IsEnabled("MNU_IMAGE_ImageTools"));
  OpenSample("pendulum.bmp");
  CalibratePendulum();
  const int width = State().plot.Width(), height = State().plot.Height();
  const auto before = PixelsOf(State().plot.Pixels);

  ChooseForm("MNU_IMAGE_ImageTools", "FRM_ImageTools");
  ExpectAmount("Amount", "0", "10", "5", false);
  EXPECT_FALSE(Find<QPushButton>("BTN_Undo")->isEnabled());
  Choose(3);
  ExpectAmount("Amount", "0", "10", "5", true);
  Choose(5);
  ExpectAmount("Amount (%)", "0", "300", "150", true);

  Find<QSlider>("ToolAmount")->setFocus();
  Xdo(QStringLiteral("key --repeat 50 --delay 2 Right").split(u' '));
  EXPECT_EQ(TextOf("LBL_Amount"), "200");
  OnMessage("Redefine the axis before graphizing", QMessageBox::Ok);
  Press("Preview");
  EXPECT_EQ(TextOf("status"), "Resize completed");
  EXPECT_EQ(TextOf("sizex"), QStringLiteral("W=%1").arg(2 * width));
  EXPECT_EQ(TextOf("sizey"), QStringLiteral("H=%1").arg(2 * height));
  EXPECT_EQ(Window().windowTitle(),
            QStringLiteral("Graphize - pendulum.bmp (%1x%2)").arg(2 * width).arg(2 * height));
  EXPECT_EQ(Find<QWidget>("Plot")->width(), 2 * width);

  Press("BTN_Undo");
  EXPECT_EQ(TextOf("status"), "Undo completed");
  EXPECT_EQ(TextOf("sizex"), QStringLiteral("W=%1").arg(width));
  EXPECT_TRUE(PixelsOf(State().plot.Pixels) == before);
  EXPECT_FALSE(Find<QPushButton>("BTN_Undo")->isEnabled());

  Choose(7);
  ExpectAmount("Amount (Deg)", "-180", "180", "90", true);
  OnMessage("Redefine the axis before graphizing", QMessageBox::Ok);
  Key("Return");
  EXPECT_EQ(TextOf("sizex"), QStringLiteral("W=%1").arg(height));
  EXPECT_TRUE(Find<QPushButton>("BTN_Undo")->isEnabled());
  EXPECT_TRUE(State().calibration.IsComplete());

  OnMessage("Image Size Changed, You have to redefine the axis before you graphize ",
            QMessageBox::Ok);
  Press("BTN_Accept");
  UntilFormIsClosed();
  EXPECT_FALSE(State().imageTools.UndoCopy);
}

TEST_F(ImageTools, EscapeStopsAToolAndTheNextOneClosesTheWindow) {
  Start();
  OpenSample("pendulum.bmp");
  ChooseForm("MNU_IMAGE_ImageTools", "FRM_ImageTools");
  // Large enough that there is time to stop.
  Choose(5);
  Find<QSlider>("ToolAmount")->setFocus();
  Key("End");
  Press("Preview");
  Press("Preview");
  EXPECT_EQ(TextOf("status"), "Resize completed");
  Choose(7);
  Find<QSlider>("ToolAmount")->setFocus();
  Key("Prior");
  EXPECT_NE(State().imageTools.Amount % 90, 0);

  const auto before = PixelsOf(State().plot.Pixels);
  const QWidget* process = Find<QPushButton>("Preview");
  const QPoint at = process->mapToGlobal(process->rect().center());
  Xdo(QStringLiteral("mousemove %1 %2 click 1 keydown Escape sleep 0.3 keyup Escape")
          .arg(at.x())
          .arg(at.y())
          .split(u' '));
  EXPECT_EQ(TextOf("status"), "Stopped: the picture is as it was");
  EXPECT_TRUE(PixelsOf(State().plot.Pixels) == before);
  ASSERT_TRUE(FormIsOpen());
  EXPECT_TRUE(Find<QSlider>("ToolAmount")->isEnabled());
  EXPECT_TRUE(process->hasFocus());

  Press("BTN_Undo");
  EXPECT_EQ(TextOf("status"), "Undo completed");
  Key("Escape");
  UntilFormIsClosed();
}

}  // namespace
}  // namespace graphize::test
