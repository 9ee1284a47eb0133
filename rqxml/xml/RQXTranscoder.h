#ifndef RQXML_XML_RQXTRANSCODER_H
#define RQXML_XML_RQXTRANSCODER_H

#include <memory>
#include <string>
#include <vector>

#include "rqxml/common/RQExport.h"
#include "rqxml/xml/RQXercesFwd.h"

namespace RQXPrsUtil {

/// Converts between the XML library's UTF-16 text and 8-bit text of one encoding.
///
/// The XML library must have been started before an object is made and be up as long as it lives. Conversions do not
/// influence each other. One object is used by one thread at a time. Output in an encoding with shift states (ISO-2022,
/// UTF-7 and the like) lacks the sequence that would close it, which the XML library never writes.
class RQ_API RQXTranscoder {
 public:
  /// Asks the XML library for a transcoder; null means "UTF-8". An encoding that it does not know gives an object
  /// that is not valid.
  explicit RQXTranscoder(const char* encodingName = "UTF-8");
  ~RQXTranscoder();
  RQXTranscoder(const RQXTranscoder&) = delete;
  RQXTranscoder& operator=(const RQXTranscoder&) = delete;

  /// True when the encoding is served.
  bool isValid() const;

  /// Converts zero-terminated 8-bit text (not null) to UTF-16 units, always followed by one zero unit. Input that the
  /// XML library refuses, or on which it cannot get on (a UTF-8 text that ends inside a character), gives the zero
  /// unit alone, as does an object that is not valid.
  std::vector<XMLCh> TranscodeFrom(const char* source) const;

  /// Converts zero-terminated UTF-16 text (null counts as empty) to 8-bit text. Input that has a character which the
  /// encoding lacks, or on which the XML library cannot get on (a high surrogate at the end), gives an empty string,
  /// as does an object that is not valid.
  std::string TranscodeTo(const XMLCh* source) const;

 private:
  std::unique_ptr<xercesc::XMLTranscoder> fTranscoder;
};

}  // namespace RQXPrsUtil

#endif
