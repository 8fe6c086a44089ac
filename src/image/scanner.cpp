#include "image/scanner.h"

#include <sane/sane.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstring>
#include <string_view>
#include <thread>
#include <utility>

#include "image/job_thread.h"
#include "image/scan_page.h"

namespace graphize {

namespace {

using namespace std::chrono_literals;

// How long a stop is waited for: a list that nobody wants any more is nothing to wait for, a device
// that is told to stop needs a moment.
constexpr auto kListPatience = 0ms;
constexpr auto kDevicePatience = 3000ms;

JobThread& ScannerThread() {
  static JobThread thread;
  return thread;
}

/// What a status of the scanner library means, a sentence.
std::string Words(SANE_Status status) {
  switch (static_cast<int>(status)) {
    case SANE_STATUS_UNSUPPORTED:
      return "The scanner cannot do that.";
    case SANE_STATUS_CANCELLED:
      return "The scan was cancelled at the scanner.";
    case SANE_STATUS_DEVICE_BUSY:
      return "The scanner is busy. Another program may be using it; try again later.";
    case SANE_STATUS_INVAL:
      return "The scanner does not accept these settings.";
    case SANE_STATUS_EOF:
      return "The scanner sent no picture.";
    case SANE_STATUS_JAMMED:
      return "The paper is jammed in the document feeder.";
    case SANE_STATUS_NO_DOCS:
      return "There are no documents in the document feeder.";
    case SANE_STATUS_COVER_OPEN:
      return "The scanner's cover is open.";
    case SANE_STATUS_IO_ERROR:
      return "The connection to the scanner failed. Is it switched on and connected?";
    case SANE_STATUS_NO_MEM:
      return "The scanner has not enough memory.";
    case SANE_STATUS_ACCESS_DENIED:
      return "The system does not allow the use of the scanner.";
    case 12:
      return "The scanner is warming up; try again in a moment.";
    case 13:
      return "The scanner's transport lock is on.";
    default:
      return std::string("The scanner reports: ") + sane_strstatus(status) + ".";
  }
}

void Require(SANE_Status status) {
  if (status != SANE_STATUS_GOOD) throw RunTimeError(Words(status));
}

/// While one of these lives the library is initialised. It is not kept: a new start reads the
/// configuration and sees the devices that were plugged in since. On the scanner's thread only.
class LibraryInUse {
 public:
  LibraryInUse() {
    if (users_ == 0) {
      const SANE_Status status = sane_init(nullptr, nullptr);
      if (status != SANE_STATUS_GOOD)
        throw RunTimeError(std::string("The scanner library does not start: ") +
                           sane_strstatus(status) + ".");
    }
    ++users_;
  }
  ~LibraryInUse() {
    if (--users_ == 0) sane_exit();
  }
  LibraryInUse(const LibraryInUse&) = delete;
  LibraryInUse& operator=(const LibraryInUse&) = delete;

 private:
  inline static int users_ = 0;
};

std::string TextOf(SANE_String_Const text) {
  return text == nullptr ? std::string() : text;
}

std::vector<ScanSource> ListSources(bool network) {
  const LibraryInUse library;
  const SANE_Device** devices = nullptr;
  Require(sane_get_devices(&devices, network ? SANE_FALSE : SANE_TRUE));
  std::vector<ScanSource> sources;
  for (; devices != nullptr && *devices != nullptr; ++devices) {
    const SANE_Device& device = **devices;
    sources.push_back(
        {TextOf(device.name), TextOf(device.vendor), TextOf(device.model), TextOf(device.type)});
  }
  return sources;
}

/// One option of an open device, when it is there and has effect now.
struct Option {
  SANE_Handle Device = nullptr;
  SANE_Int Index = 0;
  const SANE_Option_Descriptor* Is = nullptr;

