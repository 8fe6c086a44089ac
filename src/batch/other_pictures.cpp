#include "batch/other_pictures.h"

#include <algorithm>
#include <iterator>
#include <system_error>
#include <vector>

#include "base/run_time_error.h"
#include "base/translation.h"
#include "batch/other_pictures_kept.h"
#include "batch/other_pictures_run.h"
#include "commands/do.h"
#include "commands/forms.h"
#include "commands/recipe_file.h"
#include "session/project_commands.h"

namespace graphize {

namespace {

namespace fs = std::filesystem;

/// False when Escape stopped it: then there is no list.
bool TakeCalibrated(Workspace& ws, const Desktop& desktop) {
  OtherPicturesForm& form = ws.otherPictures;
  form.Recipe = RecipeText(ws, {});
  form.RecipeNumber = ws.recipe.Number;
  form.Calibrated = ws.picture.Name;
  form.CalibratedFile = ws.picture.ChosenPath;
  form.CalibratedBytes = ws.picture.Bytes;
  if (!form.Pictures.empty() || TakeKeptList(ws, desktop)) return true;
  form = {.Changes = form.Changes};
  return false;
}

/// Whether the document is one of the pictures.
bool IsOfList(const Workspace& ws) {
  const auto& pictures = ws.otherPictures.Pictures;
  return std::any_of(pictures.begin(), pictures.end(), [&](const OtherPicture& picture) {
    return picture.File == ws.picture.ChosenPath ||
           (ws.project.IsOf(ws.recipe) && picture.Project() == ws.project.File);
  });
}

/// The window's list, of the present picture if that is another one than before. False when Escape
/// stopped it.
bool TakeList(Workspace& ws, const Desktop& desktop) {
  OtherPicturesForm& form = ws.otherPictures;
  if (form.Pictures.empty() || form.RecipeNumber == ws.recipe.Number)
    return TakeCalibrated(ws, desktop);
  if (IsOfList(ws) ||
      !AskYesNo(desktop,
                Tr("The list is of pictures like \"%1\".\r\n\r\nDo you want to begin a new "
                   "list for the present picture ?",
                   form.Calibrated)))
    return true;
  form = {.Changes = form.Changes};
  return TakeCalibrated(ws, desktop);
}

}  // namespace

bool CanShowOtherPictures(const Workspace& ws) {
  return ws.plot.IsPresent() && (ws.calibration.IsComplete() || IsOfList(ws));
}

void ShowOtherPictures(Workspace& ws, const Desktop& desktop) {
  OtherPicturesForm& form = ws.otherPictures;
  if (!TakeList(ws, desktop) || !LookAtProjects(ws, desktop, form.Pictures)) return;
  KeepList(form);
  ++form.Changes;
  ws.form = Form::OtherPictures;
}

void AddOtherPictures(Workspace& ws, const Desktop& desktop) {
  OtherPicturesForm& form = ws.otherPictures;
  const auto files = desktop.ChooseFiles({.Title = Tr("Add Pictures"),
                                          .Folder = form.CalibratedFile.parent_path(),
                                          .FileName = "",
                                          .Filters = Tr("All Files") + "|*"});
  std::vector<OtherPicture> added;
  for (const fs::path& file : files) {
    const auto isThere = [&](const OtherPicture& picture) { return picture.File == file; };
    if (file != form.CalibratedFile && std::ranges::none_of(form.Pictures, isThere) &&
        std::ranges::none_of(added, isThere))
      added.push_back({.File = file});
  }
  if (!LookAtProjects(ws, desktop, added)) return;
  std::ranges::move(added, std::back_inserter(form.Pictures));
  KeepList(form);
  ++form.Changes;
}

void RemoveOtherPicture(Workspace& ws) {
  OtherPicturesForm& form = ws.otherPictures;
  if (!IsOtherPictureSelected(form)) return;
  form.Pictures.erase(form.Pictures.begin() + form.Selected);
  form.Selected = std::min(form.Selected, static_cast<int>(form.Pictures.size()) - 1);
  KeepList(form);
  ++form.Changes;
}

void SelectNextDoubtful(Workspace& ws) {
  OtherPicturesForm& form = ws.otherPictures;
  const int count = static_cast<int>(form.Pictures.size());
  for (int i = 1; i <= count; ++i) {
    const int next = (form.Selected + i + count) % count;
    if (!form.Pictures[static_cast<std::size_t>(next)].AsksForALook()) continue;
    form.Selected = next;
    return;
  }
}

bool CanRunOtherPictures(const OtherPicturesForm& form) {
  return !form.IsRunning &&
         std::any_of(form.Pictures.begin(), form.Pictures.end(), [](const OtherPicture& picture) {
           return picture.Is == OtherPicture::State::Waiting;
         });
}

void RunOtherPictures(Workspace& ws, const Desktop& desktop) {
  OtherPicturesForm& form = ws.otherPictures;
  if (!CanRunOtherPictures(form)) return;
  if (form.CalibratedFile.empty())
    return Tell(desktop,
                "The calibrated picture came from no file: save the image, open it and define its "
                "axes there");
  form.IsRunning = true;
  ++form.Changes;
  std::string fault;
  try {
    DoWaitingPictures(ws, desktop);
  } catch (const RunTimeError& error) {
    fault = error.what();
  }
  form.IsRunning = false;
  KeepList(form);
  ++form.Changes;
  ws.status.ProgressVisible = false;
  ws.status.Status = CanRunOtherPictures(form) ? Tr("Stopped: the rest waits") : std::string(" ");
  if (!fault.empty())
    Tell(desktop, Tr("The calibrated page cannot be used.\r\n%1", fault), MessageIcon::Exclamation);
}

bool IsOtherPictureSelected(const OtherPicturesForm& form) {
  return !form.IsRunning && form.Selected >= 0 &&
         form.Selected < static_cast<int>(form.Pictures.size());
}

void OpenSelectedPicture(Workspace& ws, const Desktop& desktop) {
  if (!IsOtherPictureSelected(ws.otherPictures)) return;
  const OtherPicture picture =
      ws.otherPictures.Pictures[static_cast<std::size_t>(ws.otherPictures.Selected)];
  CloseForm(ws, desktop);
  std::error_code ignored;
  if (fs::exists(picture.Project(), ignored)) return OpenProject(ws, desktop, picture.Project());
  if (!MayLeave(ws, desktop)) return;
  Do(ws, desktop, ResetStep{});
  Do(ws, desktop, OpenStep{.Path = picture.File, .Ask = true});
}

}  // namespace graphize
