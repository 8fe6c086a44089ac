#include "batch/alike_pages.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <type_traits>
#include <utility>
#include <variant>

#include "base/run_time_error.h"
#include "base/translation.h"

namespace graphize {

namespace {

PlotPixel Rounded(const AffineMap& map, int x, int y) {
  const MappedPlace at = Mapped(map, x, y);
  return {static_cast<int>(std::nearbyint(at.X)), static_cast<int>(std::nearbyint(at.Y))};
}

double ScaleOf(const AffineMap& map) {
  return std::sqrt(std::fabs(Determinant(map)));
}

/// Whether a place on the picture matters to the step.
bool NamesPlace(const Step& step) {
  return std::visit(
      [](const auto& record) {
        using Record = std::decay_t<decltype(record)>;
        return requires {
          record.X + record.Y;
        }
        || requires {
          record.Way;
        }
        || std::is_same_v<Record, ScanStep> || std::is_same_v<Record, GridStep>;
      },
      step);
}

/// What becomes of each kind of step; `toPage` leads from the picture that the recipe's step was
/// done on to the one of the page.
class Mover {
 public:
  Mover(const AlikePages& alike, const AffineMap& toPage, std::size_t number, const BatchStep& step,
        Workspace& ws)
      : alike_(alike), known_(alike.Known.at(number)), from_(step), ws_(ws) {
    map_ = Then(Then(Inverse(known_.ToShown), toPage), ws.map.Shown);
    const UprightPage& page = alike.Reference.Page;
    fromUpright_ = Then(Then(Then(page.ToInk, page.Ink.ToPicture), toPage), ws.map.Shown);
  }

