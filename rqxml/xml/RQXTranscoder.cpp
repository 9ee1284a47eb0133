#include "rqxml/xml/RQXTranscoder.h"

#include <new>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/TransService.hpp>
#include <xercesc/util/XMLString.hpp>
#include <xercesc/util/XMLUni.hpp>

#include "rqxml/xml/RQXText.h"

namespace RQXPrsUtil {

namespace {

using Handle = std::unique_ptr<xercesc::XMLTranscoder>;

constexpr XMLSize_t kBlockSize = 4000;
constexpr XMLSize_t kChunk = 1000;

Handle MakeTranscoder(const XMLCh* encodingName) {
  xercesc::XMLTransService::Codes outcome = xercesc::XMLTransService::Ok;
  Handle transcoder(xercesc::XMLPlatformUtils::fgTransService->makeNewTranscoderFor(
      encodingName, outcome, kBlockSize, xercesc::XMLPlatformUtils::fgMemoryManager));
  if (outcome != xercesc::XMLTransService::Ok) return nullptr;
  return transcoder;
}

/// A transcoder for one conversion. That for UTF-8 carries nothing from one call to the next; others keep what a
/// conversion left unfinished, so that each conversion gets a new one.
class ForOneConversion {
 public:
  explicit ForOneConversion(xercesc::XMLTranscoder& transcoder)
      : fOwn(xercesc::XMLString::equals(transcoder.getEncodingName(), xercesc::XMLUni::fgUTF8EncodingString)
                 ? nullptr
                 : MakeTranscoder(transcoder.getEncodingName())),
        fUsed(fOwn ? *fOwn : transcoder) {}

  xercesc::XMLTranscoder& Get() { return fUsed; }

 private:
  Handle fOwn;
  xercesc::XMLTranscoder& fUsed;
};

/// False when the transcoder stops before the end: the input ends inside a character.
bool Decode(xercesc::XMLTranscoder& transcoder, const char* source, std::vector<XMLCh>& result) {
  const XMLByte* next = reinterpret_cast<const XMLByte*>(source);
  XMLSize_t left = xercesc::XMLString::stringLen(source);
  XMLCh chunk[kChunk];
  unsigned char sizes[kChunk];
  XMLSize_t produced = 0;
  // A full chunk may have left units behind in the transcoder, also when all bytes are consumed.
  while (left > 0 || produced == kChunk) {
    XMLSize_t consumed = 0;
    produced = transcoder.transcodeFrom(next, left, chunk, kChunk, consumed, sizes);
    if (left == 0) consumed = 0;
    if (left > 0 && produced == 0 && consumed == 0) return false;
    result.insert(result.end(), chunk, chunk + produced);
    next += consumed;
    left -= consumed;
  }
  return true;
}

bool Encode(xercesc::XMLTranscoder& transcoder, const XMLCh* source, std::string& result) {
  XMLSize_t left = xercesc::XMLString::stringLen(source);
  XMLByte chunk[kChunk];
  XMLSize_t produced = 0;
  while (left > 0 || produced == kChunk) {
    XMLSize_t consumed = 0;
    produced = transcoder.transcodeTo(source, left, chunk, kChunk, consumed, xercesc::XMLTranscoder::UnRep_Throw);
    if (left == 0) consumed = 0;
    if (left > 0 && produced == 0 && consumed == 0) return false;
    result.append(reinterpret_cast<const char*>(chunk), produced);
    source += consumed;
    left -= consumed;
  }
  return true;
}

}  // namespace

RQXTranscoder::RQXTranscoder(const char* encodingName) {
  const RQXOwnedString name(xercesc::XMLString::transcode(encodingName ? encodingName : "UTF-8"));
  fTranscoder = MakeTranscoder(name.get());
}

RQXTranscoder::~RQXTranscoder() = default;

bool RQXTranscoder::isValid() const { return fTranscoder != nullptr; }

std::vector<XMLCh> RQXTranscoder::TranscodeFrom(const char* source) const {
  std::vector<XMLCh> result;
  if (fTranscoder) {
    try {
      if (!Decode(ForOneConversion(*fTranscoder).Get(), source, result)) result.clear();
    } catch (const std::bad_alloc&) {
      throw;  // says nothing about the text
    } catch (...) {
      result.clear();
    }
  }
  result.push_back(0);
  return result;
}

std::string RQXTranscoder::TranscodeTo(const XMLCh* source) const {
  std::string result;
  if (!fTranscoder || !source) return result;
  try {
    if (!Encode(ForOneConversion(*fTranscoder).Get(), source, result)) result.clear();
  } catch (const std::bad_alloc&) {
    throw;  // says nothing about the text
  } catch (...) {
    result.clear();
  }
  return result;
}

}  // namespace RQXPrsUtil
