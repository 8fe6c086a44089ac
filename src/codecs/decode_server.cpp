#include "codecs/decode_server.h"

#include <algorithm>
#include <csignal>
#include <new>
#include <utility>

#include "base/deferred_text.h"
#include "base/free_beside.h"
#include "base/memory_file.h"
#include "base/module.h"
#include "base/start_beside.h"
#include "base/translation.h"
#include "base/version.h"
#include "raster/size_limits.h"

namespace graphize {

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

std::string_view BytesOf(const DecodeRequest& request) {
  return {reinterpret_cast<const char*>(&request), sizeof request};
}

[[noreturn]] void ThrowTooLong(int seconds) {
  throw RunTimeError(
      Tr("Decoding it was ended after %1 seconds. The file is damaged, or made to keep the program "
         "busy.",
         seconds));
}

/// The code of one that was killed for that, which no process ends with.
constexpr int kTooLate = -1;

/// How the process ended other than by its own will.
[[noreturn]] void ThrowEnd(const ProcessEnd& end, int seconds) {
  if (end.Signal == SIGXCPU) ThrowTooLong(seconds);
  if (end.Code == kTooLate) ThrowTooLong(2 * seconds);
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

/// Nothing when `progress` is to end it. What takes too long by the clock is killed.
std::optional<ProcessEnd> WaitForEnd(ChildProcess& decoder, int seconds,
                                     const PictureOperation& operation,
                                     const PictureProgress& progress) {
  const auto last = Clock::now() + std::chrono::seconds(2 * seconds);
  while (true) {
    if (const auto end = decoder.WaitForEnd(kBetweenProgress)) return end;
    const int percent = operation.Percent;
    if (progress && !progress(std::clamp(percent, 0, 100))) return {};
    if (Clock::now() < last) continue;
    decoder.Kill();
    return ProcessEnd{.Code = kTooLate};
  }
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

DecoderStart Started(const Descriptor& channel) {
  DecoderStart start;
  const bool isWhole = Receive(channel, {reinterpret_cast<char*>(&start), sizeof start}, {});
  return isWhole ? start : DecoderStart();
}

/// A decoder that has not said yet who it is, and is wanted no more. It is ended when it does.
class DecoderToCome {
 public:
  DecoderToCome(Descriptor channel, std::chrono::milliseconds atMost)
      : channel_(std::move(channel)), atMost_(atMost) {}
  DecoderToCome(DecoderToCome&&) = default;
  DecoderToCome& operator=(DecoderToCome&&) = delete;
  ~DecoderToCome() {
    if (!channel_.IsOpen() || !IsReadable(channel_, atMost_)) return;
    if (const DecoderStart start = Started(channel_); start.Id > 0)
      ChildProcess(start.Id, std::move(channel_)).Kill();
  }

 private:
  Descriptor channel_;
  std::chrono::milliseconds atMost_;
};

}  // namespace

void ThrowShortage() {
  throw RunTimeError(
      "The system has no process, no memory or no more open files to decode it with. Please close "
      "something and open it again.");
}

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

DecodeServer::DecodeServer(DecoderProgram program)
    : program_(std::move(program)), started_(StartBeside([this] {
        return ChildProcess::Start(program_.Program, {ModuleStamp(), program_.Module.string(),
                                                      std::to_string(program_.Seconds)});
      })) {}

std::optional<unsigned> DecodeServer::Layers(std::chrono::milliseconds atMost) {
  if (layers_ != kUnknown) return layers_;
  const std::lock_guard lock(starting_);
  if (layers_ != kUnknown) return layers_;
  if (started_.valid()) {
    if (started_.wait_for(atMost) == std::future_status::timeout) return {};
    process_ = started_.get();
    lastStart_ = Clock::now() + program_.LongestStart;
  }
  if (process_ && !IsReadable(process_->Channel(), atMost)) {
    if (Clock::now() < lastStart_) return {};
    doesNotStart_ = true;
    process_->Kill();
    layers_ = 0;
    return 0;
  }
  char said = 0;
  if (process_ && Receive(process_->Channel(), {&said, 1}, {})) {
    layers_ = static_cast<unsigned char>(said) & kAllLayers;
    return layers_;
  }
  const auto end = process_ ? process_->WaitForEnd(100ms) : ProcessEnd();
  if (end && end->Signal == 0 && end->Code == kOtherBuild)
    throw RunTimeError(
        "The program was updated while it was open. Please save your points and start it again.");
  // Loading it here, too, tells what is missing.
  if (end && end->Signal == 0 && end->Code == kNoModule)
    LoadModule(program_.Module, "GraphizeReader");
  layers_ = 0;
  return 0;
}

Decoded DecodeServer::Decode(const std::string& name, const Descriptor& file,
                             std::uintmax_t fileSize, const PictureProgress& progress) {
  Descriptor pixels = NewMemoryFile();
  const Descriptor reportFile = NewMemoryFile();
  ChannelEnds channel = NewChannel();
  if (!pixels.IsOpen() || !reportFile.IsOpen() || !channel.Ours.IsOpen() ||
      !ResizeMemoryFile(reportFile, sizeof(DecodeReport)) || !FixSize(reportFile))
    ThrowShortage();
  const Mapping shared(reportFile, sizeof(DecodeReport), Mapping::Access::Write);
  if (shared.Data() == nullptr) throw std::bad_alloc();
  const auto& report = *new (shared.Data()) DecodeReport;

  DecodeRequest request;
  request.FileSize = fileSize;
  // Its end tells the type.
  const std::size_t size = std::min(name.size(), request.Name.size() - 1);
  std::copy(name.end() - static_cast<std::ptrdiff_t>(size), name.end(), request.Name.begin());
  process_->CallToThisCore();
  if (!Send(process_->Channel(), BytesOf(request), {&channel.Theirs, &file, &pixels, &reportFile}))
    return {};
  channel.Theirs = {};
  for (const auto last = Clock::now() + program_.LongestStart;
       !IsReadable(channel.Ours, kBetweenProgress);) {
    const bool isStopped = progress && !progress(0);
    if (!isStopped && Clock::now() < last) continue;
    FreeBeside(DecoderToCome(std::move(channel.Ours), program_.LongestStart));
    if (isStopped) return {.End = DecodeEnd::Stopped};
    if (!hasForked_) doesNotStart_ = true;
    return {};
  }
  const DecoderStart start = Started(channel.Ours);
  if (start.Id <= 0) return {};
  hasForked_ = true;
  layers_ = (start.Layers & kAllLayers) | kApart;
  ChildProcess decoder(start.Id, std::move(channel.Ours));
  const auto end = WaitForEnd(decoder, program_.Seconds, report.Operation, progress);
  if (!end) {
    FreeBeside(std::move(decoder), std::move(pixels));
    return {.End = DecodeEnd::Stopped};
  }

  // Nobody but this process has the files from here on.
  const auto result = CopyOf(report);
  const bool isWhole = end->Signal == 0 && end->Code == 0;
  const bool isLeft = result->Verdict == DecodeVerdict::Left;
  const auto throwBroken = [&] {
    isSpent_ = true;
    ThrowEnd(*end, program_.Seconds);
  };
  if (end->Signal == 0 && end->Code == kNoReport) throw std::bad_alloc();
  if (!isWhole || result->Verdict == DecodeVerdict::None || (isLeft && !program_.LeavesFiles))
    throwBroken();
  if (isLeft) return {.End = DecodeEnd::Left};
  if (result->Verdict == DecodeVerdict::NoMemory) throw std::bad_alloc();
  const std::string text = TranslateDeferred({result->Text.data(), result->TextSize});
  if (result->Verdict == DecodeVerdict::Refused) throw RunTimeError(text);

  LoadedPicture loaded;
  if (!DecodeRefusal(result->Width, result->Height).empty() ||
      SizeOfMemoryFile(pixels) != sizeof(std::uint32_t) * static_cast<std::size_t>(result->Width) *
                                      static_cast<std::size_t>(result->Height) ||
      !FixSize(pixels))
    throwBroken();
  loaded.Picture = MapRaster(pixels, result->Width, result->Height);
  if (loaded.Picture.IsEmpty()) throw std::bad_alloc();
  loaded.Warning = text;
  return {.End = DecodeEnd::Picture, .Picture = std::move(loaded)};
}

}  // namespace graphize
