#pragma once

#include <string>
#include <vector>

#include "reading/read_all.h"
#include "workspace/reading_preview.h"

namespace graphize {

/// The window FRM_ReadAll: the curves that were found, each with its yes or no.
struct ReadAllForm {
  struct Item {
    PlotCurve Curve;
    bool IsTaken = true;
    std::string Name;
    std::string Sure;  // how sure, and what is doubtful
  };
  std::vector<Item> Items;  // a row each of LST_Curves, in the order of ReadAllStep's numbers
  int Current = -1;         // the row that is looked at
  std::string Hint;         // LBL_Hint
  ReadFrom From;
};

}  // namespace graphize
