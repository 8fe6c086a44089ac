#include "support/random_user.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "commands/capture_commands.h"
#include "commands/data_commands.h"
#include "commands/extraction_commands.h"
#include "commands/image_tools_commands.h"
#include "commands/options_commands.h"
#include "commands/picture_commands.h"
#include "commands/plot_mouse.h"
#include "commands/point_edit_commands.h"
#include "commands/replay.h"
#include "commands/run_command.h"
#include "commands/save_points.h"
#include "commands/toolbar.h"
#include "commands/view_commands.h"
#include "data/list_edit.h"
#include "support/plot_drawing.h"
#include "support/quiet_desktop.h"

namespace graphize::test {

Raster PictureForRandomUser() {
  PlotDrawing drawing(200, 150, 20, 10, 180, 130);
  drawing.Frame({});
  drawing.LinesAtU({0.25, 0.5, 0.75}, {});
  drawing.LinesAtV({0.25, 0.5, 0.75}, {.Dash = 3, .Gap = 2});
  drawing.Curve([](double u) { return 0.5 + 0.4 * std::sin(7 * u); }, {.Thickness = 2});
  Raster picture = drawing.Picture();
  for (int x = 0; x < 20; ++x) picture.Row(3)[x] = 0xff808080;  // asks about black and white
  for (const auto& [left, top] : {std::pair(40, 18), {90, 116}, {120, 19}, {150, 112}})
    for (int y = top; y < top + 7; ++y) std::fill_n(picture.Row(y) + left, 7, kBlackPixel);
  return picture;
}

RandomUser::RandomUser(unsigned seed, const std::filesystem::path& picture,
                       const std::filesystem::path& saved,
                       std::function<void(Workspace&)> afterCommand)
    : random_(seed), picture_(picture), afterCommand_(std::move(afterCommand)) {
  StartReplay(ws);
  desktop_ = test::QuietDesktop();
  desktop_.ShowMessage = [this](const Message& message) {
    return message.Buttons == MessageButtons::Ok ? Answer::Ok
           : Chance(2)                           ? Answer::Yes
                                                 : Answer::No;
  };
  desktop_.EscapeHeld = [this] { return escapeIn_ >= 0 && --escapeIn_ < 0; };
  desktop_.Prompt = [this](const TextPrompt&) {
    return std::string(Chance(2) ? "A \"title\" \\ of # this" : "");
  };
  desktop_.ChooseFile = [saved](const FileQuestion& question) {
    return question.ForSaving ? std::optional(saved) : std::nullopt;
  };
  afterCommand_(ws);
  Do([&] { OpenPicture(ws, desktop_, picture_); });
  ResizeView(ws, 90, 80);
  Calibrate();
}

void RandomUser::DoSomething() {
  escapeIn_ = Chance(6) ? Pick(40) : -1;
  switch (Pick(32)) {
    case 0:
      return Mode("graphize");
    case 1:
      return Mode("graphize");
    case 2:
      return Mode("blocktest");
    case 3:
      return Mode("drawerase");
    case 4:
      return Mode("gridbuster");
    case 5:
      return Press(kRightButton, 0, 40);
    case 6:
      return Press(kRightButton, 0, 40);
    case 7:
      return Press(kLeftButton, 0, 0);
    case 8:
      return Press(kLeftButton, 0, 6);
    case 9:
      return Press(kLeftButton, kShiftKey, 0);
    case 10:
      return Press(kRightButton, kShiftKey, 0);
    case 11:
      return Key("refresh");
    case 12:
      return Key("undo");
    case 13:
      return Do([&] {
        if (CanUndoErase(ws)) graphize::Do(ws, desktop_, UndoEditStep{});
      });
    case 14:
      return ChangeOptions();
    case 15:
      return ChangeOptions();
    case 16:
      return Do(SortStep{Chance(2) ? SortOrder::Ascending : SortOrder::Descending});
    case 17:
      return Do(SwapStep{});
    case 18:
      return Do(UndoListStep{});
    case 19:
      return Do(CurveLengthStep{});
    case 20:
      return ReSampleList();
    case 21:
      return IntegrateSome();
    case 22:
      return ClearSome();
    case 23:
      return ChangeCurves();
    case 24:
    case 25:
      return EditPoints();
    case 26:
      return Do(RecalculateStep{});
    case 27:
    case 28:
      return ReadSomething();
    case 29:
      return ChangeReferences();
    default:
      return Chance(4) ? Rarely() : ClickWithoutPress();
  }
}

void RandomUser::ReadSomething() {
  escapeIn_ = -1;  // when it would stop, the clock decides
  const auto tolerance = [&] { return Chance(3) ? 0.5f + 0.25f * static_cast<float>(Pick(7)) : 1; };
  switch (Pick(12)) {
    case 0: {
      SymbolsStep step{Chance(2) ? 43.0f : X(), Chance(2) ? 21.0f : Y()};
      step.Centre = Chance(2) ? SymbolCentre::Mass : SymbolCentre::Box;
      step.Tolerance = tolerance();
      if (Chance(2)) step.LeftOut = PointSet({static_cast<PointId>(1 + Pick(4))});
      return Do(step);
    }
    case 1:
      return Do(Chance(2) ? ReadAllStep{} : ReadAllStep{{{1 + Pick(2), Chance(2) ? "all" : ""}}});
    case 2: {
      const int level = Chance(2) ? 0 : 0x80;
      return Do(InkStep{level, level, level, tolerance()});
    }
    case 3:
      return Do(ShowColoursStep{});
    default:
      break;
  }
  using Kind = ReadingDensity::Kind;
  constexpr Kind kKinds[] = {Kind::Each, Kind::Every, Kind::Bends};
  ReadStep step{X(), Y(), {kKinds[Pick(3)], 1 + Pick(9), {}}};
  step.Tolerance = tolerance();
  if (Chance(4)) step.Through.push_back({static_cast<int>(X()), static_cast<int>(Y())});
  Do(step);
}

void RandomUser::ChangeReferences() {
  for (int i = Pick(4); i > 0; --i)
    Do(ReferenceStep{X(), Y() + 0.3f, Chance(3) ? "" : std::to_string(1 + Pick(9)),
                     Chance(3) ? "" : "1" + std::to_string(Pick(9)) + " mm"});
  if (Chance(3)) Do(RemoveReferenceStep{1 + Pick(4)});
  Do(RefineStep{!Chance(3)});
}

void RandomUser::EditPoints() {
  Mode("editpoints");
  const int row = 1 + Pick(std::max<int>(ws.store.ListCount, 1));
  const PointId id = ws.store.ListCount > 0 ? ws.store.ListId[row] : 0;
  switch (Pick(6)) {
    case 0:
    case 1:
      if (!HasPlace(ws.store, id)) return;
      Drag(std::round(ws.store.Places[id].Column), std::round(ws.store.Places[id].Row),
           Chance(3) ? kShiftKey : 0);
      break;
    case 2:
      Drag(X(), Y(), Chance(3) ? kCtrlKey : 0);  // a band
      break;
    case 3:
      Do([&] { PressListLine(ws, Pick(kPageLines), Chance(3)); });
      break;
    case 4:
      Do([&] { SelectAllPoints(ws); });
      break;
    default:
      if (Chance(3)) Do([&] { DeleteSelectedPoints(ws, desktop_); });
  }
  const float step = Chance(2) ? 1.0f : 0.1f;
  for (int i = Pick(4); i > 0; --i)
    Do([&] { NudgePoints(ws, desktop_, static_cast<float>(Pick(3) - 1) * step, step); });
}

void RandomUser::Drag(float x, float y, int shift) {
  Do([&] { Plot_MouseMove(ws, desktop_, 0, 0, x, y); });
  Do([&] { Plot_MouseDown(ws, desktop_, kLeftButton, shift, x, y); });
  for (int i = Pick(4); i > 0; --i)
    Do([&] { Plot_MouseMove(ws, desktop_, kLeftButton, 0, x + X() / 3, y - Y() / 3); });
  if (!Chance(5)) Do([&] { Plot_MouseUp(ws, desktop_, kLeftButton, 0, x, y); });
}

void RandomUser::ChangeCurves() {
  const auto name = [&] { return Chance(4) ? "" : std::string("A \"b\", ") + char('c' + Pick(5)); };
  switch (Pick(7)) {
    case 0:
    case 1:
      return Do(NewCurveStep{name()});
    case 2:
      return Do(RenameCurveStep{name()});
    case 3:
      return Do(DeleteCurveStep{});
    case 4:
      return Do(ShowCurveStep{Chance(2)});
    default:
      const int curve = Pick(static_cast<int>(ws.curves.Curves.size()));
      return Do(SelectCurveStep{ws.curves.Curves[curve].Name});
  }
}

void RandomUser::PressPen() {
  Mode("drawerase");
  Do([&] { Plot_MouseDown(ws, desktop_, kLeftButton, 0, 30, 40); });
  Do([&] { Plot_MouseMove(ws, desktop_, kLeftButton, 0, 60, 70); });
}

void RandomUser::Do(const std::function<void()>& command) {
  RunCommand(ws, desktop_, command);
  afterCommand_(ws);
}

void RandomUser::Do(const Step& step) {
  Do([&] { graphize::Do(ws, desktop_, step); });
}

void RandomUser::Key(const char* key) {
  Do([&] {
    if (CanPress(ws, key)) Toolbar_ButtonClick(ws, desktop_, key);
  });
}

void RandomUser::Press(int button, int shift, int drag) {
  const float x = X(), y = Y();
  Do([&] { Plot_MouseMove(ws, desktop_, 0, 0, x, y); });
  Do([&] { Plot_MouseDown(ws, desktop_, button, shift, x, y); });
  for (int i = 1; drag > 0 && i <= 3; ++i)
    Do([&] {
      Plot_MouseMove(ws, desktop_, button, 0, x + static_cast<float>(i * drag),
                     y + static_cast<float>(i * drag) / 2);
    });
  if (!Chance(9)) Do([&] { Plot_MouseUp(ws, desktop_, button, 0, x, y); });
  // A release outside of the picture is no click on it.
  const bool inside = ws.readOut.PlotX < ws.plot.Width() && ws.readOut.PlotY < ws.plot.Height();
  if (button == kLeftButton && inside) Do([&] { Plot_Click(ws, desktop_); });
}

void RandomUser::ClickWithoutPress() {
  Do([&] { Plot_MouseMove(ws, desktop_, 0, 0, X(), Y()); });
  Do([&] { Plot_Click(ws, desktop_); });
}

void RandomUser::ChangeOptions() {
  Settings& settings = ws.settings;
  settings.Trace = static_cast<std::int16_t>(Pick(3));
  settings.SnapMode = static_cast<std::int16_t>(Pick(4));
  settings.SnapDistance = static_cast<std::int16_t>(Pick(12));
  settings.TraceColor = Chance(3) ? 0 : Pick(16);
  settings.XDecimals = static_cast<std::int16_t>(Pick(8));
  settings.YExp = Chance(2);
  settings.DecimalPoint = Chance(2);
  settings.Delimiter = static_cast<std::int16_t>(Pick(4));
  ws.tracer.Xrange = Chance(4) ? "" : std::to_string(Pick(5)) + (Chance(4) ? ".6 px" : "");
  ws.tracer.Yrange = std::to_string(Pick(5));
  ws.tracer.Above.Checked = Chance(2);
  ws.tracer.Below.Checked = Chance(3);
  ws.blockSize = Pick(9);
  ws.commands.SaveErrors = Chance(2);
  ws.commands.PixelErrors = ws.commands.SaveErrors && Chance(3);
  Do([&] { FormatChanged(ws); });
  Do([&] { SwitchXLog(ws, desktop_, Chance(4)); });
  Do([&] { SwitchYLog(ws, desktop_, Chance(3)); });
}

void RandomUser::ReSampleList() {
  Do([&] {
    if (ws.store.CaptureCount < 2) return;
    ShowSample(ws, desktop_);
    ws.sample.Steps = std::to_string(2 + Pick(20));
    if (Chance(2)) StepsTyped(ws.sample);
    if (Chance(3)) ws.sample.dXBox = "0.25";
    ws.sample.SampleXLog = Chance(4);
    graphize::Do(ws, desktop_, StepOfForm(ws.sample));
  });
}

void RandomUser::IntegrateSome() {
  Do([&] {
    if (ws.store.CaptureCount < 3) return;
    ShowIntegrate(ws);
    MoveLowLimit(ws.integrate, ws.store, 1 + Pick(ws.store.CaptureCount));
    graphize::Do(
        ws, desktop_,
        IntegrateStep{IntegrateStep::Limits{ws.integrate.LowLimit, ws.integrate.HighLimit}, {}});
  });
}

void RandomUser::ClearSome() {
  Do([&] {
    PressListLine(ws, Pick(kPageLines), false);
    PressListLine(ws, Pick(kPageLines), true);
    if (CanClearSelected(ws.store)) graphize::Do(ws, desktop_, SelectedRows(ws.store));
  });
}

void RandomUser::UseImageTool() {
  if (Chance(4)) return Do(UndoImageToolStep{});
  // The axes' points stay in the picture, and it does not grow without end.
  static constexpr std::pair<PictureTool, int> kTools[] = {
      {PictureTool::Blur, 0},      {PictureTool::EdgeDetect, 7}, {PictureTool::Negate, 0},
      {PictureTool::Sharpen, 3},   {PictureTool::Soften, 9},     {PictureTool::Resize, 120},
      {PictureTool::Stretch, 115}, {PictureTool::Rotate, -3},    {PictureTool::Rotate, 180}};
  const auto& [tool, amount] = kTools[Pick(ws.plot.Width() < 300 ? 9 : 5)];
  Do(ImageToolStep{tool, amount});
}

void RandomUser::Rarely() {
  switch (Pick(9)) {
    case 7:
      return Do([&] {
        if (CanSavePoints(ws)) SavePoints(ws, desktop_);
      });
    case 8:  // the question of the reset comes before the choice, which is none
      Do([&] { OpenImage(ws, desktop_); });
      return Calibrate();
    case 5:
    case 6:
      return UseImageTool();
    case 0:
      return Key("delete");
    case 1:
      return Do(ReloadStep{.Ask = true});
    case 2:
      return Do(ClearBlockersStep{});
    case 3:
      Do(RedefineStep{Pick(3)});
      for (int i = Pick(3); i > 0; --i) ReadSomething();  // what is read waits for the axes
      return Calibrate();
    default:
      Do([&] { OpenPicture(ws, desktop_, picture_); });
      return Calibrate();
  }
}

void RandomUser::Calibrate() {
  Key("axisdef");
  while (ws.calibration.CurrentRow < 2 || !ws.calibration.Defined[2]) {
    const int row = ws.calibration.CurrentRow;
    ws.axisPanel.Rows[row].XText = row == 1 ? "10" : Chance(5) ? "0" : "1";  // 0 has no logarithm
    ws.axisPanel.Rows[row].YText = row == 2 ? "1e2 " : "1";
    Do([&] {
      Plot_MouseMove(ws, desktop_, 0, 0, row == 1 ? 180.f : 20.f, row == 2 ? 10.f : 130.f);
    });
    Do([&] { Plot_Click(ws, desktop_); });
  }
  Mode("graphize");
}

}  // namespace graphize::test
