#include "session/history.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <span>
#include <utility>

#include "base/translation.h"
#include "data/list_edit.h"
#include "raster/plot_image.h"
#include "session/change_name.h"
#include "workspace/plot_mouse.h"
#include "workspace/toolbar.h"

namespace graphize {

namespace {

bool HasPicture(const Change& change) {
  return std::any_of(change.Raster.begin(), change.Raster.end(), [](const RasterEvent& event) {
    return event.Is == RasterEvent::Kind::Replaced;
  });
}

bool HoldsCurves(const Change::Record& record) {
  return record.Other.type() == typeid(std::vector<Curve>);
}

/// Whether it holds what other changes may hold, too.
bool HasShared(const Change& change) {
  return HasPicture(change) ||
         std::any_of(change.Records.begin(), change.Records.end(), HoldsCurves);
}

std::size_t BytesOf(const PointStore& points) {
  std::size_t bytes = sizeof(PointStore);
  std::apply([&](const auto&... array) { ((bytes += array.capacity() * sizeof(array[0])), ...); },
             ArraysOf(points));
  return bytes;
}

std::size_t BytesOf(const Change& change) {
  std::size_t bytes =
      sizeof(Change) + change.Records.size() * 64 + change.Steps.size() * sizeof(Step);
  for (const Change::Record& record : change.Records)
    if (record.Other.type() == typeid(BlockerList)) bytes += sizeof(BlockerList);
  std::apply(
      [&](const auto&... array) {
        ((bytes += array.Other.capacity() * sizeof(*array.Other.data())), ...);
      },
      change.Arrays);
  for (const RasterEvent& event : change.Raster) bytes += event.Bytes();
  return bytes;
}

/// Exchanges the recipe's steps behind those that stay.
void ExchangeSteps(std::vector<Step>& steps, Change& change) {
  const auto kept = steps.begin() + static_cast<std::ptrdiff_t>(change.StepsKept);
  std::vector<Step> other(std::make_move_iterator(kept), std::make_move_iterator(steps.end()));
  steps.erase(kept, steps.end());
  std::move(change.Steps.begin(), change.Steps.end(), std::back_inserter(steps));
  change.Steps = std::move(other);
}

/// The points that a command has moved by keys alone.
PointSet NudgedPoints(PointEdit& edit, std::span<const Step> done) {
  const bool byKeys = std::exchange(edit.ByKeys, false);
  const auto* move = done.size() == 1 ? std::get_if<MovePointsStep>(&done.front()) : nullptr;
  return byKeys && move != nullptr ? move->Points : PointSet();
}

void ApplyRaster(PlotImage& plot, std::vector<RasterEvent>& events, bool back) {
  if (back)
    for (auto event = events.rbegin(); event != events.rend(); ++event) TakeBack(plot, *event);
  else
    for (RasterEvent& event : events) DoAgain(plot, event);
}

}  // namespace

void DocumentDelta::Add(const Change& change) {
  Any = true;
  for (const Change::Record& record : change.Records)
    Records = Records || record.Number + kPointNumbers < std::tuple_size_v<RecordCopies>;
  // Outside of the widest middle nothing has changed, however many changes there were.
  ForEachIn<ArrayCopies>([&](auto number) {
    const auto& array = std::get<number>(change.Arrays);
    if (!array.Differs) return;
    Part& part = Arrays[number];
    part = {true, std::min(part.First, array.First), std::min(part.Behind, array.Behind)};
  });
  if (change.Points != nullptr) Arrays.fill({.Differs = true, .First = 0, .Behind = 0});
  StepsKept = std::min(StepsKept, change.StepsKept);
}

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

std::shared_ptr<const PointStore> History::TakeLeft(Workspace& ws) {
  std::shared_ptr<const PointStore> left = std::exchange(ws.curves.Left, nullptr);
  if (left == nullptr) return nullptr;
  if (ArraysOf(*left) != arrays_) {
    // The command had worked on it before.
    auto before = std::make_shared<PointStore>(*left);
    ArraysOf(*before) = arrays_;
    before->Page = page_;
    left = std::move(before);
  }
  arrays_ = ArraysOf(ws.store);
  return left;
}

std::optional<Change> History::FindChange(Workspace& ws, std::string& name) {
  Change change;
  bool substance = false;
  const auto records = RecordsOf(ws);
  ForEachIn<RecordCopies>([&](auto number) {
    auto& before = std::get<number>(records_);
    const auto& now = std::get<number>(records);
    if (before == now) return;
    change.Records.push_back({number, std::exchange(before, now)});
    substance = substance || number >= kPassingRecords;
  });
  change.Points = TakeLeft(ws);
  const auto arrays = ArraysOf(ws.store);
  ForEachIn<ArrayCopies>([&](auto number) {
    auto& before = std::get<number>(arrays_);
    auto& array = std::get<number>(change.Arrays);
    array = ChangeOf(before, std::get<number>(arrays));
    if (!array.Differs) return;
    Follow(before, std::get<number>(arrays), array);
    substance = true;
  });
  change.Raster = TakeEvents(ws.plot);
  substance = substance || !change.Raster.empty();

  const bool anew = ws.recipe.Number != recipe_;
  change.StepsKept = anew ? 0 : steps_;
  if (anew) {
    change.Steps = std::move(ws.recipe.Replaced);
    // What the command itself has done on it before goes with it.
    change.Steps.erase(change.Steps.begin() + static_cast<std::ptrdiff_t>(steps_),
                       change.Steps.end());
  }
  const auto done = std::span<const Step>(ws.recipe.Steps).subspan(change.StepsKept);
  const int points = change.Points == nullptr ? ws.store.CaptureCount - captured_ : 0;
  change.Page = page_;
  NoteTheRest(ws);
  if (!substance && change.Records.empty() && done.empty() && !anew) return std::nullopt;
  if (substance)
    name = !anew || !ws.recipe.BroughtBack ? NameOfChange(done, points)
           : ws.recipe.Recovered           ? Tr("Recovery")
                                           : Tr("Open project");
  delta_.Add(change);
  change.Bytes = BytesOf(change);
  return change;
}

bool History::Join(Change& change, const PointSet& nudged) {
  if (nudged.IsEmpty() || undo_.empty() || !redo_.empty()) return false;
  const Entry& last = undo_.back();
  if (last.Nudged != nudged || last.Changes.size() != 1) return false;
  Change& older = undo_.back().Changes.front();
  bytes_ -= older.Bytes;
  for (Change::Record& record : change.Records)
    if (std::none_of(older.Records.begin(), older.Records.end(),
                     [&](const Change::Record& has) { return has.Number == record.Number; }))
      older.Records.push_back(std::move(record));
  std::sort(older.Records.begin(), older.Records.end(),
            [](const Change::Record& a, const Change::Record& b) { return a.Number < b.Number; });
  ForEachIn<ArrayCopies>([&](auto number) {
    graphize::Join(std::get<number>(older.Arrays), std::move(std::get<number>(change.Arrays)),
                   std::get<number>(arrays_));
  });
  older.Bytes = BytesOf(older);
  bytes_ += older.Bytes;
  return true;
}

void History::Commit(Workspace& ws) {
  if (ws.pen.Down && ws.pen.Begun) return;
  std::string name;
  const std::size_t steps = ws.recipe.Number == recipe_ ? steps_ : 0;
  std::optional<Change> change = FindChange(ws, name);
  const PointSet nudged =
      NudgedPoints(ws.pointEdit, std::span<const Step>(ws.recipe.Steps).subspan(steps));
  if (!change) return;
  if (Join(*change, nudged)) return;
  if (HasShared(*change)) sharedChanged_ = true;
  bytes_ += change->Bytes;
  if (!name.empty()) {
    for (const Entry& entry : redo_) Forget(entry);
    redo_.clear();
    // What passed since the last Undo stays: it comes before this change.
    for (Change& passed : passing_) AddPassing(std::move(passed));
    passing_.clear();
    undo_.emplace_back().Name = std::move(name);
    undo_.back().Nudged = nudged;
    undo_.back().Changes.push_back(std::move(*change));
  } else if (!redo_.empty()) {
    passing_.push_back(std::move(*change));
  } else {
    AddPassing(std::move(*change));
  }
  DropOldest();
  ShowNames(ws);
}

void History::AddPassing(Change change) {
  // Nothing goes back to before the first entry.
  if (undo_.empty())
    bytes_ -= change.Bytes;
  else
    undo_.back().Changes.push_back(std::move(change));
}

void History::Apply(Workspace& ws, Change& change, Way way) {
  delta_.Add(change);
  if (change.Points != nullptr)
    change.Points = ExchangePoints(ws.curves, ws.store, std::move(change.Points));
  const auto records = RecordsOf(ws);
  auto record = change.Records.begin();
  ForEachIn<RecordCopies>([&](auto number) {
    if (record == change.Records.end() || record->Number != number) return;
    auto& now = std::get<number>(records);
    auto& copy = std::get<number>(records_);
    auto other = std::any_cast<std::remove_reference_t<decltype(copy)>>(std::move(record->Other));
    now = other;
    record->Other = std::exchange(copy, std::move(other));
    ++record;
  });
  if (change.Points != nullptr)
    arrays_ = ArraysOf(ws.store);
  else
    std::swap(ws.store.Page, change.Page);
  const auto arrays = ArraysOf(ws.store);
  ForEachIn<ArrayCopies>([&](auto number) {
    auto& array = std::get<number>(change.Arrays);
    if (!array.Differs) return;
    Exchange(std::get<number>(arrays), array);
    Follow(std::get<number>(arrays_), std::get<number>(arrays), array);
  });
  ExchangeSteps(ws.recipe.Steps, change);
  ApplyRaster(ws.plot, change.Raster, way == Way::Back);
  if (HasPicture(change)) ws.imageTools.UndoCopy.reset();  // it was of the picture before
  NoteTheRest(ws);
  bytes_ -= change.Bytes;
  change.Bytes = BytesOf(change);
  bytes_ += change.Bytes;
  if (HasShared(change)) sharedChanged_ = true;
}

void History::DropPassing(Workspace& ws) {
  for (auto change = passing_.rbegin(); change != passing_.rend(); ++change) {
    Apply(ws, *change, Way::Back);
    bytes_ -= change->Bytes;
  }
  passing_.clear();
}

bool History::Apply(Workspace& ws, Way way) {
  EndDrag(ws);
  Commit(ws);
  if (way == Way::Back ? undo_.empty() : redo_.empty()) return false;
  const int width = ws.plot.Width(), height = ws.plot.Height();
  const AxisCalibration axes = ws.calibration;
  DropPassing(ws);
  if (way == Way::Back) {
    redo_.push_back(std::move(undo_.back()));
    undo_.pop_back();
    std::vector<Change>& changes = redo_.back().Changes;
    for (auto change = changes.rbegin(); change != changes.rend(); ++change)
      Apply(ws, *change, way);
    ws.status.Status = Tr("Undone: %1", redo_.back().Name);
  } else {
    undo_.push_back(std::move(redo_.back()));
    redo_.pop_back();
    for (Change& change : undo_.back().Changes) Apply(ws, change, way);
    ws.status.Status = Tr("Done again: %1", undo_.back().Name);
  }
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
  std::set<const void*> seen;
  std::size_t largest = 0;
  sharedBytes_ = 0;
  const auto countPicture = [&](const PictureBox& box) {
    if (box == nullptr || !seen.insert(box.get()).second) return;
    const std::size_t bytes = box->PixelCount() * sizeof(std::uint32_t);
    sharedBytes_ += bytes;
    largest = std::max(largest, bytes);
  };
  const auto countPoints = [&](const std::shared_ptr<const PointStore>& points) {
    if (points != nullptr && seen.insert(points.get()).second) sharedBytes_ += BytesOf(*points);
  };
  const auto countIn = [&](const std::vector<Change>& changes) {
    for (const Change& change : changes) {
      for (const RasterEvent& event : change.Raster) {
        countPicture(event.Before);
        countPicture(event.After);
      }
      countPoints(change.Points);
      for (const Change::Record& record : change.Records)
        if (HoldsCurves(record))
          for (const Curve& curve : *std::any_cast<std::vector<Curve>>(&record.Other))
            countPoints(curve.Points);
    }
  };
  for (const Entry& entry : undo_) countIn(entry.Changes);
  for (const Entry& entry : redo_) countIn(entry.Changes);
  countIn(passing_);
  sharedBytes_ -= largest;
}

void History::DropOldest() {
  while (true) {
    if (std::exchange(sharedChanged_, false)) CountShared();
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
