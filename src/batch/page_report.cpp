#include "batch/page_report.h"

#include <utility>
#include <vector>

#include "base/json.h"
#include "base/number_pattern.h"
#include "data/point_table.h"

namespace graphize {

namespace {

/// How the page lies, each with its name; empty texts where that is not known.
std::vector<std::pair<const char*, std::string>> LieOf(const PageOutcome& page) {
  const auto& lie = page.Registration;
  const auto text = [&](double PageRegistration::*value, double parts) {
    return lie ? RoundedText((*lie).*value, parts) : std::string();
  };
  return {{"worst_residual", text(&PageRegistration::Worst, 1e3)},
          {"shift_x", text(&PageRegistration::ShiftX, 1e3)},
          {"shift_y", text(&PageRegistration::ShiftY, 1e3)},
          {"turn", text(&PageRegistration::Turn, 1e4)},
          {"scale", text(&PageRegistration::Scale, 1e6)}};
}

}  // namespace

const char* NameOf(PageOutcome::How how) {
  switch (how) {
    case PageOutcome::How::Doubtful:
      return "doubtful";
    case PageOutcome::How::Refused:
      return "refused";
    case PageOutcome::How::Failed:
      return "failed";
    case PageOutcome::How::Done:
      break;
  }
  return "done";
}

std::string ReportCsv(std::span<const PageOutcome> pages) {
  std::string text = "picture,state,points";
  for (const auto& [name, value] : LieOf({})) text += std::string(",") + name;
  text += ",reason\r\n";
  for (const PageOutcome& page : pages) {
    text += CsvString(page.Picture) + "," + NameOf(page.Is) + "," + std::to_string(page.Points);
    for (const auto& [name, value] : LieOf(page)) text += "," + value;
    text += "," + CsvString(page.Reason) + "\r\n";
  }
  return text;
}

std::string ReportJson(std::span<const PageOutcome> pages) {
  std::string text = "[";
  const char* separator = "\n";
  for (const PageOutcome& page : pages) {
    text += std::exchange(separator, ",\n");
    text += "  {\"picture\": " + JsonString(page.Picture) +
            ", \"state\": " + JsonString(NameOf(page.Is)) +
            ", \"points\": " + std::to_string(page.Points);
    for (const auto& [name, value] : LieOf(page))
      text += std::string(", \"") + name + "\": " + (value.empty() ? "null" : value);
    text += ", \"reason\": " + JsonString(page.Reason) + "}";
  }
  return text + "\n]\n";
}

}  // namespace graphize
