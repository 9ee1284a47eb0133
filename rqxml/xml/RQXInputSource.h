#ifndef RQXML_XML_RQXINPUTSOURCE_H
#define RQXML_XML_RQXINPUTSOURCE_H

#include <iosfwd>
#include <xercesc/sax/InputSource.hpp>

#include "rqxml/common/RQExport.h"
#include "rqxml/xml/RQXercesFwd.h"

namespace RQXPrsUtil {

/// Lets the XML library read from a standard input stream. The system identifier is "istream"; the encoding is
/// detected from the bytes.
class RQ_API RQXInputSource : public xercesc::InputSource {
 public:
  /// Keeps a reference to `stream`, which must outlive this object and every byte stream made from it. The XML
  /// library must have been started.
  explicit RQXInputSource(std::istream& stream);
  /// Leaves the stream as it is.
  ~RQXInputSource() override;
  RQXInputSource(const RQXInputSource&) = delete;
  RQXInputSource& operator=(const RQXInputSource&) = delete;

  /// A new byte stream that reads on from the stream's current position; the caller deletes it. Reading to the end
  /// leaves the stream in its end-of-file and fail state.
  xercesc::BinInputStream* makeStream() const override;

 private:
  std::istream& fStream;
};

}  // namespace RQXPrsUtil

#endif
