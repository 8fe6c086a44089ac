#include "batch/other_pictures.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <iterator>
#include <mutex>
#include <new>
#include <system_error>
#include <thread>
#include <utility>

#include "base/checksum.h"
#include "base/run_time_error.h"
#include "base/temporary_folder.h"
#include "base/translation.h"
#include "base/whole_file.h"
#include "batch/console.h"
#include "batch/job.h"
#include "batch/other_pictures_list.h"
#include "commands/do.h"
#include "commands/forms.h"
#include "commands/recipe_file.h"
#include "raster/picture_operation.h"
#include "session/project_commands.h"
#include "session/project_file.h"

namespace graphize {

namespace {

namespace fs = std::filesystem;
using State = OtherPicture::State;

/// The means of the pixels of each of its squares, with the points in red.
std::shared_ptr<const Raster> ThumbnailOf(const Raster& picture, const std::vector<Place>& points) {
  if (picture.IsEmpty()) return nullptr;
  const double factor =
      std::max({picture.Width() / static_cast<double>(OtherPicturesForm::kThumbnailWidth),
                picture.Height() / static_cast<double>(OtherPicturesForm::kThumbnailHeight), 1.0});
  const auto shrunk = [&](int size) { return std::max(static_cast<int>(size / factor), 1); };
  auto thumbnail = std::make_shared<Raster>(shrunk(picture.Width()), shrunk(picture.Height()));
  const auto from = [&](int at) { return static_cast<int>(at * factor); };
  for (int y = 0; y < thumbnail->Height(); ++y)
    for (int x = 0; x < thumbnail->Width(); ++x) {
      std::uint32_t red = 0, green = 0, blue = 0, count = 0;
      for (int v = from(y); v < std::min(from(y + 1) + 1, picture.Height()); ++v)
        for (int u = from(x); u < std::min(from(x + 1) + 1, picture.Width()); ++u, ++count) {
          const std::uint32_t pixel = picture.Row(v)[u];
          red += pixel >> 16 & 0xffu;
          green += pixel >> 8 & 0xffu;
          blue += pixel & 0xffu;
        }
      thumbnail->Row(y)[x] = 0xff000000u | red / count << 16 | green / count << 8 | blue / count;
    }
  for (const Place& point : points) {
    const int x = static_cast<int>(point.Column / factor), y = static_cast<int>(point.Row / factor);
    if (x >= 0 && y >= 0 && x < thumbnail->Width() && y < thumbnail->Height())
      thumbnail->Row(y)[x] = 0xffd02020u;
  }
  return thumbnail;
}

fs::file_time_type TimeOf(const fs::path& file) {
  std::error_code none;
  const fs::file_time_type time = fs::last_write_time(file, none);
  return none ? fs::file_time_type() : time;
}

/// A project that was saved since it was written or looked at last counts as mended; one that went
/// leaves its picture waiting.
void LookAtProject(OtherPicture& picture) {
  const fs::file_time_type time = TimeOf(picture.Project()), none;
  if (time == picture.Written) return;
  if (time == none) return void(picture = {.File = picture.File});
  const bool wasDone = picture.Is != State::Waiting;
  picture.Written = time;
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
void TakeKeptList(OtherPicturesForm& form, const Desktop& desktop) {
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
  for (OtherPicture& picture : form.Pictures) TakeTimeOfSame(picture);
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

void TakeCalibrated(Workspace& ws, const Desktop& desktop) {
  OtherPicturesForm& form = ws.otherPictures;
  form.Recipe = RecipeText(ws, {});
  form.RecipeNumber = ws.recipe.Number;
  form.Calibrated = ws.picture.Name;
  form.CalibratedFile = ws.picture.ChosenPath;
  form.CalibratedBytes = ws.picture.Bytes;
  if (!form.Pictures.empty()) return;
  form.ListFile = ListFileOf(ws);
  form.Kept.clear();
  form.KeepFault.clear();
  TakeKeptList(form, desktop);
}

/// Whether the document is one of the pictures.
bool IsOfList(const Workspace& ws) {
  const auto& pictures = ws.otherPictures.Pictures;
  return std::any_of(pictures.begin(), pictures.end(), [&](const OtherPicture& picture) {
    return picture.File == ws.picture.ChosenPath ||
           (ws.project.IsOf(ws.recipe) && picture.Project() == ws.project.File);
  });
}

/// The calibrated picture as a file.
fs::path CalibratedFile(const OtherPicturesForm& form, std::optional<TemporaryFolder>& folder) {
  std::error_code ignored;
  if (form.CalibratedBytes == nullptr || fs::exists(form.CalibratedFile, ignored))
    return form.CalibratedFile;
  folder.emplace();
  fs::path file = folder->Path() / form.CalibratedFile.filename();
  ThrowSystemError(ReplaceWholeFile(file, *form.CalibratedBytes));
  return file;
}

void DoPicture(OtherPicture& picture, const std::vector<BatchStep>& steps,
               const JobOptions& options) {
  JobResult result;
  try {
    RunJob(steps, {picture.File}, options, result);
    picture.Is = result.Doubt.empty() ? State::Done : State::Doubtful;
    picture.Reason = result.Doubt;
  } catch (const RunTimeError& error) {
    const bool refused = result.Registration && !result.Registration->Fits();
    picture.Is = refused ? State::Refused : State::Failed;
    picture.Reason = OneLine(refused ? result.Registration->Refusal : error.what());
  }
  picture.Points = result.Points;
  if (result.Registration) picture.Worst = result.Registration->Worst;
  picture.Thumbnail = ThumbnailOf(result.Picture, result.Places);
  if (result.Table.empty()) return;
  std::error_code ignored;
  // Somebody has put one there since the list was made.
  if (fs::exists(picture.Project(), ignored)) {
    picture.Is = State::Waiting;
    return LookAtProject(picture);
  }
  if (const std::error_code error = ReplaceWholeFile(picture.Project(), result.Table)) {
    picture.Is = State::Failed;
    picture.Reason = Tr("its project cannot be written: %1", error.message());
  }
  picture.Written = TimeOf(picture.Project());
  picture.Checksum = Crc32(result.Table);
}

/// All that goes wrong is told in the picture: nobody catches what ends a thread.
OtherPicture Done(OtherPicture picture, const std::vector<BatchStep>& steps,
                  const JobOptions& options) {
  const auto fail = [&](std::string why) {
    picture.Is = State::Failed;
    picture.Reason = std::move(why);
  };
  try {
    DoPicture(picture, steps, options);
  } catch (const std::bad_alloc&) {
    fail(Tr("There is not enough memory."));
  } catch (const std::exception& error) {
    fail(OneLine(error.what()));
  }
  return picture;
}

/// The threads that do the pictures, and what they share.
class Workers {
 public:
  Workers(std::vector<OtherPicture> waiting, const std::vector<BatchStep>& steps,
          const JobOptions& options)
      : waiting_(std::move(waiting)), steps_(steps), options_(options) {
    const unsigned cores = std::max(std::thread::hardware_concurrency(), 1u);
    const auto count = static_cast<unsigned>(std::min<std::size_t>(cores, waiting_.size()));
    running_ = count;
    for (unsigned i = 0; i < count; ++i) threads_.emplace_back([this] { TakePictures(); });
  }
  ~Workers() { Stop(); }
  Workers(const Workers&) = delete;
  Workers& operator=(const Workers&) = delete;

  void Stop() { stopped_ = true; }
  bool AreDone() const { return running_ == 0; }
  std::vector<OtherPicture> Take() {
    const std::scoped_lock lock(mutex_);
    return std::exchange(done_, {});
  }

 private:
  void TakePictures() {
    for (std::size_t next; !stopped_ && (next = next_++) < waiting_.size();) {
      OtherPicture done = Done(waiting_[next], steps_, options_);
      const std::scoped_lock lock(mutex_);
      done_.push_back(std::move(done));
    }
    --running_;
  }

  const std::vector<OtherPicture> waiting_;
  const std::vector<BatchStep>& steps_;
  const JobOptions& options_;
  std::mutex mutex_;
  std::vector<OtherPicture> done_;
  std::atomic<std::size_t> next_ = 0;
  std::atomic<bool> stopped_ = false;
  std::atomic<unsigned> running_ = 0;
  std::vector<std::jthread> threads_;  // the last member: they end before the rest goes
};

void TakeOver(OtherPicturesForm& form, std::vector<OtherPicture> done) {
  for (OtherPicture& picture : done) {
    const auto at =
        std::find_if(form.Pictures.begin(), form.Pictures.end(),
                     [&](const OtherPicture& other) { return other.File == picture.File; });
    if (at != form.Pictures.end()) *at = std::move(picture);
    ++form.Changes;
  }
}

void DoWaiting(Workspace& ws, const Desktop& desktop) {
  OtherPicturesForm& form = ws.otherPictures;
  std::optional<TemporaryFolder> folder;
  const fs::path calibrated = CalibratedFile(form, folder);
  std::vector<BatchStep> steps = StepsOf(ReadRecipe(form.Recipe, {}), "");
  for (BatchStep& step : steps) step.Origin.clear();  // nobody sees these lines
  ws.status.Status = Tr("Looking at the calibrated page...");
  desktop.ShowNow();
  const PictureProgress pump = [&](int) {
    desktop.Pump();
    return !desktop.EscapeHeld();
  };
  const AlikePages alike = RunBeside(
      pump, [&](PictureOperation&) { return LookAtOwnPicture(steps, {calibrated}, true); });
  if (desktop.EscapeHeld()) return;
  JobOptions options{.Format = TableFormat::Project};
  options.PointsExpected = options.KeepPicture = options.KeepFailed = true;
  options.Alike = &alike;
  ws.status.Status = Tr("Doing the other pictures...");
  std::vector<OtherPicture> waiting;
  std::copy_if(form.Pictures.begin(), form.Pictures.end(), std::back_inserter(waiting),
               [](const OtherPicture& picture) { return picture.Is == State::Waiting; });
  const std::size_t all = waiting.size();
  std::size_t done = 0;
  constexpr auto kBetweenLists = std::chrono::seconds(1);  // a list of thousands takes its time
  auto kept = std::chrono::steady_clock::now();
  Workers workers(std::move(waiting), steps, options);
  for (bool ended = false; !ended;) {
    ended = workers.AreDone();  // before what there is is taken
    std::vector<OtherPicture> finished = workers.Take();
    done += finished.size();
    TakeOver(form, std::move(finished));
    if (const auto now = std::chrono::steady_clock::now(); now - kept > kBetweenLists) {
      KeepList(form);
      kept = now;
    }
    ws.status.ProgressVisible = true;
    ws.status.ProgressValue = static_cast<int>(100 * done / all);
    desktop.Pump();
    if (desktop.EscapeHeld()) workers.Stop();
    if (!ended) std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
}

}  // namespace

bool CanShowOtherPictures(const Workspace& ws) {
  return ws.plot.IsPresent() && (ws.calibration.IsComplete() || IsOfList(ws));
}

void ShowOtherPictures(Workspace& ws, const Desktop& desktop) {
  OtherPicturesForm& form = ws.otherPictures;
  if (form.Pictures.empty() || form.RecipeNumber == ws.recipe.Number) {
    TakeCalibrated(ws, desktop);
  } else if (!IsOfList(ws) &&
             AskYesNo(desktop,
                      Tr("The list is of pictures like \"%1\".\r\n\r\nDo you want to begin a new "
                         "list for the present picture ?",
                         form.Calibrated))) {
    form = {.Changes = form.Changes};
    TakeCalibrated(ws, desktop);
  }
  for (OtherPicture& picture : form.Pictures) LookAtProject(picture);
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
  for (const fs::path& file : files) {
    const auto isThere = [&](const OtherPicture& picture) { return picture.File == file; };
    if (file == form.CalibratedFile ||
        std::any_of(form.Pictures.begin(), form.Pictures.end(), isThere))
      continue;
    form.Pictures.push_back({.File = file});
    LookAtProject(form.Pictures.back());
  }
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
         std::any_of(form.Pictures.begin(), form.Pictures.end(),
                     [](const OtherPicture& picture) { return picture.Is == State::Waiting; });
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
    DoWaiting(ws, desktop);
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
