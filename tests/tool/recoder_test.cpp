#include "Recoder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iconv.h>
#include <unicode/ucnv.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Encoding.h"
#include "ExitCode.h"
#include "Failure.h"

using rqtool::OpenEncoding;
using rqtool::Recoder;

namespace {

using namespace std::string_literals;

struct Recoded {
  std::string bytes;
  std::uint64_t replaced = 0;
  std::optional<std::uint64_t> first{};

  bool operator==(const Recoded& other) const {
    return bytes == other.bytes && replaced == other.replaced && first == other.first;
  }
};

std::ostream& operator<<(std::ostream& out, const Recoded& recoded) {
  out << ::testing::PrintToString(recoded.bytes) << ", " << recoded.replaced << " replaced";
  if (recoded.first) out << ", the first at " << *recoded.first;
  return out;
}

// In blocks of that size; 0 for one block.
Recoded Recode(const std::string& from, const std::string& to, std::string_view text, std::size_t blockSize = 0) {
  Recoder recoder(OpenEncoding(from), OpenEncoding(to));
  Recoded result;
  const auto take = [&result](std::string_view bytes) { result.bytes += bytes; };
  if (blockSize == 0) blockSize = std::max<std::size_t>(text.size(), 1);
  for (std::size_t place = 0; place < text.size(); place += blockSize) {
    recoder.Convert(text.substr(place, blockSize), false, take);
  }
  recoder.Convert({}, true, take);
  EXPECT_EQ(recoder.GetRead(), text.size());
  result.replaced = recoder.GetReplaced();
  result.first = recoder.GetFirstReplaced();
  return result;
}

// Between two encodings by the runtime's own converter; nothing where it lacks one of them.
std::optional<std::string> Iconv(const std::string& from, const std::string& to, std::string text) {
  const iconv_t converter = iconv_open(to.c_str(), from.c_str());
  if (converter == reinterpret_cast<iconv_t>(-1)) return std::nullopt;
  std::string result(8 * text.size() + 16, '\0');
  char* source = text.data();
  char* target = result.data();
  std::size_t left = text.size();
  std::size_t room = result.size();
  const bool good = iconv(converter, &source, &left, &target, &room) != static_cast<std::size_t>(-1) &&
                    iconv(converter, nullptr, nullptr, &target, &room) != static_cast<std::size_t>(-1);
  iconv_close(converter);
  EXPECT_TRUE(good) << from << " to " << to;
  result.resize(result.size() - room);
  return result;
}

const std::string kJapanese = "ABC \xE6\x97\xA5\xE6\x9C\xAC, \xE3\x81\x8B\xE3\x81\xAA \xE3\x82\xAB\xE3\x83\x8A.\n";
const std::string kLatin = "Gr\xC3\xBC\xC3\x9F\x65, \xC3\xA7\x61 va\n";
const std::string kAny = kLatin + kJapanese + "\xF0\x9F\x98\x80 \xF0\xA0\xAE\xB7\n";

struct Encoding {
  const char* name;
  const std::string* text;  // UTF-8, all of it in the encoding
};

const std::vector<Encoding>& Encodings() {
  static const std::vector<Encoding> encodings{{"UTF-8", &kAny},
                                               {"UTF-16LE", &kAny},
                                               {"UTF-16BE", &kAny},
                                               {"UTF-32LE", &kAny},
                                               {"UTF-32BE", &kAny},
                                               {"GB18030", &kAny},
                                               {"UTF-16", &kAny},
                                               {"UTF-32", &kAny},
                                               {"UTF-7", &kAny},
                                               {"Shift_JIS", &kJapanese},
                                               {"EUC-JP", &kJapanese},
                                               {"ISO-2022-JP", &kJapanese},
                                               {"932", &kJapanese},
                                               {"Big5-HKSCS", &kJapanese},
                                               {"1252", &kLatin},
                                               {"28591", &kLatin},
                                               {"IBM037", &kLatin},
                                               {"IBM500", &kLatin},
                                               {"SCSU", &kAny},
                                               {"BOCU-1", &kAny},
                                               {"HZ-GB-2312", &kJapanese},
                                               {"ISO-2022-KR", &kJapanese},
                                               {"ibm-1390_P110-2003", &kJapanese},
                                               {"x11-compound-text", &kLatin}};
  return encodings;
}

TEST(Recoder, EmptyTextStaysEmpty) {
  for (const Encoding& from : Encodings()) {
    for (const Encoding& to : Encodings()) {
      if (std::string(to.name) == "ISO-2022-KR") continue;  // which begins with a designator always
      EXPECT_EQ(Recode(from.name, to.name, ""), (Recoded{})) << from.name << " to " << to.name;
    }
  }
}

TEST(Recoder, EveryPairAgreesForEveryBlockSizeAndComesBack) {
  for (const Encoding& from : Encodings()) {
    for (const Encoding& to : Encodings()) {
      const std::string& text = from.text == &kAny ? *to.text : *from.text;
      if (to.text != &kAny && to.text != &text) continue;
      SCOPED_TRACE(std::string(from.name) + " to " + to.name);
      const std::string source = Recode("UTF-8", from.name, text).bytes;
      const Recoded whole = Recode(from.name, to.name, source);
      EXPECT_EQ(whole.replaced, 0u);
      for (std::size_t size = 1; size <= 9; ++size) EXPECT_EQ(Recode(from.name, to.name, source, size), whole) << size;
      EXPECT_EQ(Recode(to.name, "UTF-8", whole.bytes, 1).bytes, text);
    }
  }
}

TEST(Recoder, AgreesWithTheRuntimesOwnConverter) {
  int compared = 0;
  const std::vector<Encoding> encodings{{"UTF-8", &kAny},          {"UTF-16LE", &kAny},         {"UTF-16BE", &kAny},
                                        {"UTF-32LE", &kAny},       {"UTF-32BE", &kAny},         {"GB18030", &kAny},
                                        {"EUC-JP", &kJapanese},    {"ISO-2022-JP", &kJapanese}, {"ISO-8859-1", &kLatin},
                                        {"windows-1252", &kLatin}, {"IBM500", &kLatin}};
  for (const Encoding& from : encodings) {
    for (const Encoding& to : encodings) {
      const std::string& text = from.text == &kAny ? *to.text : *from.text;
      if (to.text != &kAny && to.text != &text) continue;
      const std::optional<std::string> source = Iconv("UTF-8", from.name, text);
      const std::optional<std::string> expected = Iconv("UTF-8", to.name, text);
      if (!source || !expected) continue;
      EXPECT_EQ(Recode(from.name, to.name, *source, 3).bytes, *expected) << from.name << " to " << to.name;
      ++compared;
    }
  }
  EXPECT_TRUE(compared >= 49 || !Iconv("UTF-8", "EUC-JP", "")) << compared;
}

// Bytes in lower-case hexadecimal digits.
std::string Hex(const std::string& bytes) {
  std::string digits;
  for (const char byte : bytes) {
    digits += "0123456789abcdef"[static_cast<unsigned char>(byte) >> 4];
    digits += "0123456789abcdef"[static_cast<unsigned char>(byte) & 15];
  }
  return digits;
}

struct Replacement {
  const char* from;
  const char* to;
  std::string text;
  std::string result;
  std::uint64_t replaced;
  std::uint64_t first;
};

TEST(Recoder, TellsHowManyCharactersWereReplacedAndWhereTheFirstBegins) {
  const std::vector<Replacement> rows{
      // Malformed UTF-8.
      {"UTF-8", "UTF-8", "ab\xFF\x63", "ab?c", 1, 2},
      {"UTF-8", "1252", "\x80", "?", 1, 0},
      {"UTF-8", "UTF-8", "ab\xE2\x82", "ab?", 1, 2},
      {"UTF-8", "UTF-8", "ab\xE2\x82\x41", "ab?A", 1, 2},
      {"UTF-8", "UTF-8", "\xE2\x82\xAC\xE2\x28\xA1", "\xE2\x82\xAC?(?", 2, 3},
      {"UTF-8", "UTF-8", "a\xED\xA0\x80", "a???", 3, 1},
      {"UTF-8", "UTF-8", "a\xF4\x90\x80\x80", "a????", 4, 1},
      // Not in the other encoding.
      {"UTF-8", "28591", "\xC3\xA4\xE2\x82\xAC\xE2\x82\xAC", "\xE4??", 2, 2},
      {"UTF-8", "1252", "ab\xF0\x9F\x98\x80", "ab?", 1, 2},
      {"UTF-16LE", "1252", "a\0\x3D\xD8\x00\xDE"s, "a?", 1, 2},
      {"UTF-8", "US-ASCII", "a\xC2\xAD\x62", "ab", 1, 1},  // a soft hyphen vanishes
      {"UTF-8", "ISO-2022-JP", "\xE6\x97\xA5\xC3\xA9\xE6\x97\xA5", "\x1B$BF|\x1B(B?\x1B$BF|\x1B(B", 1, 3},
      // Unpaired surrogates and half characters.
      {"UTF-16LE", "UTF-8", "a\0\x3D\xD8\x62\0"s, "a?b", 1, 2},
      {"UTF-16LE", "UTF-8", "a\0\x3D\xD8"s, "a?", 1, 2},
      {"UTF-16LE", "UTF-8", "a\0\x00\xDE"s, "a?", 1, 2},
      {"UTF-16", "UTF-8",
       "\xFF\xFE"
       "a\0\x00\xDE"s,
       "a?", 1, 4},
      {"UTF-16", "UTF-8", "\xFE\xFF\0a\xDE\0"s, "a?", 1, 4},
      {"UTF-16BE", "UTF-8", "\0a\0"s, "a?", 1, 2},
      {"UTF-32", "UTF-8", "\0\x11\0\0\0\0\0a"s, "?a", 1, 0},
      {"UTF-32", "UTF-8", "\xFF\xFE\0\0a\0\0\0\0\0\x11\0"s, "a?", 1, 8},
      {"UTF-32BE", "UTF-8", "\0\0\0a\0\0"s, "a?", 1, 4},
      // Double-byte and four-byte pages, with bytes that are read again.
      {"932", "UTF-8", "A\x93\xFA\x81", "A\xE6\x97\xA5?", 1, 3},
      {"932", "UTF-8", "A\x81 B", "A? B", 1, 1},
      {"GB18030", "UTF-8", "A\x81\x30\x81 B", "A?0? B", 2, 1},
      {"GB18030", "UTF-8", "A\x81\x30\x81", "A?", 1, 1},
      {"ISO-2022-JP", "UTF-8", "A\x1B$BF|\x1B(B\xFF", "A\xE6\x97\xA5?", 1, 9},
      {"ISO-2022-JP", "UTF-8", "A\x1B$BF|F", "A\xE6\x97\xA5?", 1, 6},
      // What begins with a sign that ICU does not count as pending, also where the text is cut behind it.
      {"HZ", "UTF-8", "a~{VP", "a\xE4\xB8\xAD", 0, 0},
      {"HZ", "UTF-8", "a~{VP~}", "a\xE4\xB8\xAD", 0, 0},
      {"HZ", "UTF-8", "a~{", "a", 0, 0},
      {"HZ", "UTF-8", "a~{!", "a?", 1, 3},
      {"HZ", "UTF-8", "a~{VPV", "a\xE4\xB8\xAD?", 1, 5},
      {"HZ", "UTF-8", "a~{~", "a?", 1, 3},
      {"HZ", "UTF-8", "a~", "a?", 1, 1},
      {"HZ", "UTF-8", "a~x", "a?x", 1, 1},
      {"HZ", "UTF-8", "a~\n", "a", 0, 0},
      {"UTF-8", "HZ", "\xE4\xB8\xAD", "~{VP~}", 0, 0},
      {"UTF-8", "HZ", "\xE4\xB8\xAD\xE4\xB8\xAD\xE2\x82\xAC", "~{VPVP~}?", 1, 6},
      {"UTF-8", "HZ", "\xE4\xB8\xAD\xE2\x82\xAC\xE4\xB8\xAD", "~{VP~}?~{VP~}", 1, 3},
      {"HZ", "1252", "~{VP~}", "?", 1, 2},
      {"HZ", "1252", "ab~{VPVP~}", "ab??", 2, 4},
      {"ISCII,version=0", "1252", "a\xA4\x62", "a?b", 1, 1},
      {"ISCII,version=0", "UTF-8", "a\xFF", "a?", 1, 1},
      {"ISCII,version=0", "1252", "a\x62\xFF", "ab?", 1, 2},
      // Half a surrogate pair: replaced, or counted where it can be written.
      {"UTF-7", "HZ", "a+2D0-", "~}a?", 1, 2},
      {"UTF-7", "HZ", "+Ti3YPQ-", "~{VP~}?", 1, 3},
      {"CESU-8", "HZ", "a\xED\xA0\xBD", "~}a?", 1, 1},
      {"CESU-8", "UTF-8", "a\xED\xA0\xBD\xFF", "a??", 2, 1},
      {"CESU-8", "CESU-8", "a\xED\xA0\xBD", "a\xED\xA0\xBD", 1, 1},
      {"CESU-8", "CESU-8", "a\xED\xB8\x80z", "a\xED\xB8\x80z", 1, 1},
      {"CESU-8", "CESU-8", "a\xED\xA0\xBD\xED\xA0\xBD\xED\xB8\x80", "a\xED\xA0\xBD\xED\xA0\xBD\xED\xB8\x80", 1, 1},
      {"CESU-8", "BOCU-1", "a\xED\xA0\xBD", "\xB1?", 1, 1},
      {"CESU-8", "BOCU-1", "\xED\xA0\xBD\xED\xA0\xBDz", "\xFB\xC5Q\x8D$G\xF3", 2, 0},
      {"CESU-8", "LMBCS-1", "a\xED\xA0\xBDz", "a\x14\xD8=z", 1, 1},
      {"UTF-7", "UTF-7", "a+2AA-b", "a+2AA-b", 1, 2},
      {"UTF-7", "UTF-8", "a+", "a?", 1, 1},
      {"UTF-7", "UTF-8", "a+!", "a?!", 1, 1},
      {"UTF-7", "UTF-8", "a+AGE", "aa", 0, 0},
      {"UTF-7", "UTF-8", "a+AGEAY", "aa?", 1, 4},
      {"UTF-7", "UTF-8", "a+A", "a?", 1, 2},
      {"UTF-7", "UTF-8", "a+AGEA", "aa?", 1, 4},
      {"UTF-7", "UTF-8", "a+AGEAYgBj", "aabc", 0, 0},
      {"IMAP-mailbox-name", "UTF-8", "a&", "a?", 1, 1},
      {"IMAP-mailbox-name", "UTF-8", "a&&", "a?", 1, 1},
      // EBCDIC: the substitute is one byte, whatever it means there.
      {"UTF-8", "IBM037", "a\xE2\x82\xAC\x62", "\x81\x3F\x82", 1, 1},
      {"IBM037", "1252", "\x81\x82", "ab", 0, 0},
      // A unit that the encoder holds back: E-circumflex can have a tone in this encoding.
      {"UTF-8", "Big5-HKSCS", "a\xC3\x8A\xC8\x8D\x62", "a\x88\x66?b", 1, 3},
      // No clone can be made.
      {"x11-compound-text", "US-ASCII", "ab\xE4\x63", "ab?c", 1, 2},
      {"UTF-8", "x11-compound-text", "ab\xFF\x63", "ab?c", 1, 2},
  };
  for (const Replacement& row : rows) {
    Recoded expected{row.result, row.replaced, {}};
    if (row.replaced > 0) expected.first = row.first;
    for (std::size_t size = 0; size <= row.text.size(); ++size) {
      EXPECT_EQ(Recode(row.from, row.to, row.text, size), expected)
          << row.from << " to " << row.to << ", " << Hex(row.text) << " in blocks of " << size;
    }
  }
}

TEST(Recoder, WithoutTextNothingIsWrittenNotWhatStandsBeforeIt) {
  for (const char* name : {"ISO-2022-KR", "UTF-16", "UTF-32", "HZ", "x11-compound-text"}) {
    EXPECT_EQ(Recode("UTF-8", name, ""), Recoded{}) << name;
    EXPECT_EQ(Recode("UTF-16", name, "\xFF\xFE"), Recoded{}) << name;
  }
}

TEST(Recoder, ReplacementAloneLeavesNoShiftBehind) {
  EXPECT_EQ(Recode("UTF-8", "HZ", "\xC2\xAD"), (Recoded{"", 1, 0}));
  EXPECT_EQ(Recode("UTF-8", "HZ", "\xE2\x82\xAC"), (Recoded{"?", 1, 0}));
  EXPECT_EQ(Recode("CESU-8", "HZ", "\xED\xA0\xBD"), (Recoded{"?", 1, 0}));
}

TEST(Recoder, FindsTheFirstReplacedCharacterFarBehindTheBeginning) {
  std::string text;
  while (text.size() < 300'000)
    text +=
        "\xE2\x82\xAC"
        "ab";
  const std::string source = text + "\xE6\x97\xA5" + text + "\xE6\x97\xA5";
  for (const std::size_t size : {997u, 65536u, 0u}) {
    const Recoded recoded = Recode("UTF-8", "1252", source, size);
    EXPECT_EQ(recoded.replaced, 2u);
    EXPECT_EQ(recoded.first, text.size());
    EXPECT_EQ(recoded.bytes.size(), 2 * (text.size() / 5 * 3) + 2);
  }
}

TEST(Recoder, AnEmptyShiftedSegmentDoesNotEndTheConversion) {
  const std::string text =
      "A\x1B$B\x1B(B"
      "B";
  const Recoded whole = Recode("ISO-2022-JP", "UTF-8", text);
  EXPECT_EQ(whole.bytes.front(), 'A');
  EXPECT_EQ(whole.bytes.back(), 'B');
  EXPECT_EQ(whole.replaced, 1u);
  for (std::size_t size = 1; size < text.size(); ++size) EXPECT_EQ(Recode("ISO-2022-JP", "UTF-8", text, size), whole);
}

// Encodings that write one text in several ways, and choose by what they see of it.
bool HasSeveralWays(const std::string& name) { return name == "SCSU" || name.rfind("LMBCS", 0) == 0; }

TEST(Recoder, EveryEncodingOfIcuGivesTheSameInBlocksOfOneByteAsInOne) {
  std::string bytes;
  std::uint32_t random = 12345;
  for (int i = 0; i < 600; ++i) {
    random = random * 1664525 + 1013904223;
    bytes += static_cast<char>(random >> 24);
  }
  for (std::int32_t i = 0; i < ucnv_countAvailable(); ++i) {
    const std::string name = ucnv_getAvailableName(i);
    SCOPED_TRACE(name);
    const Recoded whole = Recode(name, "UTF-8", bytes);
    for (const std::size_t size : {1u, 2u, 7u}) EXPECT_EQ(Recode(name, "UTF-8", bytes, size), whole);
    Recoded back = Recode("UTF-8", name, whole.bytes);
    if (HasSeveralWays(name)) back.bytes = Recode(name, "UTF-8", back.bytes).bytes;
    for (const std::size_t size : {1u, 2u, 7u}) {
      Recoded inBlocks = Recode("UTF-8", name, whole.bytes, size);
      if (HasSeveralWays(name)) inBlocks.bytes = Recode(name, "UTF-8", inBlocks.bytes).bytes;
      EXPECT_EQ(inBlocks, back);
    }
  }
}

TEST(Encoding, AnUnknownOneIsWrongUsage) {
  for (const std::string name : {"", "nothing", "0", "100000", "1252x", "\xFF", "caf\xC3\xA9"}) {
    try {
      OpenEncoding(name, "--to");
      ADD_FAILURE() << name;
    } catch (const rqtool::Failure& e) {
      EXPECT_EQ(e.GetExitCode(), rqtool::ExitCode::WrongUsage);
      EXPECT_THAT(e.GetProblem().what, ::testing::HasSubstr("--to: there is no encoding \"" + name + '"'));
      EXPECT_THAT(e.GetProblem().hint, ::testing::HasSubstr("rqxml encodings"));
    }
  }
}

TEST(Encoding, ANameThatIsTooLongIsToldSo) {
  try {
    OpenEncoding(std::string(60, 'x'));
    ADD_FAILURE();
  } catch (const rqtool::Failure& e) {
    EXPECT_THAT(e.GetProblem().what, ::testing::EndsWith(": a name has at most 59 bytes"));
  }
}

}  // namespace
