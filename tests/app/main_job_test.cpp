// The main job with the real window: open, calibrate, capture, save.

#include <QAction>
#include <QBuffer>
#include <QClipboard>
#include <QDropEvent>
#include <QMenu>
#include <QMimeData>
#include <QProcess>
#include <QTabWidget>
#include <QThread>
#include <array>
#include <fstream>
#include <sstream>

#include "app/window_driver.h"
#include "batch/batch.h"
#include "codecs/file_format.h"
#include "codecs/picbuf.h"
#include "support/picture_bytes.h"
#include "support/temporary_folder.h"
#include "support/true_data.h"
#include "widgets/show.h"

namespace graphize::test {
namespace {

using MainJob = WindowTest;

TEST_F(MainJob, OpenCalibrateCaptureAndSaveAgreesWithTheTrueData) {
  std::ofstream(SettingsFile()) << "[Snaps]\nSnapMode=2\nSnapDistance=6\n";
  Start();
  EXPECT_EQ(Window().windowTitle(), "Graphize");
  EXPECT_FALSE(IsEnabled("axisdef") || IsEnabled("graphize") || IsEnabled("save"));
  OpenSample("pendulum.bmp");
  EXPECT_EQ(Window().windowTitle(), "Graphize - pendulum.bmp (640x480)");
  EXPECT_EQ(TextOf("sizex"), "W=640");
  EXPECT_FALSE(IsEnabled("graphize"));
  CalibratePendulum();
  EXPECT_TRUE(IsEnabled("graphize"));

  // Columns and the row of the curve there, a few pixels off: the snapping finds the ink.
  const auto truth = ReadPoints(kSamples / "pendulum.csv", ',', 1);
  const auto rowAt = [&](int column) {
    return 430 - 195 * (TrueY(truth, (column - 70) * 12.0 / 540) + 1);
  };
  for (const int column : {120, 240, 333, 481, 560})
    ClickPlot(column, static_cast<int>(rowAt(column)) + (column % 2 == 0 ? 3 : -3));
  EXPECT_EQ(State().store.CaptureCount, 5);
  EXPECT_EQ(TextOf("npts"), "5");
  EXPECT_FALSE(ValueOf("TXT_Line_4").isEmpty());
  EXPECT_TRUE(Find<QLabel>("pmX")->isVisible()) << "capturing shows the error";

  OnPrompt("measured by hand");
  OnFileDialog(Folder() / "Result.dat");
  ClickTool("save");
  Until([this] { return exists(Folder() / "Result.dat"); }, "the file is written");
  Settle();
  const auto saved = ReadPoints(Folder() / "Result.dat", '\t', 1);
  ASSERT_EQ(saved.size(), 5u);
  const double errorX = 12.0 / 540, errorY = 2.0 / 390;
  for (const TruePoint& point : saved) {
    // One pixel in Y, and what the slope makes of one pixel in X.
    const double slope =
        std::abs(TrueY(truth, point.X + errorX) - TrueY(truth, point.X - errorX)) / 2;
    EXPECT_NEAR(point.Y, TrueY(truth, point.X), errorY + slope) << point.X;
  }
  std::ifstream file(Folder() / "Result.dat");
  std::string title;
  std::getline(file, title);
  EXPECT_EQ(title, "measured by hand\r");

  ClickPlot(400, 200);
  OnMessage("Do you want to save graphized points ?", QMessageBox::Cancel);
  ChooseMenu("MNU_FILE_Exit");
  EXPECT_TRUE(Window().isVisible());
  OnMessage("Do you want to save graphized points ?", QMessageBox::No);
  ChooseMenu("MNU_FILE_Exit");
  EXPECT_FALSE(Window().isVisible());
}

TEST_F(MainJob, FilesAreDroppedAndPasted) {
  Start();
  QList<QUrl> files;
  for (const char* name : {"a b.bmp", "c.bmp", "d.bmp", "e.bmp"}) {
    SavePicture(Folder() / name, kBmpFormat, 0, Raster::Filled(60, 40, kWhitePixel));
    files << QUrl::fromLocalFile(QString::fromStdString((Folder() / name).string()));
  }
  const auto isOpen = [this](const QUrl& file) {
    Until([&] { return file.toLocalFile().toStdString() == State().picture.ChosenPath; }, "open");
    Until([this] { return !State().commandRuns; }, "done");
  };
  QMimeData dropped;
  dropped.setUrls(files);
  QDragEnterEvent enter({9, 9}, Qt::CopyAction, &dropped, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(&Window(), &enter);
  EXPECT_TRUE(enter.isAccepted());
  OnMessage("Not opened: \"c.bmp\", \"d.bmp\", \"e.bmp\".", QMessageBox::Ok);
  QDropEvent drop({9, 9}, Qt::CopyAction, &dropped, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(&Window(), &drop);
  isOpen(files[0]);

  // What file managers copy, each in its own way.
  const std::pair<const char*, QByteArray> copied[] = {
      {"text/uri-list", files[1].toEncoded() + "\r\n"},
      {"x-special/gnome-copied-files", "copy\n" + files[2].toEncoded()},
      {"text/plain", "x-special/nautilus-clipboard\ncut\n" + files[3].toEncoded() + "\n"}};
  for (int i = 0; i < 3; ++i) {
    auto* data = new QMimeData;
    data->setData(QLatin1String(copied[i].first), copied[i].second);
    QGuiApplication::clipboard()->setMimeData(data);
    ClickTool("paste");
    isOpen(files[i + 1]);
  }

  // A picture as the clipboard brings it, of more than 128 MB.
  QBuffer large;
  QImage blank(6000, 6000, QImage::Format_RGB32);
  blank.fill(Qt::white);
  ASSERT_TRUE(blank.save(&large, "PNG"));
  EXPECT_EQ(QImage::fromData(large.data()).width(), 6000);
}

TEST_F(MainJob, WhatIsPastedCanDoNoHarm) {
  Start();
  OpenSample("pendulum.bmp");
  CalibratePendulum();
  ClickPlot(300, 200);
  const auto pixels = PixelsOf(State().plot.Pixels);
  const Raster page = Raster::Filled(60, 40, 0xff204060u);
  SavePicture(Folder() / "sound.png", kPngFormat, 0, page);
  const std::string sound = BytesOf(Folder() / "sound.png");
  const auto paste = [this](const char* type, const std::string& bytes) {
    auto* data = new QMimeData;
    data->setData(QLatin1String(type), QByteArray::fromStdString(bytes));
    // So the toolkit marks whatever it takes for a picture.
    data->setData(QStringLiteral("application/x-qt-image"), "there is one");
    QGuiApplication::clipboard()->setMimeData(data);
    ClickTool("paste");
    Until([this] { return !State().commandRuns; }, "done");
    Settle();
  };
  std::string huge = MakeBmp({}, page);
  huge.replace(18, 8, LowFirst(60'000, 4) + LowFirst(60'000, 4));
  const std::pair<const char*, std::string> hostile[] = {
      {"image/png", sound.substr(0, sound.size() - 20)},
      {"image/png", "not a picture"},
      {"image/jpeg", "push graphic-context\nimage over 0,0 0,0 '/etc/hostname'\n"},
      {"image/bmp", huge},
      {"image/gif", GifOnScreen().substr(0, 12)}};
  for (const auto& [type, bytes] : hostile) {
    OnMessage("The picture in the clipboard is damaged or too large.", QMessageBox::Ok);
    paste(type, bytes);
    EXPECT_EQ(Window().windowTitle(), "Graphize - pendulum.bmp (640x480)");
    EXPECT_TRUE(PixelsOf(State().plot.Pixels) == pixels) << type;
    EXPECT_EQ(State().store.CaptureCount, 1);
  }
  // Offered by another program in none of the types that are decoded apart.
  class OfAnother : public QMimeData {};
  auto* data = new OfAnother;
  data->setImageData(QImage(10, 10, QImage::Format_RGB32));
  QGuiApplication::clipboard()->setMimeData(data);
  OnMessage("The picture in the clipboard is in no type that is pasted", QMessageBox::Ok);
  ClickTool("paste");
  EXPECT_TRUE(PixelsOf(State().plot.Pixels) == pixels);

  OnMessage("Reset Axis Definisions ?", QMessageBox::No);
  paste("image/png", sound);
  EXPECT_TRUE(PixelsOf(State().plot.Pixels) == PixelsOf(page));
}

TEST_F(MainJob, TheKeyboardMovesThePointerAndEnterCaptures) {
  Start();
  OpenSample("pendulum.bmp");
  CalibratePendulum();
  MoveOverPlot(300, 200);
  const auto key = [this](const char* name) {
    Xdo({QStringLiteral("key"), QString::fromLatin1(name)});
  };
  struct Case {
    const char* key;
    int x, y;
  };
  int x = 300, y = 200;
  for (const auto& [name, dx, dy] :
       {Case{"Right", 1, 0}, Case{"ctrl+Right", 10, 0}, Case{"shift+Right", 1, 0},
        Case{"Left", -1, 0}, Case{"Up", 0, -1}, Case{"ctrl+Down", 0, 10}, Case{"Prior", 1, -1},
        Case{"Next", 1, 1}, Case{"End", -1, 1}, Case{"Home", -1, -1}}) {
    key(name);
    x += dx;
    y += dy;
    EXPECT_EQ(State().readOut.PlotX, x) << name;
    EXPECT_EQ(State().readOut.PlotY, y) << name;
  }
  key("Return");
  EXPECT_EQ(State().store.CaptureCount, 1);
  EXPECT_EQ(State().store.LastPixelX, x);
  const int factor = State().zoom.Factor;
  key("greater");
  EXPECT_EQ(State().zoom.Factor, factor + 1);
  key("less");
  key("less");
  EXPECT_EQ(State().zoom.Factor, factor - 1);

  // Off the picture the keys are the controls' own.
  ClickControl(Find<QLineEdit>("XValue"));
  key("Right");
  EXPECT_EQ(State().readOut.PlotX, x);
}

TEST_F(MainJob, AClickCountsOnlyWhereItsReleaseIsSeen) {
  Start();
  Window().resize(700, 500);
  Settle();
  OpenSample("pendulum.bmp");
  const auto dragFrom = [this](int x, int y, QWidget* to) {
    MoveOverPlot(x, y);
    Xdo({"mousedown", "1"});
    MoveTo(to, to->rect().center());
    Xdo({"mouseup", "1"});
  };
  const std::array<const char*, 3> elsewhere = {"VpScroll", "npts", "FRM_Zoom"};
  ClickTool("axisdef");
  TypeInto("TXT_XPos_0", "0");
  TypeInto("TXT_YPos_0", "-1");
  for (const char* name : elsewhere) dragFrom(60, 60, Find<QWidget>(name));
  EXPECT_FALSE(State().calibration.AnyDefined());
  Xdo({"mousemove_relative", "--", "-500", "-100"});
  MoveOverPlot(70, 100);
  Xdo({"click", "--repeat", "2", "--delay", "20", "1"});
  EXPECT_EQ(State().calibration.CurrentRow, 1) << "a double click defines one row";

  // Clicked into, a box is typed over, and a second click places the caret; Tab selects, too.
  const auto type = [this](const char* box, const QStringList& keys) {
    Xdo({"type", "5"});
    const QString over = ValueOf(box);
    Xdo(keys);
    Xdo({"type", "7"});
    return over + ' ' + ValueOf(box);
  };
  ClickControl(Find<QWidget>("CMD_ReDefine_0"));
  ClickControl(Find<QWidget>("TXT_XPos_0"));
  EXPECT_EQ(type("TXT_XPos_0", {"key", "Home"}), "5 75");
  ClickControl(Find<QWidget>("TXT_YPos_0"));
  EXPECT_EQ(type("TXT_YPos_0", {"key", "shift+Tab", "Tab"}), "5 7");
  ClickControl(Find<QWidget>("TXT_XPos_0"));
  Settle();
  QThread::msleep(static_cast<unsigned long>(QApplication::doubleClickInterval()) + 50);
  ClickControl(Find<QWidget>("TXT_XPos_0"));
  EXPECT_FALSE(Find<QLineEdit>("TXT_XPos_0")->hasSelectedText());

  TypeInto("TXT_XPos_0", "0");
  TypeInto("TXT_YPos_0", "-1");
  ClickPlot(70, 100);
  TypeInto("TXT_XPos_1", "12");
  ClickPlot(300, 100);
  TypeInto("TXT_YPos_2", "1");
  ClickPlot(70, 40);
  ClickTool("graphize");
  for (const char* name : elsewhere) {
    dragFrom(60, 60, Find<QWidget>(name));
    EXPECT_EQ(State().store.CaptureCount, 0) << name;
  }
  ClickPlot(60, 60);
  EXPECT_EQ(State().store.CaptureCount, 1);
}

TEST_F(MainJob, TheListSelectsAndClears) {
  Start();
  OpenSample("pendulum.bmp");
  CalibratePendulum();
  for (int i = 0; i < 7; ++i) ClickPlot(200 + 20 * i, 200);
  EXPECT_EQ(State().store.Page.ScrollMaximum, 3);
  ClickControl(Find<QLineEdit>("TXT_Line_0"));
  Xdo({QStringLiteral("keydown"), QStringLiteral("shift")});
  ClickControl(Find<QLineEdit>("TXT_Line_1"));
  Xdo({QStringLiteral("keyup"), QStringLiteral("shift")});
  EXPECT_EQ(State().store.Page.SelectionStart, 3);
  EXPECT_EQ(State().store.Page.SelectionEnd, 4);
  ChooseMenu("MNU_EDIT_ClearSel");
  EXPECT_EQ(State().store.ListCount, 5);
  EXPECT_EQ(TextOf("npts"), "5");
  OnMessage("Delete all graphized X,Y data ?", QMessageBox::Yes);
  ClickTool("delete");
  EXPECT_EQ(State().store.ListCount, 0);
  EXPECT_FALSE(IsEnabled("delete") || IsEnabled("MNU_FileSave"));
}

TEST_F(MainJob, ASavedRecipeGivesTheSavedFileAgain) {
  Start();
  // A way to points with a bit of everything.
  OpenSample("pendulum.bmp");
  CalibratePendulum();
  ClickPlot(76, 60);
  ClickTool("blocktest");
  ClickPlot(400, 235);
  ClickTool("drawerase");
  ClickPlot(300, 100, 3);
  ClickTool("graphize");
  ClickPlot(77, 58, 3);
  ChooseMenu("MNU_DATA_SORT_Dec");
  ChooseForm("MNU_OPT_Settings", "frmOptions");
  Find<QTabWidget>("Tabs")->setCurrentIndex(5);
  ClickControl(Find<QWidget>("CHK_Exp_0"));
  ClickControl(Find<QWidget>("CHK_Delimiter_3"));
  ClickControl(Find<QWidget>("cmdOK"));
  UntilFormIsClosed();
  ChooseMenu("MNU_FileSaveErrors");
  OnPrompt("A title");
  OnFileDialog(Folder() / "window.dat");
  ChooseMenu("MNU_FileSave");
  OnFileDialog(Folder() / "pendulum.recipe");
  ChooseMenu("MNU_FileSaveRecipe");
  Until([this] { return exists(Folder() / "pendulum.recipe"); }, "the recipe is written");

  std::ostringstream out, err;
  EXPECT_EQ(RunBatch({"replay", Folder() / "pendulum.recipe", "-o", "-"}, {out, err}), 0)
      << err.str();
  EXPECT_GT(out.str().size(), 5000u);
  EXPECT_EQ(out.str(), BytesOf(Folder() / "window.dat"));
}

TEST_F(MainJob, AProjectIsSavedAndOpenedByItsName) {
  Start();
  OpenSample("pendulum.bmp");
  CalibratePendulum();
  ClickPlot(76, 60);
  ClickPlot(77, 58, 3);
  Settle();
  const int points = State().store.CaptureCount;
  const QString first = ValueOf("TXT_Line_0"), title = Window().windowTitle();
  ASSERT_GT(points, 500);
  const std::filesystem::path file = Folder() / "work.graphize";
  OnFileDialogProposing("pendulum.graphize");
  ChooseMenu("MNU_FILE_SaveProject");
  OnFileDialog(file);
  ChooseMenu("MNU_FILE_SaveProject");
  Until([&] { return exists(file); }, "the project is written");
  Settle();
  EXPECT_EQ(Window().windowTitle(), title + " - work.graphize");

  // A double click: the file's name on the command line.
  ClickPlot(400, 200);
  OnMessage("Do you want to save graphized points ?", QMessageBox::Cancel);
  Window().OpenWhenShown({file});
  Settle();
  EXPECT_EQ(State().store.CaptureCount, points + 1);
  OnMessage("Do you want to save graphized points ?", QMessageBox::No);
  Window().OpenWhenShown({file});
  Until([&] { return State().store.CaptureCount == points; }, "the project is open");
  Settle();
  EXPECT_EQ(ValueOf("TXT_Line_0"), first);
  EXPECT_EQ(TextOf("npts"), QString::number(points));
  EXPECT_TRUE(IsEnabled("save") && IsEnabled("graphize"));
  EXPECT_EQ(Find<QAction>("MNU_EDIT_Undo")->text(), "Undo Open project");
  ChooseMenu("MNU_EDIT_Undo");
  EXPECT_EQ(State().store.CaptureCount, points + 1);
  ChooseMenu("MNU_EDIT_Redo");
  EXPECT_EQ(State().store.CaptureCount, points);

  // Another that is none; then the last one by the menu.
  std::ofstream(Folder() / "none.graphize") << "PK";
  OnFileDialog(Folder() / "none.graphize");
  OnMessage("Cannot open the project", QMessageBox::Ok);
  ChooseMenu("MNU_FILE_OpenProject");
  Settle();
  EXPECT_EQ(State().store.CaptureCount, points);
  OnFileDialog(file);
  ChooseMenu("MNU_FILE_OpenProject");
  Settle();
  EXPECT_EQ(State().store.CaptureCount, points);
  Find<QMenu>("MNU_File")->popup({});
  EXPECT_EQ(Find<QAction>("MNU_FILE_Recent_0")->text(), "&0 work.graphize");
  EXPECT_EQ(Find<QAction>("MNU_FILE_Recent_1")->text(), "&1 pendulum.bmp");
  Find<QMenu>("MNU_File")->close();
  // What is in a project is saved.
  ChooseMenu("MNU_FILE_Exit");
  EXPECT_FALSE(Window().isVisible());

  // The program itself, as a file manager starts it.
  QProcess program;
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert("XDG_CONFIG_HOME", ToQString(Folder().string()));
  environment.insert("XDG_STATE_HOME", ToQString(Folder().string()));
  program.setProcessEnvironment(environment);
  program.start(GRAPHIZE_PROGRAM, {ToQString(file.string())});
  Xdo({"search", "--sync", "--onlyvisible", "--name",
       "^Graphize - pendulum.bmp \\(640x480\\) - work.graphize$"});
  program.terminate();
  program.waitForFinished();
}

}  // namespace
}  // namespace graphize::test
