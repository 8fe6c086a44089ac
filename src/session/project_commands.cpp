#include "session/project_commands.h"

#include <optional>
#include <string>
#include <utility>

#include "base/run_time_error.h"
#include "base/whole_file.h"
#include "session/project_file.h"
#include "settings/recent_files.h"
#include "workspace/plot_mouse.h"
#include "workspace/session.h"
#include "workspace/shown_picture.h"

namespace graphize {

namespace {

namespace fs = std::filesystem;

constexpr const char* kFilters = "Graphize Projects (*.graphize)|*.graphize";

void NoteProject(Workspace& ws, const fs::path& path) {
  ws.project = {path, ws.recipe.Number};
  NoteOpened(ws.opened, path);
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
       .Title = "Save Project As...",
       .Folder = named ? ws.project.File.parent_path() : ws.picture.Folder,
       .FileName = named ? ws.project.File.filename().string() : stem + kProjectEnding,
       .Filters = kFilters,
       .DefaultExtension = kProjectEnding + 1,
       .OnlyFilterTypes = true});
  if (!path) return;
  ws.status.Status = "Saving Project...";
  ws.window.Hourglass = true;
  desktop.ShowNow();
  std::string fault;
  bool saved = false, hasOriginal = false;
  try {
    NamingTheFile("Cannot save the project", *path, [&] {
      const auto bytes = ProjectBytes(ws, desktop);
      if (!bytes) return;
      ThrowSystemError(ReplaceWholeFile(*path, *bytes));
      saved = true;
      hasOriginal = HoldsPictureFile(*bytes);
    });
  } catch (const RunTimeError& error) {
    fault = error.what();
  }
  ws.status.ProgressVisible = false;
  ws.status.Status = saved ? " " : "The project was not saved";
  ws.window.Hourglass = false;
  if (!fault.empty()) return Tell(desktop, fault, MessageIcon::Critical);
  if (!saved) return;
  for (int i = 0; i < static_cast<int>(ws.curves.Curves.size()); ++i)
    NoteSaved(PointsOf(ws.curves, ws.store, i));
  NoteProject(ws, *path);
  ws.status.Status = "Saved: " + path->filename().string();
  if (!ws.picture.ChosenPath.empty() && !hasOriginal)
    ws.status.Status += ", without the picture's file, which is gone or another one by now";
}

void OpenProject(Workspace& ws, const Desktop& desktop) {
  const auto path = desktop.ChooseFile(
      {.Title = "Open Project",
       .Folder = ws.project.File.empty() ? ws.picture.Folder : ws.project.File.parent_path(),
       .FileName = "",
       .Filters = kFilters + std::string("|All Files|*")});
  if (path) OpenProject(ws, desktop, *path);
}

void OpenProject(Workspace& ws, const Desktop& desktop, const fs::path& path) {
  EndDrag(ws);
  if (!MayClose(ws, desktop)) return;
  ws.status.Status = "Loading File ...";
  ws.window.Hourglass = true;
  desktop.ShowNow();
  std::optional<ProjectContent> project;
  std::string fault;
  try {
    project = NamingTheFile("Cannot open the project", path, [&] {
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
      desktop.ShowMessage({.Text = "The picture in \"" + path.filename().string() +
                                   "\" cannot be used.\r\n" + project->PictureFault +
                                   "\r\n\r\nDo you want to open the points on an empty page ?",
                           .Icon = MessageIcon::Exclamation,
                           .Buttons = MessageButtons::YesNo,
                           .DefaultIsNo = true}) != Answer::Yes)
    return;
  PutProject(ws, desktop, std::move(*project));
  ws.picture.Folder = path.parent_path();
  NoteProject(ws, path);
}

void OpenAskedProject(Workspace& ws, const Desktop& desktop) {
  if (const fs::path path = std::exchange(ws.projectAsked, {}); !path.empty())
    OpenProject(ws, desktop, path);
}

}  // namespace graphize
