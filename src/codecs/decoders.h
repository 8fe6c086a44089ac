#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

#include "codecs/decode_server.h"
#include "raster/picture_operation.h"

namespace graphize {

/// What a process decodes by: the readers of codecs/direct/, which may leave a file to the other
/// kind, or the picture library, which takes five times as long to load.
enum class DecoderKind { Direct, Library };

/// The processes that pictures are decoded by, for all threads.
class Decoders {
 public:
  Decoders(DecoderProgram direct, DecoderProgram library)
      : kinds_{Kind{.Program = std::move(direct)}, Kind{.Program = std::move(library)}} {}

  /// Starts the server of this kind, which stays; does not wait for it.
  void StartAhead(DecoderKind kind);
  /// Ends all servers; what comes next is decoded as at first. WasDecodedWithin stays.
  void EndAll();

  /// As DecodeServer::Decode and Layers. It starts what is not there, and again, once, what has
  /// ended; a program that does not get ready is not started again. NoProcess as by NoteNone.
  Decoded Decode(DecoderKind kind, const std::string& name, const Descriptor& file,
                 std::uintmax_t fileSize, const PictureProgress& progress);

  /// There is no process for a picture. RunTimeError where there has been one: it is a shortage,
  /// which a file may have brought about to have the next one decoded within the program.
  void NoteNone(DecoderKind kind);
  /// A picture is decoded within this program for lack of one.
  void NoteDecodedWithin() { wasDecodedWithin_ = true; }
  bool WasDecodedWithin() const { return wasDecodedWithin_; }

  /// What held at the latest picture of each kind (DecodeLayer, 0: no process), or would have at
  /// the first: those that both have; nothing before the first server is ready. Does not wait.
  std::optional<unsigned> Layers();

 private:
  static constexpr unsigned kUnknown = kAllLayers + 1;

  struct Kind {
    const DecoderProgram Program;
    std::shared_ptr<DecodeServer> Server = {};
    std::atomic<unsigned> Layers = kUnknown;
    std::atomic<bool> DoesNotStart = false;
  };
  Kind& Of(DecoderKind kind) { return kinds_[static_cast<std::size_t>(kind)]; }
  /// And whether it has just been started.
  std::pair<std::shared_ptr<DecodeServer>, bool> ServerOf(Kind& kind);
  /// The next picture has another one.
  void Drop(Kind& kind, const std::shared_ptr<DecodeServer>& server);

  std::mutex mutex_;  // of the servers' pointers; none ends under it
  std::array<Kind, 2> kinds_;
  std::atomic<bool> hadProcess_ = false;
  std::atomic<bool> wasDecodedWithin_ = false;
};

}  // namespace graphize