  explicit operator bool() const { return Is != nullptr; }
  bool CanBeSet() const { return Is != nullptr && SANE_OPTION_IS_SETTABLE(Is->cap); }
  bool IsNumber() const {
    return Is != nullptr && (Is->type == SANE_TYPE_INT || Is->type == SANE_TYPE_FIXED) &&
           Is->size == sizeof(SANE_Word);
  }
};

Option FindOption(SANE_Handle device, std::string_view name) {
  SANE_Int count = 0;
  Require(sane_control_option(device, 0, SANE_ACTION_GET_VALUE, &count, nullptr));
  for (SANE_Int i = 1; i < count; ++i) {
    const SANE_Option_Descriptor* option = sane_get_option_descriptor(device, i);
    if (option != nullptr && option->name != nullptr && option->name == name &&
        SANE_OPTION_IS_ACTIVE(option->cap))
      return {device, i, option};
  }
  return {};
}

double NumberOf(const Option& option, SANE_Word word) {
  return option.Is->type == SANE_TYPE_FIXED ? SANE_UNFIX(word) : word;
}

SANE_Word WordOf(const Option& option, double number) {
  const double scaled = option.Is->type == SANE_TYPE_FIXED ? number * 65536 : number;
  return static_cast<SANE_Word>(std::lround(std::clamp(scaled, -2147483647.0, 2147483647.0)));
}

/// Values that a device does not take are its own affair: what it has made of them is read back.
void SetValue(const Option& option, void* value) {
  const SANE_Status status =
      sane_control_option(option.Device, option.Index, SANE_ACTION_SET_VALUE, value, nullptr);
  if (status != SANE_STATUS_INVAL && status != SANE_STATUS_UNSUPPORTED) Require(status);
}

double GetNumber(const Option& option) {
  if (!option.IsNumber()) return 0;
  SANE_Word word = 0;
  Require(sane_control_option(option.Device, option.Index, SANE_ACTION_GET_VALUE, &word, nullptr));
  return NumberOf(option, word);
}

/// Sets the nearest that the option allows.
void SetNumber(const Option& option, double number) {
  if (!option.CanBeSet() || !option.IsNumber()) return;
  SANE_Word word = WordOf(option, number);
  const auto& constraint = option.Is->constraint;
  if (option.Is->constraint_type == SANE_CONSTRAINT_RANGE) {
    const SANE_Range& range = *constraint.range;
    word = std::clamp(word, range.min, range.max);
    if (range.quant > 0) {
      const auto steps = std::lround((static_cast<double>(word) - range.min) / range.quant);
      const double onGrid = range.min + static_cast<double>(steps) * range.quant;
      word = static_cast<SANE_Word>(onGrid > range.max ? onGrid - range.quant : onGrid);
    }
  } else if (option.Is->constraint_type == SANE_CONSTRAINT_WORD_LIST) {
    const SANE_Word* first = constraint.word_list + 1;
    const SANE_Word* last = first + constraint.word_list[0];
    if (first != last)
      word = *std::min_element(first, last, [&](SANE_Word a, SANE_Word b) {
        return std::abs(std::int64_t{a} - word) < std::abs(std::int64_t{b} - word);
      });
  }
  SetValue(option, &word);
}

std::string GetText(const Option& option) {
  if (!option || option.Is->type != SANE_TYPE_STRING || option.Is->size < 1) return {};
  std::vector<char> text(static_cast<std::size_t>(option.Is->size) + 1);
  Require(sane_control_option(option.Device, option.Index, SANE_ACTION_GET_VALUE, text.data(),
                              nullptr));
  return text.data();
}

std::vector<std::string> TextsOf(const Option& option) {
  std::vector<std::string> texts;
  if (option.CanBeSet() && option.Is->type == SANE_TYPE_STRING &&
      option.Is->constraint_type == SANE_CONSTRAINT_STRING_LIST)
    for (const SANE_String_Const* text = option.Is->constraint.string_list; *text != nullptr;
         ++text)
      texts.emplace_back(*text);
  return texts;
}

void SetText(const Option& option, const std::string& text) {
  const std::vector<std::string> allowed = TextsOf(option);
  if (std::find(allowed.begin(), allowed.end(), text) == allowed.end()) return;
  if (GetText(option) == text) return;
  std::vector<char> buffer(std::max(text.size() + 1, static_cast<std::size_t>(option.Is->size)));
  std::copy(text.begin(), text.end(), buffer.begin());
  SetValue(option, buffer.data());
}

std::vector<double> NumbersOf(const Option& option) {
  std::vector<double> numbers;
  if (!option.CanBeSet() || !option.IsNumber() ||
      option.Is->constraint_type != SANE_CONSTRAINT_WORD_LIST)
    return numbers;
  const SANE_Word* words = option.Is->constraint.word_list;
  for (SANE_Word i = 1; i <= words[0]; ++i) numbers.push_back(NumberOf(option, words[i]));
  std::sort(numbers.begin(), numbers.end());
  return numbers;
}

ScanRange RangeOf(const Option& option) {
  if (!option.CanBeSet() || !option.IsNumber() ||
      option.Is->constraint_type != SANE_CONSTRAINT_RANGE)
    return {};
  const SANE_Range& range = *option.Is->constraint.range;
  return {NumberOf(option, range.min), NumberOf(option, range.max), NumberOf(option, range.quant)};
}

/// The way across or down the glass: its edge options and how far they go.
struct Edges {
  Option First, Last;
  ScanRange Reach;

