#include "session/history.h"

#include <algorithm>
#include <iterator>
#include <new>
#include <span>
#include <utility>

#include "base/or_else.h"
#include "base/translation.h"
#include "commands/plot_mouse.h"
#include "commands/toolbar.h"
#include "data/list_edit.h"
#include "raster/plot_image.h"
#include "session/change_name.h"

namespace graphize {

namespace {

/// Exchanges the recipe's steps behind those that stay; `other` has the room for them.
void ExchangeSteps(std::vector<Step>& steps, Change& change, std::vector<Step> other) {
  const auto kept = steps.begin() + static_cast<std::ptrdiff_t>(change.StepsKept);
  std::move(kept, steps.end(), std::back_inserter(other));
  steps.erase(kept, steps.end());
  std::move(change.Steps.begin(), change.Steps.end(), std::back_inserter(steps));
  change.Steps = std::move(other);
}

/// Exchanges the content of one record with a change's.
template <class T>
void ExchangeRecord(T& now, Change::Record& record) {
  std::swap(now, *std::any_cast<T>(&record.Other));
}

/// The points that a command has moved by keys alone.
PointSet NudgedPoints(PointEdit& edit, std::span<const Step> done) {
  const bool byKeys = std::exchange(edit.ByKeys, false);
  const auto* move = done.size() == 1 ? std::get_if<MovePointsStep>(&done.front()) : nullptr;
  return byKeys && move != nullptr ? move->Points : PointSet();
}

/// All of the events or, where one cannot be had, none.
void ApplyRaster(PlotImage& plot, std::vector<RasterEvent>& events, bool back) {
  std::size_t done = 0;
  const auto next = [&](bool takeBack) {
    RasterEvent& event = events[back ? events.size() - 1 - done : done];
    takeBack ? TakeBack(plot, event) : DoAgain(plot, event);
  };
  OrElse(
      [&] {
        for (; done < events.size(); ++done) next(back);
      },
      [&] {
        while (done-- > 0) next(!back);
      });
}

}  // namespace

void History::Begin(Workspace& ws) {
  KeepEvents(ws.plot);
  records_ = RecordsOf(ws);
  arrays_ = ArraysOf(ws.store);
  undo_.clear();
  redo_.clear();
  passing_.clear();
  bytes_ = sharedBytes_ = 0;
  ws.curves.Left.reset();
  delta_ = {.Anew = true, .Any = true, .Arrays = {}};
  NoteTheRest(ws);
  ShowNames(ws);
}

void History::NoteTheRest(Workspace& ws) {
  page_ = ws.store.Page;
  captured_ = ws.store.CaptureCount;
  recipe_ = ws.recipe.Number;
  steps_ = ws.recipe.Steps.size();
  ws.recipe.Replaced.clear();
}

std::shared_ptr<const PointStore> History::LeftPoints(const Workspace& ws) const {
  if (ws.curves.Left == nullptr || ArraysOf(*ws.curves.Left) == arrays_) return ws.curves.Left;
  // The command had worked on it before.
  auto before = std::make_shared<PointStore>(*ws.curves.Left);
  ArraysOf(*before) = arrays_;
  before->Page = page_;
  return before;
}

bool History::FindChange(Workspace& ws, Change& change, std::string& name) {
  bool substance = false;
  const auto records = RecordsOf(ws);
  ForEachIn<RecordCopies>([&](auto number) {
    const auto& now = std::get<number>(records);
    if (std::get<number>(records_) == now) return;
    change.Records.push_back({number, now});
    substance = substance || number >= kPassingRecords;
  });
  change.Points = LeftPoints(ws);
  const auto arrays = ArraysOf(ws.store);
  std::optional<ArrayCopies> others;
  if (change.Points != nullptr) others = arrays;
  ForEachIn<ArrayCopies>([&](auto number) {
    if (others) return;
    auto& before = std::get<number>(arrays_);
    auto& array = std::get<number>(change.Arrays);
    array = ChangeOf(before, std::get<number>(arrays));
    if (!array.Differs) return;
    before.reserve(std::get<number>(arrays).size());
    substance = true;
  });
  NoteDrawn(ws.plot);
  substance = substance || !ws.plot.Noted.Events.empty();

  const bool anew = ws.recipe.Number != recipe_;
  change.StepsKept = anew ? 0 : steps_;
  const auto done = std::span<const Step>(ws.recipe.Steps).subspan(change.StepsKept);
  const int points = change.Points == nullptr ? ws.store.CaptureCount - captured_ : 0;
  if (!substance && change.Records.empty() && done.empty() && !anew) {
    ws.curves.Left.reset();
    if (others) arrays_.swap(*others);
    NoteTheRest(ws);
    return false;
  }
  if (substance)
    name = !anew || !ws.recipe.BroughtBack ? NameOfChange(done, points)
           : ws.recipe.Recovered           ? Tr("Recovery")
                                           : Tr("Open project");

  // From here on nothing needs memory.
  auto record = change.Records.begin();
  ForEachIn<RecordCopies>([&](auto number) {
    if (record == change.Records.end() || record->Number != number) return;
    ExchangeRecord(std::get<number>(records_), *record++);
  });
  ws.curves.Left.reset();
  if (others) arrays_.swap(*others);
  ForEachIn<ArrayCopies>([&](auto number) {
    auto& array = std::get<number>(change.Arrays);
    if (array.Differs) Follow(std::get<number>(arrays_), std::get<number>(arrays), array);
  });
  change.Raster = TakeEvents(ws.plot);
  if (anew) {
    change.Steps = std::move(ws.recipe.Replaced);
    // What the command itself has done on it before goes with it.
    change.Steps.erase(change.Steps.begin() + static_cast<std::ptrdiff_t>(steps_),
                       change.Steps.end());
  }
  change.Page = page_;
  NoteTheRest(ws);
  delta_.Add(change);
  change.Bytes = BytesOf(change);
  return true;
}

bool History::Join(const Change& change, const PointSet& nudged) {
  if (nudged.IsEmpty() || undo_.empty() || !redo_.empty()) return false;
  Change& older = undo_.back().Changes.front();
  if (undo_.back().Nudged != nudged || undo_.back().Changes.size() != 1) return false;
  Change joined = older;
  for (const Change::Record& record : change.Records)
    if (std::none_of(joined.Records.begin(), joined.Records.end(),
                     [&](const Change::Record& has) { return has.Number == record.Number; }))
      joined.Records.push_back(record);
  std::sort(joined.Records.begin(), joined.Records.end(),
            [](const Change::Record& a, const Change::Record& b) { return a.Number < b.Number; });
  ForEachIn<ArrayCopies>([&](auto number) {
    graphize::Join(std::get<number>(joined.Arrays), std::get<number>(change.Arrays),
                   std::get<number>(arrays_));
  });
  joined.Bytes = BytesOf(joined);
  bytes_ += joined.Bytes - older.Bytes;
  older = std::move(joined);
  return true;
}

void History::Commit(Workspace& ws) {
  if (ws.pen.Down && ws.pen.Begun) return;
  const std::size_t steps = ws.recipe.Number == recipe_ ? steps_ : 0;
  const PointSet nudged =
      NudgedPoints(ws.pointEdit, std::span<const Step>(ws.recipe.Steps).subspan(steps));
  std::list<Entry> found(1);
  Entry& entry = found.front();
  Change& change = entry.Changes.emplace_back();
  entry.Nudged = nudged;
  if (!FindChange(ws, change, entry.Name)) return;
  try {
    if (Join(change, nudged)) return;
  } catch (const std::bad_alloc&) {
    // Then it is an entry of its own.
  }
  if (HasShared(change)) sharedChanged_ = true;
  bytes_ += change.Bytes;
  if (!entry.Name.empty()) {
    for (const Entry& undone : redo_) Forget(undone);
    redo_.clear();
    // What passed since the last Undo stays: it comes before this change.
    AddPassing(passing_);
    undo_.splice(undo_.end(), found);
  } else if (!redo_.empty()) {
    passing_.splice(passing_.end(), entry.Changes);
  } else {
    AddPassing(entry.Changes);
  }
  DropOldest();
  ShowNames(ws);
}

void History::AddPassing(std::list<Change>& from) {
  if (!undo_.empty()) {
    std::list<Change>& to = undo_.back().Changes;
    return to.splice(to.end(), from);
  }
  // Nothing goes back to before the first entry.
  for (const Change& change : from) bytes_ -= change.Bytes;
  from.clear();
}

void History::TakeBack(Workspace& ws) {
  Change change;
  std::string name;
  if (!FindChange(ws, change, name)) return;
  bytes_ += change.Bytes;
  Apply(ws, change, Way::Back);
  bytes_ -= change.Bytes;
}

void History::Apply(Workspace& ws, Change& change, Way way) {
  // A copy for the document and one for its shadow.
  std::vector<Change::Record> mine = change.Records;
  std::optional<ArrayCopies> others;
  if (change.Points != nullptr) others = ArraysOf(*change.Points);
  const auto arrays = ArraysOf(ws.store);
  ArrayCopies exchanged;
  ArrayChanges changes = change.Arrays;
  ForEachIn<ArrayCopies>([&](auto number) {
    auto& array = std::get<number>(changes);
    if (!array.Differs) return;
    std::get<number>(exchanged) = std::get<number>(arrays);
    Exchange(std::get<number>(exchanged), array);
    std::get<number>(arrays_).reserve(std::get<number>(exchanged).size());
  });
  std::vector<Step>& steps = ws.recipe.Steps;
  std::vector<Step> other;
  other.reserve(steps.size() - change.StepsKept);
  steps.reserve(change.StepsKept + change.Steps.size());
  const bool back = way == Way::Back;
  ApplyRaster(ws.plot, change.Raster, back);
  if (others)
    OrElse([&] { change.Points = ExchangePoints(ws.curves, ws.store, change.Points); },
           [&] { ApplyRaster(ws.plot, change.Raster, !back); });

  // From here on nothing needs memory.
  delta_.Add(change);
  const auto records = RecordsOf(ws);
  auto record = change.Records.begin(), my = mine.begin();
  ForEachIn<RecordCopies>([&](auto number) {
    if (record == change.Records.end() || record->Number != number) return;
    ExchangeRecord(std::get<number>(records), *my++);
    ExchangeRecord(std::get<number>(records_), *record++);
  });
  if (others)
    arrays_.swap(*others);
  else
    std::swap(ws.store.Page, change.Page);
  change.Arrays = std::move(changes);
  ForEachIn<ArrayCopies>([&](auto number) {
    const auto& array = std::get<number>(change.Arrays);
    if (!array.Differs) return;
    std::get<number>(arrays).swap(std::get<number>(exchanged));
    Follow(std::get<number>(arrays_), std::get<number>(arrays), array);
  });
  ExchangeSteps(steps, change, std::move(other));
  if (HasPicture(change)) ws.imageTools.UndoCopy.reset();  // it was of the picture before
  NoteTheRest(ws);
  bytes_ -= change.Bytes;
  change.Bytes = BytesOf(change);
  bytes_ += change.Bytes;
  if (HasShared(change)) sharedChanged_ = true;
}

void History::DropPassing(Workspace& ws) {
  while (!passing_.empty()) {
    Apply(ws, passing_.back(), Way::Back);
    bytes_ -= passing_.back().Bytes;
    passing_.pop_back();
  }
}

void History::Apply(Workspace& ws, Entry& entry, Way way) {
  std::vector<Change*> changes;
  for (Change& change : entry.Changes) changes.push_back(&change);
  if (way == Way::Back) std::reverse(changes.begin(), changes.end());
  std::size_t done = 0;
  OrElse(
      [&] {
        for (; done < changes.size(); ++done) Apply(ws, *changes[done], way);
      },
      [&] {
        while (done-- > 0) Apply(ws, *changes[done], way == Way::Back ? Way::Forth : Way::Back);
      });
}

bool History::Apply(Workspace& ws, Way way) {
  EndDrag(ws);
  Commit(ws);
  std::list<Entry>&from = way == Way::Back ? undo_ : redo_, &to = way == Way::Back ? redo_ : undo_;
  if (from.empty()) return false;
  const int width = ws.plot.Width(), height = ws.plot.Height();
  const AxisCalibration axes = ws.calibration;
  DropPassing(ws);
  Apply(ws, from.back(), way);
  to.splice(to.end(), from, std::prev(from.end()));
  ws.status.Status =
      way == Way::Back ? Tr("Undone: %1", to.back().Name) : Tr("Done again: %1", to.back().Name);
  ws.status.Passing = ws.status.Status;
  if (ws.plot.Width() != width || ws.plot.Height() != height) {
    ResetScrBars(ws.view, ws.plot.Width(), ws.plot.Height());
  }
  if (ws.calibration != axes) ClearReadOut(ws.readOut);
  if (!IsReading(ws.mode)) ShowModeHint(ws);
  UpdateEditMenu(ws.store, ws.commands);
  DropOldest();
  ShowNames(ws);
  return true;
}

bool History::Undo(Workspace& ws) {
  // What a person sees happen is the drag.
  if (GiveUpDrag(ws)) return true;
  return Apply(ws, Way::Back);
}

bool History::Redo(Workspace& ws) {
  return Apply(ws, Way::Forth);
}

void History::Forget(const Entry& entry) {
  for (const Change& change : entry.Changes) {
    bytes_ -= change.Bytes;
    if (HasShared(change)) sharedChanged_ = true;
  }
}

void History::CountShared() {
  SharedBytes shared;
  const auto countIn = [&](const std::list<Change>& changes) {
    for (const Change& change : changes) shared.Add(change);
  };
  for (const Entry& entry : undo_) countIn(entry.Changes);
  for (const Entry& entry : redo_) countIn(entry.Changes);
  countIn(passing_);
  sharedBytes_ = shared.AllButLargestPicture();
  sharedChanged_ = false;
}

void History::DropOldest() {
  while (true) {
    if (sharedChanged_) CountShared();
    if (Bytes() <= budget_ || undo_.empty()) return;
    Forget(undo_.front());
    undo_.pop_front();
  }
}

void History::ShowNames(Workspace& ws) const {
  ws.undoNames.Undo = undo_.empty() ? "" : undo_.back().Name;
  ws.undoNames.Redo = redo_.empty() ? "" : redo_.back().Name;
}

}  // namespace graphize
