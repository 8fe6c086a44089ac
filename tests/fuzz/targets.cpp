#include "fuzz/targets.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <map>
#include <variant>

#include "base/deferred_text.h"
#include "base/number_pattern.h"
#include "base/numbers.h"
#include "base/run_time_error.h"
#include "batch/arguments.h"
#include "batch/commands.h"
#include "batch/digitize.h"
#include "batch/other_pictures_list.h"
#include "codecs/picbuf.h"
#include "codecs/picture_probe.h"
#include "commands/recipe_file.h"
#include "finding_axes/find_surroundings.h"
#include "reading/read_curve.h"
#include "session/journal_frame.h"
#include "session/journal_reading.h"
#include "session/kept_text.h"
#include "session/project_file.h"
#include "settings/language.h"
#include "settings/scanner_source.h"
#include "settings/settings_file.h"
#include "settings/settings_store.h"
#include "settings/window_placement.h"
#include "support/picture_bytes.h"
#include "workspace/step_text.h"

namespace graphize::test {

namespace {

void Promise(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "broken promise: %s\n", what);
  std::abort();
}

std::vector<std::string> Split(std::string_view text, char end) {
  std::vector<std::string> parts;
  for (;;) {
    const std::size_t at = text.find(end);
    parts.emplace_back(text.substr(0, at));
    if (at == std::string_view::npos) return parts;
    text.remove_prefix(at + 1);
  }
}

/// What the program takes a target's first sound input for.
PictureType TypeOfSeeds(const FuzzTarget& target, const std::string& file) {
  static std::map<std::string, PictureType> types;
  const auto [known, isNew] = types.try_emplace(target.Name);
  if (isNew) known->second = ProbePicture(file, SeedsOf(target).front().substr(0, kProbeSize)).Type;
  return known->second;
}

/// "picture-tif" reads TIFF files only, and so on.
bool ReadsPicture(const FuzzTarget& target, std::string_view input) {
  constexpr std::int64_t kMostPixels = 1 << 18;  // time for many inputs instead of few pages
  const std::string file = "picture." + target.Name.substr(target.Name.find('-') + 1);
  const ProbeResult probe = ProbePicture(file, input.substr(0, kProbeSize));
  if (probe.Type != TypeOfSeeds(target, file) || probe.Width > kMostPixels ||
      probe.Height > kMostPixels / std::max<std::int64_t>(probe.Width, 1))
    return false;
  std::vector<std::string> files = {std::string(input)};
  if (probe.Type == PictureType::Png) files.push_back(WithChecksums(files[0]));
  for (const std::string& bytes : files) {
    try {
      const auto picture = DecodePictureHere(file, bytes);
      Promise(picture && picture->Picture.Width() > 0 && picture->Picture.Height() > 0,
              "a picture that is not refused has pixels");
    } catch (const RunTimeError& error) {
      Promise(std::strlen(error.what()) > 0, "a refusal says why");
    }
  }
  return true;
}

SettingsFile SettingsOf(std::string_view text) {
  static const int file = memfd_create("settings", MFD_CLOEXEC);
  Promise(ftruncate(file, 0) == 0 &&
              pwrite(file, text.data(), text.size(), 0) == static_cast<ssize_t>(text.size()),
          "memory can be written");
  return ReadSettingsFile("/proc/self/fd/" + std::to_string(file));
}

bool ReadsSettings(const FuzzTarget&, std::string_view input) {
  SettingsFile file = SettingsOf(input);
  if (!file.ReadError.empty()) return true;
  Settings settings;
  std::vector<std::string> notes;
  ReadSettings(file, settings, notes);
  WindowPlacement placement = DefaultPlacement(1366, 768);
  ReadPlacement(file, placement, placement, notes);
  const ScannerSource source = ReadScannerSource(file);
  const auto write = [&](SettingsFile& to) {
    WriteSettings(to, settings, ReadLastPoint(file), true, placement);
    WriteScannerSource(to, source);
    WriteLanguage(to, ReadLanguage(file));
  };
  write(file);
  const std::vector<std::string> written = file.Lines;
  write(file);
  Promise(file.Lines == written, "settings that are written twice are written once");
  return true;
}

bool ReadsDeferredText(const FuzzTarget&, std::string_view input) {
  Promise(TranslateDeferred(input).size() <= 4000, "what a decoder says stays short");
  return true;
}

void ReadsStepTwice(const Step& step) {
  const std::string text = TextOf(step);
  const auto again = StepOf(text);
  Promise(std::holds_alternative<Step>(again) && TextOf(std::get<Step>(again)) == text,
          "a step's text reads back as the step");
}

bool ReadsRecipe(const FuzzTarget&, std::string_view input) {
  try {
    for (const RecipeFile::Line& line : ReadRecipe(input, "/").Steps) ReadsStepTwice(line.Is);
  } catch (const RunTimeError& error) {
    Promise(std::string_view(error.what()).starts_with("line "), "a recipe's fault has a line");
  }
  return true;
}

bool ReadsStep(const FuzzTarget&, std::string_view input) {
  const auto step = StepOf(input);
  if (const auto* read = std::get_if<Step>(&step)) ReadsStepTwice(*read);
  return true;
}

/// Parts as a project has them, "NAME\nTEXT" each.
bool ReadsParts(const FuzzTarget&, std::string_view input) {
  std::vector<KeptPart> parts;
  for (const std::string& part : Split(input, kPartEnd)) {
    const std::size_t end = std::min(part.find('\n'), part.size());
    parts.push_back({part.substr(0, end), part.substr(std::min(end + 1, part.size()))});
  }
  std::vector<KeptPart> written;
  try {
    written = PartsOf(ReadParts(parts));
  } catch (const RunTimeError&) {
    return true;
  }
  const std::vector<KeptPart> again = PartsOf(ReadParts(written));
  Promise(
      std::equal(written.begin(), written.end(), again.begin(), again.end(),
                 [](const auto& a, const auto& b) { return a.Name == b.Name && a.Text == b.Text; }),
      "what is kept reads back as itself");
  return true;
}

bool ReadsProject(const FuzzTarget&, std::string_view input) {
  for (const bool steps : {false, true}) {
    try {
      if (steps)
        ReadProjectSteps(input);
      else
        ReadProject(input, ProjectPicture::Blank);
    } catch (const RunTimeError&) {
    }
  }
  return true;
}

/// Payloads, each of which gets a frame that is right: the frames alone would stop most of it.
bool ReadsJournal(const FuzzTarget&, std::string_view input) {
  std::string bytes = JournalStart();
  if (input.starts_with(bytes)) {
    bytes = input;
  } else {
    for (const std::string& payload : Split(input, kPartEnd)) bytes += Framed(payload);
  }
  try {
    ReadJournal(bytes);
  } catch (const RunTimeError&) {
  }
  return true;
}

bool ReadsList(const FuzzTarget&, std::string_view input) {
  const std::filesystem::path folder = "/pages";
  std::string written;
  try {
    written = OtherPicturesText(ReadOtherPictures(input, folder), folder);
  } catch (const RunTimeError&) {
    return true;
  }
  Promise(OtherPicturesText(ReadOtherPictures(written, folder), folder) == written,
          "a list of pictures reads back as itself");
  return true;
}

bool ReadsNumber(const FuzzTarget&, std::string_view input) {
  const TypedNumber typed = ReadTyped(input);
  Promise(!std::isnan(typed.Value), "no text is no number");
  Promise(typed.Value == LeadingNumber(input), "what is typed is the leading number");
  Promise(std::isinf(typed.Value) || LeadingNumber(ShortestText(typed.Value)) == typed.Value,
          "a number's text is the number");
  try {
    const float single = ToSingle(typed.Value);
    Promise(ToSingle(LeadingNumber(ShortestText(single))) == single,
            "so it is in single precision");
    const std::int32_t whole = ToInt32(typed.Value);
    Promise(std::abs(whole - typed.Value) <= 0.5, "a whole number is the nearest");
    ToInt16(typed.Value);
  } catch (const RunTimeError&) {
  }
  return true;
}

/// A number's four bytes, then the pattern.
bool ReadsPattern(const FuzzTarget&, std::string_view input) {
  float value = 0;
  if (input.size() < sizeof value) return false;
  std::memcpy(&value, input.data(), sizeof value);
  const std::string_view pattern = input.substr(sizeof value);
  const std::string text = FormatNumber(value, pattern);
  Promise(text.size() <= 8 * pattern.size() + 512, "a number's text is as long as its pattern");
  const int missing = MissingPlaces(value, pattern, 1e-3);
  Promise(missing >= 0 && missing < 512, "so many places can be added");
  return true;
}

/// The command's place among them, a byte, then its words, a line each.
bool ReadsCommandLine(const FuzzTarget&, std::string_view input) {
  if (input.empty()) return false;
  static const CommandSpec commands[] = {ProgramSpec(), DigitizeSpec(), ReplaySpec(), ExportSpec(),
                                         AxesSpec()};
  const std::size_t which = static_cast<unsigned char>(input[0]) % std::size(commands);
  try {
    const CommandLine line = ReadCommandLine(commands[which], Split(input.substr(1), '\n'));
    if (which != 1) return true;
    for (const BatchStep& step : DigitizeSteps(line))
      if (!step.TakesAxes) ReadsStepTwice(step.Do);  // such a one waits for what is found
  } catch (const UsageError& error) {
    Promise(std::strlen(error.what()) > 0, "a refusal says why");
  } catch (const RunTimeError& error) {
    Promise(std::strlen(error.what()) > 0, "a refusal says why");
  }
  return true;
}

/// Width, place of the click and tolerance, a byte each, then pixels of sixteen inks.
bool ReadsCurve(const FuzzTarget&, std::string_view input) {
  if (input.size() < 5) return false;
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(input[i]); };
  const int width = 1 + byte(0) % 96;
  const auto pixels = static_cast<int>(2 * (input.size() - 4));
  const int height = std::min(96, pixels / width);
  if (height == 0) return false;
  Raster picture(width, height);
  for (int i = 0; i < width * height; ++i) {
    const unsigned four = byte(4 + static_cast<std::size_t>(i / 2)) >> (i % 2 * 4) & 15;
    picture.Pixels()[i] = four < 8
                              ? four * 0x242424
                              : (four & 1) * 0xf0 | (four & 2) * 0x7800 | (four & 4) * 0x300000;
  }
  PictureOperation operation;
  const CurveReading reading =
      ReadCurve(picture, FrameOf({}, width, height), FindSurroundings(picture, operation),
                {.X = byte(1) * 0.5, .Y = byte(2) * 0.5, .Tolerance = byte(3) / 64.0f}, operation);
  Promise(reading.Points.empty() == !reading.Refusal.empty(), "points, or the reason for none");
  for (const CurvePoint& point : reading.Points)
    Promise(std::isfinite(point.X) && std::isfinite(point.Y), "points have places");
  return true;
}

}  // namespace

const std::vector<FuzzTarget>& FuzzTargets() {
  static const std::vector<FuzzTarget> targets = [] {
    std::vector<FuzzTarget> all = {{"settings", ReadsSettings},
                                   {"recipe", ReadsRecipe},
                                   {"step", ReadsStep},
                                   {"parts", ReadsParts},
                                   {"project", ReadsProject},
                                   {"journal", ReadsJournal},
                                   {"number", ReadsNumber},
                                   {"pattern", ReadsPattern},
                                   {"command-line", ReadsCommandLine},
                                   {"curve", ReadsCurve},
                                   {"list", ReadsList},
                                   {"decoder-text", ReadsDeferredText}};
    for (const char* type : {"tif", "tga", "bmp", "gif", "dib", "pcx", "jpg", "png", "webp"})
      all.push_back({std::string("picture-") + type, ReadsPicture});
    return all;
  }();
  return targets;
}

}  // namespace graphize::test
