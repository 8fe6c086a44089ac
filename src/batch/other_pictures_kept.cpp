#include "batch/other_pictures_kept.h"

#include <string>
#include <system_error>
#include <utility>

#include "base/checksum.h"
#include "base/run_time_error.h"
#include "base/translation.h"
#include "base/whole_file.h"
#include "batch/console.h"
#include "batch/other_pictures_list.h"
#include "commands/recipe_file.h"
#include "commands/shown_picture.h"
#include "raster/picture_operation.h"
#include "session/project_file.h"

namespace graphize {

namespace {

namespace fs = std::filesystem;
using State = OtherPicture::State;

fs::file_time_type TimeOf(const fs::path& file) {
  std::error_code none;
  const fs::file_time_type time = fs::last_write_time(file, none);
  return none ? fs::file_time_type() : time;
}

/// A project of the same content is the one that was written, whatever its time says: folders are
/// copied.
void TakeTimeOfSame(OtherPicture& picture) {
  const fs::file_time_type time = TimeOf(picture.Project());
  if (time == fs::file_time_type() || time == picture.Written || picture.Is == State::Waiting)
    return;
  try {
    if (Crc32(ReadProjectFile(picture.Project())) == picture.Checksum) picture.Written = time;
  } catch (const RunTimeError&) {
    // Whoever looks at it next tells.
  }
}

/// Calls look(picture) for all, on a thread beside: projects of scans are large. False when Escape
/// stopped it; then they are as they were.
bool ForEachBeside(Workspace& ws, const Desktop& desktop, std::vector<OtherPicture>& pictures,
                   void (*look)(OtherPicture&)) {
  std::string status = std::exchange(ws.status.Status, Tr("Looking at the projects..."));
  std::vector<OtherPicture> looked = pictures;
  const bool all = RunBeside(ShowProgress(ws, desktop), [&](PictureOperation& operation) {
    std::size_t done = 0;
    for (OtherPicture& picture : looked) {
      if (operation.Stopped) return false;
      look(picture);
      operation.Advance(static_cast<double>(++done) / static_cast<double>(looked.size()));
    }
    return true;
  });
  ws.status.ProgressVisible = false;
  ws.status.Status = all ? std::move(status) : Tr("Stopped");
  if (all) pictures = std::move(looked);
  return all;
}

/// Beside the calibrated picture; where that was of another computer, beside its project.
fs::path ListFileOf(const Workspace& ws) {
  fs::path file = ws.picture.ChosenPath;
  if (file.empty()) return {};
  std::error_code ignored;
  if (!fs::is_directory(file.parent_path(), ignored) && ws.project.IsOf(ws.recipe))
    file = ws.project.File.parent_path() / file.filename();
  return file += ".pages";
}

/// The list as it was left. One that cannot be read stays as it is.
void ReadKeptList(OtherPicturesForm& form, const Desktop& desktop) {
  constexpr std::size_t kLargestList = 1u << 28;  // bytes
  std::error_code failure;
  if (form.ListFile.empty() || !fs::exists(form.ListFile, failure)) return;
  try {
    std::string text;
    ThrowSystemError(ReadWholeFile(form.ListFile, kLargestList, text));
    form.Pictures = ReadOtherPictures(text, form.ListFile.parent_path());
    form.Kept = std::move(text);
  } catch (const RunTimeError& error) {
    form.KeepFault = OneLine(error.what());
    const fs::path unread = std::exchange(form.ListFile, {});
    return Tell(
        desktop,
        Tr("The list of pictures \"%1\" cannot be read.\r\n%2", unread.string(), form.KeepFault),
        MessageIcon::Exclamation);
  }
}

}  // namespace

void LookAtProject(OtherPicture& picture) {
  const fs::file_time_type time = TimeOf(picture.Project()), none;
  if (time == picture.Written) return;
  if (time == none) return void(picture = {.File = picture.File});
  const bool wasDone = picture.Is != State::Waiting;
  picture.Written = time;
  picture.Thumbnail.reset();
  picture.Is = wasDone ? State::Mended : State::There;
  picture.Reason.clear();
  try {
    const std::string project = ReadProjectFile(picture.Project());
    picture.Checksum = Crc32(project);
    picture.Points = ReadRecipe(ReadProjectSteps(project).Recipe, {}).Points.value_or(0);
  } catch (const RunTimeError& error) {
    picture.Is = State::Failed;
    picture.Reason = OneLine(error.what());
  }
}

bool LookAtProjects(Workspace& ws, const Desktop& desktop, std::vector<OtherPicture>& pictures) {
  return ForEachBeside(ws, desktop, pictures, LookAtProject);
}

void NoteProject(OtherPicture& picture, std::string_view bytes) {
  picture.Written = TimeOf(picture.Project());
  picture.Checksum = Crc32(bytes);
}

bool TakeKeptList(Workspace& ws, const Desktop& desktop) {
  OtherPicturesForm& form = ws.otherPictures;
  form.ListFile = ListFileOf(ws);
  form.Kept.clear();
  form.KeepFault.clear();
  ReadKeptList(form, desktop);
  return ForEachBeside(ws, desktop, form.Pictures, TakeTimeOfSame);
}

void KeepList(OtherPicturesForm& form) {
  if (form.ListFile.empty()) return;
  std::string text;
  if (!form.Pictures.empty()) text = OtherPicturesText(form.Pictures, form.ListFile.parent_path());
  if (text == form.Kept) return;
  std::error_code failure;
  if (text.empty())
    fs::remove(form.ListFile, failure);
  else
    failure = ReplaceWholeFile(form.ListFile, text);
  form.KeepFault = failure ? failure.message() : std::string();
  if (!failure) form.Kept = std::move(text);
}

}  // namespace graphize
