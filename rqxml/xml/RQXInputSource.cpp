#include "rqxml/xml/RQXInputSource.h"

#include <istream>
#include <xercesc/util/BinInputStream.hpp>
#include <xercesc/util/PlatformUtils.hpp>

namespace RQXPrsUtil {

namespace {

class RQXBinInputStream final : public xercesc::BinInputStream {
 public:
  explicit RQXBinInputStream(std::istream& stream) : fStream(&stream) {}

  XMLFilePos curPos() const override { return static_cast<XMLFilePos>(static_cast<std::streamoff>(fStream->tellg())); }

  XMLSize_t readBytes(XMLByte* const toFill, const XMLSize_t maxToRead) override {
    fStream->read(reinterpret_cast<char*>(toFill), static_cast<std::streamsize>(maxToRead));
    return static_cast<XMLSize_t>(fStream->gcount());
  }

  const XMLCh* getContentType() const override { return nullptr; }

 private:
  std::istream* fStream;
};

}  // namespace

RQXInputSource::RQXInputSource(std::istream& stream)
    : InputSource(u"istream", xercesc::XMLPlatformUtils::fgMemoryManager), fStream(stream) {}

RQXInputSource::~RQXInputSource() = default;

xercesc::BinInputStream* RQXInputSource::makeStream() const {
  return new (getMemoryManager()) RQXBinInputStream(fStream);
}

}  // namespace RQXPrsUtil
