#include "RecordingBuffer.h"

#include <gtest/gtest.h>

#include <istream>
#include <iterator>
#include <sstream>
#include <string>

using rqtool::RecordingBuffer;

namespace {

std::string Rest(std::istream& in) { return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()}; }

std::string LongText() {
  std::string text;
  while (text.size() < 300'000) text += std::to_string(text.size()) + ' ';
  return text;
}

TEST(RecordingBuffer, HandsOnTheBytesOfItsSource) {
  for (const std::string& text : {std::string(), std::string("abc"), LongText()}) {
    std::stringbuf source(text);
    RecordingBuffer buffer(source);
    std::istream in(&buffer);
    EXPECT_EQ(Rest(in), text);
    EXPECT_EQ(Rest(in), "");
  }
}

TEST(RecordingBuffer, StartsAgainFromEveryPlaceAndGoesOnBeyondIt) {
  const std::string text = LongText();
  for (const std::size_t place : {0u, 1u, 65535u, 65536u, 65537u, 200'000u}) {
    std::stringbuf source(text);
    RecordingBuffer buffer(source);
    std::istream in(&buffer);
    std::string start(place, '\0');
    in.read(start.data(), static_cast<std::streamsize>(place));
    EXPECT_EQ(start, text.substr(0, place));
    buffer.Rewind();
    EXPECT_EQ(Rest(in), text) << place;
    in.clear();
    buffer.Rewind();
    EXPECT_EQ(Rest(in), text) << place;
  }
}

TEST(RecordingBuffer, AByteOf255IsNoEnd) {
  std::stringbuf source("\xff\xff");
  RecordingBuffer buffer(source);
  std::istream in(&buffer);
  EXPECT_EQ(Rest(in), "\xff\xff");
}

}  // namespace
