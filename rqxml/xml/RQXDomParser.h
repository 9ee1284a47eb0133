#ifndef RQXML_XML_RQXDOMPARSER_H
#define RQXML_XML_RQXDOMPARSER_H

#include <iosfwd>
#include <memory>
#include <string>
#include <xercesc/parsers/XercesDOMParser.hpp>

#include "rqxml/common/RQStatus.h"
#include "rqxml/xml/RQXInputLimits.h"
#include "rqxml/xml/RQXInputTail.h"
#include "rqxml/xml/RQXMarkupText.h"
#include "rqxml/xml/RQXTagFollower.h"

namespace RQXPrsUtil {

/// The XML library's DOM parser with its default features, made to tell what it finds.
///
/// On its own the library's parser drops every error when no error handler is set, and hands out the part of the tree
/// that it had built. This class receives the scanner's reports: warnings and validity errors stay unheard, a fatal
/// error of the document leaves the parse as a SAXParseException, and a failure of the input (no such file, bytes
/// that are no text in the document's encoding) is kept as a message. It also refuses input that the library would
/// pass over in silence: what stands behind a zero character, and an incomplete character at the very end. And it ends
/// a parse that would take time out of all proportion to the input (see RQXInputLimits).
class RQXDomParser final : public xercesc::XercesDOMParser {
 public:
  RQXDomParser();
  ~RQXDomParser() override;

  /// How one parse ended.
  struct Result {
    RQCommon::RQStatus status;                 ///< OK or 104
    std::string message;                       ///< the XML library's text of a failed input, in UTF-8
    xercesc::DOMDocument* document = nullptr;  ///< owned by the parser; null unless the status is OK
  };

  /// Parses the named file; the document of an earlier parse is destroyed first. The XML library stays up for the
  /// rest of the process when an exception leaves.
  /// @throws xercesc::SAXParseException for a malformed document, and whatever else the XML library throws apart from
  ///   XMLException; the parser can be used again unless IsLocked
  Result ParseFile(const char* fileName);

  /// Parses the rest of the stream; a stream that goes bad on the way is a failed read. Otherwise as ParseFile.
  Result ParseStream(std::istream& stream);

  /// True after an OutOfMemoryException: the library's parser then takes itself to be busy for ever.
  bool IsLocked() const { return fLocked; }

  void error(const unsigned int code, const XMLCh* const domain, const ErrTypes type, const XMLCh* const text,
             const XMLCh* const systemId, const XMLCh* const publicId, const XMLFileLoc line,
             const XMLFileLoc column) override;
  void endDocument() override;
  void startElement(const xercesc::XMLElementDecl& declaration, const unsigned int uriId, const XMLCh* const prefix,
                    const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes, const XMLSize_t attributeCount,
                    const bool isEmpty, const bool isRoot) override;

 protected:
  xercesc::DOMAttr* createAttr(const XMLCh* name) override;

 private:
  template <class Step>
  Result Run(Step step);
  void ParseWatched(const xercesc::InputSource& source);
  /// The library has a scanner that knows nothing of document types and is faster. Without a document type
  /// declaration both build the same tree and find the same errors at the same places.
  void ChooseScanner(std::string_view beginning);
  void Watch(std::string_view bytes);
  Result GetResult();
  void Fail(const XMLCh* message);
  [[noreturn]] void StopForNames();

  RQXInputTail fTail;
  RQXInputLimits fLimits;
  RQXMarkupText fMarkup;
  RQXTagFollower fTags;
  bool fSawZero = false;
  bool fWatchFailed = false;
  std::string fInputMessage;
  bool fInputFailed = false;
  bool fLocked = false;
};

/// Replaces a parser that an OutOfMemoryException has locked; keeps any other.
void RenewIfLocked(std::unique_ptr<RQXDomParser>& parser);

}  // namespace RQXPrsUtil

#endif
