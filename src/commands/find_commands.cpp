#include "commands/find_commands.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "base/translation.h"
#include "commands/curve_commands.h"
#include "commands/curve_surroundings.h"
#include "commands/extraction_commands.h"
#include "commands/picture_reading.h"
#include "commands/preview_commands.h"
#include "commands/reading_commands.h"
#include "finding_axes/find_surroundings.h"
#include "finding_axes/read_labels.h"
#include "reading/read_stroke.h"
#include "tracing/extraction_context.h"

namespace graphize {

namespace {

std::string SymbolCount(std::size_t count) {
  return TrCount("%1 symbol", "%1 symbols", static_cast<long long>(count));
}

std::string CurveCount(std::size_t count) {
  return TrCount("%1 curve", "%1 curves", static_cast<long long>(count));
}

std::vector<ReadPlace> PlacesOf(const std::vector<FoundSymbol>& symbols) {
  std::vector<ReadPlace> places;
  for (const FoundSymbol& symbol : symbols) {
    const auto sigma = static_cast<float>(symbol.Sigma);
    places.push_back({symbol.X, symbol.Y, {sigma, sigma, 0}});  // the same to all sides
  }
  return places;
}

/// The symbols that are shown, where they are the step's; none else.
const SymbolFinding* ShownSymbols(Workspace& ws, const SymbolsStep& step) {
  if (!ws.reading.Symbols) return nullptr;
  const SymbolPreview& shown = *ws.reading.Symbols;
  const bool isIt =
      static_cast<float>(shown.Click.X) == step.X && static_cast<float>(shown.Click.Y) == step.Y &&
      shown.Centre == step.Centre &&
      static_cast<float>(shown.Tolerance) / ReadingControl::kAsFound == step.Tolerance &&
      shown.From == ReadFromNow(ws);
  return isIt ? &shown.Finding : nullptr;
}

}  // namespace

std::optional<Outcome> SymbolsRefused(const Workspace& ws, const SymbolsStep& step) {
  if (auto refused = ReadingRefused(ws)) return refused;
  if (auto outside = RefusedAt(ws, step.X, step.Y)) return outside;
  if (!(step.Tolerance >= kLeastTolerance && step.Tolerance <= kMostTolerance))
    return Refused("the tolerance of symbols is a number from 0.5 to 2");
  return std::nullopt;
}

SymbolFinding SymbolsAt(Workspace& ws, const Desktop& desktop, const SymbolsStep& step) {
  if (const SymbolFinding* shown = ShownSymbols(ws, step)) return *shown;
  const SymbolRequest request{.X = step.X,
                              .Y = step.Y,
                              .Centre = step.Centre,
                              .Tolerance = step.Tolerance,
                              .Walls = WallsOf(ws.blockers)};
  PlotSurroundings around;
  AxesFrame frame;
  SymbolFinding finding =
      ReadBeside(ws, desktop, Marked("Looking for symbols..."), [&](PictureOperation& operation) {
        operation.To = 0.1;
        around = FindSurroundings(ws.plot.Pixels, operation);
        operation.From = 0.1;
        frame = ReadingFrame(ws.calibration, ws.plot.Pixels, around, step.X, step.Y);
        return FindSymbols(ws.plot.Pixels, frame, request, operation);
      });
  if (finding.Symbols.empty()) return finding;
  const std::string place = PlaceText(step.X, step.Y);
  // A legend beside the plot shows what is in it.
  const bool isInside = std::ranges::any_of(finding.Symbols, [&](const FoundSymbol& symbol) {
    const double u = frame.U(symbol.X, symbol.Y), v = frame.V(symbol.X, symbol.Y);
    return u > frame.Left && u < frame.Right && v > frame.Top && v < frame.Bottom;
  });
  if ((!isInside || IsInText(around, step.X, step.Y)) &&
      IsBeyondFrame(ws.plot, ws.calibration, around, step.X, step.Y))
    finding.Refusal = Tr("%1,%2 lies outside the axes", std::lround(step.X), std::lround(step.Y));
  else if (const std::string written = WrittenAt(finding, around, step.X, step.Y); !written.empty())
    finding.Refusal = Tr("at %1 there is %2", place, written);
  if (!finding.Refusal.empty()) finding.Symbols.clear();
  return finding;
}

std::string HowSure(const std::vector<FoundSymbol>& symbols) {
  std::string text = SymbolCount(symbols.size());
  const FoundSymbol* first = nullptr;
  std::size_t doubtful = 0;
  for (const FoundSymbol& symbol : symbols) {
    if (symbol.Doubt.empty()) continue;
    if (doubtful++ == 0) first = &symbol;
  }
  if (first == nullptr) return text;
  return Tr("%1, %2 of them doubtful: at %3,%4 %5", text, doubtful, std::lround(first->X),
            std::lround(first->Y), first->Doubt);
}

Outcome Run(Workspace& ws, const Desktop& desktop, const SymbolsStep& step) {
  if (auto refused = SymbolsRefused(ws, step)) return *refused;
  const SymbolFinding finding = SymbolsAt(ws, desktop, step);
  if (finding.IsStopped) {
    ws.status.Status = Tr("Stopped: nothing was looked for");
    return Nothing("it was stopped");
  }
  if (!finding.Refusal.empty()) {
    ws.status.Status = Tr("No symbols: %1", finding.Refusal);
    return Refused(finding.Refusal);
  }
  std::vector<FoundSymbol> taken;
  for (std::size_t i = 0; i < finding.Symbols.size(); ++i)
    if (!step.LeftOut.Has(static_cast<PointId>(i + 1))) taken.push_back(finding.Symbols[i]);
  if (taken.empty()) return Nothing("all symbols are left out");
  if (auto refused = RoomRefused(ws.store, taken.size())) return *refused;
  CaptureRead(ws, desktop, PlacesOf(taken));
  const std::string sure = HowSure(taken);
  ws.status.Status = Tr("Found %1", sure);
  return {.Points = static_cast<int>(taken.size()), .Remark = sure};
}

std::vector<NewName> NamesFor(Workspace& ws, const Desktop& desktop,
                              const std::vector<PlotCurve>& curves) {
  std::vector<std::vector<TextBox>> labels;
  for (const PlotCurve& curve : curves) labels.push_back(curve.Label);
  const std::vector<LabelReading> written =
      ReadBeside(ws, desktop, Marked("Reading the legend..."), [&](PictureOperation& operation) {
        const AxesFrame turn = FindSurroundings(ws.plot.Pixels, operation).Turn;
        return ReadLabels(ws.plot.Pixels, turn, labels, operation);
      });
  CurveList list = ws.curves;
  std::vector<NewName> names;
  const bool isEmpty = ws.store.CaptureCount == 0 && ws.store.ListCount == 0;
  for (const LabelReading& label : written) {
    const bool isActive = names.empty() && isEmpty;
    NewName name{.Text = CurveNameOf(label.Text)};
    if (!CurveNameFault(list, name.Text, isActive ? list.Active : -1).empty())
      name.Text = isActive ? ActiveCurve(list).Name : FreeCurveName(list);
    else if (label.IsDoubtful)
      name.Doubt = label.Second.empty() ? Tr("its name may be misread")
                                        : Tr("its name may be \"%1\"", label.Second);
    if (isActive)
      ActiveCurve(list).Name = name.Text;
    else
      list.Curves.push_back({.Name = name.Text});
    names.push_back(std::move(name));
  }
  return names;
}

std::optional<Outcome> ReadAllRefused(const Workspace& ws) {
  return ReadingRefused(ws);
}

PlotReading ReadAllAt(Workspace& ws, const Desktop& desktop) {
  if (ws.form == Form::ReadAll && ws.readAll.From == ReadFromNow(ws)) {
    PlotReading shown;
    for (const ReadAllForm::Item& item : ws.readAll.Items) shown.Curves.push_back(item.Curve);
    return shown;
  }
  const std::vector<ReadingWall> walls = WallsOf(ws.blockers);
  return ReadBeside(ws, desktop, Marked("Reading all curves..."), [&](PictureOperation& operation) {
    operation.To = 0.1;
    const PlotSurroundings around = FindSurroundings(ws.plot.Pixels, operation);
    const AxesFrame frame = ReadingFrame(ws.calibration, ws.plot.Pixels, around,
                                         0.5 * ws.plot.Width(), 0.5 * ws.plot.Height());
    return ReadAllCurves(ws.plot.Pixels, frame, around, walls, operation);
  });
}

Outcome Run(Workspace& ws, const Desktop& desktop, const ReadAllStep& step) {
  if (auto refused = ReadAllRefused(ws)) return *refused;
  const PlotReading reading = ReadAllAt(ws, desktop);
  if (reading.IsStopped) {
    ws.status.Status = Tr("Stopped: nothing was read");
    return Nothing("it was stopped");
  }
  if (reading.Curves.empty()) {
    ws.status.Status = Tr("No curves were found");
    return Refused("there is no curve within the axes");
  }
  std::vector<ReadAllStep::Curve> taken = step.Taken;
  std::vector<std::string> nameDoubts(taken.size());  // whoever names them has none
  if (taken.empty())
    for (NewName& name : NamesFor(ws, desktop, reading.Curves)) {
      taken.push_back({static_cast<int>(taken.size() + 1), std::move(name.Text)});
      nameDoubts.push_back(std::move(name.Doubt));
    }
  // Everything is checked first: a step that is refused changes nothing.
  const bool isEmpty = ws.store.CaptureCount == 0 && ws.store.ListCount == 0;
  std::vector<std::string> names;
  for (const ReadAllStep::Curve& curve : taken) {
    if (curve.Number > static_cast<int>(reading.Curves.size()))
      return Refused(Tr("there are %1, not %2", CurveCount(reading.Curves.size()), curve.Number));
    const std::string name = CurveNameOf(curve.Name);
    const int current = names.empty() && isEmpty ? ws.curves.Active : -1;
    if (!name.empty())
      if (const std::string fault = CurveNameFault(ws.curves, name, current); !fault.empty())
        return Refused(fault);
    if (!name.empty() && std::find(names.begin(), names.end(), name) != names.end())
      return Refused(Tr("two curves have the name \"%1\"", name));
    names.push_back(name);
    const std::size_t count =
        reading.Curves[static_cast<std::size_t>(curve.Number - 1)].Reading.Points.size();
    if (auto refused = RoomRefused(PointStore(), count)) return *refused;
  }
  if (ws.curves.Curves.size() + taken.size() > kMostCurves)
    return Refused(Tr("there would be more than %1 curves", kMostCurves));
  int points = 0, first = -1;
  std::size_t doubtful = 0;
  std::string doubts;  // a line for each curve
  for (std::size_t i = 0; i < taken.size(); ++i) {
    const PlotCurve& curve = reading.Curves[static_cast<std::size_t>(taken[i].Number - 1)];
    if (i > 0 || !isEmpty)
      AddCurve(ws.curves, ws.store, names[i].empty() ? FreeCurveName(ws.curves) : names[i]);
    else if (!names[i].empty())
      ActiveCurve(ws.curves).Name = names[i];
    if (first < 0) first = ws.curves.Active;
    ActiveCurve(ws.curves).Shown = true;
    ActiveCurve(ws.curves).MarkColour = ColourOfPixel(PixelOf(curve.Colour));
    CaptureRead(ws, desktop, PlacesOf(curve.Reading.Points));
    points += static_cast<int>(curve.Reading.Points.size());
    std::vector<std::string> told = curve.Reading.Doubts;
    if (!nameDoubts[i].empty()) told.push_back(nameDoubts[i]);
    if (!told.empty()) {
      ++doubtful;
      doubts += "\n  " + ActiveCurve(ws.curves).Name + ": ";
      for (std::size_t k = 0; k < told.size(); ++k) doubts += (k > 0 ? "; " : "") + told[k];
    }
  }
  SelectCurve(ws.curves, ws.store, first);
  ShowActiveCurve(ws);
  std::string remark = CurveCount(taken.size());
  if (doubtful > 0) remark = Tr("%1, %2 of them with doubts", remark, doubtful);
  ws.status.Status = Tr("Read %1 (%2)", remark, PointCount(points));
  return {.Points = points, .Remark = remark + doubts};
}

}  // namespace graphize
