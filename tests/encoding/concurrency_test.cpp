// Several threads convert at once, with one converter, and make the default converter together.

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "rqxml/encoding/ExtNameStr.h"
#include "rqxml/encoding/RQMEMConverter.h"
#include "rqxml/encoding/RQMEMTranscode.h"

namespace {

using namespace RQMEM_NAMESPACE;

constexpr int kThreads = 4;
constexpr int kRounds = 200;

void InThreads(const std::function<void(int)>& work) {
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i) threads.emplace_back(work, i);
  for (std::thread& thread : threads) thread.join();
}

// Stands first: nothing has made the default converter yet.
TEST(Concurrency, DefaultConverterIsMadeOnceByThreadsThatNeedItAtOnce) {
  std::atomic<UConverter*> made[kThreads] = {};
  InThreads([&](int i) { made[i] = QULTMBGetDefaultConverter(); });
  for (const auto& converter : made) EXPECT_EQ(converter, made[0].load());
  EXPECT_EQ(QULTMBDefaultConverterID(), 1);
}

TEST(Concurrency, OneConverterServesManyThreads) {
  const QULTMBConverterHandle converter(QULTMBConverterNew_8("932"));
  std::atomic<int> wrong{0};
  InThreads([&](int) {
    const std::string text = "Name \u3042\u3044\u4e2d";
    for (int round = 0; round < kRounds; ++round) {
      std::string bytes;
      std::string back;
      std::wstring wide;
      if (QULTMBU8ToCodePage(converter.Get(), bytes, text) != 0) ++wrong;
      if (QULTMBCodePageToU8(converter.Get(), back, bytes) != 0 || back != text) ++wrong;
      if (QULTMBCodePageToU16(nullptr, wide, text) != 0 || wide.size() != 8) ++wrong;
    }
  });
  EXPECT_EQ(wrong, 0);
}

TEST(Concurrency, EachThreadHasItsOwnNames) {
  std::atomic<int> wrong{0};
  InThreads([&](int i) {
    const std::string text = "caf\u00e9 " + std::to_string(i);
    for (int round = 0; round < kRounds; ++round) {
      ExtNameStr name;
      name.SetU8(text);
      if (name.GetCP() != text || name.GetSystem() != "caf\xE9 " + std::to_string(i)) ++wrong;
    }
  });
  EXPECT_EQ(wrong, 0);
}

}  // namespace
