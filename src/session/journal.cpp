#include "session/journal.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <new>
#include <system_error>
#include <utility>

#include "base/run_time_error.h"
#include "base/translation.h"
#include "base/whole_file.h"
#include "codecs/file_format.h"
#include "codecs/picbuf.h"
#include "commands/shown_picture.h"
#include "session/journal_frame.h"
#include "session/kept_raster.h"
#include "workspace/recipe_options.h"

namespace graphize {

namespace {

namespace fs = std::filesystem;

/// "20240131-140209": sorted as the times are.
std::string TimeName(std::int64_t seconds) {
  const auto time = static_cast<std::time_t>(seconds);
  std::array<char, 32> text{};
  std::strftime(text.data(), text.size(), "%Y%m%d-%H%M%S", std::gmtime(&time));
  return text.data();
}

/// Whether the steps alone do not lead to the picture.
bool NeedsCopy(const Workspace& ws) {
  if (!ws.plot.IsPresent() || !ws.picture.KeptCopy.empty()) return false;
  return ws.picture.ChosenPath.empty() || (ws.recipe.BroughtBack && !ws.recipe.Recovered);
}

}  // namespace

Journal::Journal(fs::path sessions, std::size_t most, Clock clock)
    : sessions_(std::move(sessions)), most_(most), clock_(clock) {}

bool Journal::Begin() {
  if (!folder_.empty()) return true;
  std::error_code failure;
  fs::create_directories(sessions_, failure);
  const std::string name = TimeName(clock_()) + "-" + std::to_string(ProcessNumber());
  constexpr int kMostNames = 100;
  for (int i = 1; !failure && folder_.empty() && i <= kMostNames; ++i) {
    const fs::path folder = sessions_ / (i == 1 ? name : name + "-" + std::to_string(i));
    if (!fs::create_directory(folder, failure)) continue;
    fs::permissions(folder, fs::perms::owner_all, failure);
    // Another program that looks for what was left may just have taken it for that.
    if (!failure && lock_.Take(folder / kLockName)) folder_ = folder;
  }
  if (folder_.empty()) Tell(failure ? failure : std::make_error_code(std::errc::no_lock_available));
  return !folder_.empty();
}

fs::path Journal::FreePictureName() const {
  std::error_code ignored;
  for (int i = 1;; ++i) {
    fs::path name = "picture-" + std::to_string(i) + ".bmp";
    if (!fs::exists(folder_ / name, ignored)) return name;
  }
}

void Journal::KeepPicture(Workspace& ws, const Desktop& desktop) {
  if (sessions_.empty() || !NeedsCopy(ws)) return;
  // Asked for with every command: what has failed is not tried again and again.
  if (ws.plot.Box != nullptr && notKept_.lock() == ws.plot.Box) return;
  notKept_ = ws.plot.Box;
  if (!Begin()) return;
  const fs::path name = FreePictureName();
  try {
    const BasePictureShown base(ws.plot);
    // It cannot be stopped: what the user wanted has been done.
    const PictureProgress show = ShowProgress(ws, desktop);
    const auto save = [&](const fs::path& file, const Raster& picture) {
      SavePicture(file, kBmpFormat, 0, picture, [&](int percent) {
        show(percent);
        return true;
      });
    };
    save(folder_ / name, ws.plot.Pixels);
    if (ws.colours != nullptr) save(fs::path(folder_ / name) += kColoursEnding, *ws.colours);
    const auto keepBeside = [&](const char* ending, const std::string& text) {
      ThrowSystemError(ReplaceWholeFile(fs::path(folder_ / name) += ending, text));
    };
    if (!ws.plot.Pixels.Faint.IsEmpty()) keepBeside(kFaintEnding, BitsText(ws.plot.Pixels.Faint));
    if (!ws.plot.LastEdit.empty())
      keepBeside(kLastEditEnding, RunsText(ws.plot.LastEdit, ws.plot.Width()));
    ws.picture.KeptCopy = name;
    ws.picture.KeptSteps = static_cast<int>(ws.recipe.Steps.size());
  } catch (const RunTimeError& error) {
    note_ = Tr("This picture is not kept for the case of a crash: %1", std::string(error.what()));
  }
  ws.status.ProgressVisible = false;
}

bool Journal::TakePicture(Workspace& ws, const fs::path& copy) {
  ws.picture.KeptCopy.clear();
  if (sessions_.empty() || !Begin()) return false;
  const fs::path name = FreePictureName();
  std::error_code failure;
  for (const char* ending : {"", kColoursEnding, kFaintEnding, kLastEditEnding}) {
    const fs::path from = fs::path(copy) += ending, to = fs::path(folder_ / name) += ending;
    if (failure || (*ending != '\0' && !fs::exists(from, failure))) continue;
    fs::create_hard_link(from, to, failure);
    if (failure) fs::copy_file(from, to, failure);
  }
  if (!failure) ws.picture.KeptCopy = name;
  return !failure;
}

void Journal::Append(Workspace& ws, const DocumentDelta& delta) {
  if (sessions_.empty()) return;
  std::error_code failure;
  try {
    if (!Write(ws, delta, failure)) return;
  } catch (const std::bad_alloc&) {
    failure = std::make_error_code(std::errc::not_enough_memory);
  } catch (const std::system_error& error) {  // no thread to be had
    failure = error.code();
  }
  whole_ = !failure;
  // A picture that found no room may have it by now.
  if (!failure && complained_) notKept_.reset();
  Tell(failure);
  if (failure && file_ == nullptr && !folder_.empty()) LeaveNothing(ws);
}

bool Journal::Write(Workspace& ws, DocumentDelta delta, std::error_code& failure) {
  // What no command notes: options, and what is saved with the project.
  std::vector<std::string> options = OptionValues(ws);
  const bool isOther = options != options_ || ws.projectsSaved != projectsSaved_;
  if (!delta.Any && !isOther) return false;
  options_ = std::move(options);
  projectsSaved_ = ws.projectsSaved;
  const bool isEmpty = ws.recipe.Steps.empty() && !ws.plot.IsPresent();
  if ((file_ == nullptr && isEmpty) || !Begin()) return false;
  delta.Records = delta.Records || isOther;
  if (whole_ && !delta.Anew && file_->Size() <= std::max(most_, 2 * start_)) {
    failure = file_->Append(EventText(ws, delta, {number_ + 1, clock_()}, told_));
    if (!failure) ++number_;
  } else {
    failure = WriteWhole(ws, delta);
  }
  return true;
}

std::error_code Journal::WriteWhole(Workspace& ws, const DocumentDelta& delta) {
  const bool first = file_ == nullptr;
  // The one that is there gets its own name before the next one takes that of a new one.
  if (!first)
    if (const std::error_code failure = file_->Flush()) return failure;
  auto file = std::make_unique<AppendFile>();
  std::error_code failure = first ? file->Create(folder_ / kJournalName)
                                  : file->Create(folder_ / kNewJournalName, folder_ / kJournalName);
  ToldCurves told;
  if (!failure)
    failure =
        file->Append(JournalStart() +
                     EventText(ws, delta, {.Number = 1, .Time = clock_(), .Whole = true}, told));
  if (failure) return failure;
  before_ = std::exchange(file_, std::move(file));
  told_ = std::move(told);
  number_ = 1;
  start_ = file_->Size();
  return {};
}

void Journal::LeaveNothing(Workspace& ws) {
  RemoveSession(folder_);
  folder_.clear();
  lock_.LetGo();
  ws.picture.KeptCopy.clear();
}

bool Journal::Flush() {
  if (file_ == nullptr || !whole_) return false;
  const std::error_code failure = file_->Flush();
  whole_ = !failure;
  Tell(failure);
  return !failure;
}

void Journal::Close() {
  if (file_ != nullptr) static_cast<void>(file_->Append(ClosedEvent({number_ + 1, clock_()})));
  before_.reset();
  file_.reset();
  if (!folder_.empty()) RemoveSession(folder_);
  folder_.clear();
  lock_.LetGo();
  whole_ = false;
}

void Journal::Tell(const std::error_code& failure) {
  if (failure && !complained_)
    note_ = Tr("What you do is not being kept for the case of a crash: %1", failure.message());
  if (!failure && complained_) note_ = Tr("What you do is being kept again");
  complained_ = static_cast<bool>(failure);
}

void RemoveSession(const fs::path& folder) {
  std::error_code ignored;
  // The lock last: until then nobody else looks in.
  for (const char* name : {kJournalName, kNewJournalName}) fs::remove(folder / name, ignored);
  for (const auto& entry : fs::directory_iterator(folder, ignored))
    if (entry.path().filename() != kLockName) fs::remove(entry.path(), ignored);
  fs::remove(folder / kLockName, ignored);
  fs::remove(folder, ignored);
}

}  // namespace graphize
