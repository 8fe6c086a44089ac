#include "batch/other_pictures_run.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <iterator>
#include <mutex>
#include <new>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>

#include "base/cores.h"
#include "base/run_time_error.h"
#include "base/temporary_folder.h"
#include "base/translation.h"
#include "base/whole_file.h"
#include "batch/console.h"
#include "batch/job.h"
#include "batch/other_pictures_kept.h"
#include "batch/picture_thumbnail.h"
#include "raster/picture_operation.h"

namespace graphize {

namespace {

namespace fs = std::filesystem;
using State = OtherPicture::State;

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
  NoteProject(picture, result.Table);
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
    const std::size_t count = std::min<std::size_t>(CoreCount(), waiting_.size());
    running_ = count;
    for (std::size_t i = 0; i < count; ++i) {
      try {
        threads_.emplace_back([this] { TakePictures(); });
      } catch (const std::system_error&) {
        if (threads_.empty()) throw;
        --running_;  // those that the system gives do it all
      }
    }
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
  std::atomic<std::size_t> running_ = 0;
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

}  // namespace

void DoWaitingPictures(Workspace& ws, const Desktop& desktop) {
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

}  // namespace graphize