  /// What names no place.
  template <class Other>
  void operator()(const Other& step) {
    done_.Do.push_back(step);
  }
  /// Rows are whole pixels; what is lost by that is kept beside them.
  void operator()(AxisStep step) {
    const PlotPosition here = step.At.value_or(PlotPosition{step.X, step.Y});
    const MappedPlace at = Mapped(map_, here.Column, here.Row);
    step.X = static_cast<float>(std::nearbyint(at.X));
    step.Y = static_cast<float>(std::nearbyint(at.Y));
    if (alike_.Align) step.At = PlotPosition{static_cast<float>(at.X), static_cast<float>(at.Y)};
    const bool last = alike_.Align && step.Row == 2;
    done_.Do.push_back(std::move(step));
    if (last) done_.Do.push_back(RefineStep{true});
  }
  /// A log switch drops the refinement.
  void operator()(const SetStep& step) {
    done_.Do.push_back(step);
    const bool isLog = step.Option == "x-log" || step.Option == "y-log";
    if (isLog && alike_.Align && ws_.calibration.IsComplete()) done_.Do.push_back(RefineStep{true});
  }
  void operator()(ReferenceStep step) {
    // Where the calibrated page leaves them unused, they are none of this one's either.
    if (alike_.UsesReferences || !alike_.Align) Move(std::move(step));
  }
  void operator()(const RemoveReferenceStep& step) {
    if (alike_.UsesReferences || !alike_.Align) done_.Do.push_back(step);
  }
  void operator()(const RefineStep& step) {
    done_.Do.push_back(alike_.Align ? RefineStep{true} : step);
  }
  void operator()(CaptureStep step) { Move(step); }
  void operator()(PointStep step) { Move(step); }
  void operator()(TraceStep step) {
    step.Went = {};
    Begin(step, std::nullopt);
  }
  void operator()(const ReadStep& step) {
    Begin(step, known_.Drawn);
    std::vector<PlotPixel> through;
    for (const PlotPixel& at : step.Through)
      if (const auto start = StartAt({.Column = 1.0 * at.X, .Row = 1.0 * at.Y}, known_.Drawn))
        through.push_back(start->At);
    std::get<ReadStep>(done_.Do.back()).Through = std::move(through);
  }
  void operator()(SymbolsStep step) {
    if (!step.LeftOut.IsEmpty()) {
      step.LeftOut = {};
      done_.Note = Tr("symbols that were left out by hand are taken here");
    }
    const BasePictureShown base(ws_.plot);
    std::optional<PlotPixel> at;
    if (known_.Drawn && known_.Symbol) at = FindSymbolLike(ViewOf(), *known_.Drawn, *known_.Symbol);
    if (!at) throw RunTimeError(Tr("there is no symbol like the one on the calibrated page"));
    step.X = static_cast<float>(at->X);
    step.Y = static_cast<float>(at->Y);
    done_.Do.push_back(std::move(step));
  }
  void operator()(ScanStep step) {
    step.Went = {};
    const ScanRectangle area = step.Area;
    std::array<PlotPixel, 4> corners;
    std::size_t i = 0;
    for (const int x : {area.Left, area.Right})
      for (const int y : {area.Top, area.Bottom}) corners[i++] = Rounded(map_, x, y);
    const auto [left, right] = std::minmax_element(
        corners.begin(), corners.end(), [](const auto& a, const auto& b) { return a.X < b.X; });
    const auto [top, bottom] = std::minmax_element(
        corners.begin(), corners.end(), [](const auto& a, const auto& b) { return a.Y < b.Y; });
    step.Area.Left = std::max(left->X, 0);
    step.Area.Top = std::max(top->Y, 0);
    step.Area.Right = std::min(right->X, ws_.plot.Width() - 1);
    step.Area.Bottom = std::min(bottom->Y, ws_.plot.Height() - 1);
    done_.Within = {Inverse(map_), area};
    done_.Do.push_back(std::move(step));
  }
  void operator()(BlockStep step) {
    Move(step);
    auto& moved = std::get<BlockStep>(done_.Do.back());
    moved.Size = static_cast<int>(std::nearbyint(moved.Size * ScaleOf(map_)));
    if (!ws_.plot.Contains(static_cast<int>(moved.X), static_cast<int>(moved.Y)))
      LeaveOut(Marked("the blocker lies beyond the edge of the page"));
  }
  void operator()(DrawStep step) { MoveWay(std::move(step)); }
  void operator()(EraseStep step) { MoveWay(std::move(step)); }
  void operator()(GridStep step) {
    step.Went = {};
    if (step.At) {
      const MappedPlace at = Mapped(map_, step.At->Column, step.At->Row);
      step.At = PlotPosition{static_cast<float>(std::nearbyint(at.X)),
                             static_cast<float>(std::nearbyint(at.Y))};
    }
    done_.Do.push_back(std::move(step));
  }
  void operator()(const MovePointsStep&) { LeaveOut(kByHand); }
  void operator()(const DeletePointsStep&) { LeaveOut(kByHand); }
  void operator()(const ClearRowsStep&) { LeaveOut(kByHand); }

  StepsOnPage Take() { return std::move(done_); }

 private:
  static constexpr const char* kByHand =
      Marked("what was mended by hand is of the calibrated page alone");

  void LeaveOut(const char* why) {
    done_.Do.clear();
    done_.Note = Tr("left out: %1", Tr(why));
  }
  template <class Step>
  void Move(Step step) {
    const MappedPlace at = Mapped(map_, step.X, step.Y);
    step.X = static_cast<float>(at.X);
    step.Y = static_cast<float>(at.Y);
    done_.Do.push_back(std::move(step));
  }
  template <class Step>
  void MoveWay(Step step) {
    for (PlotPixel& at : step.Way) {
      at = Rounded(map_, at.X, at.Y);
      at.X = std::clamp(at.X, 0, ws_.plot.Width() - 1);
      at.Y = std::clamp(at.Y, 0, ws_.plot.Height() - 1);
    }
    step.Size = static_cast<int>(std::nearbyint(step.Size * ScaleOf(map_)));
    done_.Do.push_back(std::move(step));
  }

