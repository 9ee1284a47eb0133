#include "DocumentScan.h"

#include <functional>
#include <memory>
#include <string_view>
#include <utility>
#include <xercesc/framework/XMLPScanToken.hpp>
#include <xercesc/sax/Locator.hpp>
#include <xercesc/sax/SAXException.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/sax2/DefaultHandler.hpp>
#include <xercesc/sax2/SAX2XMLReader.hpp>
#include <xercesc/sax2/XMLReaderFactory.hpp>
#include <xercesc/util/XMLException.hpp>
#include <xercesc/util/XMLUni.hpp>

#include "rqxml/xml/RQXInputSource.h"
#include "rqxml/xml/RQXMLUtil.h"

namespace rqtool {

namespace {

using RQXPrsUtil::ToUTF8;
using RQXPrsUtil::XStrEqualsUTF8Str;

// A start tag: its name, how many elements are open around it, and where it ends.
struct StartTag {
  const XMLCh* name;
  std::size_t depth;
  Place place;
};

// Hands the start tags to a function until that says that it has seen enough, and goes no further than a document type
// declaration: to follow that would fetch external parts once more, which may be gone or never come.
class StartTags : public xercesc::DefaultHandler {
 public:
  explicit StartTags(std::function<bool(const StartTag&)> isEnough) : fIsEnough(std::move(isEnough)) {}

  bool IsDone() const { return fDone; }

  void setDocumentLocator(const xercesc::Locator* const locator) override { fLocator = locator; }

  void startElement(const XMLCh* const, const XMLCh* const, const XMLCh* const name,
                    const xercesc::Attributes&) override {
    if (!fDone) {
      fDone = fIsEnough({name, fDepth, {fLocator->getLineNumber(), fLocator->getColumnNumber()}});
    }
    ++fDepth;
  }

  void endElement(const XMLCh* const, const XMLCh* const, const XMLCh* const) override { --fDepth; }

  // Comes before any part of the declaration is followed.
  void startDTD(const XMLCh* const, const XMLCh* const, const XMLCh* const) override {
    throw xercesc::SAXException("a document type declaration");
  }

 private:
  std::function<bool(const StartTag&)> fIsEnough;
  const xercesc::Locator* fLocator = nullptr;
  std::size_t fDepth = 0;
  bool fDone = false;
};

void ScanStartTags(std::istream& in, std::function<bool(const StartTag&)> isEnough) {
  StartTags handler(std::move(isEnough));
  const std::unique_ptr<xercesc::SAX2XMLReader> reader(xercesc::XMLReaderFactory::createXMLReader());
  reader->setFeature(xercesc::XMLUni::fgSAX2CoreNameSpaces, false);
  reader->setFeature(xercesc::XMLUni::fgSAX2CoreValidation, false);
  reader->setContentHandler(&handler);
  reader->setLexicalHandler(&handler);
  reader->setErrorHandler(&handler);  // throws at what is not well-formed
  const RQXPrsUtil::RQXInputSource source(in);
  xercesc::XMLPScanToken token;
  bool more = reader->parseFirst(source, token);
  while (more && !handler.IsDone()) more = reader->parseNext(token);
}

// As above, for a look that may fail: the document is known to be bad, and what was seen before is of use all the same.
void TryScanStartTags(std::istream& in, std::function<bool(const StartTag&)> isEnough) {
  try {
    ScanStartTags(in, std::move(isEnough));
  } catch (const xercesc::XMLException&) {
  } catch (const xercesc::SAXException&) {
  }
}

// Follows a path through the start tags.
class PathFollower {
 public:
  explicit PathFollower(const ElementPath& path) : fPath(path) {}

  // True for the element at the end of the path.
  bool operator()(const StartTag& tag) {
    if (fLost || tag.depth > fFollowed + 1) return false;
    if (tag.depth > 0) {
      // The element that was followed has ended: nothing of the path can come any more.
      fLost = tag.depth <= fFollowed;
      if (fLost || fSeen++ != fPath[fFollowed]) return false;
    }
    fFollowed = tag.depth;
    fSeen = 0;
    return fFollowed == fPath.size();
  }

