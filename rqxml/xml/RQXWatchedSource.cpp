#include "rqxml/xml/RQXWatchedSource.h"

#include <memory>
#include <utility>
#include <xercesc/util/BinInputStream.hpp>

namespace RQXPrsUtil {

namespace {

class WatchedStream final : public xercesc::BinInputStream {
 public:
  WatchedStream(std::unique_ptr<xercesc::BinInputStream> stream, const RQXWatchedSource::Watcher& watcher)
      : fStream(std::move(stream)), fWatcher(watcher) {}

  XMLFilePos curPos() const override { return fStream->curPos(); }

  XMLSize_t readBytes(XMLByte* const toFill, const XMLSize_t maxToRead) override {
    const XMLSize_t count = fStream->readBytes(toFill, maxToRead);
    fWatcher({reinterpret_cast<const char*>(toFill), count});
    return count;
  }

  const XMLCh* getContentType() const override { return fStream->getContentType(); }
  const XMLCh* getEncoding() const override { return fStream->getEncoding(); }

 private:
  std::unique_ptr<xercesc::BinInputStream> fStream;
  const RQXWatchedSource::Watcher& fWatcher;
};

}  // namespace

RQXWatchedSource::RQXWatchedSource(const xercesc::InputSource& source, const Watcher& watcher)
    : InputSource(source.getSystemId(), source.getPublicId(), source.getMemoryManager()),
      fSource(source),
      fWatcher(watcher) {
  setIssueFatalErrorIfNotFound(source.getIssueFatalErrorIfNotFound());
  if (source.getEncoding()) setEncoding(source.getEncoding());
}

xercesc::BinInputStream* RQXWatchedSource::makeStream() const {
  std::unique_ptr<xercesc::BinInputStream> stream(fSource.makeStream());
  if (!stream) return nullptr;
  return new (getMemoryManager()) WatchedStream(std::move(stream), fWatcher);
}

}  // namespace RQXPrsUtil
