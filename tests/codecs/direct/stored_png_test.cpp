#include "codecs/direct/stored_png.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "codecs/byte_order.h"
#include "support/picture_bytes.h"

namespace graphize {
namespace {

using test::PngChunk;

constexpr std::size_t kWhole = 5'300'000;  // more than two of the blocks that are handed on

/// Smooth and rough stretches.
std::string Rows() {
  std::mt19937 random(3);
  std::string rows(kWhole, '\0');
  for (std::size_t i = 0; i < rows.size(); ++i)
    rows[i] = static_cast<char>(i / 50'000 % 2 == 0 ? i / 300 : random() % 16);
  return rows;
}

std::string Deflated(const std::string& bytes, int windowBits = 15) {
  z_stream stream{};
  deflateInit2(&stream, 1, Z_DEFLATED, windowBits, 8, Z_DEFAULT_STRATEGY);
  std::string out(deflateBound(&stream, bytes.size()), '\0');
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
  stream.avail_in = static_cast<uInt>(bytes.size());
  stream.next_out = reinterpret_cast<Bytef*>(out.data());
  stream.avail_out = static_cast<uInt>(out.size());
  deflate(&stream, Z_FINISH);
  out.resize(stream.total_out);
  deflateEnd(&stream);
  return out;
}

const std::string& Head() {
  static const std::string head =
      "\x89PNG\r\n\x1a\n" + PngChunk("IHDR", std::string(13, '\1')) + PngChunk("tEXt", "IDAT");
  return head;
}
const std::string& Tail() {
  static const std::string tail = PngChunk("tEXt", "a") + PngChunk("IEND", "");
  return tail;
}

/// In chunks of the sizes in turn, as far as they go, the rest in the last.
std::string InChunks(const std::string& data, const std::vector<std::size_t>& sizes) {
  std::string chunks;
  std::size_t at = 0;
  for (const std::size_t size : sizes) {
    if (at + size >= data.size()) break;
    chunks += PngChunk("IDAT", data.substr(at, size));
    at += size;
  }
  return chunks + PngChunk("IDAT", data.substr(at));
}

std::string Inflated(const std::string& stream) {
  z_stream state{};
  inflateInit(&state);
  inflateValidate(&state, 0);
  std::string bytes(kWhole + 1, '\0');
  state.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(stream.data()));
  state.avail_in = static_cast<uInt>(stream.size());
  state.next_out = reinterpret_cast<Bytef*>(bytes.data());
  state.avail_out = static_cast<uInt>(bytes.size());
  EXPECT_EQ(inflate(&state, Z_FINISH), Z_STREAM_END);
  EXPECT_EQ(state.avail_in, 0u);
  bytes.resize(state.total_out);
  inflateEnd(&state);
  return bytes;
}

struct HandedOn {
  std::string Before, Stored, Behind;  // the file's own bytes; data of the chunks; its own again
  bool IsWhole = false;
};
/// Read chunk by chunk, the data in portions, as the library does.
HandedOn AllOf(const std::string& file) {
  StoredPng png(file);
  HandedOn all;
  const auto read = [&](std::string& to, std::size_t size) {
    for (std::size_t portion = 0; size > 0; size -= portion) {
      portion = std::min<std::size_t>(size, 8192);
      const std::size_t at = to.size();
      to.resize(at + portion);
      if (!png.Read(reinterpret_cast<std::uint8_t*>(to.data()) + at, portion)) return false;
    }
    return true;
  };
  read(all.Before, 8);
  while (!all.IsWhole) {
    std::string head, data, checksum;
    if (!read(head, 8)) break;
    const std::size_t size = DoubleWordHighFirst(head, 0);
    const bool isStored = png.IsStored();
    if (!read(data, size) || !read(checksum, 4)) break;
    if (isStored) {
      EXPECT_EQ(head.substr(4), "IDAT");
      all.Stored += data;
    } else {
      (all.Stored.empty() ? all.Before : all.Behind) += head + data + checksum;
    }
    all.IsWhole = head.substr(4) == "IEND";
  }
  return all;
}

TEST(StoredPng, HandsOnTheDataWithoutCompression) {
  const std::string rows = Rows(), data = Deflated(rows);
  for (const auto& sizes : std::vector<std::vector<std::size_t>>{
           {}, {2, 1, 0, 5, 8192, 0, 8192}, {data.size() - 4}, {data.size() - 1, 0}}) {
    const HandedOn all = AllOf(Head() + InChunks(data, sizes) + Tail());
    EXPECT_TRUE(all.IsWhole);
    EXPECT_EQ(all.Before, Head());
    EXPECT_TRUE(Inflated(all.Stored) == rows);
    EXPECT_EQ(all.Behind, Tail());
  }
  for (const std::size_t size : {std::size_t{0}, std::size_t{1}, std::size_t{2} << 20}) {
    const std::string few = rows.substr(0, size);
    EXPECT_TRUE(Inflated(AllOf(Head() + InChunks(Deflated(few), {}) + Tail()).Stored) == few);
  }
}

TEST(StoredPng, HandsOnWhatIsLeftBehindAFullBlock) {
  const std::string rows = Rows();
  const std::vector<std::size_t> sizes(1000, 8192);
  for (std::size_t more = 1; more < 12'000; more += 997) {
    const std::string few = rows.substr(0, (std::size_t{2} << 20) + more), data = Deflated(few);
    const HandedOn all = AllOf(Head() + InChunks(data, sizes) + Tail());
    EXPECT_TRUE(all.IsWhole) << more;
    EXPECT_TRUE(Inflated(all.Stored) == few) << more;
  }
}

TEST(StoredPng, HandsOnUnusualDataAsItIs) {
  const std::string data = Deflated(Rows(), 14);
  std::string odd = Deflated("rows");
  odd[1] ^= 1;
  for (const std::string& file :
       {Head() + InChunks(data, {100}) + Tail(), Head() + InChunks(odd, {}) + Tail(),
        Head() + InChunks(data, {1}) + Tail(), Head() + Tail()}) {
    const HandedOn all = AllOf(file);
    EXPECT_TRUE(all.IsWhole);
    EXPECT_TRUE(all.Stored.empty());
    EXPECT_TRUE(all.Before == file);
  }
}

TEST(StoredPng, EndsWhereTheDataIsDamaged) {
  const std::string data = Deflated(Rows());
  const std::string whole = Head() + InChunks(data, {1000, 2000}) + Tail();
  const auto flipped = [](std::string bytes, std::size_t at) {
    bytes[at] ^= 4;
    return bytes;
  };
  const std::string damaged[] = {
      flipped(whole, Head().size() + 500),                                 // its chunk's checksum
      flipped(whole, Head().size() + 12 + 1000 - 4),                       // the checksum itself
      Head() + InChunks(flipped(data, data.size() / 2), {1000}) + Tail(),  // all but the last
      Head() + InChunks(flipped(data, data.size() - 1), {}) + Tail(),
      Head() + InChunks(data.substr(0, data.size() - 1), {}) + Tail(),
      Head() + InChunks(data + '\0', {}) + Tail(),
      Head() + InChunks(data, {}) + PngChunk("IDAT", "") + Tail(),
      Head() + PngChunk("IDAT", data.substr(0, 3000)) + PngChunk("tEXt", "a") +
          PngChunk("IDAT", data.substr(3000)) + Tail(),
      whole.substr(0, whole.size() / 2),
      Head() + InChunks(data, {}),
      Head().substr(0, 8) + PngChunk("IHDR", std::string("\0\0\2\0\0\0\2\0\x8\2\0\0\0", 13)) +
          InChunks(data, {}) + Tail(),  // more than a picture of this size has
  };
  for (const std::string& file : damaged) EXPECT_FALSE(AllOf(file).IsWhole) << &file - damaged;
}

}  // namespace
}  // namespace graphize
