#include "rqxml/xml/RQXDomParser.h"

#include <istream>
#include <new>
#include <xercesc/dom/DOMAttr.hpp>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/framework/LocalFileInputSource.hpp>
#include <xercesc/framework/URLInputSource.hpp>
#include <xercesc/framework/XMLElementDecl.hpp>
#include <xercesc/internal/ReaderMgr.hpp>
#include <xercesc/internal/XMLScanner.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/TranscodingException.hpp>
#include <xercesc/util/XMLURL.hpp>
#include <xercesc/util/XMLUni.hpp>

#include "rqxml/xml/RQXInputSource.h"
#include "rqxml/xml/RQXMLUtil.h"
#include "rqxml/xml/RQXPlatform.h"
#include "rqxml/xml/RQXProlog.h"
#include "rqxml/xml/RQXStatusCodes.h"
#include "rqxml/xml/RQXText.h"
#include "rqxml/xml/RQXWatchedSource.h"

namespace RQXPrsUtil {

namespace {

/// Thrown through the XML library to end a parse whose failure is noted already.
struct StopParsing {};

/// What the XML library makes of the name of a document: an absolute URL, else a local file.
std::unique_ptr<xercesc::InputSource> MakeFileSource(const XMLCh* name) {
  xercesc::XMLURL url(xercesc::XMLPlatformUtils::fgMemoryManager);
  if (xercesc::XMLURL::parse(name, url) && !url.isRelative()) return std::make_unique<xercesc::URLInputSource>(url);
  return std::make_unique<xercesc::LocalFileInputSource>(name);
}

bool IsVersion11(const xercesc::DOMDocument* document) {
  return document && xercesc::XMLString::equals(document->getXmlVersion(), u"1.1");
}

}  // namespace

RQXDomParser::RQXDomParser() : XercesDOMParser(nullptr, xercesc::XMLPlatformUtils::fgMemoryManager, nullptr) {
  getScanner()->setErrorReporter(this);
}

RQXDomParser::~RQXDomParser() = default;

RQXDomParser::Result RQXDomParser::ParseFile(const char* fileName) {
  return Run([&] {
    const RQXOwnedString name(xercesc::XMLString::transcode(fileName));
    ParseWatched(*MakeFileSource(name.get()));
  });
}

RQXDomParser::Result RQXDomParser::ParseStream(std::istream& stream) {
  return Run([&] {
    try {
      ParseWatched(RQXInputSource(stream));
    } catch (const xercesc::SAXParseException&) {
      // The end of a stream that broke off is not the end of a malformed document.
      if (!stream.bad()) throw;
    }
    if (stream.bad()) fInputFailed = true;
  });
}

template <class Step>
RQXDomParser::Result RQXDomParser::Run(Step step) {
  fInputFailed = false;
  fInputMessage.clear();
  try {
    resetDocumentPool();
    step();
    return GetResult();
  } catch (const xercesc::XMLException& e) {
    Fail(e.getMessage());
  } catch (const StopParsing&) {
    // noted where it was thrown
  } catch (const xercesc::OutOfMemoryException&) {
    fLocked = true;
    KeepPlatform();
    throw;
  } catch (...) {
    KeepPlatform();
    throw;
  }
  return GetResult();
}

void RQXDomParser::ParseWatched(const xercesc::InputSource& source) {
  fTail.Restart();
  fLimits.Restart();
  fMarkup.Restart();
  fTags.Restart();
  fSawZero = false;
  fWatchFailed = false;
  const RQXWatchedSource::Watcher watcher = [this](std::string_view bytes) {
    try {
      Watch(bytes);
    } catch (const std::bad_alloc&) {
      fWatchFailed = true;  // the library's readers give nothing back when an exception leaves their first read
    }
  };
  RQXWatchedSource watched(source, watcher);
  ChooseScanner(watched.ReadBeginning());
  parse(watched);
  if (fWatchFailed) throw std::bad_alloc();
}

void RQXDomParser::ChooseScanner(std::string_view beginning) {
  const XMLCh* const name =
      ShowsNoDoctype(beginning) ? xercesc::XMLUni::fgWFXMLScanner : xercesc::XMLUni::fgIGXMLScanner;
  if (xercesc::XMLString::equals(getScanner()->getName(), name)) return;
  useScanner(name);
  getScanner()->setErrorReporter(this);
}

void RQXDomParser::Watch(std::string_view bytes) {
  fTail.Add(bytes);
  const std::string_view markup = fMarkup.Add(bytes);
  fSawZero = fSawZero || markup.find('\0') != std::string_view::npos;
  fTags.Add(markup);
  if (!RQXInputLimits::AdmitsTag(fTags.GetAttributes())) StopForNames();
}

RQXDomParser::Result RQXDomParser::GetResult() {
  Result result;
  result.document = fInputFailed ? nullptr : getDocument();
  if (result.document) return result;
  result.status = {ParseFailed, false};
  result.message = fInputMessage;
  return result;
}

void RQXDomParser::Fail(const XMLCh* message) {
  fInputFailed = true;
  fInputMessage = ToUTF8(message);
}

void RQXDomParser::error(const unsigned int /*code*/, const XMLCh* const domain, const ErrTypes type,
                         const XMLCh* const text, const XMLCh* const systemId, const XMLCh* const publicId,
                         const XMLFileLoc line, const XMLFileLoc column) {
  if (type != ErrType_Fatal) return;
  if (xercesc::XMLString::equals(domain, xercesc::XMLUni::fgExceptDomain)) return Fail(text);
  throw xercesc::SAXParseException(text, publicId, systemId, line, column, getMemoryManager());
}

void RQXDomParser::endDocument() {
  XercesDOMParser::endDocument();
  const xercesc::Locator* const locator = getScanner()->getLocator();
  const xercesc::XMLReader* const reader = static_cast<const xercesc::ReaderMgr*>(locator)->getCurrentReader();
  if (!reader) return;
  if (fSawZero || reader->charsLeftInBuffer() > 0) {
    // To the library a zero character is the end of what it is reading; whatever follows it would be lost.
    throw xercesc::SAXParseException(u"invalid character 0x0", locator->getPublicId(), locator->getSystemId(),
                                     locator->getLineNumber(), locator->getColumnNumber(), getMemoryManager());
  }
  if (fTail.EndsWithWholeCharacter(reader->getEncodingStr(), IsVersion11(getDocument()))) return;
  throw xercesc::TranscodingException(__FILE__, __LINE__, xercesc::XMLExcepts::Trans_BadSrcSeq, getMemoryManager());
}

void RQXDomParser::startElement(const xercesc::XMLElementDecl& declaration, const unsigned int uriId,
                                const XMLCh* const prefix, const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes,
                                const XMLSize_t attributeCount, const bool isEmpty, const bool isRoot) {
  if (!fLimits.AdmitsElement(declaration, attributeCount)) StopForNames();
  XercesDOMParser::startElement(declaration, uriId, prefix, attributes, attributeCount, isEmpty, isRoot);
}

xercesc::DOMAttr* RQXDomParser::createAttr(const XMLCh* name) {
  xercesc::DOMAttr* const attribute = XercesDOMParser::createAttr(name);
  if (!fLimits.AdmitsAttribute(attribute->getName())) StopForNames();
  return attribute;
}

void RQXDomParser::StopForNames() {
  Fail(u"too many different names, or attributes of one element");
  throw StopParsing();
}

void RenewIfLocked(std::unique_ptr<RQXDomParser>& parser) {
  if (!parser->IsLocked()) return;
  try {
    parser = std::make_unique<RQXDomParser>();
  } catch (...) {
    KeepPlatform();
    throw;
  }
}

}  // namespace RQXPrsUtil
