// Texts and numbers: the fast ways give what the slow ones give.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/util/XMLString.hpp>

#include "describe.h"
#include "fuzz_target.h"
#include "reference_text.h"
#include "rqxml/common/RQMV.h"
#include "rqxml/common/RQXMLFormat.h"
#include "rqxml/xml/RQXMLUtil.h"
#include "rqxml/xml/RQXTranscoder.h"

namespace {

using rqxml_fuzz::Check;
using rqxml_fuzz::CheckEqual;
using rqxml_fuzz::Describe;

using Units = std::vector<XMLCh>;

struct Release {
  void operator()(xercesc::DOMDocument* document) const { document->release(); }
};

constexpr std::array<XMLCh, 2> kName = {'a', 0};

// An element that carries the text as attribute "a" and, unless it is empty, as its one text node.
class Carrier {
 public:
  explicit Carrier(const Units& text)
      : fDocument(xercesc::DOMImplementation::getImplementation()->createDocument(nullptr, kName.data(), nullptr)) {
    fDocument->getDocumentElement()->setAttribute(kName.data(), text.data());
    if (text.front() != 0) fDocument->getDocumentElement()->appendChild(fDocument->createTextNode(text.data()));
  }
  const xercesc::DOMElement& Element() const { return *fDocument->getDocumentElement(); }

 private:
  std::unique_ptr<xercesc::DOMDocument, Release> fDocument;
};

std::string Bytes(const Units& units) {
  return {reinterpret_cast<const char*>(units.data()), units.size() * sizeof(XMLCh)};
}

// The bytes as UTF-16 units up to the first zero unit, which is kept.
Units AsUnits(const std::string& bytes) {
  Units units(bytes.size() / sizeof(XMLCh));
  if (!units.empty()) std::memcpy(units.data(), bytes.data(), units.size() * sizeof(XMLCh));
  units.push_back(0);
  units.resize(xercesc::XMLString::stringLen(units.data()) + 1);
  return units;
}

// The text up to its first zero byte, and up to the first code point above U+10FFFF: such a character is malformed, but
// the XML library drops it in silence or not, depending on how many others stand before it in the same call.
std::string TextOf(const std::string& bytes) {
  const std::string text = bytes.substr(0, bytes.find('\0'));
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto lead = static_cast<unsigned char>(text[i]);
    const bool beyond = lead == 0xF4 && i + 1 < text.size() && static_cast<unsigned char>(text[i + 1]) > 0x8F;
    if (lead > 0xF4 || beyond) return text.substr(0, i);
  }
  return text;
}

// True when every surrogate is half of a pair. The XML library passes some lone ones on, and makes some of UTF-8 beyond
// the last code point.
bool IsWellFormed(const Units& units) {
  for (std::size_t i = 0; i < units.size(); ++i) {
    if ((units[i] & 0xF800) != 0xD800) continue;
    if ((units[i] & 0xFC00) != 0xD800 || (units[i + 1] & 0xFC00) != 0xDC00) return false;
    ++i;
  }
  return true;
}

void CheckTexts(const std::string& text, const Units& units) {
  const Units wide = RQXPrsUtil::ToUTF16(text.c_str());
  CheckEqual(Bytes(wide), Bytes(rqxml_fuzz::SlowUTF16(text)), "UTF-8 becomes UTF-16");
  if (wide.size() > 1) CheckEqual(RQXPrsUtil::ToUTF8(wide.data()), text, "UTF-8 comes back from UTF-16");
  const std::string narrow = RQXPrsUtil::ToUTF8(units.data());
  CheckEqual(narrow, rqxml_fuzz::SlowUTF8(units.data()), "UTF-16 becomes UTF-8");
  if (IsWellFormed(units))
    CheckEqual(Bytes(RQXPrsUtil::ToUTF16(narrow.c_str())), Bytes(units), "UTF-16 comes back from UTF-8");
}

void CheckEqualsOne(const XMLCh* units, const std::string& text) {
  const bool expected = xercesc::XMLString::equals(units, rqxml_fuzz::SlowUTF16(text).data());
  Check(RQXPrsUtil::XStrEqualsUTF8Str(units, text.c_str()) == expected, "texts compare as their transcoded forms do");
}

// Equal texts, texts that differ in one place, texts one of which ends earlier, and none at all.
void CheckComparisons(const std::string& text, const Units& units) {
  Units wide = rqxml_fuzz::SlowUTF16(text);
  CheckEqualsOne(wide.data(), text);
  CheckEqualsOne(units.data(), text);
  CheckEqualsOne(nullptr, text);
  CheckEqualsOne(units.data(), rqxml_fuzz::SlowUTF8(units.data()));
  CheckEqualsOne(wide.data(), text + "x");
  CheckEqualsOne(wide.data(), text.substr(0, text.size() / 2));
  if (wide.size() < 2) return;
  wide[text.size() % (wide.size() - 1)] ^= 0x20;
  CheckEqualsOne(wide.data(), text);
  wide[wide.size() - 2] = 0;
  CheckEqualsOne(wide.data(), text);
}

