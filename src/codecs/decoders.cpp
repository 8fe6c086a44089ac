#include "codecs/decoders.h"

#include <algorithm>
#include <cstdint>
#include <exception>
#include <utility>

#include "base/memory_file.h"
#include "base/start_beside.h"
#include "codecs/picbuf.h"
#include "raster/size_limits.h"

namespace graphize {

using namespace std::chrono_literals;

namespace {

/// Whether the system gives what a process returns its picture in.
bool HasMemoryFiles() {
  constexpr std::size_t kLargest = sizeof(std::uint32_t) * kMaxPicturePixels;
  constexpr std::size_t kPart = 4096;
  const Descriptor file = NewMemoryFile();
  return file.IsOpen() && ResizeMemoryFile(file, kLargest) && FixSize(file) &&
         Mapping(file, kPart, Mapping::Access::Write).Data() != nullptr;
}

}  // namespace

void Decoders::CountPicture() {
  const std::lock_guard lock(mutex_);
  if (toCome_ > 0 && toCome_ != kManyPictures) --toCome_;
}

Decoders::Taken Decoders::Take(DecoderKind kind, const PictureProgress& progress) {
  constexpr auto kBetweenProgress = 15ms;
  Kind& of = Of(kind);
  std::optional<Ahead> ahead = TakeAhead(kind);
  for (bool isLast = false; !isLast && !of.DoesNotStart && HasMemoryFiles();) {
    isLast = !ahead;  // one that was started ahead may have been ended since, for lack of memory
    if (!ahead) ahead.emplace(of.Program);
    std::optional<unsigned> layers;
    while (!(layers = ahead->Layers(kBetweenProgress)))
      if (progress && !progress(0)) {
        const std::lock_guard lock(mutex_);
        of.Waiting.push_front(*std::move(ahead));
        return {.WasStopped = true};
      }
    std::optional<DecodeWorker>& worker = ahead->Worker();
    if (*layers != 0 && !worker->HasEnded()) {
      of.Layers = *layers;
      return {.Worker = std::move(worker)};
    }
    if (worker && worker->DoesNotStart()) of.DoesNotStart = true;
    ahead.reset();
  }
  NoteNone(kind);
  return {};
}

void Decoders::StartNext(DecoderKind latest) {
  constexpr int kRemembered = 16;  // types that take turns end and start no process each time
  std::vector<Ahead> tooMany;
  const std::lock_guard lock(mutex_);
  libraryFor_ = latest == DecoderKind::Library ? kRemembered : std::max(libraryFor_ - 1, 0);
  tooMany = FillUp();
}

std::vector<Decoders::Ahead> Decoders::FillUp() {
  std::vector<Ahead> tooMany;
  try {
    for (const DecoderKind kind : {DecoderKind::Direct, DecoderKind::Library}) {
      Kind& of = Of(kind);
      std::erase_if(of.Waiting, [&](Ahead& ahead) {
        if (!ahead.HasEnded()) return false;
        if (ahead.Worker() && ahead.Worker()->DoesNotStart()) of.DoesNotStart = true;
        return true;
      });
      for (; of.Waiting.size() > Wanted(kind); of.Waiting.pop_back())
        tooMany.push_back(std::move(of.Waiting.back()));
      while (!of.DoesNotStart && of.Waiting.size() < Wanted(kind))
        of.Waiting.emplace_back(of.Program);
    }
  } catch (const std::exception&) {
    // No memory for it: the next picture waits for its process.
  }
  return tooMany;
}

void Decoders::StartAhead(std::size_t atOnce, std::size_t toCome) {
  std::vector<Ahead> tooMany;
  const std::lock_guard lock(mutex_);
  atOnce_ = atOnce;
  toCome_ = toCome;
  tooMany = FillUp();
}

std::size_t Decoders::CountAhead(DecoderKind kind) {
  const std::lock_guard lock(mutex_);
  return Of(kind).Waiting.size();
}

std::optional<unsigned> Decoders::Layers() {
  const std::lock_guard lock(mutex_);
  unsigned common = kUnknown | kAllLayers;
  for (Kind& kind : kinds_) {
    try {
      if (!kind.Waiting.empty())
        if (const auto layers = kind.Waiting.front().Layers(0ms)) kind.Layers = *layers;
    } catch (const RunTimeError&) {
      kind.Waiting.pop_front();  // the next picture says so
    }
    if (kind.Layers != kUnknown) common &= kind.Layers;
  }
  return common >= kUnknown ? std::nullopt : std::optional(common);
}

std::size_t Decoders::Wanted(DecoderKind kind) const {
  const bool isNeeded = kind == DecoderKind::Direct || libraryFor_ > 0 || toCome_ == kManyPictures;
  return isNeeded ? std::min(atOnce_, toCome_) : 0;
}

std::optional<Decoders::Ahead> Decoders::TakeAhead(DecoderKind kind) {
  const std::lock_guard lock(mutex_);
  auto& waiting = Of(kind).Waiting;
  if (waiting.empty()) return {};
  std::optional<Ahead> first(std::move(waiting.front()));
  waiting.pop_front();
  return first;
}

Decoders::Ahead::Ahead(const DecoderProgram& program)
    : starting_(StartBeside([&program] { return DecodeWorker::Start(program); })) {}

std::optional<unsigned> Decoders::Ahead::Layers(std::chrono::milliseconds atMost) {
  if (starting_.valid()) {
    if (starting_.wait_for(atMost) == std::future_status::timeout) return {};
    worker_ = starting_.get();
  }
  return worker_ ? worker_->Layers(atMost) : 0;
}

bool Decoders::Ahead::HasEnded() {
  if (starting_.valid()) {
    if (starting_.wait_for(0ms) != std::future_status::ready) return false;
    try {
      worker_ = starting_.get();
    } catch (const std::exception&) {
      return true;  // no memory for it
    }
  }
  return !worker_ || worker_->HasEnded();
}

}  // namespace graphize
