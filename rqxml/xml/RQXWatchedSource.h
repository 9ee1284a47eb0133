#ifndef RQXML_XML_RQXWATCHEDSOURCE_H
#define RQXML_XML_RQXWATCHEDSOURCE_H

#include <exception>
#include <functional>
#include <memory>
#include <string_view>
#include <xercesc/sax/InputSource.hpp>
#include <xercesc/util/BinInputStream.hpp>

namespace RQXPrsUtil {

/// Reads another input source, once, and shows a watcher the bytes that go by. Both must outlive it.
class RQXWatchedSource final : public xercesc::InputSource {
 public:
  /// Sees each piece of the input once, in order; what it throws leaves the parse.
  using Watcher = std::function<void(std::string_view)>;

  RQXWatchedSource(const xercesc::InputSource& source, const Watcher& watcher);

  /// The first bytes of the input, as many as its first read gives; empty when it cannot be read. They are read again
  /// by the parse, and so is what went wrong with them. Valid as long as this object, before it is parsed.
  std::string_view ReadBeginning();

  xercesc::BinInputStream* makeStream() const override;

 private:
  /// What was read before the parse asked for it. The library loses its stream when memory runs out, so that nothing
  /// of this belongs to it.
  struct Beginning {
    std::unique_ptr<XMLByte[]> bytes;
    XMLSize_t count = 0;
    XMLSize_t taken = 0;
    std::exception_ptr failure;
  };
  class Stream;

  const xercesc::InputSource& fSource;
  const Watcher& fWatcher;
  mutable std::unique_ptr<xercesc::BinInputStream> fOpened;
  mutable Beginning fBeginning;
};

}  // namespace RQXPrsUtil

#endif
