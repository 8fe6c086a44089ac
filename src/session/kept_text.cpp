#include "session/kept_text.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "base/checksum.h"
#include "base/numbers.h"
#include "base/run_time_error.h"
#include "commands/recipe_file.h"
#include "session/kept_points.h"
#include "session/kept_records.h"

namespace graphize {

namespace {

constexpr const char* kSmallRecords = "project.json";
constexpr const char* kSteps = "steps.txt";

std::string CurvePart(std::size_t index, const char* ending) {
  return "curves/" + std::to_string(index + 1) + ending;
}

/// A store for so many rows, which are not read yet.
std::shared_ptr<PointStore> EmptyStore(const CurveHead& head) {
  auto store = std::make_shared<PointStore>();
  const auto resize = [](int count, auto&... arrays) {
    constexpr int kStep = 500;  // as they grow while points are captured
    (arrays.resize(static_cast<std::size_t>(count / kStep * kStep + kStep + 1)), ...);
  };
  resize(head.Captured, store->CaptureX, store->CaptureY, store->CaptureId);
  resize(head.Listed, store->ListX, store->ListY, store->ListId);
  store->CaptureCount = static_cast<std::int16_t>(head.Captured);
  store->ListCount = static_cast<std::int16_t>(head.Listed);
  store->ListIsCaptured = head.ListIsCaptured;
  store->ListRows = head.ListRows;
  store->LastPixelX = static_cast<std::int16_t>(head.LastPixelX);
  store->LastPixelY = static_cast<std::int16_t>(head.LastPixelY);
  store->Places.resize(static_cast<std::size_t>(head.Ids));
  return store;
}

const KeptPart* Find(const std::vector<KeptPart>& parts, const std::string& name) {
  const auto found = std::ranges::find(parts, name, &KeptPart::Name);
  return found == parts.end() ? nullptr : &*found;
}

const KeptPart& Need(const std::vector<KeptPart>& parts, const std::string& name) {
  const KeptPart* part = Find(parts, name);
  if (part == nullptr) throw RunTimeError(Tr("\"%1\" is missing", name));
  return *part;
}

/// Reads a part, whose name an error then has in front.
template <class Read>
void Naming(const std::string& name, const Read& read) {
  try {
    read();
  } catch (const RunTimeError& error) {
    throw RunTimeError(Tr("%1: %2", name, std::string(error.what())));
  }
}

std::shared_ptr<const PointStore> ReadPoints(const std::vector<KeptPart>& parts, std::size_t index,
                                             const CurveHead& head) {
  const std::shared_ptr<PointStore> store = EmptyStore(head);
  const auto read = [&](const KeptPart& part, void (*reading)(PointStore&, std::string_view)) {
    Naming(part.Name, [&] { reading(*store, part.Text); });
  };
  read(Need(parts, CurvePart(index, ".csv")), ReadCaptured);
  if (const KeptPart* list = Find(parts, CurvePart(index, ".list.csv")))
    read(*list, ReadList);
  else if (head.Listed == head.Captured)
    TakeCapturedAsList(*store);
  else
    Need(parts, CurvePart(index, ".list.csv"));
  if (const KeptPart* behind = Find(parts, CurvePart(index, ".behind.csv")))
    read(*behind, ReadBehindList);
  if (head.Saved) NoteSaved(*store);
  ShowNewest(*store);
  return store;
}

void ReadSteps(Recipe& recipe, const std::string& text) {
  RecipeFile file = ReadRecipe(text, {});
  for (const RecipeFile::Picture& picture : file.Pictures)
    recipe.Pictures.push_back({.Path = picture.Path,
                               .Width = picture.Width,
                               .Height = picture.Height,
                               .FileSize = picture.FileSize,
                               .FileChecksum = NumberOfHexText(picture.Checksum).value_or(0)});
  for (RecipeFile::Line& line : file.Steps) recipe.Steps.push_back(std::move(line.Is));
}

}  // namespace

std::vector<KeptPart> PartsOf(KeptDocument kept) {
  std::vector<KeptPart> parts = {{kSmallRecords, RecordsText(kept)}};
  for (std::size_t i = 0; i < kept.Curves.size(); ++i) {
    const PointStore& store = *kept.Curves[i].Points;
    parts.push_back({CurvePart(i, ".csv"), CapturedText(store)});
    if (std::string list = ListText(store); !list.empty())
      parts.push_back({CurvePart(i, ".list.csv"), std::move(list)});
    if (std::string behind = BehindListText(store); !behind.empty())
      parts.push_back({CurvePart(i, ".behind.csv"), std::move(behind)});
  }
  if (!kept.Steps.Steps.empty()) {
    const int points = kept.Curves[static_cast<std::size_t>(kept.Active)].Points->ListCount;
    parts.push_back({kSteps, RecipeText(kept.Steps, points, {})});
  }
  return parts;
}

KeptDocument ReadParts(const std::vector<KeptPart>& parts) {
  KeptRecords read;
  const KeptPart& records = Need(parts, kSmallRecords);
  Naming(records.Name, [&] { read = ReadRecords(records.Text); });
  KeptDocument& kept = read.Kept;
  for (std::size_t i = 0; i < read.Curves.size(); ++i)
    kept.Curves[i].Points = ReadPoints(parts, i, read.Curves[i]);
  if (const KeptPart* steps = Find(parts, kSteps))
    Naming(steps->Name, [&] { ReadSteps(kept.Steps, steps->Text); });
  return std::move(kept);
}

}  // namespace graphize