  Edges(SANE_Handle device, const char* first, const char* last)
      : First(FindOption(device, first)), Last(FindOption(device, last)) {
    const ScanRange low = RangeOf(First), high = RangeOf(Last);
    if (high.Max > low.Min) Reach = {low.Min, high.Max, std::max(low.Step, high.Step)};
  }
  bool CanBeSet() const { return Reach.Max > Reach.Min; }
  void Get(double& start, double& length) const {
    start = GetNumber(First);
    length = GetNumber(Last) - start;
  }
  void Set(double start, double length) const {
    if (!CanBeSet() || length <= 0) return;
    SetNumber(First, start);
    SetNumber(Last, start + length);
  }
};

Option ResolutionOf(SANE_Handle device) {
  const Option option = FindOption(device, "resolution");
  return option ? option : FindOption(device, "x-resolution");
}

/// In this order: each may change what the next ones offer.
void ApplySettings(SANE_Handle device, const ScanSettings& settings) {
  if (!settings.PaperSource.empty()) SetText(FindOption(device, "source"), settings.PaperSource);
  if (!settings.Mode.empty()) SetText(FindOption(device, "mode"), settings.Mode);
  if (settings.Depth > 0) SetNumber(FindOption(device, "depth"), settings.Depth);
  if (settings.Resolution > 0) {
    SetNumber(ResolutionOf(device), settings.Resolution);
    if (!FindOption(device, "resolution"))
      SetNumber(FindOption(device, "y-resolution"), settings.Resolution);
  }
  Edges(device, "tl-x", "br-x").Set(settings.Area.Left, settings.Area.Width);
  Edges(device, "tl-y", "br-y").Set(settings.Area.Top, settings.Area.Height);
}

ScanAbilities ReadAbilities(SANE_Handle device) {
  ScanAbilities can;
  const Option paper = FindOption(device, "source"), mode = FindOption(device, "mode");
  const Option depth = FindOption(device, "depth"), resolution = ResolutionOf(device);
  can.PaperSources = TextsOf(paper);
  can.Modes = TextsOf(mode);
  for (const double bits : NumbersOf(depth)) can.Depths.push_back(static_cast<int>(bits));
  can.Resolutions = NumbersOf(resolution);
  can.ResolutionRange = RangeOf(resolution);
  const Edges across(device, "tl-x", "br-x"), down(device, "tl-y", "br-y");
  can.Across = across.Reach;
  can.Down = down.Reach;
  can.AreaInPixels = across.CanBeSet() && across.First.Is->unit == SANE_UNIT_PIXEL;
  can.Now.PaperSource = GetText(paper);
  can.Now.Mode = GetText(mode);
  can.Now.Depth = static_cast<int>(GetNumber(depth));
  can.Now.Resolution = GetNumber(resolution);
  across.Get(can.Now.Area.Left, can.Now.Area.Width);
  down.Get(can.Now.Area.Top, can.Now.Area.Height);
  SANE_Parameters parameters = {};
  Require(sane_get_parameters(device, &parameters));
  can.Width = parameters.pixels_per_line;
  can.Height = parameters.lines;
  return can;
}

ScanFrame FrameOf(const SANE_Parameters& parameters) {
  ScanFrame frame{.Width = parameters.pixels_per_line,
                  .Lines = parameters.lines,
                  .BytesPerLine = parameters.bytes_per_line,
                  .Depth = parameters.depth};
  switch (parameters.format) {
    case SANE_FRAME_GRAY:
      frame.Is = ScanFrame::Band::Grey;
      break;
    case SANE_FRAME_RGB:
      frame.Is = ScanFrame::Band::Rgb;
      break;
    case SANE_FRAME_RED:
      frame.Is = ScanFrame::Band::Red;
      break;
    case SANE_FRAME_GREEN:
      frame.Is = ScanFrame::Band::Green;
      break;
    case SANE_FRAME_BLUE:
      frame.Is = ScanFrame::Band::Blue;
      break;
    default:
      throw RunTimeError("The scanner sends pictures of a kind that cannot be read.");
  }
  return frame;
}

/// The scanner is told that it is over, however it ends: it then goes back to its rest. That is a job
/// of its own, because some drivers take long over it or hang: the page, or what went wrong, is there
/// before. A driver whose reader is only starting must not be cancelled: it may leave a lock held.
struct ScanEnd {
  SANE_Handle Device;
  std::chrono::steady_clock::time_point Started = std::chrono::steady_clock::now();
  ~ScanEnd() {
    ScannerThread().Post([device = Device, earliest = Started + 150ms] {
      std::this_thread::sleep_until(earliest);
      sane_cancel(device);
    });
  }
};

/// One pass of the scanner into the page. False when it was stopped.
bool ReadFrame(SANE_Handle device, ScanPage& page, PictureOperation& operation) {
  std::vector<SANE_Byte> bytes(64 * 1024);
  while (!operation.Stopped) {
    SANE_Int count = 0;
    const SANE_Status status =
        sane_read(device, bytes.data(), static_cast<SANE_Int>(bytes.size()), &count);
    if (operation.Stopped) return false;
    if (status == SANE_STATUS_EOF) return true;
    Require(status);
    if (count == 0) std::this_thread::sleep_for(1ms);  // nothing yet
    page.Take(bytes.data(), static_cast<std::size_t>(count));
    const double part = page.PartTaken();
    if (part < 0)
      operation.Percent = -1;
    else
      operation.Advance(part);
  }
  return false;
}

NativeBitmap ScanPageOf(SANE_Handle device, PictureOperation& operation) {
  SANE_Parameters parameters = {};
  Require(sane_get_parameters(device, &parameters));
  if (const std::string refusal = ScanSizeRefusal(parameters.pixels_per_line, parameters.lines);
      !refusal.empty())
    throw PictureTooLarge(refusal);
  ScanPage page;
  const ScanEnd end{device};
  for (int pass = 0; pass == 0 || parameters.last_frame == SANE_FALSE; ++pass) {
    Require(sane_start(device));
    Require(sane_get_parameters(device, &parameters));
    const ScanFrame frame = FrameOf(parameters);
    const int passes =
        frame.Is == ScanFrame::Band::Grey || frame.Is == ScanFrame::Band::Rgb ? 1 : 3;
    operation.From = static_cast<double>(std::min(pass, passes - 1)) / passes;
    operation.To = operation.From + 1.0 / passes;
    page.BeginFrame(frame);
    if (!ReadFrame(device, page, operation)) return {};
    page.EndFrame();
  }
  return NativeBitmap(new Raster(page.Finish()));
}

}  // namespace

/// Made and destroyed on the scanner's thread. Its end takes its place behind the jobs that have
/// come, so these need not hold it.
struct ScannerHandle {
  explicit ScannerHandle(const std::string& name) {
    const SANE_Status status = sane_open(name.c_str(), &Device);
    if (status == SANE_STATUS_INVAL)
      throw RunTimeError("The scanner " + name +
                         " was not found. Is it switched on and connected?");
    Require(status);
  }
  ~ScannerHandle() { sane_close(Device); }
  ScannerHandle(const ScannerHandle&) = delete;
  ScannerHandle& operator=(const ScannerHandle&) = delete;

