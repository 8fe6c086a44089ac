#include "commands/symbol_preview.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include "base/translation.h"
#include "commands/find_commands.h"
#include "commands/preview_commands.h"
#include "commands/view_commands.h"

namespace graphize {

namespace {

SymbolsStep StepAt(const PlotPixel& click, SymbolCentre centre, int tolerance) {
  return {.X = static_cast<float>(click.X),
          .Y = static_cast<float>(click.Y),
          .Centre = centre,
          .Tolerance = static_cast<float>(tolerance) / ReadingControl::kAsFound};
}

bool IsDoubtful(const FoundSymbol& symbol) {
  return !symbol.Doubt.empty();
}

/// How many there are and how sure, and what there is to say of the one that is looked at.
void ShowSymbols(Workspace& ws) {
  const SymbolPreview& shown = *ws.reading.Symbols;
  std::string text = HowSure(shown.Finding.Symbols);
  const auto left = std::count(shown.LeftOut.begin(), shown.LeftOut.end(), true);
  if (left > 0) text = Tr("%1; %2", text, TrCount("%1 is left out", "%1 are left out", left));
  if (const FoundSymbol* symbol = CurrentSymbol(ws)) {
    const std::string what = IsDoubtful(*symbol) ? symbol->Doubt : Tr("it is clear");
    text += "\n" + Tr(IsCurrentLeftOut(ws) ? Marked("The framed one, left out: %1")
                                           : Marked("The framed one, kept: %1"),
                      what);
  }
  SayReading(ws, text + NoteOnAxes(ws));
}

/// What was left out before is, too, where it is found again.
void CarryLeftOut(const SymbolPreview& before, SymbolPreview& now) {
  constexpr double kSamePlace = 2;  // pixels: centres of mass and of the box differ
  const auto& symbols = now.Finding.Symbols;
  for (std::size_t i = 0; i < before.LeftOut.size(); ++i) {
    if (!before.LeftOut[i]) continue;
    const FoundSymbol& old = before.Finding.Symbols[i];
    const auto distance = [&](const FoundSymbol& symbol) {
      return std::hypot(symbol.X - old.X, symbol.Y - old.Y);
    };
    const auto nearest =
        std::min_element(symbols.begin(), symbols.end(),
                         [&](const auto& a, const auto& b) { return distance(a) < distance(b); });
    if (nearest != symbols.end() && distance(*nearest) <= kSamePlace)
      now.LeftOut[static_cast<std::size_t>(nearest - symbols.begin())] = true;
  }
}

/// Of those whose box holds the place the nearest one.
std::optional<std::size_t> SymbolUnder(const SymbolFinding& finding, int x, int y) {
  std::optional<std::size_t> nearest;
  double least = 0;
  for (std::size_t i = 0; i < finding.Symbols.size(); ++i) {
    const double dx = finding.Symbols[i].X - x, dy = finding.Symbols[i].Y - y;
    if (std::abs(dx) > finding.Width / 2 || std::abs(dy) > finding.Height / 2) continue;
    const double distance = std::hypot(dx, dy);
    if (nearest && distance >= least) continue;
    nearest = i;
    least = distance;
  }
  return nearest;
}

void Find(Workspace& ws, const Desktop& desktop, const PlotPixel& click, bool again) {
  ws.reading.Reading = Tr("Looking for symbols...");
  SymbolPreview now{.Click = click,
                    .Tolerance = ws.reading.Tolerance,
                    .Centre = ws.reading.Centre,
                    .From = ReadFromNow(ws)};
  SymbolFinding finding = SymbolsAt(ws, desktop, StepAt(click, now.Centre, now.Tolerance));
  if (finding.IsStopped || !finding.Refusal.empty()) {
    const std::string why = finding.IsStopped ? Tr("Stopped: nothing was looked for")
                                              : Tr("No symbols: %1", finding.Refusal);
    if (ws.reading.Symbols) ShowSymbols(ws);
    return SayReading(ws, why + (ws.reading.Symbols ? "\n" + ws.reading.Reading : ""));
  }
  now.LeftOut.assign(finding.Symbols.size(), false);
  now.Finding = std::move(finding);
  now.MarkColour = ColourBeside(InkNear(ws.plot.Pixels, click.X, click.Y));
  if (again) CarryLeftOut(*ws.reading.Symbols, now);
  ws.reading.Symbols = std::move(now);
  ShowSymbols(ws);
}

}  // namespace

void ClickSymbol(Workspace& ws, const Desktop& desktop, int x, int y) {
  if (ws.reading.Symbols) {
    SymbolPreview& shown = *ws.reading.Symbols;
    if (const auto at = SymbolUnder(shown.Finding, x, y)) {
      shown.Current = static_cast<int>(*at);
      return LeaveOutCurrent(ws, !shown.LeftOut[*at]);
    }
  }
  Find(ws, desktop, {x, y}, false);
}

void FindAgain(Workspace& ws, const Desktop& desktop) {
  if (ws.reading.Symbols) Find(ws, desktop, ws.reading.Symbols->Click, true);
}

void ChooseCentre(Workspace& ws, const Desktop& desktop, SymbolCentre centre) {
  ws.reading.Centre = centre;
  FindAgain(ws, desktop);
}

void StepDoubtful(Workspace& ws, int step) {
  if (!HasDoubtful(ws)) return;
  SymbolPreview& shown = *ws.reading.Symbols;
  const auto& symbols = shown.Finding.Symbols;
  const auto count = static_cast<int>(symbols.size());
  // From none, a step back leads to the last.
  int at = shown.Current < 0 && step < 0 ? 0 : shown.Current;
  do at = (at + step + count) % count;
  while (!IsDoubtful(symbols[static_cast<std::size_t>(at)]));
  shown.Current = at;
  const FoundSymbol& symbol = symbols[static_cast<std::size_t>(at)];
  BringIntoSight(ws, symbol.X, symbol.Y);
  ShowSymbols(ws);
}

bool HasDoubtful(const Workspace& ws) {
  return ws.reading.Symbols && std::ranges::any_of(ws.reading.Symbols->Finding.Symbols, IsDoubtful);
}

void LeaveOutCurrent(Workspace& ws, bool leaveOut) {
  if (CurrentSymbol(ws) == nullptr) return;
  SymbolPreview& shown = *ws.reading.Symbols;
  shown.LeftOut[static_cast<std::size_t>(shown.Current)] = leaveOut;
  ShowSymbols(ws);
}

const FoundSymbol* CurrentSymbol(const Workspace& ws) {
  if (!ws.reading.Symbols || ws.reading.Symbols->Current < 0) return nullptr;
  const SymbolPreview& shown = *ws.reading.Symbols;
  return &shown.Finding.Symbols[static_cast<std::size_t>(shown.Current)];
}

bool IsCurrentLeftOut(const Workspace& ws) {
  return CurrentSymbol(ws) != nullptr &&
         ws.reading.Symbols->LeftOut[static_cast<std::size_t>(ws.reading.Symbols->Current)];
}

SymbolsStep StepOfSymbols(const Workspace& ws) {
  const SymbolPreview& shown = *ws.reading.Symbols;
  SymbolsStep step = StepAt(shown.Click, shown.Centre, shown.Tolerance);
  std::vector<PointId> left;
  for (std::size_t i = 0; i < shown.LeftOut.size(); ++i)
    if (shown.LeftOut[i]) left.push_back(static_cast<PointId>(i + 1));
  step.LeftOut = PointSet(std::move(left));
  return step;
}

bool CanTakeSymbols(const Workspace& ws) {
  return std::ranges::count(ws.reading.Symbols->LeftOut, false) > 0;
}

}  // namespace graphize
