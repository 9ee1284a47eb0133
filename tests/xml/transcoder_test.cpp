#include "rqxml/xml/RQXTranscoder.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <vector>

#include "tests/support/platform.h"
#include "tests/support/reference_transcoder.h"

namespace {

using RQXPrsUtil::RQXTranscoder;

static_assert(!std::is_copy_constructible_v<RQXTranscoder> && !std::is_copy_assignable_v<RQXTranscoder>);
static_assert(std::is_default_constructible_v<RQXTranscoder>);

/// The result of TranscodeFrom without its terminator, which must be there.
std::u16string From(const RQXTranscoder& transcoder, const std::string& source) {
  const std::vector<XMLCh> units = transcoder.TranscodeFrom(source.c_str());
  EXPECT_FALSE(units.empty());
  if (units.empty()) return {};
  EXPECT_EQ(units.back(), u'\0');
  return {units.begin(), units.end() - 1};
}

class Transcoder : public rqtest::WithPlatform {};

TEST_F(Transcoder, ServesUtf8UnlessToldOtherwise) {
  const RQXTranscoder byDefault;
  const RQXTranscoder byNull(nullptr);
  for (const RQXTranscoder* const transcoder : {&byDefault, &byNull}) {
    EXPECT_TRUE(transcoder->isValid());
    EXPECT_EQ(From(*transcoder, "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80"), u"\u00E4\u20AC\U0001F600");
    EXPECT_EQ(transcoder->TranscodeTo(u"\u00E4\u20AC\U0001F600"), "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80");
  }
}

TEST_F(Transcoder, EncodingNamesAreKnownInAnyCase) {
  for (const char* const name : {"UTF-8", "utf-8", "US-ASCII", "ISO-8859-1", "iso-8859-15", "windows-1252", "Shift_JIS",
                                 "EUC-JP", "GB18030", "ISO-2022-JP", "Big5", "EUC-KR", "IBM037"}) {
    EXPECT_TRUE(RQXTranscoder(name).isValid()) << name;
  }
}

TEST_F(Transcoder, UnknownEncodingIsInvalidAndConvertsToNothing) {
  const RQXTranscoder unknown("no-such-encoding");
  EXPECT_FALSE(unknown.isValid());
  EXPECT_EQ(unknown.TranscodeFrom("abc"), std::vector<XMLCh>{0});
  EXPECT_EQ(unknown.TranscodeFrom(""), std::vector<XMLCh>{0});
  EXPECT_EQ(unknown.TranscodeTo(u"abc"), "");
  EXPECT_EQ(unknown.TranscodeTo(u""), "");
  EXPECT_EQ(unknown.TranscodeTo(nullptr), "");
}

TEST_F(Transcoder, EmptyTextGivesOneZeroUnitOrAnEmptyText) {
  const RQXTranscoder transcoder;
  EXPECT_EQ(transcoder.TranscodeFrom(""), std::vector<XMLCh>{0});
  EXPECT_EQ(transcoder.TranscodeTo(u""), "");
}

TEST_F(Transcoder, NullCountsAsEmptyUtf16) { EXPECT_EQ(RQXTranscoder().TranscodeTo(nullptr), ""); }

TEST_F(Transcoder, ResultOfTranscodeFromEndsWithExactlyOneZeroUnit) {
  EXPECT_EQ(RQXTranscoder().TranscodeFrom("ab"), (std::vector<XMLCh>{u'a', u'b', 0}));
}

TEST_F(Transcoder, ReadsUpToTheFirstZero) {
  const char bytes[] = "ab\0cd";
  EXPECT_EQ(From(RQXTranscoder(), bytes), u"ab");
  const char16_t units[] = u"ab\0cd";
  EXPECT_EQ(RQXTranscoder().TranscodeTo(units), "ab");
}

TEST_F(Transcoder, MalformedUtf8GivesOneZeroUnit) {
  const RQXTranscoder transcoder;
  for (const char* const bytes : {"\x80", "\xC0\x80", "\xC3", "\xC3(", "\xE2\x82", "\xED\xA0\x80", "\xF0\x9F\x98",
                                  "\xF4\x90\x80\x80", "\xFF", "abc\xC3",
                                  "abc\xFF"
                                  "def"}) {
    EXPECT_EQ(transcoder.TranscodeFrom(bytes), std::vector<XMLCh>{0}) << ::testing::PrintToString(bytes);
    const std::string far = std::string(5000, 'x') + bytes;
    EXPECT_EQ(transcoder.TranscodeFrom(far.c_str()), std::vector<XMLCh>{0}) << ::testing::PrintToString(bytes);
  }
}

TEST_F(Transcoder, LoneHighSurrogateGivesAnEmptyText) {
  const RQXTranscoder transcoder;
  const XMLCh alone[] = {0xD83D, 0};
  const XMLCh atEnd[] = {u'a', 0xD83D, 0};
  EXPECT_EQ(transcoder.TranscodeTo(alone), "");
  EXPECT_EQ(transcoder.TranscodeTo(atEnd), "");
  std::u16string far(5000, u'x');
  far += static_cast<char16_t>(0xD83D);
  EXPECT_EQ(transcoder.TranscodeTo(far.c_str()), "");
}

TEST_F(Transcoder, UnrepresentableCharacterGivesAnEmptyText) {
  const struct {
    const char* encoding;
    const char16_t* character;
  } rows[] = {{"US-ASCII", u"\u00E4"},      {"ISO-8859-1", u"\u20AC"}, {"windows-1252", u"\u65E5"},
              {"Shift_JIS", u"\U0001F600"}, {"EUC-JP", u"\U0001F600"}, {"ISO-2022-JP", u"\u0E01"},
              {"Big5", u"\u0E01"},          {"IBM037", u"\u65E5"},     {"EUC-KR", u"\U0001F600"}};
  for (const auto& row : rows) {
    const RQXTranscoder transcoder(row.encoding);
    ASSERT_TRUE(transcoder.isValid()) << row.encoding;
    const std::u16string character(row.character);
    EXPECT_EQ(transcoder.TranscodeTo(character.c_str()), "") << row.encoding;
    EXPECT_EQ(transcoder.TranscodeTo((u"before" + character + u"after").c_str()), "") << row.encoding;
    EXPECT_EQ(transcoder.TranscodeTo((std::u16string(5000, u'x') + character).c_str()), "") << row.encoding;
  }
}

/// One character and its bytes; the bytes that enter and leave a shifted state stand around a run of characters.
struct Character {
  const char* encoding;
  const char16_t* units;
  const char* bytes;
  const char* enter = "";
  const char* leave = "";
};

const Character kCharacters[] = {
    {"UTF-8", u"\u00E4", "\xC3\xA4"},
    {"UTF-8", u"\u20AC", "\xE2\x82\xAC"},
    {"UTF-8", u"\U0001F600", "\xF0\x9F\x98\x80"},
    {"US-ASCII", u"~", "~"},
    {"ISO-8859-1", u"\u00E4", "\xE4"},
    {"windows-1252", u"\u20AC", "\x80"},
    {"windows-1252", u"\u00E9", "\xE9"},
    {"windows-1251", u"\u0416", "\xC6"},
    {"Shift_JIS", u"\u65E5", "\x93\xFA"},
    {"Shift_JIS", u"\u672C", "\x96{"},
    {"Shift_JIS", u"\uFF71", "\xB1"},
    {"EUC-JP", u"\u65E5", "\xC6\xFC"},
    {"EUC-JP", u"\u00E9", "\x8F\xAB\xB1"},
    {"GB18030", u"\u65E5", "\xC8\xD5"},
    {"GB18030", u"\u00E4", "\x81\x30\x8A\x31"},
    {"GB18030", u"\U0001F600", "\x94\x39\xFC\x36"},
    {"Big5", u"\u65E5", "\xA4\xE9"},
    {"EUC-KR", u"\u65E5", "\xEC\xED"},
    {"ISO-2022-JP", u"\u65E5", "F|", "\x1B$B", "\x1B(B"},
};

std::u16string Repeat(const std::u16string& text, std::size_t times) {
  std::u16string all;
  for (std::size_t i = 0; i < times; ++i) all += text;
  return all;
}

std::string Repeat(const std::string& text, std::size_t times) {
  std::string all;
  for (std::size_t i = 0; i < times; ++i) all += text;
  return all;
}

/// A text with a run of one character in the middle, in both forms.
struct Sample {
  std::u16string units;
  std::string bytes;
};

Sample MakeSample(const Character& character, std::size_t before, std::size_t run) {
  return {
      std::u16string(before, u'a') + Repeat(std::u16string(character.units), run) + u"b",
      std::string(before, 'a') + character.enter + Repeat(std::string(character.bytes), run) + character.leave + "b"};
}

class TranscoderCharacter : public Transcoder, public ::testing::WithParamInterface<Character> {};

TEST_P(TranscoderCharacter, SurvivesAtEveryOffsetAroundTheChunkEdges) {
  const RQXTranscoder transcoder(GetParam().encoding);
  ASSERT_TRUE(transcoder.isValid());
  for (const std::size_t edge : {1000U, 2000U, 3000U, 4000U, 5000U}) {
    for (std::size_t before = edge - 14; before <= edge + 2; ++before) {
      const Sample sample = MakeSample(GetParam(), before, 3);
      ASSERT_EQ(From(transcoder, sample.bytes), sample.units) << "after " << before;
      ASSERT_EQ(transcoder.TranscodeTo(sample.units.c_str()), sample.bytes) << "after " << before;
    }
  }
}

TEST_P(TranscoderCharacter, SurvivesAsTheLastCharacterAtEveryOffsetAroundTheChunkEdges) {
  const RQXTranscoder transcoder(GetParam().encoding);
  for (const std::size_t edge : {1000U, 2000U, 4000U}) {
    for (std::size_t before = edge - 14; before <= edge + 2; ++before) {
      Sample sample = MakeSample(GetParam(), before, 1);
      sample.units.pop_back();
      sample.bytes.pop_back();
      ASSERT_EQ(From(transcoder, sample.bytes), sample.units) << "after " << before;
      ASSERT_EQ(From(transcoder, transcoder.TranscodeTo(sample.units.c_str())), sample.units) << "after " << before;
    }
  }
}

TEST_P(TranscoderCharacter, SurvivesInALongRun) {
  const RQXTranscoder transcoder(GetParam().encoding);
  for (std::size_t before = 0; before < 5; ++before) {
    const Sample sample = MakeSample(GetParam(), before, 9000);
    ASSERT_EQ(From(transcoder, sample.bytes), sample.units) << "after " << before;
    ASSERT_EQ(transcoder.TranscodeTo(sample.units.c_str()), sample.bytes) << "after " << before;
  }
}

TEST_P(TranscoderCharacter, ConvertsTheSameWhateverWasConvertedBefore) {
  const char* const encoding = GetParam().encoding;
  const std::u16string character(GetParam().units);
  std::u16string cut = std::u16string(1500, u'x') + character;
  cut += static_cast<char16_t>(0xD83D);
  const std::vector<std::u16string> texts = {u"abc", character,        u"abc" + character,     cut, u"\u0E01\U0001F601",
                                             u"",    character + u"z", Repeat(character, 1200)};
  const Sample whole = MakeSample(GetParam(), 3, 2);
  const std::vector<std::string> sources = {
      "abc",          whole.bytes, whole.bytes.substr(0, 4),
      "\xFF\xFE\x80", "",          GetParam().enter + std::string(GetParam().bytes),
      "z\x1B",        "abc"};
  const RQXTranscoder used(encoding);
  for (int round = 0; round < 2; ++round) {
    for (std::size_t i = 0; i < texts.size(); ++i) {
      for (std::size_t j = 0; j < sources.size(); ++j) {
        ASSERT_EQ(used.TranscodeTo(texts[i].c_str()), RQXTranscoder(encoding).TranscodeTo(texts[i].c_str()))
            << "text " << i << " after source " << j;
        ASSERT_EQ(used.TranscodeFrom(sources[j].c_str()), RQXTranscoder(encoding).TranscodeFrom(sources[j].c_str()))
            << "source " << j << " after text " << i;
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Each, TranscoderCharacter, ::testing::ValuesIn(kCharacters),
                         [](const ::testing::TestParamInfo<Character>& row) {
                           std::string name = row.param.encoding;
                           for (char& c : name) c = c == '-' || c == '_' ? 'x' : c;
                           return name + "_" + std::to_string(row.index);
                         });

TEST_F(Transcoder, ConvertsEveryCharacterOfTheBasicPlaneAndSomeBeyond) {
  const RQXTranscoder transcoder;
  std::u16string all;
  for (unsigned int unit = 1; unit <= 0xFFFF; ++unit) {
    if (unit < 0xD800 || unit > 0xDFFF) all += static_cast<char16_t>(unit);
  }
  for (unsigned int high = 0xD800; high <= 0xDBFF; high += 37) {
    all += static_cast<char16_t>(high);
    all += static_cast<char16_t>(0xDC00 + high % 0x400);
  }
  const std::string bytes = transcoder.TranscodeTo(all.c_str());
  EXPECT_EQ(bytes, rqtest::ReferenceTranscoder().ToUtf8(all));
  EXPECT_FALSE(bytes.empty());
  EXPECT_EQ(From(transcoder, bytes), all);
}

}  // namespace