 private:
  const ElementPath& fPath;
  std::size_t fFollowed = 0;  // how many steps of the path are behind
  std::size_t fSeen = 0;      // how many elements were candidates for the next one
  bool fLost = false;
};

// The characters of the markup: the bytes, without the zero bytes of UTF-16 and without a byte order mark.
class MarkupReader {
 public:
  explicit MarkupReader(std::istream& in) : fIn(in) {
    while (Peek() >= 0x80) Skip();
  }

  bool AtEnd() { return Peek() < 0; }

  void SkipBlanks() {
    while (Peek() == ' ' || Peek() == '\t' || Peek() == '\r' || Peek() == '\n') Skip();
  }

  // Takes as much of `text` as stands next; true when that is all of it.
  bool Take(std::string_view text) {
    for (const char expected : text) {
      if (Peek() != expected) return false;
      Skip();
    }
    return true;
  }

  bool AtNameEnd() {
    return AtEnd() || std::string_view(" \t\r\n/>[").find(static_cast<char>(Peek())) != std::string_view::npos;
  }

  // Skips up to and including `end`.
  void SkipPast(std::string_view end) {
    std::string last;
    while (!AtEnd() && last != end) {
      last += static_cast<char>(Peek());
      if (last.size() > end.size()) last.erase(0, 1);
      Skip();
    }
  }

 private:
  int Peek() {
    while (fIn.peek() == 0) fIn.ignore();
    return fIn.peek();
  }
  void Skip() { fIn.ignore(); }

  std::istream& fIn;
};

// What stands behind comments and processing instructions.
enum class Markup { None, Declaration, Element };

// Skips to what stands there, and its "<" or "<!".
Markup SkipToMarkup(MarkupReader& markup) {
  while (!markup.AtEnd()) {
    markup.SkipBlanks();
    if (!markup.Take("<")) return Markup::None;
    if (markup.Take("?")) {
      markup.SkipPast("?>");
    } else if (!markup.Take("!")) {
      return Markup::Element;
    } else if (markup.Take("-")) {
      markup.SkipPast("-->");
    } else {
      return Markup::Declaration;
    }
  }
  return Markup::None;
}

}  // namespace

std::optional<Place> FindError(std::istream& in) {
  try {
    ScanStartTags(in, [](const StartTag&) { return false; });
  } catch (const xercesc::SAXParseException& e) {
    if (XStrEqualsUTF8Str(e.getSystemId(), kStreamName)) return Place{e.getLineNumber(), e.getColumnNumber()};
  } catch (const xercesc::XMLException&) {
  } catch (const xercesc::SAXException&) {
  }
  return std::nullopt;
}

std::optional<DocumentElement> FindDocumentElement(std::istream& in) {
  std::optional<DocumentElement> found;
  TryScanStartTags(in, [&found](const StartTag& tag) {
    found = DocumentElement{ToUTF8(tag.name), tag.place};
    return true;
  });
  return found;
}

std::optional<Place> FindElement(std::istream& in, const ElementPath& path) {
  std::optional<Place> found;
  TryScanStartTags(in, [&found, follower = PathFollower(path)](const StartTag& tag) mutable {
    if (!follower(tag)) return false;
    found = tag.place;
    return true;
  });
  return found;
}

bool HasDoctype(std::istream& in) {
  MarkupReader markup(in);
  return SkipToMarkup(markup) == Markup::Declaration && markup.Take("DOCTYPE");
}

bool BeginsWithElement(std::istream& in, std::string_view name) {
  MarkupReader markup(in);
  switch (SkipToMarkup(markup)) {
    case Markup::None:
      return false;
    case Markup::Declaration:
      if (!markup.Take("DOCTYPE")) return false;
      markup.SkipBlanks();
      break;
    case Markup::Element:
      break;
  }
  return markup.Take(name) && markup.AtNameEnd();
}

}  // namespace rqtool
