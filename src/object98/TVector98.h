// TVector98<T>: a growing vector of individually allocated elements.
//
// Each element lives in its own allocation, so a reference to an element stays
// valid while other elements are appended or erased. The capacity is kept as a
// number of its own because the object list writes it to its files: it starts
// at the value given to the constructor and grows by 10 when an append finds
// the vector full. Copies are deep. Not thread safe.
//
// Errors: erase with an index outside 0..size()-1 raises 0xe7422030,
// operator[] 0xe7422031, both with "Index=%d >= Size=%d".
#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "kxexception/KxError.h"
#include "object98/Object98Errors.h"

template <class T>
class TVector98 {
 public:
  explicit TVector98(int initialCapacity = 10) : Capacity(initialCapacity < 0 ? 0 : initialCapacity) {}
  TVector98(const TVector98& o) : Capacity(o.Capacity) {
    Items.reserve(o.Items.size());
    for (const auto& p : o.Items) Items.push_back(std::make_unique<T>(*p));
  }
  TVector98(TVector98&&) noexcept = default;
  TVector98& operator=(const TVector98& o) {
    if (this != &o) {
      TVector98 copy(o);
      *this = std::move(copy);
    }
    return *this;
  }
  TVector98& operator=(TVector98&&) noexcept = default;
  ~TVector98() = default;

  int size() const { return static_cast<int>(Items.size()); }
  int getCapacity() const { return Capacity; }

  // Stores a copy of `item` at the end.
  void append(const T& item) {
    if (size() >= Capacity) Capacity = size() + 10;
    Items.push_back(std::make_unique<T>(item));
  }
  // Deletes element i and closes the gap.
  void erase(int i) {
    if (i < 0 || i >= size()) KX_THROW(object98::ulVectorErase, "Index=%d >= Size=%d", i, size());
    Items.erase(Items.begin() + i);
  }
  // n elements: new ones are default constructed at the end, surplus ones are
  // deleted from the end. The capacity grows to n if it was smaller.
  void resize(int n) {
    if (n < 0) n = 0;
    if (n < size()) {
      Items.resize(static_cast<std::size_t>(n));
    } else {
      Items.reserve(static_cast<std::size_t>(n));
      while (size() < n) Items.push_back(std::make_unique<T>());
    }
    if (Capacity < n) Capacity = n;
  }
  // Moves element `from` to index `to`, the ones between shifting by one.
  void vMove(int from, int to) {
    if (from < 0 || from >= size()) KX_THROW(object98::ulVectorIndex, "Index=%d >= Size=%d", from, size());
    if (to < 0 || to >= size()) KX_THROW(object98::ulVectorIndex, "Index=%d >= Size=%d", to, size());
    auto item = std::move(Items[static_cast<std::size_t>(from)]);
    Items.erase(Items.begin() + from);
    Items.insert(Items.begin() + to, std::move(item));
  }
  // Sets the capacity as read from a file (at least the size).
  void vSetCapacity(int c) { Capacity = c < size() ? size() : c; }
  // Deletes all elements; the capacity stays.
  void clear() { Items.clear(); }

  T& operator[](int i) {
    if (i < 0 || i >= size()) KX_THROW(object98::ulVectorIndex, "Index=%d >= Size=%d", i, size());
    return *Items[static_cast<std::size_t>(i)];
  }
  const T& operator[](int i) const {
    if (i < 0 || i >= size()) KX_THROW(object98::ulVectorIndex, "Index=%d >= Size=%d", i, size());
    return *Items[static_cast<std::size_t>(i)];
  }

 private:
  int Capacity;
  std::vector<std::unique_ptr<T>> Items;
};
