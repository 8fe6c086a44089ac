#include "session/project_file.h"

#include <algorithm>
#include <array>
#include <limits>
#include <memory>
#include <span>
#include <utility>

#include "base/checksum.h"
#include "base/numbers.h"
#include "base/run_time_error.h"
#include "base/translation.h"
#include "base/whole_file.h"
#include "base/zip_file.h"
#include "codecs/file_format.h"
#include "codecs/picbuf.h"
#include "codecs/picture_probe.h"
#include "commands/do.h"
#include "commands/shown_picture.h"
#include "session/kept_raster.h"
#include "session/kept_text.h"

namespace graphize {

namespace {

namespace fs = std::filesystem;

constexpr const char* kMimeType = "mimetype";
constexpr const char* kBase = "picture/base.png";
constexpr const char* kColours = "picture/colours.png";
constexpr const char* kFaint = "picture/faint.csv";
constexpr const char* kLastEdit = "picture/last-edit.csv";
constexpr const char* kMarks = "picture/marks.csv";
constexpr const char* kSteps = "steps.txt";
constexpr const char* kOriginal = "picture/original.";
constexpr std::size_t kMostFiles = 4000;  // three for each curve, and the others
constexpr std::size_t kLargestPicture = std::size_t{2} << 30;
constexpr std::size_t kLargestText = std::size_t{256} << 20;
constexpr std::size_t kLargestProject = std::numeric_limits<std::uint32_t>::max();

bool IsOneOf(char c, std::string_view characters) {
  return characters.find(c) != std::string_view::npos;
}

constexpr std::string_view kDigits = "0123456789";
constexpr std::string_view kEndingLetters = "0123456789abcdefghijklmnopqrstuvwxyz";

bool IsEnding(std::string_view text) {
  return !text.empty() && text.size() <= 5 &&
         std::ranges::all_of(text, [](char c) { return IsOneOf(c, kEndingLetters); });
}

bool IsOriginal(std::string_view name) {
  return name.starts_with(kOriginal) && IsEnding(name.substr(std::string_view(kOriginal).size()));
}

/// "curves/12.list.csv"
bool IsCurvePart(std::string_view name) {
  constexpr std::string_view kFolder = "curves/";
  if (!name.starts_with(kFolder)) return false;
  name.remove_prefix(kFolder.size());
  const std::size_t digits = name.find_first_not_of(kDigits);
  if (digits == 0 || digits > 4) return false;
  const std::string_view ending = name.substr(digits);
  return ending == ".csv" || ending == ".list.csv" || ending == ".behind.csv";
}

bool IsPicturePart(std::string_view name) {
  return name == kBase || name == kColours || name == kFaint || name == kLastEdit ||
         name == kMarks || IsOriginal(name);
}

bool IsKnown(std::string_view name) {
  return IsCurvePart(name) || IsPicturePart(name) || name == kMimeType || name == "project.json" ||
         name == kSteps || name == "picture/" || name == "curves/";
}

// ---- Writing ------------------------------------------------------------------------------------

/// Whether the picture is another one than its file gives, by the steps since it was opened.
bool IsEdited(std::span<const Step> steps) {
  for (auto step = steps.rbegin(); step != steps.rend(); ++step) {
    if (const auto* open = std::get_if<OpenStep>(&*step)) return open->BlackAndWhite;
    if (const auto* reload = std::get_if<ReloadStep>(&*step)) return reload->BlackAndWhite;
    if (Is<DrawStep>(*step) || Is<EraseStep>(*step) || Is<GridStep>(*step) ||
        Is<UndoEditStep>(*step) || Is<ImageToolStep>(*step) || Is<UndoImageToolStep>(*step) ||
        Is<BlackWhiteStep>(*step) || Is<InkStep>(*step) || Is<ShowColoursStep>(*step))
      return true;
  }
  return true;
}

/// The steps before an ink was first taken alone from the colours that can come back.
std::span<const Step> BeforeInk(std::span<const Step> steps) {
  std::size_t first = steps.size();
  for (std::size_t i = steps.size(); i-- > 0;) {
    const Step& step = steps[i];
    if (Is<InkStep>(step)) first = i;
    if (Is<OpenStep>(step) || Is<ReloadStep>(step) || Is<ImageToolStep>(step) ||
        Is<UndoImageToolStep>(step) || Is<BlackWhiteStep>(step) || Is<ShowColoursStep>(step))
      break;
  }
  return steps.first(first);
}

/// Else it was pasted or scanned.
bool HasFile(const PictureSource& picture) {
  return !picture.ChosenPath.empty();
}

/// The picture's file as it was opened; null where it is not there any more.
std::shared_ptr<const std::string> OriginalOf(const PictureSource& picture) {
  if (picture.Bytes != nullptr) return picture.Bytes;
  if (!HasFile(picture)) return nullptr;
  try {
    ProbeResult verdict;
    std::string bytes = ReadPictureFile(picture.ChosenPath, verdict);
    if (bytes.size() == picture.FileSize && Crc32(bytes) == picture.FileChecksum)
      return std::make_shared<const std::string>(std::move(bytes));
  } catch (const RunTimeError&) {
    // The picture is kept as it is shown.
  }
  return nullptr;
}

std::string OriginalName(const PictureSource& picture) {
  std::string ending = LowerCase(picture.ChosenPath.extension().string());
  if (!ending.empty()) ending.erase(0, 1);
  if (!HasFile(picture)) ending = "png";
  return kOriginal + (IsEnding(ending) ? ending : "bin");
}

/// The points as they will be when the project is on the disk; the document's own are not yet.
std::shared_ptr<const PointStore> AsSaved(const std::shared_ptr<const PointStore>& points) {
  if (!HasUnsaved(*points)) return points;
  const auto saved = std::make_shared<PointStore>(*points);
  saved->Saved = std::make_shared<PointStore::Points>();
  NoteSaved(*saved);
  return saved;
}

/// Everything in the archive.
struct Content {
  std::vector<KeptPart> Texts;
  std::shared_ptr<const std::string> Original;
  std::string Base, Colours;

