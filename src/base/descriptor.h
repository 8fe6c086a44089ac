#pragma once

namespace graphize {

/// A file or folder that the system has open; closed with this.
class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
  Descriptor(Descriptor&& other) noexcept : descriptor_(other.descriptor_) {
    other.descriptor_ = -1;
  }
  Descriptor& operator=(Descriptor&& other) noexcept;
  ~Descriptor();

  bool IsOpen() const { return descriptor_ >= 0; }
  int Get() const { return descriptor_; }

 private:
  int descriptor_ = -1;
};

}  // namespace graphize
