#include "rqxml/xml/RQXWatchedSource.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace RQXPrsUtil {

namespace {

/// As much as the library's reader asks for at once, so that the input sees the same reads.
constexpr XMLSize_t kBlock = 48 * 1024;

}  // namespace

/// Gives what was read before, then the rest of the input.
class RQXWatchedSource::Stream final : public xercesc::BinInputStream {
 public:
  Stream(std::unique_ptr<xercesc::BinInputStream> stream, Beginning& beginning, const Watcher& watcher)
      : fStream(std::move(stream)), fBeginning(beginning), fWatcher(watcher) {}

  XMLFilePos curPos() const override { return fStream->curPos() - (fBeginning.count - fBeginning.taken); }

  XMLSize_t readBytes(XMLByte* const toFill, const XMLSize_t maxToRead) override {
    const XMLSize_t count = fBeginning.bytes ? TakeBeginning(toFill, maxToRead) : fStream->readBytes(toFill, maxToRead);
    fWatcher({reinterpret_cast<const char*>(toFill), count});
    return count;
  }

  const XMLCh* getContentType() const override { return fStream->getContentType(); }
  const XMLCh* getEncoding() const override { return fStream->getEncoding(); }

 private:
  XMLSize_t TakeBeginning(XMLByte* toFill, XMLSize_t maxToRead) {
    if (fBeginning.failure) std::rethrow_exception(std::exchange(fBeginning.failure, nullptr));
    const XMLSize_t count = std::min(maxToRead, fBeginning.count - fBeginning.taken);
    std::memcpy(toFill, fBeginning.bytes.get() + fBeginning.taken, count);
    fBeginning.taken += count;
    if (fBeginning.taken == fBeginning.count) fBeginning.bytes.reset();
    return count;
  }

  std::unique_ptr<xercesc::BinInputStream> fStream;
  Beginning& fBeginning;
  const Watcher& fWatcher;
};

RQXWatchedSource::RQXWatchedSource(const xercesc::InputSource& source, const Watcher& watcher)
    : InputSource(source.getSystemId(), source.getPublicId(), source.getMemoryManager()),
      fSource(source),
      fWatcher(watcher) {
  setIssueFatalErrorIfNotFound(source.getIssueFatalErrorIfNotFound());
  if (source.getEncoding()) setEncoding(source.getEncoding());
}

std::string_view RQXWatchedSource::ReadBeginning() {
  try {
    fOpened.reset(fSource.makeStream());
  } catch (...) {
    return {};  // the parse opens the input again
  }
  if (!fOpened) return {};
  fBeginning.bytes = std::make_unique_for_overwrite<XMLByte[]>(kBlock);
  try {
    fBeginning.count = fOpened->readBytes(fBeginning.bytes.get(), kBlock);
  } catch (...) {
    fBeginning.failure = std::current_exception();
  }
  return {reinterpret_cast<const char*>(fBeginning.bytes.get()), fBeginning.count};
}

xercesc::BinInputStream* RQXWatchedSource::makeStream() const {
  if (!fOpened) fOpened.reset(fSource.makeStream());
  if (!fOpened) return nullptr;
  return new (getMemoryManager()) Stream(std::move(fOpened), fBeginning, fWatcher);
}

}  // namespace RQXPrsUtil
