#include "rqxml/common/RQNameIndex.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace {

using RQMTD_NAMESPACE::RQNameIndex;

class Names {
 public:
  bool Contains(const std::string& name) const {
    return fIndex.Find(name, [this](std::size_t position) -> const std::string& { return fNames[position]; }) !=
           RQNameIndex::kNone;
  }
  void Add(const std::string& name) {
    fNames.push_back(name);
    fIndex.ReserveOne();
    fIndex.Insert(name, fNames.size() - 1);
  }

 private:
  std::vector<std::string> fNames;
  RQNameIndex fIndex;
};

TEST(RQNameIndex, ContainsNothingAtFirst) {
  const Names names;
  EXPECT_FALSE(names.Contains("a"));
  EXPECT_FALSE(names.Contains(""));
}

TEST(RQNameIndex, ContainsWhatWasInsertedAndNothingElseAtEverySize) {
  constexpr int kCount = 3000;
  Names names;
  for (int i = 0; i < kCount; ++i) {
    const std::string name = "v" + std::to_string(i);
    ASSERT_FALSE(names.Contains(name)) << name;
    names.Add(name);
    ASSERT_TRUE(names.Contains(name)) << name;
  }
  for (int i = 0; i < kCount; ++i) ASSERT_TRUE(names.Contains("v" + std::to_string(i))) << i;
  for (int i = kCount; i < 2 * kCount; ++i) ASSERT_FALSE(names.Contains("v" + std::to_string(i))) << i;
}

TEST(RQNameIndex, ComparesNamesByteForByte) {
  Names names;
  names.Add(std::string("a\0b", 3));
  EXPECT_TRUE(names.Contains(std::string("a\0b", 3)));
  EXPECT_FALSE(names.Contains("a"));
  EXPECT_FALSE(names.Contains(std::string("a\0c", 3)));
  EXPECT_FALSE(names.Contains(std::string("A\0b", 3)));
}

// Two names whose hashes agree in the bits that the table keeps.
std::pair<std::string, std::string> NamesOfOneHash() {
  std::unordered_map<std::uint32_t, std::string> seen;
  for (int i = 0; i < 2000000; ++i) {
    std::string name = "v" + std::to_string(i);
    const auto hash = static_cast<std::uint32_t>(std::hash<std::string_view>()(name));
    const auto [other, isNew] = seen.emplace(hash, name);
    if (!isNew) return {other->second, std::move(name)};
  }
  return {};
}

TEST(RQNameIndex, TellsNamesOfTheSameHashApart) {
  const auto [one, other] = NamesOfOneHash();
  ASSERT_NE(one, other) << "no two names of one hash were found";
  Names names;
  names.Add(one);
  EXPECT_FALSE(names.Contains(other));
  names.Add(other);
  EXPECT_TRUE(names.Contains(one));
  EXPECT_TRUE(names.Contains(other));
}

TEST(RQNameIndex, ReservingAgainWithoutInsertingIsHarmless) {
  RQNameIndex index;
  for (int i = 0; i < 100; ++i) index.ReserveOne();
  index.Insert("only", 0);
  const std::string only = "only";
  EXPECT_EQ(index.Find(only, [&only](std::size_t) -> const std::string& { return only; }), 0U);
}

}  // namespace
