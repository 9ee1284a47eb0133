#ifndef TESTS_SUPPORT_REFERENCE_TRANSCODER_H
#define TESTS_SUPPORT_REFERENCE_TRANSCODER_H

#include <cstddef>
#include <memory>
#include <string>
#include <vector>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/TransService.hpp>
#include <xercesc/util/XMLException.hpp>

namespace rqtest {

/// UTF-8 conversions through the library's own transcoder, the slow and obvious way: whatever it refuses, and
/// whatever it makes no progress on, is empty.
class ReferenceTranscoder {
 public:
  ReferenceTranscoder() {
    xercesc::XMLTransService::Codes result{};
    transcoder_.reset(xercesc::XMLPlatformUtils::fgTransService->makeNewTranscoderFor(
        "UTF-8", result, 4000, xercesc::XMLPlatformUtils::fgMemoryManager));
  }

  std::u16string FromUtf8(const std::string& source) const {
    std::u16string text;
    std::vector<XMLCh> chunk(1000);
    std::vector<unsigned char> sizes(1000);
    for (std::size_t done = 0; done < source.size();) {
      XMLSize_t eaten = 0;
      XMLSize_t made = 0;
      try {
        made = transcoder_->transcodeFrom(reinterpret_cast<const XMLByte*>(source.data()) + done, source.size() - done,
                                          chunk.data(), chunk.size(), eaten, sizes.data());
      } catch (const xercesc::XMLException&) {
        return {};
      }
      if (eaten == 0) return {};
      text.append(chunk.data(), made);
      done += eaten;
    }
    return text;
  }

  std::string ToUtf8(const std::u16string& source) const {
    std::string text;
    std::vector<XMLByte> chunk(1000);
    for (std::size_t done = 0; done < source.size();) {
      XMLSize_t eaten = 0;
      XMLSize_t made = 0;
      try {
        made = transcoder_->transcodeTo(source.data() + done, source.size() - done, chunk.data(), chunk.size(), eaten,
                                        xercesc::XMLTranscoder::UnRep_Throw);
      } catch (const xercesc::XMLException&) {
        return {};
      }
      if (eaten == 0) return {};
      text.append(reinterpret_cast<const char*>(chunk.data()), made);
      done += eaten;
    }
    return text;
  }

 private:
  std::unique_ptr<xercesc::XMLTranscoder> transcoder_;
};

}  // namespace rqtest

#endif
