#include "session/left_session.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <utility>

#include "base/checksum.h"
#include "base/run_time_error.h"
#include "base/translation.h"
#include "base/whole_file.h"
#include "codecs/picbuf.h"
#include "commands/ink_check_commands.h"
#include "commands/replay.h"
#include "commands/shown_picture.h"
#include "commands/view_commands.h"
#include "session/journal.h"
#include "session/kept_document.h"
#include "session/kept_raster.h"
#include "tracing/extraction_context.h"

namespace graphize {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLargestJournal = std::size_t{1} << 30;  // bytes

template <class... Kinds>
bool IsOneOf(const Step& step) {
  return (Is<Kinds>(step) || ...);
}

/// Steps that change the picture, or tell those that do what to do.
bool MakesPicture(const Step& step) {
  return IsOneOf<OpenStep, ReloadStep, SetStep, ModeStep, AxisStep, RedefineStep, BlockStep,
                 ClearLastBlockerStep, ClearBlockersStep, DrawStep, EraseStep, GridStep,
                 UndoEditStep, ImageToolStep, UndoImageToolStep, BlackWhiteStep, InkStep,
                 ShowColoursStep, RefreshStep, ResetStep>(step);
}

/// Steps that a copy of the picture, which has come later, has behind it; the others tell what to
/// do with it.
bool IsInCopy(const Step& step) {
  return IsOneOf<OpenStep, ReloadStep, DrawStep, EraseStep, GridStep, UndoEditStep, ImageToolStep,
                 UndoImageToolStep, BlackWhiteStep, InkStep, ShowColoursStep, ResetStep>(step);
}

/// The first step that the picture depends on: what came before the last picture that was opened
/// counts only for lines found by the axes.
std::size_t FirstOfPicture(const std::vector<Step>& steps) {
  const auto last = std::find_if(steps.rbegin(), steps.rend(), Is<OpenStep>);
  if (last == steps.rend() || std::any_of(steps.rbegin(), last, Is<GridStep>)) return 0;
  return static_cast<std::size_t>(steps.rend() - last) - 1;
}

std::string Named(const fs::path& picture) {
  return "\"" + picture.filename().string() + "\"";
}

/// What has become of a picture's file; empty when it is as it was.
std::string FileFault(const RecipePicture& picture) {
  if (picture.Path.empty()) return Tr("It has come from no file, and could not be kept.");
  std::string bytes;
  if (const std::error_code failure = ReadWholeFile(picture.Path, SIZE_MAX - 1, bytes))
    return Named(picture.Path) + ": " + failure.message() + ".";
  if (bytes.size() != picture.FileSize || Crc32(bytes) != picture.FileChecksum)
    return Tr("%1 is another picture by now.", Named(picture.Path));
  return {};
}

int PointsIn(const KeptDocument& kept) {
  int points = 0;
  for (const Curve& curve : kept.Curves)
    points += curve.Points->ListCount > 0 ? curve.Points->ListCount : curve.Points->CaptureCount;
  return points;
}

/// Whether anybody would miss it: not a picture that was opened and nothing more.
bool IsWorthKeeping(const JournalledDocument& kept) {
  const std::vector<Step>& steps = kept.Document.Steps.Steps;
  return !kept.PictureCopy.empty() || std::any_of(steps.begin(), steps.end(), [](const Step& step) {
    return !IsOneOf<OpenStep, SetStep, ModeStep, RefreshStep, SaveStep>(step);
  });
}

std::string TimeText(std::int64_t seconds, std::int64_t now) {
  const auto then = static_cast<std::time_t>(seconds), today = static_cast<std::time_t>(now);
  const auto text = [](std::time_t time, const char* format) {
    std::array<char, 64> bytes{};
    std::strftime(bytes.data(), bytes.size(), format, std::localtime(&time));
    return std::string(bytes.data());
  };
  constexpr const char* kDay = "%Y-%m-%d";
  const std::string hour = text(then, "%H:%M");
  return text(then, kDay) == text(today, kDay) ? hour : text(then, kDay) + " " + hour;
}

/// Empty where there is no such file.
std::string TextBeside(const fs::path& copy, const char* ending) {
  std::string text;
  const fs::path file = fs::path(copy) += ending;
  std::error_code failure;
  if (!fs::exists(file, failure)) return text;
  ThrowSystemError(ReadWholeFile(file, kLargestJournal, text));
  return text;
}

/// The journal of a session, read; the new one where there is one that tells something.
JournalledDocument ReadSession(const fs::path& folder) {
  std::string bytes;
  if (!ReadWholeFile(folder / kNewJournalName, kLargestJournal, bytes)) {
    try {
      return ReadJournal(bytes);
    } catch (const RunTimeError&) {
      // It was just begun: the one before tells all.
    }
  }
  if (const std::error_code failure = ReadWholeFile(folder / kJournalName, kLargestJournal, bytes))
    throw RunTimeError(Tr("The journal cannot be read: %1.", failure.message()));
  return ReadJournal(bytes);
}

/// RestorePicture, without the pictures of before the step `first`.
std::string MakePicture(const LeftSession& session, Workspace& made, const Desktop& window,
                        std::size_t first) {
  const JournalledDocument& kept = session.Kept;
  if (!kept.Picture) return Tr("There was no picture.");
  std::string told;
  Desktop desktop = window;
  desktop.ShowMessage = [&](const Message& message) {
    told = message.Text;
    return Answer::Ok;
  };
  StartReplay(made);
  std::size_t done = 0;
  try {
    if (!kept.PictureCopy.empty()) {
      std::optional<LoadedPicture> copy =
          LoadPicture(session.Folder / kept.PictureCopy, ShowProgress(made, desktop));
      if (!copy) return Tr("It was not read to its end.");
      const int width = copy->Picture.Width(), height = copy->Picture.Height();
      const fs::path file = session.Folder / kept.PictureCopy;
      if (const std::string text = TextBeside(file, kFaintEnding); !text.empty())
        copy->Picture.Faint = ReadBits(text, width, height);
      OverdrawnPixels edit;
      if (const std::string text = TextBeside(file, kLastEditEnding); !text.empty())
        edit = ReadRuns(text, width, height);
      made.picture = kept.Document.Picture;
      LoadImage(made, desktop, std::move(copy->Picture), kept.Document.SourceName);
      PutEdited(made.plot, std::exchange(made.plot.Pixels, Raster()), std::move(edit));
      if (const fs::path colours = fs::path(file) += kColoursEnding; fs::exists(colours)) {
        copy = LoadPicture(colours, ShowProgress(made, desktop));
        if (!copy) return Tr("It was not read to its end.");
        made.colours = std::make_shared<Raster>(std::move(copy->Picture));
      }
      ResizeView(made, made.plot.Width(), made.plot.Height());
      done = static_cast<std::size_t>(kept.CopySteps);
    }
  } catch (const RunTimeError& error) {
    return error.what();
  }
  const std::vector<RecipePicture>& pictures = kept.Document.Steps.Pictures;
  const std::vector<Step>& steps = kept.Document.Steps.Steps;
  for (std::size_t i = 0; i < steps.size(); ++i) {
    if (!MakesPicture(steps[i]) || (i < std::max(done, first) && IsInCopy(steps[i]))) continue;
    Step step = steps[i];
    if (auto* open = std::get_if<OpenStep>(&step)) {
      const auto number = static_cast<std::size_t>(open->Picture);
      if (number < 1 || number > pictures.size()) return Tr("Its file is not known.");
      const RecipePicture& picture = pictures[number - 1];
      if (std::string fault = FileFault(picture); !fault.empty()) {
        if (std::any_of(steps.begin() + static_cast<std::ptrdiff_t>(i) + 1, steps.end(),
                        Is<OpenStep>))
          continue;  // another picture has taken its place since
        return fault;
      }
      open->Path = picture.Path;
    }
    const Outcome outcome = ReplayStep(made, desktop, step);
    if (Is<OpenStep>(step) && !outcome.IsDone()) return told.empty() ? outcome.Reason : told;
  }
  ClearMarks(made.plot);
  if (PictureNumber(made.plot) != *kept.Picture)
    return Tr("What was done to it has led to another picture.");
  return {};
}

}  // namespace

