#include "reference_text.h"

#include <memory>
#include <xercesc/util/NumberFormatException.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/TransService.hpp>
#include <xercesc/util/XMLBigInteger.hpp>
#include <xercesc/util/XMLDouble.hpp>
#include <xercesc/util/XMLString.hpp>
#include <xercesc/util/XMLStringTokenizer.hpp>

#include "rqxml/common/RQMV.h"

namespace rqxml_fuzz {
namespace {

using xercesc::XMLString;
using xercesc::XMLTranscoder;
using xercesc::XMLTransService;

std::unique_ptr<XMLTranscoder> MakeTranscoder(const char* encoding, XMLSize_t blockSize) {
  XMLTransService::Codes result = XMLTransService::Ok;
  return std::unique_ptr<XMLTranscoder>(
      xercesc::XMLPlatformUtils::fgTransService->makeNewTranscoderFor(encoding, result, blockSize));
}

}  // namespace

std::string SlowTranscodeTo(const char* encoding, const XMLCh* text) {
  const XMLSize_t length = XMLString::stringLen(text);
  if (length == 0) return {};
  const XMLSize_t room = 8 * length + 16;
  const auto transcoder = MakeTranscoder(encoding, room);
  if (!transcoder) return {};
  std::vector<XMLByte> bytes(room);
  XMLSize_t eaten = 0;
  XMLSize_t made = 0;
  try {
    made = transcoder->transcodeTo(text, length, bytes.data(), room, eaten, XMLTranscoder::UnRep_Throw);
  } catch (const xercesc::XMLException&) {
    return {};
  }
  if (eaten != length) return {};
  return std::string(reinterpret_cast<const char*>(bytes.data()), made);
}

std::vector<XMLCh> SlowTranscodeFrom(const char* encoding, const std::string& text) {
  std::vector<XMLCh> nothing(1, XMLCh{0});
  if (text.empty()) return nothing;
  const XMLSize_t room = 2 * text.size() + 16;
  const auto transcoder = MakeTranscoder(encoding, room);
  if (!transcoder) return nothing;
  std::vector<XMLCh> units(room);
  std::vector<unsigned char> sizes(room);
  XMLSize_t eaten = 0;
  XMLSize_t made = 0;
  try {
    made = transcoder->transcodeFrom(reinterpret_cast<const XMLByte*>(text.data()), text.size(), units.data(), room,
                                     eaten, sizes.data());
  } catch (const xercesc::XMLException&) {
    return nothing;
  }
  if (eaten != text.size()) return nothing;
  units.resize(made);
  units.push_back(0);
  return units;
}

std::string SlowUTF8(const XMLCh* text) { return SlowTranscodeTo("UTF-8", text); }

std::vector<XMLCh> SlowUTF16(const std::string& text) { return SlowTranscodeFrom("UTF-8", text); }

std::optional<double> SlowDouble(const XMLCh* text) {
  try {
    const xercesc::XMLDouble number(text);
    if (number.getType() == xercesc::XMLDouble::Normal) return number.getValue();
    if (number.getType() == xercesc::XMLDouble::NaN) return RQMV::gMissingValue;
  } catch (const xercesc::NumberFormatException&) {
  }
  return std::nullopt;
}

std::optional<int> SlowInteger(const XMLCh* text) {
  try {
    return xercesc::XMLBigInteger(text).intValue();
  } catch (const xercesc::XMLException&) {
    return std::nullopt;
  }
}

std::optional<std::vector<double>> SlowDoubles(const XMLCh* text) {
  xercesc::XMLStringTokenizer tokens(text);
  std::vector<double> numbers;
  while (tokens.hasMoreTokens()) {
    const std::optional<double> number = SlowDouble(tokens.nextToken());
    if (!number) return std::nullopt;
    numbers.push_back(*number);
  }
  return numbers;
}

}  // namespace rqxml_fuzz
