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

Decoders::Taken Decoders::Take(const PictureProgress& progress) {
  constexpr auto kBetweenProgress = 15ms;
  std::optional<Ahead> ahead = TakeAhead();
  for (bool isLast = false; !isLast && !doesNotStart_ && HasMemoryFiles();) {
    isLast = !ahead;  // one that was started ahead may have been ended since, for lack of memory
    if (!ahead) ahead.emplace(program_);
    std::optional<unsigned> layers;
    while (!(layers = ahead->Layers(kBetweenProgress)))
      if (progress && !progress(0)) {
        PutBack(*std::move(ahead));
        return {.WasStopped = true};
      }
    std::optional<DecodeWorker>& worker = ahead->Worker();
    if (*layers != 0 && !worker->HasEnded()) {
      layers_ = *layers;
      return {.Worker = std::move(worker)};
    }
    if (worker && worker->DoesNotStart()) doesNotStart_ = true;
    ahead.reset();
  }
  NoteNone();
  return {};
}

void Decoders::StartNext() {
  const std::lock_guard lock(mutex_);
  try {
    while (!doesNotStart_ && ahead_.size() < std::min(atOnce_, toCome_))
      ahead_.emplace_back(program_);
  } catch (const std::exception&) {
    // No memory for it: the next picture waits for its process.
  }
}

void Decoders::StartAhead(std::size_t atOnce, std::size_t toCome) {
  {
    const std::lock_guard lock(mutex_);
    atOnce_ = atOnce;
    toCome_ = toCome;
    while (ahead_.size() > std::min(atOnce_, toCome_)) ahead_.pop_back();
  }
  StartNext();
}

std::optional<unsigned> Decoders::Layers() {
  const std::lock_guard lock(mutex_);
  try {
    if (!ahead_.empty())
      if (const auto layers = ahead_.front().Layers(0ms)) layers_ = *layers;
  } catch (const RunTimeError&) {
    // The next picture says so.
  }
  return layers_ == kUnknown ? std::nullopt : std::optional(layers_.load());
}

std::optional<Decoders::Ahead> Decoders::TakeAhead() {
  const std::lock_guard lock(mutex_);
  if (toCome_ > 0 && toCome_ != kManyPictures) --toCome_;
  if (ahead_.empty()) return {};
  std::optional<Ahead> first(std::move(ahead_.front()));
  ahead_.pop_front();
  return first;
}

void Decoders::PutBack(Ahead ahead) {
  const std::lock_guard lock(mutex_);
  ahead_.push_front(std::move(ahead));
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

}  // namespace graphize