  std::string Bytes(const std::string& originalName) const {
    std::vector<ZipMember> members = {{kMimeType, kProjectType},
                                      {Texts.front().Name, Texts.front().Text}};
    if (Original != nullptr) members.push_back({originalName, *Original});
    if (!Base.empty()) members.push_back({kBase, Base});
    if (!Colours.empty()) members.push_back({kColours, Colours});
    for (std::size_t i = 1; i < Texts.size(); ++i)
      members.push_back({Texts[i].Name, Texts[i].Text});
    return ZipBytes(members);
  }
};

/// What the raster remembers; the base picture is shown, so that its marks hold what was drawn.
std::vector<KeptPart> RasterParts(const PlotImage& plot) {
  std::vector<KeptPart> parts;
  if (!plot.Pixels.Faint.IsEmpty()) parts.push_back({kFaint, BitsText(plot.Pixels.Faint)});
  if (!plot.LastEdit.empty()) parts.push_back({kLastEdit, RunsText(plot.LastEdit, plot.Width())});
  if (!plot.Marks.empty()) parts.push_back({kMarks, RunsText(plot.Marks, plot.Width())});
  return parts;
}

// ---- Reading ------------------------------------------------------------------------------------

ZipReader ArchiveOf(std::string_view bytes) {
  constexpr const char* kNone = Marked("The file is no project of this program.");
  if (!bytes.starts_with("PK")) throw RunTimeError(kNone);
  ZipReader zip(bytes, kMostFiles);
  const ZipReader::Entry* type = zip.Find(kMimeType);
  if (type == nullptr || zip.Read(*type, 256) != kProjectType) throw RunTimeError(kNone);
  return zip;
}

/// The parts that are text, read and with their checksums right.
std::vector<KeptPart> TextsIn(const ZipReader& zip, std::size_t fileSize) {
  // Numbers are hardly packed to less than a tenth: a file that unpacks to far more is a trap.
  std::size_t left = 32 * fileSize + (std::size_t{1} << 20);
  std::vector<KeptPart> parts;
  for (const ZipReader::Entry& entry : zip.Entries()) {
    if (!IsKnown(entry.Name))
      throw RunTimeError(
          Tr("There is a file \"%1\" in it, which is not of a project.", entry.Name));
    if (IsPicturePart(entry.Name) || entry.Name.ends_with('/')) continue;
    parts.push_back({entry.Name, zip.Read(entry, std::min(left, kLargestText))});
    left -= entry.Size;
  }
  return parts;
}

/// Reads a text about the raster; nothing where there is none.
template <class Read>
auto RasterText(const ZipReader& zip, const char* name, const Read& read) {
  decltype(read(std::string())) result{};
  if (const ZipReader::Entry* entry = zip.Find(name)) {
    try {
      result = read(zip.Read(*entry, kLargestText));
    } catch (const RunTimeError& error) {
      throw RunTimeError(Tr("%1: %2", std::string(name), std::string(error.what())));
    }
  }
  return result;
}

/// The picture and all about it. False when it was stopped; RunTimeError when it cannot be used.
bool ReadPicture(const ZipReader& zip, ProjectContent& project, const PictureProgress& progress) {
  KeptDocument& kept = project.Kept;
  if (const ZipReader::Entry* original = zip.Find(kept.OriginalFile); original != nullptr) {
    auto bytes = std::make_shared<const std::string>(zip.Read(*original, kLargestPicture));
    if (HasFile(kept.Picture) &&
        (bytes->size() != kept.Picture.FileSize || Crc32(*bytes) != kept.Picture.FileChecksum))
      throw RunTimeError("It is not the one that the points were captured on (its checksum).");
    kept.Picture.Bytes = std::move(bytes);
  } else if (!kept.OriginalFile.empty()) {
    throw RunTimeError("Its file is missing.");
  }
  const auto decode = [&](const std::string& name, Raster& picture) {
    const ZipReader::Entry* shown = zip.Find(name);
    if (shown == nullptr) throw RunTimeError("Its file is missing.");
    auto loaded = DecodePicture(
        name, name == kept.OriginalFile ? *kept.Picture.Bytes : zip.Read(*shown, kLargestPicture),
        progress);
    if (!loaded) return false;
    if (loaded->Picture.Width() != kept.Width || loaded->Picture.Height() != kept.Height)
      throw RunTimeError("Its size is another one.");
    picture = std::move(loaded->Picture);
    return true;
  };
  if (!decode(kept.PictureFile, project.Picture)) return false;
  if (!kept.ColoursFile.empty() && !decode(kept.ColoursFile, project.Colours)) return false;
  const int width = kept.Width, height = kept.Height;
  project.Picture.Faint = RasterText(
      zip, kFaint, [&](const std::string& text) { return ReadBits(text, width, height); });
  const auto runs = [&](const std::string& text) { return ReadRuns(text, width, height); };
  project.LastEdit = RasterText(zip, kLastEdit, runs);
  project.Marks = RasterText(zip, kMarks, runs);
  return true;
}

void PutMarks(PlotImage& plot, const OverdrawnPixels& drawn) {
  const auto width = static_cast<std::uint32_t>(plot.Width());
  for (const OverdrawnPixel& pixel : drawn)
    SetPixel(plot, static_cast<int>(pixel.Index % width), static_cast<int>(pixel.Index / width),
             ColourOfPixel(pixel.Pixel));
}

}  // namespace

std::optional<std::string> ProjectBytes(Workspace& ws, const Desktop& desktop) {
  if (!ws.plot.IsPresent()) throw RunTimeError("There is no picture.");
  NoteOptions(ws);
  KeptDocument kept = Keep(ws);
  for (Curve& curve : kept.Curves) curve.Points = AsSaved(curve.Points);
  Content content;
  content.Original = OriginalOf(ws.picture);
  const bool edited = IsEdited(ws.recipe.Steps);
  const bool isItsOwn = content.Original == nullptr && !HasFile(ws.picture) && !edited;

  const BasePictureShown base(ws.plot);
  const auto encode = [&](const Raster& picture) {
    return EncodePicture(kPngFormat, 0, picture, ShowProgress(ws, desktop));
  };
  if (content.Original == nullptr || edited) {
    auto png = encode(ws.plot.Pixels);
    if (!png) return std::nullopt;
    if (isItsOwn)
      content.Original = ws.picture.Bytes = std::make_shared<const std::string>(std::move(*png));
    else
      content.Base = std::move(*png);
  }
  const std::string original = OriginalName(ws.picture);
  if (ws.colours != nullptr) {
    kept.ColoursFile = original;
    if (content.Original == nullptr || IsEdited(BeforeInk(ws.recipe.Steps))) {
      auto png = encode(*ws.colours);
      if (!png) return std::nullopt;
      content.Colours = std::move(*png);
      kept.ColoursFile = kColours;
    }
  }
  if (content.Original != nullptr) kept.OriginalFile = original;
  kept.PictureFile = content.Base.empty() ? original : kBase;
  content.Texts = PartsOf(std::move(kept));
  std::vector<KeptPart> raster = RasterParts(ws.plot);
  content.Texts.insert(content.Texts.begin() + 1, std::make_move_iterator(raster.begin()),
                       std::make_move_iterator(raster.end()));
  std::string bytes = content.Bytes(original);
  // Nothing takes the place of a file but what can be opened again.
  ReadProject(bytes, ProjectPicture::Blank);
  return bytes;
}

std::string ReadProjectFile(const fs::path& path) {
  std::string bytes;
  ThrowSystemError(ReadWholeFile(path, kLargestProject, bytes));
  return bytes;
}

bool HoldsPictureFile(std::string_view bytes) {
  const ZipReader zip(bytes, kMostFiles);
  return std::ranges::any_of(zip.Entries(), IsOriginal, &ZipReader::Entry::Name);
}

ProjectSteps ReadProjectSteps(std::string_view bytes) {
  const ZipReader zip = ArchiveOf(bytes);
  const ZipReader::Entry* steps = zip.Find(kSteps);
  if (steps == nullptr) throw RunTimeError("There are no steps in it.");
  ProjectSteps project{.Recipe = zip.Read(*steps, kLargestText), .Picture = {}};
  for (const ZipReader::Entry& entry : zip.Entries())
    if (IsOriginal(entry.Name)) project.Picture = zip.Read(entry, kLargestPicture);
  return project;
}

std::optional<ProjectContent> ReadProject(std::string_view bytes, ProjectPicture picture,
                                          const PictureProgress& progress) {
  const ZipReader zip = ArchiveOf(bytes);
  ProjectContent project{.Kept = ReadParts(TextsIn(zip, bytes.size())), .PictureFault = {}};
  KeptDocument& kept = project.Kept;
  if (kept.Width == 0 || !IsPicturePart(kept.PictureFile) ||
      (!kept.OriginalFile.empty() && !IsOriginal(kept.OriginalFile)) ||
      (!kept.ColoursFile.empty() && !IsPicturePart(kept.ColoursFile)))
    throw RunTimeError("project.json: picture.file is none");
  if (picture == ProjectPicture::Blank) {
    project.Picture = Raster(kept.Width, kept.Height);
    return project;
  }
  try {
    if (!ReadPicture(zip, project, progress)) return std::nullopt;
  } catch (const RunTimeError& error) {
    project.PictureFault = error.what();
    project.Picture = Raster::Filled(kept.Width, kept.Height, kWhitePixel);
    project.Colours = {};
    project.LastEdit.clear();
    kept.HasUndo = false;
  }
  return project;
}

void PutProject(Workspace& ws, const Desktop& desktop, ProjectContent&& project) {
  PutEdited(ws.plot, std::move(project.Picture), std::move(project.LastEdit));
  ws.imageTools.UndoCopy.reset();  // it was of the picture before
  ws.colours =
      project.Colours.IsEmpty() ? nullptr : std::make_shared<Raster>(std::move(project.Colours));
  PutMarks(ws.plot, project.Marks);
  ShowFromCorner(ws.view, ws.plot.Width(), ws.plot.Height());
  BringBack(ws, desktop, std::move(project.Kept));
  if (!project.PictureFault.empty()) RedrawBlockers(ws.blockers, ws.plot, ws.settings);
}

}  // namespace graphize
