#include "codecs/direct/stored_png.h"

#include <algorithm>
#include <cstring>

#include "base/start_beside.h"
#include "codecs/byte_order.h"

namespace graphize {

namespace {

constexpr std::size_t kSignature = 8;
constexpr std::size_t kFrame = 12;                    // of a chunk: length, type and checksum
constexpr std::size_t kBlock = std::size_t{2} << 20;  // bytes inflated at a time
constexpr std::size_t kLongestChunk = 0x7fffffff;
constexpr std::size_t kStored = 0xffff;  // bytes of a stored block, RFC 1951

/// Deflated with the largest window and no dictionary. (The PNG library holds a stream that tells a
/// smaller window to it.)
bool IsUsual(std::string_view data) {
  return data.size() >= 2 && data[0] == 0x78 && (data[1] & 0x20) == 0 &&
         WordHighFirst(data, 0) % 31 == 0;
}

}  // namespace

StoredPng::StoredPng(std::string_view file) : file_(file) {
  std::size_t at = kSignature;
  Chunk chunk = ChunkAt(at);
  while (!chunk.Body.empty() && !chunk.IsData()) {
    at += chunk.Size();
    chunk = ChunkAt(at);
  }
  const bool isUsual = chunk.IsData() && IsUsual(chunk.Body.substr(4));
  at_ = isUsual ? at : file.size();
  if (file.size() >= kSignature + 16) {
    const std::size_t width = DoubleWordHighFirst(file, kSignature + 8);
    const std::size_t height = DoubleWordHighFirst(file, kSignature + 12);
    most_ = (8 * width + 16) * height;  // four samples of 16 bits, and the filters of each pass
  }
  part_ = isUsual ? Part::Head : Part::Tail;
  pieces_ = {file.substr(0, at_)};
  isal_inflate_init(&state_);
  state_.crc_flag = ISAL_ZLIB;
}

StoredPng::Chunk StoredPng::ChunkAt(std::size_t at) const {
  if (file_.size() < at + kFrame) return {};
  const std::size_t size = DoubleWordHighFirst(file_, at);
  if (size > kLongestChunk || file_.size() - at - kFrame < size) return {};
  return {file_.substr(at + 4, 4 + size), DoubleWordHighFirst(file_, at + 8 + size)};
}

bool StoredPng::Read(std::uint8_t* target, std::size_t size) {
  while (size > 0) {
    if (pieces_.empty() && !Advance()) return false;
    std::string_view& piece = pieces_.back();
    const std::size_t count = std::min(size, piece.size());
    std::memcpy(target, piece.data(), count);
    target += count;
    size -= count;
    piece.remove_prefix(count);
    if (piece.empty()) pieces_.pop_back();
  }
  return true;
}

bool StoredPng::Advance() {
  if (part_ == Part::Tail) return false;
  if (block_.IsLast) {
    part_ = Part::Tail;
    if (at_ < file_.size()) pieces_.push_back(file_.substr(at_));
    return !pieces_.empty();
  }
  if (part_ == Part::Head)
    Inflate(next_);
  else
    ahead_.get();
  part_ = Part::Data;
  std::swap(block_, next_);
  if (block_.IsDamaged) return false;
  if (!block_.IsLast) ahead_ = StartBeside([this] { Inflate(next_); });
  StoreBlock();
  return true;
}

void StoredPng::Inflate(Block& block) {
  if (!block.Bytes) block.Bytes = std::make_unique_for_overwrite<std::uint8_t[]>(kBlock);
  block.IsDamaged = true;
  state_.next_out = block.Bytes.get();
  state_.avail_out = kBlock;
  while (state_.avail_out > 0 && state_.block_state != ISAL_BLOCK_FINISH) {
    // All is read, but a full block has left some of it for the next one.
    const bool isRead = state_.block_state == ISAL_BLOCK_INPUT_DONE;
    if (state_.avail_in == 0 && !isRead) {
      const Chunk chunk = ChunkAt(at_);
      const auto* body = reinterpret_cast<const std::uint8_t*>(chunk.Body.data());
      if (!chunk.IsData() || crc32_gzip_refl(0, body, chunk.Body.size()) != chunk.Checksum) return;
      at_ += chunk.Size();
      state_.next_in = const_cast<std::uint8_t*>(body) + 4;
      state_.avail_in = static_cast<std::uint32_t>(chunk.Body.size() - 4);
    }
    const int verdict = isal_inflate(&state_);
    if (verdict != ISAL_DECOMP_OK && verdict != ISAL_END_INPUT) return;
    if (isRead && state_.avail_out > 0 && state_.block_state == ISAL_BLOCK_INPUT_DONE) return;
  }
  block.Size = kBlock - state_.avail_out;
  if (block.Size > most_) return;
  most_ -= block.Size;
  block.IsLast = state_.block_state == ISAL_BLOCK_FINISH;
  const bool isMore = state_.avail_in > 0 || state_.read_in_length >= 8;  // bits already taken in
  block.IsDamaged = block.IsLast && (isMore || ChunkAt(at_).IsData());
}

void StoredPng::StoreBlock() {
  const std::size_t count = (block_.Size + kStored - 1) / kStored;
  const std::size_t size =
      (isFirst_ ? 2 : 0) + 5 * count + block_.Size + (block_.IsLast ? 5 + 4 : 0);
  heads_.clear();
  heads_.reserve(8 + size - block_.Size + 4);
  std::size_t from = 0;
  pieces_.clear();
  const auto piece = [&] {  // of the heads, up to here
    pieces_.push_back({reinterpret_cast<const char*>(heads_.data()) + from, heads_.size() - from});
    from = heads_.size();
  };
  for (const int shift : {24, 16, 8, 0}) heads_.push_back(static_cast<std::uint8_t>(size >> shift));
  heads_.insert(heads_.end(), {'I', 'D', 'A', 'T'});
  if (isFirst_) heads_.insert(heads_.end(), {0x78, 0x01});
  for (std::size_t at = 0; at < block_.Size; at += kStored) {
    const std::size_t length = std::min(kStored, block_.Size - at);
    heads_.push_back(0);
    for (const std::size_t word : {length, ~length})
      for (const int shift : {0, 8}) heads_.push_back(static_cast<std::uint8_t>(word >> shift));
    piece();
    pieces_.push_back({reinterpret_cast<const char*>(block_.Bytes.get()) + at, length});
  }
  if (block_.IsLast) heads_.insert(heads_.end(), {1, 0, 0, 0xff, 0xff, 0, 0, 0, 0});
  heads_.insert(heads_.end(), {0, 0, 0, 0});
  piece();
  std::ranges::reverse(pieces_);
  isFirst_ = false;
}

}  // namespace graphize
