// Whatever is less than the whole document never reads as a good one.

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/sax/SAXParseException.hpp>

#include "rqxml/pmml/RQPMMLParser.h"
#include "rqxml/xml/RQXMLReadWrite.h"
#include "tests/support/files.h"
#include "tests/support/platform.h"
#include "tests/support/pmml.h"
#include "tests/support/temp_folder.h"

namespace {

using RQXPrsUtil::RQPMMLParser;
using RQXPrsUtil::RQXMLReadWrite;

/// Whether what stands behind the root element is whole: blanks, comments and processing instructions.
bool IsWholeTail(std::string tail) {
  while (!tail.empty()) {
    std::size_t end = 0;
    if (std::string(" \t\r\n").find(tail[0]) != std::string::npos) {
      end = 1;
    } else if (tail.rfind("<!--", 0) == 0) {
      end = tail.find("-->", 4);
      if (end == std::string::npos) return false;
      end += 3;
    } else if (tail.rfind("<?", 0) == 0) {
      end = tail.find("?>", 2);
      if (end == std::string::npos) return false;
      end += 2;
    } else {
      return false;
    }
    tail.erase(0, end);
  }
  return true;
}

/// The text without its zero bytes when it is UTF-16 of either order and whole, and the text itself otherwise.
std::string Narrow(const std::string& bytes) {
  if (bytes.find('\0') == std::string::npos) return bytes;
  std::string text;
  for (const char c : bytes) {
    if (c != '\0') text += c;
  }
  return bytes.size() % 2 == 0 ? text : text + '<';
}

bool IsWhole(const std::string& prefix) {
  const std::string text = Narrow(prefix);
  const std::string end = "</PMML>";
  const std::size_t found = text.rfind(end);
  return found != std::string::npos && IsWholeTail(text.substr(found + end.size()));
}

class Prefixes : public rqtest::WithPlatform, public ::testing::WithParamInterface<const char*> {
 protected:
  /// True when `read` gives a good status, false when it gives another or throws.
  template <typename Read>
  static bool IsGood(const Read& read) {
    try {
      return read().IsOK();
    } catch (const xercesc::SAXParseException&) {
      return false;
    } catch (const xercesc::DOMException&) {
      return false;
    }
  }
};

TEST_P(Prefixes, OnlyWholeDocumentsReadAsGood) {
  const std::string whole = rqtest::ReadFile(rqtest::DataFile("pmml/" + std::string(GetParam()) + ".pmml"));
  const rqtest::Filled expected = rqtest::Fill(whole);
  ASSERT_EQ(expected.status, rqtest::Ok());
  const rqtest::TempFolder folder;
  RQPMMLParser parser;
  RQXMLReadWrite reader;
  int good = 0;
  for (std::size_t size = 0; size <= whole.size(); ++size) {
    const std::string prefix = whole.substr(0, size);
    const bool isWhole = IsWhole(prefix);
    good += isWhole ? 1 : 0;
    std::istringstream stream(prefix);
    ASSERT_EQ(IsGood([&] { return parser.ParseToDOM(stream); }), isWhole) << "PMML parser, " << size << " bytes";
    rqtest::RecordingVarList vars;
    ASSERT_EQ(parser.FillVarList(vars, {}, false).IsOK(), isWhole) << size << " bytes";
    ASSERT_EQ(vars.calls, isWhole ? expected.calls : rqtest::Calls()) << size << " bytes";
    std::istringstream again(prefix);
    ASSERT_EQ(IsGood([&] { return reader.ParseToDOM(again); }), isWhole) << "reader, stream, " << size << " bytes";
    ASSERT_EQ(reader.GetDocument() != nullptr, isWhole) << size << " bytes";
    const std::string path = rqtest::WriteFile(folder.File("prefix.xml"), prefix);
    ASSERT_EQ(IsGood([&] { return reader.ParseToDOM(path); }), isWhole) << "reader, file, " << size << " bytes";
    ASSERT_EQ(reader.GetDocument() != nullptr, isWhole) << size << " bytes";
  }
  EXPECT_GE(good, 1);
}

INSTANTIATE_TEST_SUITE_P(Each, Prefixes,
                         ::testing::Values("comments_everywhere", "doctype_entities", "station_latin1",
                                           "station_utf16be", "station_utf16le", "station_utf8_bom", "shop_shift_jis",
                                           "shop_iso2022jp"),
                         [](const ::testing::TestParamInfo<const char*>& row) { return std::string(row.param); });

}  // namespace
