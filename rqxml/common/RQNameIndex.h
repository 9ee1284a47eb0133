#ifndef RQXML_COMMON_RQNAMEINDEX_H
#define RQXML_COMMON_RQNAMEINDEX_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <string_view>
#include <vector>

namespace RQMTD_NAMESPACE {

// Finds the names of a list. Not installed.
//
// A table of (hash, position) pairs in one block of memory with linear probing. Lists of a hundred thousand variables
// are filled through it, where a set with one node for each name spends most of its time waiting for memory. The
// names stay where they are: the caller hands in a function that gives the name at a position.
class RQNameIndex {
 public:
  static constexpr std::size_t kNone = std::numeric_limits<std::size_t>::max();

  // The inserted position that has this name, or kNone.
  template <typename NameAt>
  std::size_t Find(std::string_view name, NameAt nameAt) const {
    if (fSlots.empty()) return kNone;
    const std::uint32_t hash = Hash(name);
    for (std::size_t i = hash & Mask(); fSlots[i].position != kFree; i = (i + 1) & Mask()) {
      if (fSlots[i].hash == hash && nameAt(fSlots[i].position) == name) return fSlots[i].position;
    }
    return kNone;
  }

  // Makes room for one more name. When memory runs out here, nothing has changed.
  void ReserveOne() {
    if (4 * (fCount + 1) <= 3 * fSlots.size()) return;
    RQNameIndex larger;
    larger.fSlots.resize(fSlots.empty() ? kFirstSlots : 2 * fSlots.size());
    for (const Slot& slot : fSlots) {
      if (slot.position != kFree) larger.Put(slot);
    }
    fSlots.swap(larger.fSlots);
  }

  // Enters a name that the table does not hold yet; ReserveOne comes first.
  void Insert(std::string_view name, std::size_t position) noexcept {
    Put({Hash(name), static_cast<std::uint32_t>(position)});
    ++fCount;
  }

 private:
  static constexpr std::uint32_t kFree = std::numeric_limits<std::uint32_t>::max();
  static constexpr std::size_t kFirstSlots = 32;  // a power of two, as all later sizes

  struct Slot {
    std::uint32_t hash = 0;
    std::uint32_t position = kFree;
  };

  static std::uint32_t Hash(std::string_view name) noexcept {
    return static_cast<std::uint32_t>(std::hash<std::string_view>()(name));
  }

  std::size_t Mask() const noexcept { return fSlots.size() - 1; }

  void Put(const Slot& slot) noexcept {
    std::size_t i = slot.hash & Mask();
    while (fSlots[i].position != kFree) i = (i + 1) & Mask();
    fSlots[i] = slot;
  }

  std::vector<Slot> fSlots;
  std::size_t fCount = 0;
};

}  // namespace RQMTD_NAMESPACE

#endif
