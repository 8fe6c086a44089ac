#include "session/kept_records.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "base/checksum.h"
#include "base/json.h"
#include "base/numbers.h"
#include "base/run_time_error.h"
#include "base/translation.h"
#include "base/version.h"
#include "raster/size_limits.h"
#include "session/kept_axes.h"
#include "session/kept_fields.h"
#include "workspace/recipe_options.h"

namespace graphize {

namespace {

constexpr const char* kStepOptions = "options_of_steps";
constexpr std::size_t kLargestRecords = 4u << 20;  // bytes of text
constexpr int kMostPoints = 32767;
constexpr int kMostIds = 1 << 24;  // of all curves: their places then take 128 MB

/// The small records, as they are written.
struct Small {
  KeptDocument& Kept;
  std::string Format = kProjectFormat, Program = ProgramVersion(), Path, Checksum;
  std::int64_t FileSize = 0;
  int Version = kProjectVersion;
  std::string Mode;  // its key; empty for none
  std::vector<Blocker> Blockers;
  std::vector<CurveHead> Curves;
  int SavedPoints = -1;
  KeptDocument::OptionValues Options, StepOptions;
};

// The fields of each record, for writing and reading alike.

template <class Io>
void Fields(Io& io, Blocker& blocker) {
  io.Integer("column", blocker.X, kLeast16, kMost16);
  io.Integer("row", blocker.Y, kLeast16, kMost16);
  io.Integer("size", blocker.Size, 0, kMost16);
}

template <class Io>
void Fields(Io& io, CurveHead& curve) {
  using Rows = PointStore::Rows;
  io.Text("name", curve.Name);
  io.Text("color", curve.Colour);
  io.Flag("shown", curve.Shown);
  io.Integer("points", curve.Captured, 0, kMostPoints);
  io.Integer("list_rows", curve.Listed, 0, kMostPoints);
  io.Flag("list_is_captured", curve.ListIsCaptured);
  io.template Choice<Rows>("list_holds", curve.ListRows,
                           {{Rows::Places, "values"},
                            {Rows::SwappedPlaces, "swapped values"},
                            {Rows::Other, "other numbers"}});
  io.Integer("next_id", curve.Ids, 1, kMostIds);
  io.Integer("last_column", curve.LastPixelX, kLeast16, kMost16);
  io.Integer("last_row_from_bottom", curve.LastPixelY, kLeast16, kMost16);
  io.Flag("saved", curve.Saved);
}

/// What is not read stays as it is.
template <class Io>
void Options(Io& io, const char* name, KeptDocument::OptionValues& values) {
  io.Object(name, [&] {
    for (std::size_t i = 0; i < values.size(); ++i) {
      const char* option = RecipeOptions()[i].Name;
      if constexpr (requires { io.Has(option); })
        if (!io.Has(option)) continue;
      io.Text(option, values[i]);
    }
  });
}

template <class Io>
void PictureFields(Io& io, Small& small) {
  KeptDocument& kept = small.Kept;
  io.Text("file", kept.PictureFile);
  io.Text("original", kept.OriginalFile);
  constexpr const char* kColours = "colours";
  bool hasColours = !kept.ColoursFile.empty();
  if constexpr (requires { io.Has(kColours); }) hasColours = io.Has(kColours);
  if (hasColours) io.Text(kColours, kept.ColoursFile);
  io.Text("source", kept.SourceName);
  io.Integer("width", kept.Width, 0, kMost16);
  io.Integer("height", kept.Height, 0, kMost16);
  io.Integer("bytes", small.FileSize, 0, std::numeric_limits<std::int64_t>::max());
  io.Text("crc32", small.Checksum);
  io.Text("path", small.Path);
  io.Text("name", kept.Picture.Name);
  io.Flag("from_file", kept.Picture.FromFile);
  io.Flag("without_file", kept.Picture.WithoutFile);
  io.Flag("can_undo_edit", kept.HasUndo);
  io.Flag("persistent_drawing", kept.PersistentDrawing);
  MapField(io, kept.Map.Shown);
}

template <class Io>
void HeadFields(Io& io, Small& small) {
  io.Text("format", small.Format);
  io.Integer("version", small.Version, 1, std::numeric_limits<int>::max());
  io.Text("program", small.Program);
}

template <class Io>
void Fields(Io& io, Small& small) {
  KeptDocument& kept = small.Kept;
  io.Object("picture", [&] { PictureFields(io, small); });
  io.Object("axes", [&] { AxesFields(io, kept); });
  io.Text("mode", small.Mode);
  io.List("curves", small.Curves, kMostCurves, [&](CurveHead& curve) { Fields(io, curve); });
  io.Integer("active_curve", kept.Active, 0, kMostCurves);
  io.List("blockers", small.Blockers, kMaxBlockers, [&](Blocker& b) { Fields(io, b); });
  io.Text("data_file", kept.DataFileName);
  io.Text("data_title", kept.DataFileTitle);
  io.Integer("saved_points", small.SavedPoints, -1, kMostPoints);
  Options(io, "options", small.Options);
}

// From the document to what is written, and back.

CurveHead HeadOf(const Curve& curve) {
  const PointStore& store = *curve.Points;
  return {.Name = curve.Name,
          .Colour = "#" + HexText(PixelOfColour(curve.MarkColour)).substr(2),
          .Shown = curve.Shown,
          .Captured = store.CaptureCount,
          .Listed = store.ListCount,
          .Ids = static_cast<int>(store.Places.size()),
          .ListIsCaptured = store.ListIsCaptured,
          .ListRows = store.ListRows,
          .LastPixelX = store.LastPixelX,
          .LastPixelY = store.LastPixelY,
          .Saved = !HasUnsaved(store)};
}

Small SmallOf(KeptDocument& kept) {
  Small small{.Kept = kept,
              .Path = kept.Picture.ChosenPath.string(),
              .Checksum = HexText(kept.Picture.FileChecksum),
              .FileSize = static_cast<std::int64_t>(kept.Picture.FileSize),
              .Mode = std::string(ModeKey(kept.InMode)),
              .Blockers = {},
              .Curves = {},
              .SavedPoints = kept.Steps.SavedPoints.value_or(-1),
              .Options = kept.Options,
              .StepOptions = kept.Steps.Options};
  for (int i = 1; i <= kept.Blockers.Count; ++i)
    small.Blockers.push_back(kept.Blockers.Blockers[static_cast<std::size_t>(i)]);
  for (const Curve& curve : kept.Curves) small.Curves.push_back(HeadOf(curve));
  return small;
}

void TakePicture(const Small& small, JsonReader& reader) {
  KeptDocument& kept = small.Kept;
  const bool none = kept.Width == 0 && kept.Height == 0;
  if (!none && !SizeRefusal(kept.Width, kept.Height).empty())
    reader.Fail("picture", "has a size that cannot be");
  const auto checksum = NumberOfHexText(small.Checksum);
  if (!checksum) reader.Fail("picture.crc32", "is no checksum");
  kept.Picture.FileChecksum = *checksum;
  kept.Picture.FileSize = static_cast<std::uintmax_t>(small.FileSize);
  kept.Picture.ChosenPath = small.Path;
  kept.Picture.Path = LowerCase(small.Path);
}

void TakeOptions(const Small& small, JsonReader& reader) {
  Workspace scratch;
  for (const auto* values : {&small.StepOptions, &small.Options})
    for (std::size_t i = 0; i < values->size(); ++i)
      if (!RecipeOptions()[i].Take(scratch, (*values)[i]))
        reader.Fail(RecipeOptions()[i].Name, "cannot be \"" + (*values)[i] + "\"");
  if (scratch.calibration.XLog != small.Kept.Axes.XLog ||
      scratch.calibration.YLog != small.Kept.Axes.YLog)
    reader.Fail("options", "are at odds with the axes");
  small.Kept.Options = small.Options;
  small.Kept.Steps.Options = small.StepOptions;
}

void TakeSmall(Small& small, JsonReader& reader) {
  KeptDocument& kept = small.Kept;
  kept.InMode = ModeOfKey(small.Mode);
  TakePicture(small, reader);
  kept.Blockers.Count = static_cast<std::int16_t>(small.Blockers.size());
  std::copy(small.Blockers.begin(), small.Blockers.end(), kept.Blockers.Blockers.begin() + 1);
  if (small.SavedPoints >= 0) kept.Steps.SavedPoints = small.SavedPoints;
  TakeOptions(small, reader);
  if (static_cast<std::size_t>(kept.Active) >= small.Curves.size())
    reader.Fail("active_curve", "is none of the curves");
  std::int64_t ids = 0;
  for (const CurveHead& curve : small.Curves) {
    if (curve.ListIsCaptured && curve.Listed > curve.Captured)
      reader.Fail("curves", "have more rows than points");
    ids += curve.Ids;
  }
  if (ids > kMostIds) reader.Fail("curves", "have too many points");
}

/// The curves' names and colours.
void TakeCurves(const Small& small, JsonReader& reader) {
  CurveList curves{.Curves = {}, .Origin = {}, .Left = {}};
  for (const CurveHead& head : small.Curves) {
    if (const std::string fault = CurveNameFault(curves, head.Name); !fault.empty())
      reader.Fail("curves", "have a name that cannot be: " + fault);
    const auto pixel = head.Colour.starts_with('#') && head.Colour.size() == 7
                           ? NumberOfHexText("ff" + head.Colour.substr(1))
                           : std::nullopt;
    if (!pixel) reader.Fail("curves", "have a color that is none");
    curves.Curves.push_back({.Name = head.Name,
                             .MarkColour = ColourOfPixel(*pixel),
                             .Shown = head.Shown || small.Curves.size() == 1,
                             .Points = {}});
  }
  small.Kept.Curves = std::move(curves.Curves);
}

}  // namespace

std::string RecordsText(KeptDocument& kept) {
  Small small = SmallOf(kept);
  JsonWriter writer;
  HeadFields(writer, small);
  Fields(writer, small);
  if (!small.StepOptions.empty()) Options(writer, kStepOptions, small.StepOptions);
  return writer.Take();
}

KeptRecords ReadRecords(const std::string& text) {
  if (text.size() > kLargestRecords) throw RunTimeError("it is too large");
  KeptRecords read;
  Small small{.Kept = read.Kept,
              .Path = {},
              .Checksum = {},
              .Mode = {},
              .Blockers = {},
              .Curves = {},
              .Options = OptionValues(Workspace()),
              .StepOptions = {}};
  JsonReader reader(text);
  HeadFields(reader, small);
  if (small.Format != kProjectFormat) reader.Fail("format", "is another one");
  if (small.Version > kProjectVersion)
    throw RunTimeError(
        Tr("it is of version %1, from a newer program (%2); this one reads version %3",
           small.Version, small.Program, kProjectVersion));
  Fields(reader, small);
  if (reader.Has(kStepOptions)) {
    small.StepOptions = OptionValues(Workspace());
    Options(reader, kStepOptions, small.StepOptions);
  }
  TakeSmall(small, reader);
  TakeCurves(small, reader);
  read.Curves = std::move(small.Curves);
  return read;
}

}  // namespace graphize