  LibraryInUse Library;
  SANE_Handle Device = nullptr;
};

int TWAIN_IsAvailable(const std::string& chosenSource, const PictureProgress& progress) {
  try {
    const auto available =
        RunOn(ScannerThread(), progress, kListPatience, [chosenSource](PictureOperation&) {
          const LibraryInUse library;
          return chosenSource.empty() && ListSources(false).empty() ? 0 : 1;
        });
    return available.value_or(0);
  } catch (const RunTimeError&) {
    return 0;
  }
}

std::optional<std::vector<ScanSource>> TWAIN_SelectImageSource(bool network,
                                                               const PictureProgress& progress) {
  return RunOn(ScannerThread(), progress, kListPatience,
               [network](PictureOperation&) { return ListSources(network); });
}

OpenScanner OpenScanSource(const std::string& name, const PictureProgress& progress) {
  const auto scanner = RunOn(ScannerThread(), progress, kDevicePatience, [name](PictureOperation&) {
    return OpenScanner(new ScannerHandle(name), [](ScannerHandle* handle) {
      ScannerThread().Post([handle] { delete handle; });
    });
  });
  return scanner.value_or(nullptr);
}

std::optional<ScanAbilities> SetScan(const OpenScanner& scanner, const ScanSettings& settings,
                                     const PictureProgress& progress) {
  return RunOn(ScannerThread(), progress, kDevicePatience,
               [device = scanner->Device, settings](PictureOperation&) {
                 ApplySettings(device, settings);
                 return ReadAbilities(device);
               });
}

NativeBitmap TWAIN_AcquireNative(const OpenScanner& scanner, const ScanSettings& settings,
                                 bool preview, const PictureProgress& progress) {
  auto bitmap = RunOn(ScannerThread(), progress, kDevicePatience,
                      [device = scanner->Device, settings, preview](PictureOperation& operation) {
                        ApplySettings(device, settings);
                        if (const Option quick = FindOption(device, "preview");
                            quick.CanBeSet() && quick.Is->type == SANE_TYPE_BOOL) {
                          SANE_Bool on = preview ? SANE_TRUE : SANE_FALSE;
                          SetValue(quick, &on);
                        }
                        return ScanPageOf(device, operation);
                      });
  return bitmap ? std::move(*bitmap) : NativeBitmap();
}

void TWAIN_FreeNative(Raster* bitmap) {
  delete bitmap;
}

}  // namespace graphize
