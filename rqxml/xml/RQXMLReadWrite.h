#ifndef RQXML_XML_RQXMLREADWRITE_H
#define RQXML_XML_RQXMLREADWRITE_H

#include <iosfwd>
#include <memory>
#include <string>

#include "rqxml/common/RQExport.h"
#include "rqxml/common/RQStatus.h"
#include "rqxml/xml/RQXercesFwd.h"

namespace RQXPrsUtil {

class RQXDomParser;

/// Reads XML documents from files and streams into DOM trees, and writes DOM trees to files.
///
/// Each object starts the XML library in its constructor and stops it in its destructor; the library counts these
/// calls. Constructing and destroying objects, anything else that starts or stops the XML library, and a parse or write
/// that ends with an exception (it keeps the library up for the rest of the process, so that the exception stays
/// readable) must not run concurrently; apart from that one object is used by one thread at a time.
///
/// A document with more than 12,000 different element names, as many attribute names, or as many attributes on one
/// element counts as unreadable (104): the XML library would take time in proportion to their square.
///
/// DTDs, external entities and network names are treated as the XML library treats them by default, see SECURITY.md.
class RQ_API RQXMLReadWrite {
 public:
  /// Starts the XML library. The outcome is the initial status: OK, or 103 when the library threw an XMLException.
  RQXMLReadWrite();
  /// Destroys the parser and with it the document, then stops the XML library (neither when it was not started).
  ~RQXMLReadWrite();
  RQXMLReadWrite(const RQXMLReadWrite&) = delete;
  RQXMLReadWrite& operator=(const RQXMLReadWrite&) = delete;

  /// The outcome of starting the XML library.
  RQCommon::RQStatus GetInitStatus() const;

  /// Parses the file named `fileName` (in the local 8-bit encoding). The document of an earlier parse is gone as
  /// soon as a parse starts.
  /// @return OK; 103 when the library was not started or the parser could not be made; 104 when the file cannot be
  ///   read or decoded (GetXercesMessage tells why) or no document resulted (empty message)
  /// @throws xercesc::SAXParseException for a document that is not well-formed; the object then holds no document
  ///   and can parse again
  /// @throws xercesc::DOMException, xercesc::OutOfMemoryException as the XML library raises them
  RQCommon::RQStatus ParseToDOM(const std::string& fileName);

  /// Parses the bytes of `stream` from its current position to its end. The stream is borrowed for the call and left
  /// at its end. A stream that goes bad on the way is a failed read (104), also when what came before it looks
  /// like a whole document. Otherwise as the other form; exceptions that the stream is set to throw pass through.
  RQCommon::RQStatus ParseToDOM(std::istream& stream);

  /// Writes `document`, or the document held when it is null, to the file named `fileName`, without adding white
  /// space. With no document at all nothing is written and the result is OK.
  /// @return OK; 103 when the XML library was not started; 118 when the document cannot be serialised (among other
  ///   reasons because it is nested deeper than the stack of the calling thread allows) or not be written whole
  /// @throws xercesc::XMLException when the file cannot be opened for writing
  RQCommon::RQStatus WriteFromDOM(const std::string& fileName, const xercesc::DOMDocument* document) const;

  /// The text of the last XML library exception that a parse or a write caught, in UTF-8, as the library words it (or
  /// that a document has too many names); empty when there was none.
  std::string GetXercesMessage() const;

  /// The document of the last successful parse, or null. Owned by this object and valid until it parses again or is
  /// destroyed.
  xercesc::DOMDocument* GetDocument();

 private:
  RQ_LOCAL RQCommon::RQStatus ParseToDOM(const char* fileName, std::istream* stream);

  RQCommon::RQStatus fInitStatus;
  std::unique_ptr<RQXDomParser> fParser;
  mutable std::string fMessage;
  xercesc::DOMDocument* fDocument = nullptr;
};

}  // namespace RQXPrsUtil

#endif