void CheckTranscoder(const char* encoding, const std::string& text, const Units& units) {
  const RQXPrsUtil::RQXTranscoder transcoder(encoding);
  Check(transcoder.isValid(), "the encoding is served");
  const Units wide = transcoder.TranscodeFrom(text.c_str());
  CheckEqual(Bytes(wide), Bytes(rqxml_fuzz::SlowTranscodeFrom(encoding, text)), encoding);
  CheckEqual(transcoder.TranscodeTo(units.data()), rqxml_fuzz::SlowTranscodeTo(encoding, units.data()), encoding);
}

void CheckNumbers(const Units& text) {
  const Carrier carrier(text);
  const auto expected = rqxml_fuzz::SlowDouble(text.data());
  double number = 0.5;
  const int result = RQXPrsUtil::GetDoubleAttribute(carrier.Element(), "a", number);
  CheckEqual(std::to_string(result) + " " + Describe(number),
             (expected ? "0 " : "1 ") + Describe(expected.value_or(0.5)), "a double attribute is read");

  const auto expectedWhole = rqxml_fuzz::SlowInteger(text.data());
  for (const int sign : {-1, 0, 1}) {
    int whole = 12345;
    const int wholeResult = RQXPrsUtil::GetIntAttribute(carrier.Element(), "a", sign, whole);
    const bool good = expectedWhole && (sign < 0 || *expectedWhole >= sign);
    CheckEqual(std::to_string(wholeResult) + " " + std::to_string(whole),
               (good ? "0 " : "1 ") + std::to_string(expectedWhole.value_or(12345)), "an integer attribute is read");
  }

  const auto expectedList = rqxml_fuzz::SlowDoubles(text.data());
  std::vector<double> list = {1, 2};
  const bool listed = RQXPrsUtil::AssembleDoublesList(carrier.Element(), list);
  Check(listed == expectedList.has_value(), "a list of doubles is taken or refused");
  const std::vector<double> wanted = expectedList.value_or(std::vector<double>());
  Check(list.size() == wanted.size(), "a list of doubles has its length");
  for (std::size_t i = 0; i < list.size(); ++i)
    CheckEqual(Describe(list[i]), Describe(wanted[i]), "a list of doubles is read");
}

// The bytes mapped to characters that numbers are made of: most inputs are then nearly numbers.
Units AsNearlyNumbers(const std::string& bytes) {
  constexpr char kCharacters[] = "0123456789012345678901234567890123456789....----++eEeEINFaN \t\n\r0x,";
  Units units;
  for (const char byte : bytes)
    units.push_back(static_cast<XMLCh>(kCharacters[static_cast<unsigned char>(byte) % (sizeof(kCharacters) - 1)]));
  units.push_back(0);
  return units;
}

void CheckFormat(const std::string& bytes) {
  double number = 0;
  std::memcpy(&number, bytes.data(), std::min(bytes.size(), sizeof number));
  std::array<char, 64> buffer{};
  const std::string text = RQXML_NAMESPACE::Format(number, false, buffer.data());
  CheckEqual(buffer.data(), text, "the buffer receives the text");
  Check(text.size() < 32, "32 bytes are enough");
  CheckEqual(RQXML_NAMESPACE::Format(number, false, nullptr), text, "the buffer makes no difference");
  if (!std::isfinite(number) || number == RQMV::gMissingValue) return;
  const double expected = number == 0 ? 0 : number;
  CheckEqual(Describe(std::strtod(text.c_str(), nullptr)), Describe(expected), "a formatted number reads back");
  const std::string pointed = RQXML_NAMESPACE::Format(number, true, nullptr);
  CheckEqual(Describe(std::strtod(pointed.c_str(), nullptr) + 0.0), Describe(expected),
             "a number formatted with a point reads back");
  if (std::fpclassify(number) == FP_NORMAL)
    CheckEqual(Describe(*rqxml_fuzz::SlowDouble(rqxml_fuzz::SlowUTF16(text).data())), Describe(expected),
               "a formatted number is an XML Schema double");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes = rqxml_fuzz::AsText(data, size);
  const std::string text = TextOf(bytes);
  const Units units = AsUnits(bytes);
  CheckTexts(text, units);
  CheckComparisons(text, units);
  for (const char* encoding : {"UTF-8", "ISO-8859-1", "windows-1252", "US-ASCII", "IBM037"})
    CheckTranscoder(encoding, text, units);
  CheckNumbers(rqxml_fuzz::SlowUTF16(text));
  CheckNumbers(AsNearlyNumbers(bytes));
  CheckFormat(bytes);
  return 0;
}
