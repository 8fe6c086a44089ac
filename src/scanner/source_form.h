#pragma once

#include <string>
#include <vector>

#include "scanner/scanner.h"

namespace graphize {

/// The window FRM_SelectSource: the scanners to choose from.
struct SourceForm {
  std::vector<ScanSource> Sources;
  int Selected = -1;     // index into Sources
  bool Network = false;  // look in the network, too
  bool Looking = false;
  std::string Hint;
};

/// A search begins: what was found before goes.
void BeginLooking(SourceForm& form);
/// What the search has found. `chosen`, the scanner chosen before, is selected, else the first.
void ShowSources(SourceForm& form, std::vector<ScanSource> sources, const std::string& chosen);
/// The search was stopped or failed.
void ShowNoSources(SourceForm& form, const std::string& hint);

bool CanChooseSource(const SourceForm& form);

/// "Vendor Model", or the name of a device that tells neither.
std::string SourceLabel(const ScanSource& source);

}  // namespace graphize