std::string LeftSession::Describe(std::int64_t now) const {
  if (!Fault.empty()) return Tr("A session cannot be brought back. %1", Fault);
  const KeptDocument& kept = Kept.Document;
  const int points = PointsIn(kept);
  const auto curves = static_cast<long long>(kept.Curves.size());
  const std::string time = TimeText(Kept.Time, now),
                    picture = PictureLabel(kept.SourceName, kept.Picture.WithoutFile);
  const std::string text =
      points == 0  ? Tr("The work on %1, %2", picture, time)
      : curves > 1 ? Tr("%1 in %2 curves of %3, %4", PointCount(points), curves, picture, time)
                   : Tr("%1 of %2, %3", PointCount(points), picture, time);
  return Kept.Damage.empty() ? text : text + ". " + Kept.Damage;
}

std::vector<fs::path> SessionFolders(const fs::path& sessions) {
  std::vector<fs::path> folders;
  std::error_code failure;
  for (fs::directory_iterator entry(sessions, failure), end; !failure && entry != end;
       entry.increment(failure))
    if (entry->is_directory(failure)) folders.push_back(entry->path());
  std::sort(folders.rbegin(), folders.rend());
  return folders;
}

std::optional<LeftSession> FindLeftSession(const fs::path& folder) {
  LeftSession session{.Folder = folder, .Lock = {}, .Kept = {}, .Fault = {}};
  std::error_code ignored;
  if (!session.Lock.TakeExisting(folder / kLockName)) {
    fs::remove(folder, ignored);  // an empty one alone
    return std::nullopt;
  }
  if (!fs::exists(folder / kJournalName, ignored)) {
    RemoveSession(folder);
    return std::nullopt;
  }
  try {
    session.Kept = ReadSession(folder);
  } catch (const RunTimeError& error) {
    session.Fault = error.what();
    return session;
  }
  if (!session.Kept.Closed && IsWorthKeeping(session.Kept)) return session;
  RemoveSession(folder);
  return std::nullopt;
}

