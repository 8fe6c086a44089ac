#pragma once

#include <cstdint>

namespace graphize::test {

/// What a disk or the memory can refuse. Create: a file to be written, or a folder.
enum class Call { Create, Write, Sync, Rename, Allocate };

/// While it lives, the `number`th of these calls of the whole program fails, from 1: "no space left
/// on the device", or bad_alloc.
class Fault {
 public:
  Fault(Call call, int number);
  ~Fault();
  Fault(const Fault&) = delete;
  Fault& operator=(const Fault&) = delete;

  bool Happened() const;
};

/// From here on the program is killed in the `number`th of its calls to the disk; of what is to be
/// written, the first half is.
void DieAtCall(int number);

/// Calls of operator new so far, and the bytes of it that were not given back.
std::int64_t Allocations();
std::int64_t AllocatedBytes();

}  // namespace graphize::test
