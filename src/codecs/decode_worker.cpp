#include "codecs/decode_worker.h"

#include <algorithm>
#include <csignal>
#include <new>
#include <utility>

#include "base/deferred_text.h"
#include "base/free_beside.h"
#include "base/memory_file.h"
#include "base/module.h"
#include "base/translation.h"
#include "base/version.h"
#include "raster/size_limits.h"

namespace graphize {

namespace {

using namespace std::chrono_literals;

std::string_view BytesOf(const DecodeRequest& request) {
  return {reinterpret_cast<const char*>(&request), sizeof request};
}

[[noreturn]] void ThrowTooLong(int seconds) {
  throw RunTimeError(
      Tr("Decoding it was ended after %1 seconds. The file is damaged, or made to keep the program "
         "busy.",
         seconds));
}

/// How the process ended other than by its own will.
[[noreturn]] void ThrowEnd(const ProcessEnd& end, int seconds) {
  if (end.Signal == SIGXCPU) ThrowTooLong(seconds);
  constexpr int kOwnFaults[] = {0, SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGABRT, SIGTRAP, SIGSYS};
  if (end.Signal == SIGKILL)
    throw RunTimeError(
        "Decoding it was ended from outside: by the system, which ran short of memory, or by "
        "somebody.");
  if (std::ranges::count(kOwnFaults, end.Signal) == 0)
    throw RunTimeError(
        Tr("Decoding it was ended from outside (signal %1). Please open it again.", end.Signal));
  throw RunTimeError(
      "The file is damaged, or made to do harm: it broke the decoder, which works apart from this "
      "program and its files. Nothing else was touched.");
}

/// Where the program waits for an answer, what it was left with.
std::unique_ptr<DecodeReport> CopyOf(const DecodeReport& shared) {
  auto copy = std::make_unique<DecodeReport>();
  copy->Verdict = shared.Verdict;
  copy->Width = shared.Width;
  copy->Height = shared.Height;
  copy->TextSize = std::min<std::uint32_t>(shared.TextSize, sizeof shared.Text);
  copy->Text = shared.Text;
  return copy;
}

}  // namespace

std::string MissingProtection(unsigned layers) {
  if (layers == kAllLayers) return {};
  if (layers == 0)
    return Tr(
        "Pictures are decoded within this program: no process of their own could be started for "
        "it.");
  std::string missing;
  const auto name = [&](DecodeLayer layer, const char* words) {
    if ((layers & layer) == 0) missing += (missing.empty() ? "" : ", ") + Tr(words);
  };
  name(kFewCalls, Marked("its calls (seccomp)"));
  name(kNoFiles, Marked("its files (Landlock)"));
  name(kLimits, Marked("its memory and time"));
  return Tr("Pictures are decoded in a process of their own, but the system does not limit %1.",
            missing);
}

std::optional<DecodeWorker> DecodeWorker::Start(const DecoderProgram& program) {
  auto process = ChildProcess::Start(
      program.Program, {ModuleStamp(), program.Module.string(), std::to_string(program.Seconds)});
  if (!process) return {};
  return DecodeWorker(*std::move(process), program);
}

std::optional<unsigned> DecodeWorker::Layers(std::chrono::milliseconds atMost) {
  if (layers_) return layers_;
  if (!IsReadable(process_.Channel(), atMost)) {
    if (Clock::now() < lastStart_) return {};
    doesNotStart_ = true;
    process_.Kill();
    layers_ = 0;
    return 0;
  }
  char said = 0;
  if (Receive(process_.Channel(), {&said, 1}, {})) {
    layers_ = static_cast<unsigned char>(said) & kAllLayers;
    return layers_;
  }
  layers_ = 0;
  const auto end = process_.WaitForEnd(100ms);
  if (end && end->Signal == 0 && end->Code == kOtherBuild)
    throw RunTimeError(
        "The program was updated while it was open. Please save your points and start it again.");
  // Loading it here, too, tells what is missing.
  if (end && end->Signal == 0 && end->Code == kNoModule) LoadModule(module_, "GraphizeReader");
  return 0;
}

Decoded DecodeWorker::Decode(const std::string& name, const Descriptor& file,
                             std::uintmax_t fileSize, const PictureProgress& progress) {
  Descriptor pixels = NewMemoryFile();
  const Descriptor reportFile = NewMemoryFile();
  if (!pixels.IsOpen() || !reportFile.IsOpen() ||
      !ResizeMemoryFile(reportFile, sizeof(DecodeReport)) || !FixSize(reportFile))
    throw std::bad_alloc();
  const Mapping shared(reportFile, sizeof(DecodeReport), Mapping::Access::Write);
  if (shared.Data() == nullptr) throw std::bad_alloc();
  const auto& report = *new (shared.Data()) DecodeReport;

  DecodeRequest request;
  request.FileSize = fileSize;
  // Its end tells the type.
  const std::size_t size = std::min(name.size(), request.Name.size() - 1);
  std::copy(name.end() - static_cast<std::ptrdiff_t>(size), name.end(), request.Name.begin());
  Send(process_.Channel(), BytesOf(request), {&file, &pixels, &reportFile});
  const auto end = WaitForEnd(report.Operation, progress);
  if (!end) {
    FreeBeside(std::move(process_), std::move(pixels));
    return {};
  }

  // Nobody but this process has the files from here on.
  const auto result = CopyOf(report);
  const bool isWhole = end->Signal == 0 && end->Code == 0;
  const bool isLeft = result->Verdict == DecodeVerdict::Left;
  if (!isWhole || result->Verdict == DecodeVerdict::None || (isLeft && !leavesFiles_))
    ThrowEnd(*end, seconds_);
  if (isLeft) return {.WasLeft = true};
  if (result->Verdict == DecodeVerdict::NoMemory) throw std::bad_alloc();
  const std::string text = TranslateDeferred({result->Text.data(), result->TextSize});
  if (result->Verdict == DecodeVerdict::Refused) throw RunTimeError(text);

  LoadedPicture loaded;
  if (!DecodeRefusal(result->Width, result->Height).empty() ||
      SizeOfMemoryFile(pixels) != sizeof(std::uint32_t) * static_cast<std::size_t>(result->Width) *
                                      static_cast<std::size_t>(result->Height) ||
      !FixSize(pixels))
    ThrowEnd(*end, seconds_);
  loaded.Picture = MapRaster(pixels, result->Width, result->Height);
  if (loaded.Picture.IsEmpty()) throw std::bad_alloc();
  loaded.Warning = text;
  return {.Picture = std::move(loaded)};
}

std::optional<ProcessEnd> DecodeWorker::WaitForEnd(const PictureOperation& operation,
                                                   const PictureProgress& progress) {
  constexpr auto kBetweenProgress = 15ms;
  const auto last = Clock::now() + std::chrono::seconds(2 * seconds_);
  while (true) {
    if (const auto end = process_.WaitForEnd(kBetweenProgress)) return end;
    const int percent = operation.Percent;
    if (progress && !progress(std::clamp(percent, 0, 100))) return {};
    if (Clock::now() < last) continue;
    process_.Kill();
    ThrowTooLong(2 * seconds_);
  }
}

}  // namespace graphize
