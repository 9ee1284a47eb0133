#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "tests/support/platform.h"
#include "tests/support/pmml.h"

namespace {

using rqtest::Field;
using rqtest::Fill;
using rqtest::Filled;
using rqtest::Ok;
using rqtest::PmmlWithFields;

/// A character in one encoding, and in the UTF-8 that must come of it; the bytes that enter and leave a shifted state
/// stand around a run of characters.
struct Character {
  const char* encoding;
  const char* bytes;
  const char* utf8;
  const char* enter = "";
  const char* leave = "";
};

const Character kCharacters[] = {
    {"UTF-8", "\xC3\xA4", "\xC3\xA4"},
    {"UTF-8", "\xE2\x82\xAC", "\xE2\x82\xAC"},
    {"UTF-8", "\xF0\x9F\x98\x80", "\xF0\x9F\x98\x80"},
    {"ISO-8859-1", "\xE4", "\xC3\xA4"},
    {"windows-1252", "\x80", "\xE2\x82\xAC"},
    {"windows-1251", "\xC6", "\xD0\x96"},
    {"Shift_JIS", "\x93\xFA", "\xE6\x97\xA5"},
    {"Shift_JIS", "\x96{", "\xE6\x9C\xAC"},
    {"EUC-JP", "\xC6\xFC", "\xE6\x97\xA5"},
    {"EUC-JP", "\x8F\xAB\xB1", "\xC3\xA9"},
    {"GB18030", "\xC8\xD5", "\xE6\x97\xA5"},
    {"GB18030", "\x81\x30\x8A\x31", "\xC3\xA4"},
    {"GB18030", "\x94\x39\xFC\x36", "\xF0\x9F\x98\x80"},
    {"Big5", "\xA4\xE9", "\xE6\x97\xA5"},
    {"EUC-KR", "\xEC\xED", "\xE6\x97\xA5"},
    {"ISO-2022-JP", "F|", "\xE6\x97\xA5", "\x1B$B", "\x1B(B"},
};

std::string Repeat(const std::string& text, std::size_t times) {
  std::string all;
  for (std::size_t i = 0; i < times; ++i) all += text;
  return all;
}

class EncodedCharacter : public rqtest::WithPlatform, public ::testing::WithParamInterface<Character> {
 protected:
  /// Reads a document with this content in the label of its one field and in its one value, and checks both.
  ::testing::AssertionResult ComesWhole(const std::string& bytes, const std::string& utf8) {
    const std::string document = "<?xml version=\"1.0\" encoding=\"" + std::string(GetParam().encoding) + "\"?>" +
                                 PmmlWithFields("<DataField name='v' displayName='" + bytes +
                                                "' optype='categorical' dataType='string'><Value "
                                                "value='" +
                                                bytes + "'/></DataField>");
    const Filled filled = Fill(document);
    if (!filled.status.IsOK()) return ::testing::AssertionFailure() << "status " << filled.status.GetCode();
    const std::string expected = "AddCatVar(\"v\", \"" + utf8 + "\", strings [\"" + utf8 + "\"], role 4) -> 0";
    if (filled.calls != rqtest::Calls{expected}) {
      return ::testing::AssertionFailure() << "the text of " << utf8.size() << " bytes came out differently";
    }
    return ::testing::AssertionSuccess();
  }