  PageView ViewOf() const {
    return {ws_.plot.Pixels, alike_.Reference.Lines, alike_.Reference.Page.Ink.Scale, map_,
            fromUpright_};
  }
  std::optional<CurveStart> StartAt(const StartColumn& column, const std::optional<Ink>& ink) {
    const BasePictureShown base(ws_.plot);
    return FindCurveStart(ViewOf(), column, ink);
  }
  template <class Step>
  void Begin(Step step, const std::optional<Ink>& ink) {
    StartColumn column{.Column = step.X, .Row = step.Y};
    if (from_.Start) {
      column.Column = from_.Start->Column;
      if (from_.Start->Top) column.Top = *from_.Start->Top;
      if (from_.Start->Bottom) column.Bottom = *from_.Start->Bottom;
    }
    const auto start = StartAt(column, ink);
    const long long where = std::llround(column.Column);
    if (!start) throw RunTimeError(Tr("there is no curve in column %1", where));
    if (start->IsDoubtful)
      done_.Doubt =
          Tr("several curves cross column %1: the one nearest to the calibrated page's is taken",
             where);
    step.X = static_cast<float>(start->At.X);
    step.Y = static_cast<float>(start->At.Y);
    done_.Do.push_back(std::move(step));
  }

  const AlikePages& alike_;
  const AlikePages::KnownStep& known_;
  const BatchStep& from_;
  Workspace& ws_;
  AffineMap map_, fromUpright_;
  StepsOnPage done_;
};

}  // namespace

void BeginInColumns(std::vector<BatchStep>& steps, const std::vector<StartOption>& columns) {
  auto column = columns.begin();
  for (BatchStep& step : steps)
    if (column != columns.end() && (Is<TraceStep>(step.Do) || Is<ReadStep>(step.Do)))
      step.Start = *column++;
  if (column == columns.end()) return;
  const auto is = [](auto test) { return [test](const BatchStep& step) { return test(step.Do); }; };
  const auto saved = std::find_if(steps.rbegin(), steps.rend(), is(Is<SaveStep>));
  const auto last =
      std::find_if(saved == steps.rend() ? steps.rbegin() : saved, steps.rend(),
                   is([](const Step& step) { return NamesPlace(step) || Is<ModeStep>(step); }));
  std::vector<BatchStep> traces = {{.Do = ModeStep{Mode::Graphize}, .Origin = "--trace-column"}};
  const float middle = 0.5f * static_cast<float>(steps.front().Height);
  for (; column != columns.end(); ++column)
    traces.push_back({.Do = TraceStep{static_cast<float>(column->Column), middle, {}},
                      .Origin = "--trace-column " + std::to_string(column->Column),
                      .Start = *column});
  steps.insert(last.base(), traces.begin(), traces.end());
}

bool ShapesPicture(const Step& step) {
  return Is<OpenStep>(step) || Is<ReloadStep>(step) || Is<SetStep>(step) || Is<ModeStep>(step) ||
         Is<AxisStep>(step) || Is<RedefineStep>(step) || Is<DrawStep>(step) ||
         Is<EraseStep>(step) || Is<GridStep>(step) || Is<UndoEditStep>(step) ||
         Is<ImageToolStep>(step) || Is<UndoImageToolStep>(step) || Is<BlackWhiteStep>(step) ||
         Is<InkStep>(step) || Is<ShowColoursStep>(step);
}

AlikePages::KnownStep LookAt(Workspace& ws, const Step& step) {
  AlikePages::KnownStep known{.ToShown = ws.map.Shown};
  const auto look = [&](float x, float y) {
    constexpr int kReach = 8;
    const BasePictureShown base(ws.plot);
    const Raster& picture = ws.plot.Pixels;
    const Paper paper = PaperOf(picture);
    known.Drawn = InkAt(picture, paper, InkDirections(picture, paper), x, y, kReach);
    if (known.Drawn && Is<SymbolsStep>(step))
      known.Symbol = SymbolAt(picture, *known.Drawn,
                              {static_cast<int>(std::lround(x)), static_cast<int>(std::lround(y))});
  };
  if (const auto* read = std::get_if<ReadStep>(&step)) look(read->X, read->Y);
  if (const auto* symbols = std::get_if<SymbolsStep>(&step)) look(symbols->X, symbols->Y);
  return known;
}

StepsOnPage StepsFor(const AlikePages& alike, const AffineMap& toPage, std::size_t number,
                     const BatchStep& step, Workspace& ws) {
  Mover mover(alike, toPage, number, step, ws);
  std::visit([&](const auto& record) { mover(record); }, step.Do);
  return mover.Take();
}

}  // namespace graphize
