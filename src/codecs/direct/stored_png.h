#pragma once

#include <isa-l.h>

#include <cstddef>
#include <cstdint>
#include <future>
#include <memory>
#include <string_view>
#include <vector>

namespace graphize {

/// A PNG file whose data is handed on as though it were stored without compression. The PNG library
/// then filters and converts it, while a library that inflates four times faster than the one
/// behind it works ahead, where possible on a thread beside. What the PNG library would check of
/// the compressed data (RFC 1950 and each chunk's checksum) is checked here, but for codes that
/// leave something out: what they compress is right by its checksum.
class StoredPng {
 public:
  /// `file` stays until the end. Data that is compressed in an unusual way is handed on as it is.
  explicit StoredPng(std::string_view file);
  StoredPng(const StoredPng&) = delete;
  StoredPng& operator=(const StoredPng&) = delete;

  /// The next bytes; false where the file ends before, or the data is damaged or more than any
  /// picture of its size has. Nothing is to be read after that.
  bool Read(std::uint8_t* target, std::size_t size);
  /// The checksums of what is handed on now are not to be looked at.
  bool IsStored() const { return part_ == Part::Data; }

 private:
  enum class Part { Head, Data, Tail };
  struct Chunk {
    std::string_view Body;  // type and data; empty where the file does not hold all of it
    std::uint32_t Checksum = 0;

    bool IsData() const { return Body.starts_with("IDAT"); }
    std::size_t Size() const { return 4 + Body.size() + 4; }
  };
  struct Block {
    std::unique_ptr<std::uint8_t[]> Bytes;
    std::size_t Size = 0;
    bool IsLast = false, IsDamaged = false;
  };

  Chunk ChunkAt(std::size_t at) const;
  /// Pieces of what comes next; false where nothing does.
  bool Advance();
  void Inflate(Block& block);
  void StoreBlock();

  std::string_view file_;
  std::size_t at_ = 0;  // the first byte of the file that is not in pieces or being inflated
  Part part_ = Part::Head;
  bool isFirst_ = true;
  std::size_t most_ = 0;  // bytes that may still come
  Block block_, next_;
  std::vector<std::uint8_t> heads_;       // never grows while pieces lie in it
  std::vector<std::string_view> pieces_;  // the next one last
  inflate_state state_;
  std::future<void> ahead_;  // `next_`; waits for its thread, so it goes first
};

}  // namespace graphize