  ::testing::AssertionResult RunComesWhole(std::size_t before, std::size_t run) {
    const Character& character = GetParam();
    return ComesWhole(std::string(before, 'a') + character.enter + Repeat(character.bytes, run) + character.leave + "b",
                      std::string(before, 'a') + Repeat(character.utf8, run) + "b")
           << " after " << before << " characters";
  }
};

TEST_P(EncodedCharacter, SurvivesAroundTheEdgesOfTheTranscodersChunks) {
  for (const std::size_t edge : {1000U, 2000U, 4000U}) {
    for (std::size_t before = edge - 8; before <= edge + 1; ++before) ASSERT_TRUE(RunComesWhole(before, 3));
  }
}

TEST_P(EncodedCharacter, SurvivesAroundTheEdgesOfTheReadersBuffers) {
  // The reader decodes 16 Ki characters at a time from 48 KiB of bytes; the text is the last thing before the edge at
  // some of these lengths whatever stands before it.
  for (std::size_t before = 16384 - 190; before <= 16384 + 1; before += 3) ASSERT_TRUE(RunComesWhole(before, 5));
}

TEST_P(EncodedCharacter, SurvivesInLongRunsThatCrossEveryBuffer) {
  for (std::size_t before = 0; before < 7; ++before) ASSERT_TRUE(RunComesWhole(before, 60000));
}

INSTANTIATE_TEST_SUITE_P(Each, EncodedCharacter, ::testing::ValuesIn(kCharacters),
                         [](const ::testing::TestParamInfo<Character>& row) {
                           std::string name = row.param.encoding;
                           for (char& c : name) c = c == '-' ? 'x' : c;
                           return name + "_" + std::to_string(row.index);
                         });

// One document in many encodings

class Encodings : public rqtest::WithPlatform {};

/// The Latin-1 characters of a text, as UTF-16 in either byte order with its mark.
std::string ToUtf16(const std::string& latin1, bool bigEndian) {
  std::string bytes = bigEndian ? "\xFE\xFF" : "\xFF\xFE";
  for (const char c : latin1) {
    bytes += bigEndian ? std::string(1, '\0') + c : c + std::string(1, '\0');
  }
  return bytes;
}

std::string ToUtf8(const std::string& latin1) {
  std::string bytes;
  for (const char c : latin1) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x80) {
      bytes += c;
    } else {
      bytes += static_cast<char>(0xC0 | byte >> 6);
      bytes += static_cast<char>(0x80 | (byte & 0x3F));
    }
  }
  return bytes;
}

TEST_F(Encodings, OneDocumentGivesTheSameVariablesInAllOfThem) {
  std::string all;
  for (int byte = 0xA0; byte <= 0xFF; ++byte) all += static_cast<char>(byte);
  const std::string body = PmmlWithFields(
      "<DataField name='" + all +
          "' displayName='Gr\xF6\xDF"
          "e' optype='categorical' dataType='string'>"
          "<Value value='\xE4' displayValue='\xFC'/><Value value='\xDF' property='missing'/></DataField>" +
          Field("plain", "continuous", "double"),
      "");
  const rqtest::Calls expected = {"AddCatVar(\"" + ToUtf8(all) +
                                      "\", \"Gr\xC3\xB6\xC3\x9F"
                                      "e\", strings [\"\xC3\xA4\"], labels [\"\xC3\xBC\"], role 4)"
                                      " -> 0",
                                  "encoder 0: AddStrMissingValue(\"\xC3\x9F\", \"\")",
                                  "AddContVar(\"plain\", \"\", role 4) -> 1"};
  const auto declared = [](const std::string& encoding) { return "<?xml version='1.0' encoding='" + encoding + "'?>"; };
  const struct {
    const char* what;
    std::string bytes;
  } rows[] = {
      {"UTF-8 undeclared", ToUtf8(body)},
      {"UTF-8", declared("UTF-8") + ToUtf8(body)},
      {"UTF-8 with its mark", "\xEF\xBB\xBF" + ToUtf8(body)},
      {"UTF-8 with its mark and a declaration", "\xEF\xBB\xBF" + declared("utf-8") + ToUtf8(body)},
      {"UTF-16LE", ToUtf16(declared("UTF-16") + body, false)},
      {"UTF-16BE", ToUtf16(declared("UTF-16") + body, true)},
      {"UTF-16LE undeclared", ToUtf16(body, false)},
      {"UTF-16BE undeclared", ToUtf16(body, true)},
      {"UTF-16LE without mark", ToUtf16(declared("UTF-16LE") + body, false).substr(2)},
      {"UTF-16BE without mark", ToUtf16(declared("UTF-16BE") + body, true).substr(2)},
      {"ISO-8859-1", declared("ISO-8859-1") + body},
      {"iso-8859-1 in small letters", declared("iso-8859-1") + body},
      {"windows-1252", declared("windows-1252") + body},
  };
  for (const auto& row : rows) {
    const Filled filled = Fill(row.bytes, {});
    EXPECT_EQ(filled.status, Ok()) << row.what;
    EXPECT_EQ(filled.calls, expected) << row.what;
    EXPECT_EQ(Fill(row.bytes, {ToUtf8(all)}).calls.size(), 2U) << row.what;
  }
}

}  // namespace
