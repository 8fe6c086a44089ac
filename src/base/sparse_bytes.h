#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <new>
#include <utility>

namespace graphize {

/// Bytes that are 0 until they are written. Of a large number the system gives memory for no other
/// pages than those that are.
class SparseBytes {
 public:
  SparseBytes() = default;
  explicit SparseBytes(std::size_t size)
      : bytes_(static_cast<std::uint8_t*>(std::calloc(size, 1))), size_(size) {
    if (bytes_ == nullptr && size > 0) throw std::bad_alloc();
  }
  /// A copy has memory for all of it.
  SparseBytes(const SparseBytes& other) : SparseBytes(other.size_) {
    std::copy(other.begin(), other.end(), data());
  }
  SparseBytes(SparseBytes&& other) noexcept
      : bytes_(std::move(other.bytes_)), size_(std::exchange(other.size_, 0)) {}
  SparseBytes& operator=(SparseBytes other) noexcept {
    bytes_ = std::move(other.bytes_);
    size_ = other.size_;
    return *this;
  }
  ~SparseBytes() = default;

  std::size_t size() const { return size_; }
  std::uint8_t* data() { return bytes_.get(); }
  const std::uint8_t* data() const { return bytes_.get(); }
  const std::uint8_t* begin() const { return data(); }
  const std::uint8_t* end() const { return data() + size_; }
  std::uint8_t& operator[](std::size_t i) { return data()[i]; }
  std::uint8_t operator[](std::size_t i) const { return data()[i]; }

 private:
  struct Free {
    void operator()(std::uint8_t* bytes) const { std::free(bytes); }
  };
  std::unique_ptr<std::uint8_t, Free> bytes_;
  std::size_t size_ = 0;
};

}  // namespace graphize
