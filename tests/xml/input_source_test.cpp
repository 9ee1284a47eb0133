#include "rqxml/xml/RQXInputSource.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <sstream>
#include <string>
#include <type_traits>
#include <vector>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/BinInputStream.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include "tests/support/dom.h"
#include "tests/support/platform.h"
#include "tests/support/streams.h"

namespace {

using rqtest::Text;
using RQXPrsUtil::RQXInputSource;
using xercesc::BinInputStream;

static_assert(std::is_base_of_v<xercesc::InputSource, RQXInputSource>);
static_assert(std::has_virtual_destructor_v<RQXInputSource>);
static_assert(!std::is_convertible_v<std::istream&, RQXInputSource>);

std::string Read(BinInputStream& stream, std::size_t most) {
  std::vector<XMLByte> bytes(most);
  const XMLSize_t size = stream.readBytes(bytes.data(), most);
  EXPECT_LE(size, most);
  return {bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size)};
}

class InputSource : public rqtest::WithPlatform {};

TEST_F(InputSource, IsNamedIstreamAndForcesNothing) {
  std::istringstream stream("<a/>");
  const RQXInputSource source(stream);
  EXPECT_EQ(Text(source.getSystemId()), u"istream");
  EXPECT_EQ(source.getPublicId(), nullptr);
  EXPECT_EQ(source.getEncoding(), nullptr);
  EXPECT_EQ(source.getMemoryManager(), xercesc::XMLPlatformUtils::fgMemoryManager);
  EXPECT_TRUE(source.getIssueFatalErrorIfNotFound());
}

TEST_F(InputSource, MakingItReadsNothing) {
  std::istringstream stream("<a/>");
  {
    const RQXInputSource source(stream);
    const std::unique_ptr<BinInputStream> bytes(source.makeStream());
  }
  EXPECT_TRUE(stream.good());
  EXPECT_EQ(stream.tellg(), std::streampos(0));
}

TEST_F(InputSource, DestroyingItLeavesTheStreamAsItIs) {
  std::istringstream stream("abc");
  stream.setstate(std::ios::failbit);
  { const std::unique_ptr<xercesc::InputSource> source = std::make_unique<RQXInputSource>(stream); }
  EXPECT_EQ(stream.rdstate(), std::ios::failbit);
  stream.clear();
  EXPECT_EQ(stream.get(), 'a');
}

TEST_F(InputSource, ReadsUpToTheNumberOfBytesAskedForThenTheRestThenNothing) {
  std::istringstream stream("abcdefgh");
  const RQXInputSource source(stream);
  const std::unique_ptr<BinInputStream> bytes(source.makeStream());
  EXPECT_EQ(Read(*bytes, 3), "abc");
  EXPECT_EQ(Read(*bytes, 3), "def");
  EXPECT_TRUE(stream.good());
  EXPECT_EQ(Read(*bytes, 3), "gh");
  EXPECT_TRUE(stream.eof());
  EXPECT_TRUE(stream.fail());
  EXPECT_EQ(Read(*bytes, 3), "");
  EXPECT_EQ(Read(*bytes, 3), "");
}

TEST_F(InputSource, HandsOutTheBytesUnchanged) {
  std::string all;
  for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
  std::istringstream stream(all);
  const RQXInputSource source(stream);
  const std::unique_ptr<BinInputStream> bytes(source.makeStream());
  EXPECT_EQ(Read(*bytes, 1000), all);
}

TEST_F(InputSource, ReadsNoFurtherThanAskedFor) {
  std::istringstream stream("abcdefgh");
  const RQXInputSource source(stream);
  const std::unique_ptr<BinInputStream> bytes(source.makeStream());
  EXPECT_EQ(Read(*bytes, 3), "abc");
  EXPECT_EQ(stream.tellg(), std::streampos(3));
  EXPECT_EQ(stream.get(), 'd');
}

TEST_F(InputSource, PositionIsThatOfTheStream) {
  std::istringstream stream("abcdefgh");
  stream.seekg(2);
  const RQXInputSource source(stream);
  const std::unique_ptr<BinInputStream> bytes(source.makeStream());
  EXPECT_EQ(bytes->curPos(), 2U);
  Read(*bytes, 3);
  EXPECT_EQ(bytes->curPos(), 5U);
  stream.seekg(1);
  EXPECT_EQ(bytes->curPos(), 1U);
}

TEST_F(InputSource, PositionIsTheLargestNumberWhenTheStreamCannotTell) {
  constexpr XMLFilePos kUnknown = std::numeric_limits<XMLFilePos>::max();
  std::istringstream stream("abc");
  const RQXInputSource source(stream);
  const std::unique_ptr<BinInputStream> bytes(source.makeStream());
  Read(*bytes, 100);
  EXPECT_EQ(bytes->curPos(), kUnknown);

  rqtest::ChunkedBuf buffer("abc", 1);
  std::istream unpositioned(&buffer);
  const RQXInputSource other(unpositioned);
  const std::unique_ptr<BinInputStream> more(other.makeStream());
  EXPECT_EQ(more->curPos(), kUnknown);
}

TEST_F(InputSource, KnowsNoContentTypeAndNoEncoding) {
  std::istringstream stream("abc");
  const RQXInputSource source(stream);
  const std::unique_ptr<BinInputStream> bytes(source.makeStream());
  EXPECT_EQ(bytes->getContentType(), nullptr);
  EXPECT_EQ(bytes->getEncoding(), nullptr);
}

TEST_F(InputSource, EachByteStreamIsANewOneOverTheSameStream) {
  std::istringstream stream("abcdef");
  const RQXInputSource source(stream);
  const std::unique_ptr<BinInputStream> first(source.makeStream());
  const std::unique_ptr<BinInputStream> second(source.makeStream());
  ASSERT_NE(first, nullptr);
  ASSERT_NE(second, nullptr);
  EXPECT_NE(first, second);
  EXPECT_EQ(Read(*first, 2), "ab");
  EXPECT_EQ(Read(*second, 2), "cd");
  EXPECT_EQ(Read(*first, 2), "ef");
}

TEST_F(InputSource, StreamsThatComeInSmallChunksAreReadWhole) {
  rqtest::ChunkedBuf buffer("abcdefgh", 1);
  std::istream stream(&buffer);
  const RQXInputSource source(stream);
  const std::unique_ptr<BinInputStream> bytes(source.makeStream());
  EXPECT_EQ(Read(*bytes, 5), "abcde");
  EXPECT_EQ(Read(*bytes, 5), "fgh");
  EXPECT_EQ(Read(*bytes, 5), "");
}

TEST_F(InputSource, ExceptionThatTheStreamIsSetToThrowPassesOut) {
  rqtest::FailingBuf buffer("abc");
  std::istream stream(&buffer);
  stream.exceptions(std::ios::badbit);
  const RQXInputSource source(stream);
  const std::unique_ptr<BinInputStream> bytes(source.makeStream());
  EXPECT_EQ(Read(*bytes, 3), "abc");
  EXPECT_THROW(Read(*bytes, 3), rqtest::ReadFailure);
}

TEST_F(InputSource, ServesAParserOfTheLibrary) {
  std::istringstream stream("<a><b/></a>");
  const RQXInputSource source(stream);
  xercesc::XercesDOMParser parser;
  parser.parse(source);
  ASSERT_NE(parser.getDocument(), nullptr);
  EXPECT_EQ(rqtest::Tag(parser.getDocument()->getDocumentElement()), u"a");
}

}  // namespace
