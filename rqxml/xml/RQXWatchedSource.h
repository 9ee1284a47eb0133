#ifndef RQXML_XML_RQXWATCHEDSOURCE_H
#define RQXML_XML_RQXWATCHEDSOURCE_H

#include <functional>
#include <string_view>
#include <xercesc/sax/InputSource.hpp>

namespace RQXPrsUtil {

/// Reads another input source and shows a watcher the bytes that go by. Both must outlive it.
class RQXWatchedSource final : public xercesc::InputSource {
 public:
  /// Sees each piece of the input once, in order; what it throws leaves the parse.
  using Watcher = std::function<void(std::string_view)>;

  RQXWatchedSource(const xercesc::InputSource& source, const Watcher& watcher);
  xercesc::BinInputStream* makeStream() const override;

 private:
  const xercesc::InputSource& fSource;
  const Watcher& fWatcher;
};

}  // namespace RQXPrsUtil

#endif
