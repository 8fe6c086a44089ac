#include "session/project_commands.h"

#include <optional>
#include <string>
#include <utility>

#include "base/numbers.h"
#include "base/run_time_error.h"
#include "base/tokens.h"
#include "base/translation.h"
#include "base/whole_file.h"
#include "commands/ink_check_commands.h"
#include "commands/plot_mouse.h"
#include "commands/shown_picture.h"
#include "commands/start_and_close.h"
#include "raster/plot_image.h"
#include "session/project_file.h"
#include "settings/recent_files.h"

namespace graphize {

namespace {

namespace fs = std::filesystem;

constexpr const char* kFilters = Marked("Graphize Projects (*.graphize)|*.graphize");

/// All that a project holds and closing could lose, but for the points.
std::string WorkText(Workspace& ws) {
  std::string text = std::to_string(ws.plot.IsPresent() ? PictureNumber(ws.plot) : 0);
  const auto add = [&](const std::string& word) { text += " " + word; };
  const AxisCalibration& axes = ws.calibration;
  for (std::size_t i = 0; i < 3; ++i) {
    if (!axes.Defined[i]) continue;
    for (const std::int16_t pixel : {axes.PixelX[i], axes.PixelY[i]}) add(std::to_string(pixel));
    for (const float value : {axes.ValueX[i], axes.ValueY[i]}) add(ShortestText(value));
  }
  for (const bool log : {axes.XLog, axes.YLog}) add(log ? "log" : "linear");
  for (int i = 1; i <= ws.blockers.Count; ++i) {
    const Blocker& blocker = ws.blockers.Blockers[static_cast<std::size_t>(i)];
    for (const int number : {int{blocker.X}, int{blocker.Y}, int{blocker.Size}})
      add(std::to_string(number));
  }
  for (int i = 0; i < static_cast<int>(ws.curves.Curves.size()); ++i) {
    const PointStore& points = PointsOf(ws.curves, ws.store, i);
    add(Quote(ws.curves.Curves[static_cast<std::size_t>(i)].Name));
    add(points.CaptureCount > 0 || points.ListCount > 0 ? "points" : "empty");
  }
  return text;
}

void NoteProject(Workspace& ws, const fs::path& path) {
  ws.project = {path, ws.recipe.Number, WorkText(ws)};
  NoteOpened(ws.opened, path);
}

/// False, after a message, where it was not written.
bool SaveProjectTo(Workspace& ws, const Desktop& desktop, const fs::path& path) {
  ws.status.Status = Tr("Saving Project...");
  ws.window.Hourglass = true;
  desktop.ShowNow();
  std::string fault;
  bool saved = false, hasOriginal = false;
  try {
    NamingTheFile("Cannot save the project \"%1\".", path, [&] {
      const auto bytes = ProjectBytes(ws, desktop);
      if (!bytes) return;
      hasOriginal = HoldsPictureFile(*bytes);
      saved = RunBeside(ShowProgress(ws, desktop), [&](PictureOperation& operation) {
        const auto failure = ReplaceWholeFile(path, *bytes, [&] { return !operation.Stopped; });
        if (failure == std::errc::operation_canceled) return false;
        ThrowSystemError(failure);
        return true;
      });
    });
  } catch (const RunTimeError& error) {
    fault = error.what();
  }
  ws.status.ProgressVisible = false;
  ws.status.Status = saved ? " " : Tr("The project was not saved");
  ws.window.Hourglass = false;
  if (!fault.empty()) Tell(desktop, fault, MessageIcon::Critical);
  if (!saved) return false;
  for (int i = 0; i < static_cast<int>(ws.curves.Curves.size()); ++i)
    NoteSaved(PointsOf(ws.curves, ws.store, i));
  ++ws.projectsSaved;
  NoteProject(ws, path);
  ws.status.Status = Tr("Saved: %1", path.filename().string());
  if (!ws.picture.ChosenPath.empty() && !hasOriginal)
    ws.status.Status =
        Tr("%1, without the picture's file, which is gone or another one by now", ws.status.Status);
  return true;
}

}  // namespace

bool CanSaveProject(const Workspace& ws) {
  return ws.plot.IsPresent();
}

void SaveProject(Workspace& ws, const Desktop& desktop) {
  const bool named = ws.project.IsOf(ws.recipe);
  const std::string stem =
      ws.picture.WithoutFile ? "untitled" : ws.picture.ChosenPath.stem().string();
  const auto path = desktop.ChooseFile(
      {.ForSaving = true,
       .Title = Tr("Save Project As..."),
       .Folder = named ? ws.project.File.parent_path() : ws.picture.Folder,
       .FileName = named ? ws.project.File.filename().string() : stem + kProjectEnding,
       .Filters = Tr(kFilters),
       .DefaultExtension = kProjectEnding + 1,
       .OnlyFilterTypes = true});
  if (path) SaveProjectTo(ws, desktop, *path);
}

bool MayLeave(Workspace& ws, const Desktop& desktop) {
  if (!ws.project.IsOf(ws.recipe) || ws.project.Work == WorkText(ws)) return MayClose(ws, desktop);
  switch (desktop.ShowMessage(
      {.Text =
           Tr("The axes, the picture, blockers or curves are not as they are in the project \"%1\"."
              "\r\n\r\nDo you want to save the project ?",
              ws.project.File.filename().string()),
       .Icon = MessageIcon::Question,
       .Buttons = MessageButtons::YesNoCancel})) {
    case Answer::Yes:
      return SaveProjectTo(ws, desktop, fs::path(ws.project.File));
    case Answer::No:
      return MayClose(ws, desktop);
    default:
      return false;
  }
}

void OpenProject(Workspace& ws, const Desktop& desktop) {
  const auto path = desktop.ChooseFile(
      {.Title = Tr("Open Project"),
       .Folder = ws.project.File.empty() ? ws.picture.Folder : ws.project.File.parent_path(),
       .FileName = "",
       .Filters = Tr(kFilters) + "|" + Tr("All Files") + "|*"});
  if (path) OpenProject(ws, desktop, *path);
}

void OpenProject(Workspace& ws, const Desktop& desktop, const fs::path& path) {
  EndDrag(ws);
  if (!MayLeave(ws, desktop)) return;
  ws.status.Status = Tr("Loading File ...");
  ws.window.Hourglass = true;
  desktop.ShowNow();
  std::optional<ProjectContent> project;
  std::string fault;
  try {
    project = NamingTheFile("Cannot open the project \"%1\".", path, [&] {
      return ReadProject(ReadProjectFile(path), ProjectPicture::Decoded, ShowProgress(ws, desktop));
    });
  } catch (const RunTimeError& error) {
    fault = error.what();
  }
  ws.status.ProgressVisible = false;
  ws.window.Hourglass = false;
  ws.status.Status = " ";
  if (!fault.empty()) return Tell(desktop, fault, MessageIcon::Exclamation);
  if (!project) return;
  if (!project->PictureFault.empty() &&
      desktop.ShowMessage(
          {.Text = Tr("The picture in \"%1\" cannot be used.\r\n%2\r\n\r\nDo you want to "
                      "open the points on an empty page ?",
                      path.filename().string(), project->PictureFault),
           .Icon = MessageIcon::Exclamation,
           .Buttons = MessageButtons::YesNo,
           .DefaultIsNo = true}) != Answer::Yes)
    return;
  PutProject(ws, desktop, std::move(*project));
  ws.picture.Folder = path.parent_path();
  NoteProject(ws, path);
  CheckOpened(ws);
}

void OpenAskedProject(Workspace& ws, const Desktop& desktop) {
  if (const fs::path path = std::exchange(ws.projectAsked, {}); !path.empty())
    OpenProject(ws, desktop, path);
}

}  // namespace graphize
