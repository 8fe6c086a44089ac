#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <utility>
#include <vector>

namespace graphize {

/// How an array differs from another one: between the start and the end that they share. Compared
/// bit by bit.
template <class T>
struct ArrayChange {
  bool Differs = false;
  std::size_t First = 0, Behind = 0;  // elements of the common start and end
  std::vector<T> Other;               // the other array's middle
};

namespace array_change {

inline constexpr std::size_t kBlock = 1024;  // elements

template <class T>
bool Same(const T* a, const T* b, std::size_t count) {
  return count == 0 || std::memcmp(static_cast<const void*>(a), b, count * sizeof(T)) == 0;
}

/// Elements that are equal from the front on (`step` 1) or from the end on (-1).
template <class T>
std::size_t CommonStart(const T* a, const T* b, std::size_t most) {
  std::size_t i = 0;
  while (i + kBlock <= most && Same(a + i, b + i, kBlock)) i += kBlock;
  while (i < most && Same(a + i, b + i, 1)) ++i;
  return i;
}

template <class T>
std::size_t CommonEnd(const T* aEnd, const T* bEnd, std::size_t most) {
  std::size_t i = 0;
  while (i + kBlock <= most && Same(aEnd - i - kBlock, bEnd - i - kBlock, kBlock)) i += kBlock;
  while (i < most && Same(aEnd - i - 1, bEnd - i - 1, 1)) ++i;
  return i;
}

}  // namespace array_change

/// What of `before` became another in `now`.
template <class T>
ArrayChange<T> ChangeOf(const std::vector<T>& before, const std::vector<T>& now) {
  const std::size_t most = std::min(before.size(), now.size());
  ArrayChange<T> change;
  change.First = array_change::CommonStart(before.data(), now.data(), most);
  if (change.First == before.size() && change.First == now.size()) return change;
  change.Differs = true;
  change.Behind = array_change::CommonEnd(before.data() + before.size(), now.data() + now.size(),
                                          most - change.First);
  change.Other.assign(before.data() + change.First, before.data() + before.size() - change.Behind);
  return change;
}

/// The array becomes the other one, and the other way round.
template <class T>
void Exchange(std::vector<T>& array, ArrayChange<T>& change) {
  const auto first = array.begin() + static_cast<std::ptrdiff_t>(change.First);
  const auto end = array.end() - static_cast<std::ptrdiff_t>(change.Behind);
  std::vector<T> middle(first, end);
  if (middle.size() == change.Other.size()) {
    std::copy(change.Other.begin(), change.Other.end(), first);
  } else {
    const std::vector<T> behind(end, array.end());
    array.resize(change.First);
    array.insert(array.end(), change.Other.begin(), change.Other.end());
    array.insert(array.end(), behind.begin(), behind.end());
  }
  change.Other = std::move(middle);
}

/// `older` becomes the change over both; nothing of arrays that have got another length. `array` is
/// as the newer one has left it.
template <class T>
void Join(ArrayChange<T>& older, ArrayChange<T> newer, const std::vector<T>& array) {
  if (!newer.Differs) return;
  if (!older.Differs) {
    older = std::move(newer);
    return;
  }
  const std::size_t first = std::min(older.First, newer.First);
  const std::size_t behind = std::min(older.Behind, newer.Behind);
  std::vector<T> other(array.begin() + static_cast<std::ptrdiff_t>(first),
                       array.end() - static_cast<std::ptrdiff_t>(behind));
  const auto lay = [&](const ArrayChange<T>& change) {
    std::copy(change.Other.begin(), change.Other.end(),
              other.begin() + static_cast<std::ptrdiff_t>(change.First - first));
  };
  lay(newer);
  lay(older);
  older = {true, first, behind, std::move(other)};
}

/// `copy`, which was equal to `array` up to this change, is again.
template <class T>
void Follow(std::vector<T>& copy, const std::vector<T>& array, const ArrayChange<T>& change) {
  if (copy.size() != array.size())
    copy = array;
  else
    std::copy(array.begin() + static_cast<std::ptrdiff_t>(change.First),
              array.end() - static_cast<std::ptrdiff_t>(change.Behind),
              copy.begin() + static_cast<std::ptrdiff_t>(change.First));
}

}  // namespace graphize
