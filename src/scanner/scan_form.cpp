#include "scanner/scan_form.h"

#include <algorithm>
#include <utility>

#include "base/translation.h"
#include "scanner/scan_page.h"

namespace graphize {

namespace {

constexpr double kPreviewResolution = 75;

std::vector<double> ChoicesOf(const ScanAbilities& can) {
  std::vector<double> choices = can.Resolutions;
  if (choices.empty()) {
    for (const double usual : {75, 100, 150, 200, 300, 400, 600, 1200, 2400, 4800})
      if (usual >= can.ResolutionRange.Min && usual <= can.ResolutionRange.Max)
        choices.push_back(usual);
  }
  if (can.Now.Resolution > 0) choices.push_back(can.Now.Resolution);
  std::sort(choices.begin(), choices.end());
  choices.erase(std::unique(choices.begin(), choices.end()), choices.end());
  return choices;
}

std::string SizeOf(const ScanAbilities& can) {
  if (can.Width < 1) return {};
  if (can.Height < 1) return Tr("%1 pixels wide, as long as you scan", can.Width);
  return Tr("%1 x %2 pixels", can.Width, can.Height);
}

/// The part of the stretch from `start` that lies in the range.
void Clip(double& start, double& length, const ScanRange& range) {
  const double first = std::clamp(start, range.Min, range.Max);
  const double last = std::clamp(start + length, range.Min, range.Max);
  start = first;
  length = last - first;
}

}  // namespace

void ShowAbilities(ScanForm& form, ScanAbilities can) {
  form.Can = std::move(can);
  form.Resolutions = ChoicesOf(form.Can);
  form.Size = SizeOf(form.Can);
  form.Hint = ScanSizeRefusal(form.Can.Width, form.Can.Height);
}

bool MayTypeResolution(const ScanForm& form) {
  return form.Can.Resolutions.empty() &&
         form.Can.ResolutionRange.Max > form.Can.ResolutionRange.Min;
}

bool HasArea(const ScanAbilities& can) {
  return can.Across.Max > can.Across.Min && can.Down.Max > can.Down.Min;
}

PageArea WholeArea(const ScanAbilities& can) {
  return {can.Across.Min, can.Down.Min, can.Across.Max - can.Across.Min,
          can.Down.Max - can.Down.Min};
}

PageArea WithinReach(const PageArea& area, const ScanAbilities& can) {
  PageArea inside = area;
  Clip(inside.Left, inside.Width, can.Across);
  Clip(inside.Top, inside.Height, can.Down);
  return inside.Width > 0 && inside.Height > 0 ? inside : WholeArea(can);
}

ScanSettings FirstSettings(const ScanAbilities& can) {
  ScanSettings settings = {.Depth = 8, .Resolution = 300};
  for (const std::string& mode : can.Modes) {
    std::string lower = mode;
    for (char& c : lower) c = static_cast<char>(c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c);
    // Some devices call black dots in a pattern grey, too.
    const bool dots =
        lower.find("dither") != std::string::npos || lower.find("diffusion") != std::string::npos;
    const bool grey =
        lower.find("gray") != std::string::npos || lower.find("grey") != std::string::npos;
    if (grey && !dots && settings.Mode.empty()) settings.Mode = mode;
  }
  return settings;
}

ScanSettings PreviewSettings(const ScanForm& form) {
  ScanSettings settings = form.Can.Now;
  settings.Resolution = kPreviewResolution;
  if (HasArea(form.Can)) settings.Area = WholeArea(form.Can);
  return settings;
}

}  // namespace graphize
