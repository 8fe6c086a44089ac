#include "codecs/decoders.h"

#include <exception>

#include "base/memory_file.h"
#include "base/run_time_error.h"
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

void Decoders::StartAhead(DecoderKind kind) {
  ServerOf(Of(kind));
}

void Decoders::EndAll() {
  std::array<std::shared_ptr<DecodeServer>, 2> ended;
  const std::lock_guard lock(mutex_);
  for (std::size_t i = 0; i < kinds_.size(); ++i) {
    ended[i].swap(kinds_[i].Server);
    kinds_[i].Layers = kUnknown;
    kinds_[i].DoesNotStart = false;
  }
  hadProcess_ = false;
}

Decoded Decoders::Decode(DecoderKind kind, const std::string& name, const Descriptor& file,
                         std::uintmax_t fileSize, const PictureProgress& progress) {
  Kind& of = Of(kind);
  for (bool isLast = false; !isLast && !of.DoesNotStart && HasMemoryFiles();) {
    const auto [server, isNew] = ServerOf(of);
    isLast = isNew;  // else it may have been ended since, for lack of memory
    try {
      std::optional<unsigned> layers;
      while (!(layers = server->Layers(kBetweenProgress)))
        if (progress && !progress(0)) return {.End = DecodeEnd::Stopped};
      if (*layers != 0) {
        of.Layers = *layers;
        Decoded decoded = server->Decode(name, file, fileSize, progress);
        if (decoded.End != DecodeEnd::NoProcess) {
          of.Layers = server->Layers({}).value_or(0);
          if (server->HasForked()) hadProcess_ = true;
          return decoded;
        }
      }
    } catch (const std::exception&) {
      if (server->HasForked()) hadProcess_ = true;
      if (!server->HasForked() || server->IsSpent()) Drop(of, server);
      throw;
    }
    if (server->DoesNotStart()) of.DoesNotStart = true;
    Drop(of, server);
  }
  NoteNone(kind);
  return {};
}

void Decoders::NoteNone(DecoderKind kind) {
  if (hadProcess_) ThrowShortage();
  Of(kind).Layers = 0;
}

std::optional<unsigned> Decoders::Layers() {
  unsigned common = kUnknown | kAllLayers;
  for (Kind& kind : kinds_) {
    std::shared_ptr<DecodeServer> server;
    {
      const std::lock_guard lock(mutex_);
      server = kind.Server;
    }
    try {
      if (kind.Layers == kUnknown && server)
        if (const auto layers = server->Layers(0ms)) kind.Layers = *layers;
    } catch (const RunTimeError&) {
      Drop(kind, server);  // the next picture says so
    }
    if (kind.Layers != kUnknown) common &= kind.Layers;
  }
  return common >= kUnknown ? std::nullopt : std::optional(common);
}

std::pair<std::shared_ptr<DecodeServer>, bool> Decoders::ServerOf(Kind& kind) {
  const std::lock_guard lock(mutex_);
  const bool isNew = !kind.Server;
  if (isNew) kind.Server = std::make_shared<DecodeServer>(kind.Program);
  return {kind.Server, isNew};
}

void Decoders::Drop(Kind& kind, const std::shared_ptr<DecodeServer>& server) {
  const std::lock_guard lock(mutex_);
  if (kind.Server == server) kind.Server.reset();  // the caller has it still
}

}  // namespace graphize