std::string RestorePicture(const LeftSession& session, Workspace& made, const Desktop& window) {
  const std::size_t first = FirstOfPicture(session.Kept.Document.Steps.Steps);
  if (first > 0 && MakePicture(session, made, window, first).empty()) return {};
  if (first > 0) made = Workspace();
  return MakePicture(session, made, window, 0);
}

void BringBackSession(Workspace& ws, const Desktop& desktop, const LeftSession& session,
                      Workspace* made) {
  KeptDocument kept = session.Kept.Document;
  kept.Picture.KeptCopy = made != nullptr ? session.Kept.PictureCopy : "";
  kept.Picture.KeptSteps = session.Kept.CopySteps;
  ClearMarks(ws.plot);
  if (made != nullptr) {
    PutEdited(ws.plot, std::exchange(made->plot.Pixels, Raster()),
              std::exchange(made->plot.LastEdit, {}));
    ws.plot.Number = made->plot.Number;
  } else {
    SetPicture(ws.plot, Raster());
  }
  ws.imageTools.UndoCopy.reset();
  ws.colours = made != nullptr ? std::move(made->colours) : nullptr;
  BringBack(ws, desktop, std::move(kept));
  ws.recipe.Recovered = true;
  ShowFromCorner(ws.view, ws.plot.Width(), ws.plot.Height());
  if (ws.plot.IsPresent() && ws.mode != Mode::DrawErase && ws.mode != Mode::GridBuster)
    RedrawBlockers(ws.blockers, ws.plot, ws.settings);
  CheckOpened(ws);
}

}  // namespace graphize
