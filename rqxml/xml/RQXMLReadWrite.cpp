#include "rqxml/xml/RQXMLReadWrite.h"

#include <istream>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include "rqxml/xml/RQXDepth.h"
#include "rqxml/xml/RQXDomParser.h"
#include "rqxml/xml/RQXFileTarget.h"
#include "rqxml/xml/RQXMLUtil.h"
#include "rqxml/xml/RQXPlatform.h"
#include "rqxml/xml/RQXStatusCodes.h"

namespace RQXPrsUtil {

namespace {

/// Gives objects of the DOM load and save interfaces back to the XML library.
struct Releaser {
  template <class Object>
  void operator()(Object* object) const {
    object->release();
  }
};
using Serializer = std::unique_ptr<xercesc::DOMLSSerializer, Releaser>;
using Output = std::unique_ptr<xercesc::DOMLSOutput, Releaser>;

void KeepAsWritten(xercesc::DOMLSSerializer& serializer) {
  xercesc::DOMConfiguration* const settings = serializer.getDomConfig();
  if (settings->canSetParameter(xercesc::XMLUni::fgDOMWRTFormatPrettyPrint, false)) {
    settings->setParameter(xercesc::XMLUni::fgDOMWRTFormatPrettyPrint, false);
  }
}

/// The encoding in which a document must be written because its own cannot be; null for nearly all. One that declares
/// no encoding and was recognised by its bytes alone has a name for it that only the XML library's reader knows; its
/// serialiser would declare that name, and nobody could read the file again. In an encoding with shift sequences the
/// serialiser loses these.
const XMLCh* GetReplacedEncoding(const xercesc::DOMDocument& document) {
  using xercesc::XMLUni;
  const XMLCh* const own = document.getInputEncoding();
  for (const XMLCh* name : {XMLUni::fgUTF16LEncodingString, XMLUni::fgUTF16BEncodingString}) {
    if (xercesc::XMLString::equals(own, name)) return XMLUni::fgUTF16EncodingString;
  }
  for (const XMLCh* name : {XMLUni::fgUCS4LEncodingString, XMLUni::fgUCS4BEncodingString}) {
    if (xercesc::XMLString::equals(own, name)) return XMLUni::fgUTF8EncodingString;
  }
  for (const XMLCh* shifting : {u"ISO-2022", u"HZ-", u"UTF-7"}) {
    if (own && xercesc::XMLString::startsWithI(own, shifting)) return XMLUni::fgUTF8EncodingString;
  }
  return nullptr;
}

/// Serialises into the target; 118 for every failure.
RQCommon::RQStatus Serialise(xercesc::DOMImplementation& implementation, xercesc::DOMLSSerializer& serializer,
                             const xercesc::DOMDocument& document, RQXFileTarget& target, std::string& message) {
  try {
    const Output output(implementation.createLSOutput());
    output->setByteStream(&target);
    if (const XMLCh* const encoding = GetReplacedEncoding(document)) output->setEncoding(encoding);
    serializer.write(&document, output.get());
    target.Close();  // a full disk may show itself only now
    return {};
  } catch (const xercesc::XMLException& e) {
    message = ToUTF8(e.getMessage());
  } catch (...) {
    // A DOMException or anything else has no text of the XML library to keep.
  }
  return {WriteFailed, false};
}

}  // namespace

RQXMLReadWrite::RQXMLReadWrite() : fInitStatus(StartPlatform()) {}

RQXMLReadWrite::~RQXMLReadWrite() {
  if (!fInitStatus.IsOK()) return;
  fParser.reset();
  StopPlatform();
}

RQCommon::RQStatus RQXMLReadWrite::GetInitStatus() const { return fInitStatus; }

RQCommon::RQStatus RQXMLReadWrite::ParseToDOM(const std::string& fileName) {
  return ParseToDOM(fileName.c_str(), nullptr);
}

RQCommon::RQStatus RQXMLReadWrite::ParseToDOM(std::istream& stream) { return ParseToDOM(nullptr, &stream); }

RQCommon::RQStatus RQXMLReadWrite::ParseToDOM(const char* fileName, std::istream* stream) {
  if (!fInitStatus.IsOK()) return fInitStatus;
  fParser.reset();
  fMessage.clear();
  fDocument = nullptr;
  if (!MakeParser(fParser)) return {XmlStartFailed, false};
  const RQXDomParser::Result result = fileName ? fParser->ParseFile(fileName) : fParser->ParseStream(*stream);
  fMessage = result.message;
  fDocument = result.document;
  if (!fDocument) fParser.reset();
  return result.status;
}

RQCommon::RQStatus RQXMLReadWrite::WriteFromDOM(const std::string& fileName,
                                                const xercesc::DOMDocument* document) const {
  const xercesc::DOMDocument* const target = document ? document : fDocument;
  if (!fInitStatus.IsOK() || !target) return fInitStatus;
  fMessage.clear();
  try {
    auto& implementation = *xercesc::DOMImplementationRegistry::getDOMImplementation(u"LS");
    const Serializer serializer(implementation.createLSSerializer(xercesc::XMLPlatformUtils::fgMemoryManager));
    KeepAsWritten(*serializer);
    if (!FitsTheStack(*target)) return {WriteFailed, false};
    RQXFileTarget file(fileName.c_str());
    return Serialise(implementation, *serializer, *target, file, fMessage);
  } catch (...) {
    KeepPlatform();
    throw;
  }
}

std::string RQXMLReadWrite::GetXercesMessage() const { return fMessage; }

xercesc::DOMDocument* RQXMLReadWrite::GetDocument() { return fDocument; }

}  // namespace RQXPrsUtil
