#pragma once

#include <optional>
#include <string>
#include <vector>

#include "desktop/desktop.h"
#include "reading/find_symbols.h"
#include "reading/read_all.h"
#include "workspace/outcome.h"
#include "workspace/step.h"
#include "workspace/workspace.h"

namespace graphize {

/// Why no symbols can be looked for; absent where SymbolsAt can be asked.
std::optional<Outcome> SymbolsRefused(const Workspace& ws, const SymbolsStep& step);
/// The symbols that the step would find, also those that it leaves out, for looking at them first:
/// off the picture without marks, with the blockers for walls. Nothing is captured or noted. Shows
/// progress and stops on Escape; a refusal is in the finding.
SymbolFinding SymbolsAt(Workspace& ws, const Desktop& desktop, const SymbolsStep& step);
/// How many there are and how many of them are doubtful, in plain words.
std::string HowSure(const std::vector<FoundSymbol>& symbols);
/// Captures the symbols from left to right. Refused with what was found there where that is none;
/// Escape captures nothing.
Outcome Run(Workspace& ws, const Desktop& desktop, const SymbolsStep& step);

/// Why the plot's curves cannot be read; absent where ReadAllAt can be asked.
std::optional<Outcome> ReadAllRefused(const Workspace& ws);
/// All curves of the plot, in the order of the step's numbers; likewise without capturing any.
PlotReading ReadAllAt(Workspace& ws, const Desktop& desktop);
/// A name for a curve that is not one yet.
struct NewName {
  std::string Text, Doubt;  // why it may be another one; empty for most
};
/// Names that no curve has, from the legend as far as it was read; the first is the active curve's
/// own while that is empty.
std::vector<NewName> NamesFor(Workspace& ws, const Desktop& desktop,
                              const std::vector<PlotCurve>& curves);
/// Each curve that is taken becomes one of the list, with its ink's colour: the first the active
/// one, where that is empty. The first of them is the active one afterwards.
Outcome Run(Workspace& ws, const Desktop& desktop, const ReadAllStep& step);

}  // namespace graphize
