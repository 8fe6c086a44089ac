#pragma once

#include <string>
#include <vector>

#include "capture/point_store.h"
#include "session/kept_document.h"

namespace graphize {

/// "project.json" begins with what this file is, its version and the program's.
inline constexpr const char* kProjectFormat = "graphize project";
inline constexpr int kProjectVersion = 1;

/// What a curve's points are beside their rows.
struct CurveHead {
  std::string Name, Colour;  // "#rrggbb"
  bool Shown = true;
  int Captured = 0, Listed = 0;  // rows
  int Ids = 1;                   // that were given, with 0
  bool ListIsCaptured = true;
  PointStore::Rows ListRows = PointStore::Rows::Places;
  int LastPixelX = 0, LastPixelY = 0;
  bool Saved = false;
};

/// The small records of a document, as JSON: all of it but the steps and the rows of its curves.
std::string RecordsText(KeptDocument& kept);

struct KeptRecords {
  KeptDocument Kept;  // its curves without points
  std::vector<CurveHead> Curves;
};
/// Reads them. RunTimeError that names the place in the text.
KeptRecords ReadRecords(const std::string& text);

}  // namespace graphize
