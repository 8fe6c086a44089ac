#pragma once

#include <optional>
#include <string>
#include <vector>

#include "batch/batch_step.h"
#include "batch/curve_start.h"
#include "finding_axes/register_page.h"
#include "workspace/workspace.h"

namespace graphize {

/// A recipe that is done on pages of the layout of its own picture. Several threads may use one at
/// a time.
struct AlikePages {
  /// What the recipe's own picture tells of a step.
  struct KnownStep {
    AffineMap ToShown;         // from the picture as it was opened to the one of the step
    std::optional<Ink> Drawn;  // of the curve or symbol that is read there
    std::optional<SymbolBlob> Symbol;
  };

  bool UsesReferences = false;  // the calibrated page's axes are refined at the end
  bool Align = true;            // pages are registered; else they lie as the recipe's picture does
  PageReference Reference;
  std::vector<KnownStep> Known;  // of each step
};

/// The columns are what the traces and readings begin with, in their order; for those beyond them
/// traces are added to the steps, behind the last one that captures.
void BeginInColumns(std::vector<BatchStep>& steps, const std::vector<StartOption>& columns);

/// Whether the step must be done on the recipe's own picture for others to be known.
bool ShapesPicture(const Step& step);
/// What the recipe's own picture, as it is before the step, tells of it.
AlikePages::KnownStep LookAt(Workspace& ws, const Step& step);

/// What becomes of one step on a page.
struct StepsOnPage {
  std::vector<Step> Do;
  std::string Note;   // what is left out, and why
  std::string Doubt;  // what a look at the page would settle
  struct Area {
    AffineMap Back;  // to the picture that the rectangle is of
    ScanRectangle Is;
  };
  std::optional<Area> Within;  // points beyond it are none of the scan's
};
/// `number` counts the recipe's steps from 0. The page is the workspace's, as far as it has come.
/// Throws RunTimeError where a curve or symbol is not found.
StepsOnPage StepsFor(const AlikePages& alike, const AffineMap& toPage, std::size_t number,
                     const BatchStep& step, Workspace& ws);

}  // namespace graphize
