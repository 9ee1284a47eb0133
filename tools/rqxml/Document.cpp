#include "Document.h"

#include <cstdint>
#include <iterator>
#include <optional>
#include <string>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMException.hpp>
#include <xercesc/sax/SAXParseException.hpp>

#include "DocumentScan.h"
#include "ElementPlace.h"
#include "Failure.h"
#include "MalformedUtf8.h"
#include "XmlPlatform.h"
#include "rqxml/xml/RQXMLUtil.h"
#include "rqxml/xml/RQXStatusCodes.h"

namespace rqtool {

namespace {

using RQCommon::RQStatus;
using RQXPrsUtil::ToUTF8;

// The library's message for a document with so many different names that reading on would take far too long.
constexpr std::string_view kTooManyNames = "too many different names, or attributes of one element";

constexpr const char* kDataModel = "DataModel";

constexpr const char* kDoctypeHint =
    "a DOCTYPE can open other files, go to the network and grow without limit; if you trust the document, give "
    "--allow-dtd (and leave XERCES_DISABLE_DTD out of the environment)";

std::string HexadecimalByte(std::uint8_t value) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  return {'0', 'x', kDigits[value / 16], kDigits[value % 16]};
}

Failure Refusal(Problem problem) { return Failure(ExitCode::Refused, std::move(problem)); }

std::optional<Place> PlaceOf(const xercesc::SAXParseException& e) {
  if (e.getLineNumber() == 0) return std::nullopt;
  return Place{e.getLineNumber(), e.getColumnNumber()};
}

std::string FileOf(const xercesc::SAXParseException& e, const InputFile& input) {
  const std::string systemId = ToUTF8(e.getSystemId());
  return systemId.empty() || systemId == kStreamName ? input.GetDisplayName() : systemId;
}

Failure MalformedDocument(InputFile& input, const xercesc::SAXParseException& e) {
  Problem problem{.file = FileOf(e, input), .place = PlaceOf(e)};
  if (input.IsEmpty()) {
    problem.what = "the document is empty";
    problem.place.reset();
    problem.hint = "check where the document should have come from";
  } else if (RefusesDtds() && HasDoctype(input.FromStart())) {
    problem.what = "has a document type declaration (DOCTYPE), which is refused";
    problem.hint = kDoctypeHint;
  } else {
    problem.what = "not well-formed: " + ToUTF8(e.getMessage());
    problem.hint = "correct the XML at or before that place";
  }
  return Refusal(std::move(problem));
}

Failure BadDeclaration(const InputFile& input, const xercesc::DOMException& e) {
  const bool version = e.code == xercesc::DOMException::NOT_SUPPORTED_ERR;
  return Refusal({.file = input.GetDisplayName(),
                  .what = version ? "the XML declaration asks for a version other than 1.0 and 1.1"
                                  : "not well-formed: " + ToUTF8(e.getMessage()),
                  .hint = "correct the beginning of the document"});
}

constexpr const char* kDoctypePartHint =
    "see that every file and address that the DOCTYPE names can be read, and is in the encoding that it says";

// The XML library decodes in blocks, ahead of what it tells as the place.
void LocateDecodingError(InputFile& input, Problem& problem) {
  if (!IsMeantAsUtf8(input.FromStart())) return;
  if (const auto malformed = FindMalformedUtf8(input.FromStart())) {
    problem.place = malformed->place;
    problem.what = "cannot be read as XML: invalid byte " + HexadecimalByte(malformed->value) + " for UTF-8";
  } else {
    problem.place = FindError(input.FromStart());
  }
}

// `message` is the XML library's own.
Failure UnreadableDocument(InputFile& input, const std::string& message) {
  Problem problem{.file = input.GetDisplayName(),
                  .what = "cannot be read as XML",
                  .status = RQXPrsUtil::ParseFailed,
                  .hint = "see whether it was cut off, is compressed, or is in another encoding than it says"};
  if (!message.empty()) problem.what += ": " + message;
  if (message == kTooManyNames) {
    // A second look at what is refused for the time it would take would take that time.
    problem.hint = "documents of this kind have a few hundred different names: see where this one comes from";
  } else if (FollowsDoctype(input)) {
    problem.hint = kDoctypePartHint;
  } else {
    LocateDecodingError(input, problem);
  }
  return Refusal(std::move(problem));
}

Failure WrongElement(InputFile& input) {
  Problem problem{.file = input.GetDisplayName(),
                  .what = "has no document element \"PMML\"",
                  .status = RQXPrsUtil::WrongRootElement,
                  .hint = "rqxml reads PMML documents; names count exactly as written, prefix and case included"};
  if (const auto element = FindDocumentElement(input.FromStart())) {
    problem.place = element->place;
    problem.what = "the document element is \"" + element->name + "\", not \"PMML\"";
    if (element->name == kDataModel) problem.hint = "rqxml vars lists the variables of data-model documents";
  }
  return Refusal(std::move(problem));
}

Failure NoDictionary(InputFile& input) {
  Problem problem{.file = input.GetDisplayName(),
                  .what = "\"PMML\" has no child element \"DataDictionary\"",
                  .status = RQXPrsUtil::NoDataDictionary,
                  .hint = "the variables of a PMML document stand there; a prefixed name is another name"};
  if (const auto element = FindDocumentElement(input.FromStart())) problem.place = element->place;
  return Refusal(std::move(problem));
}

// What of "MiningBuildTask"/"Extension"/"Parameters" is missing.
std::string MissingStep(const xercesc::DOMElement& task) {
  const xercesc::DOMElement* const extension = RQXPrsUtil::GetFirstChildElmt(task, "Extension");
  return extension == nullptr ? "no child element \"Extension\""
                              : "no \"Parameters\" in its first child element \"Extension\"";
}

Failure NoParameters(InputFile& input, const DocumentParser& parser) {
  Problem problem{.file = input.GetDisplayName(),
                  .what = "a PMML document without \"MiningBuildTask\", and so without parameters",
                  .status = RQXPrsUtil::NoParameters,
                  .hint = "rqxml vars lists the variables of PMML documents"};
  if (const xercesc::DOMElement* const task = parser.GetBuildTask()) {
    problem.place = PlaceOf(input, *task);
    problem.element = "MiningBuildTask";
    problem.what = MissingStep(*task);
    problem.hint = "the parameters of a build task stand at \"MiningBuildTask\"/\"Extension\"/\"Parameters\"";
  }
  return Refusal(std::move(problem));
}

Failure RefusedDocument(InputFile& input, const DocumentParser& parser, const RQStatus& status) {
  switch (status.GetCode()) {
    case RQXPrsUtil::NoParameters:
      return NoParameters(input, parser);
    case RQXPrsUtil::ParseFailed:
      return UnreadableDocument(input, parser.GetXercesMessage());
    case RQXPrsUtil::WrongRootElement:
      return WrongElement(input);
    case RQXPrsUtil::NoDataDictionary:
      return NoDictionary(input);
    default:
      return Refusal({.file = input.GetDisplayName(), .what = "the document was refused", .status = status.GetCode()});
  }
}

// What `parse` does with the document, with its exceptions told.
template <typename Function>
RQStatus Guard(InputFile& input, Function parse) {
  try {
    return parse();
  } catch (const xercesc::SAXParseException& e) {
    input.RequireWhole();
    throw MalformedDocument(input, e);
  } catch (const xercesc::DOMException& e) {
    throw BadDeclaration(input, e);
  }
}

template <typename Parser>
RQStatus Parse(Parser& parser, InputFile& input) {
  const RQStatus status = Guard(input, [&] { return parser.ParseToDOM(input.FromStart()); });
  input.RequireWhole();
  return status;
}

Failure NoFields(InputFile& input) {
  Problem problem{.file = input.GetDisplayName(),
                  .what = "\"DataModel\" has no child element \"Fields\"",
                  .status = RQXPrsUtil::ElementMissing,
                  .hint = "the fields of a data model stand there; a prefixed name is another name"};
  if (const auto element = FindDocumentElement(input.FromStart())) problem.place = element->place;
  return Refusal(std::move(problem));
}

// The reader of data models keeps no text of what it could not read. The general reader, which fails in the same way,
// does.
Failure UnreadableDataModel(InputFile& input) {
  if (FollowsDoctype(input)) return UnreadableDocument(input, {});
  RQXPrsUtil::RQXMLReadWrite reader;
  Parse(reader, input);
  return UnreadableDocument(input, reader.GetXercesMessage());
}

Document ReadDataModel(InputFile& input) {
  const std::string text(std::istreambuf_iterator<char>(input.FromStart()), {});
  input.RequireWhole();
  auto parser = std::make_unique<RQXPrsUtil::RQDataModelParser>();
  const RQStatus status = Guard(input, [&] { return parser->ParseToDOM(text); });
  switch (status.GetCode()) {
    case 0:
      return {DocumentKind::DataModel, nullptr, std::move(parser)};
    case RQXPrsUtil::ParseFailed:
      throw UnreadableDataModel(input);
    case RQXPrsUtil::WrongRootElement:
      throw Refusal({.file = input.GetDisplayName(),
                     .what = "the DOCTYPE names \"DataModel\", and the document element is another",
                     .status = RQXPrsUtil::WrongRootElement,
                     .hint = "correct the name in the DOCTYPE"});
    case RQXPrsUtil::ElementMissing:
      throw NoFields(input);
    default:
      throw Refusal({.file = input.GetDisplayName(), .what = "the document was refused", .status = status.GetCode()});
  }
}

Document FinishPmml(InputFile& input, std::unique_ptr<DocumentParser> parser, const RQStatus& status) {
  if (!status.IsOK()) throw RefusedDocument(input, *parser, status);
  const DocumentKind kind = parser->GetBuildTask() == nullptr ? DocumentKind::Pmml : DocumentKind::Settings;
  return {kind, std::move(parser), nullptr};
}

// In an encoding whose markup is neither ASCII nor UTF-16 the first look sees nothing.
bool IsDataModel(InputFile& input) {
  const auto element = FindDocumentElement(input.FromStart());
  return element && element->name == kDataModel;
}

}  // namespace

bool FollowsDoctype(InputFile& input) { return !RefusesDtds() && HasDoctype(input.FromStart()); }

std::string_view KindWord(DocumentKind kind) {
  switch (kind) {
    case DocumentKind::Pmml:
      return "pmml";
    case DocumentKind::Settings:
      return "settings";
    case DocumentKind::DataModel:
      return "datamodel";
  }
  return {};
}

std::string_view KindTitle(DocumentKind kind) {
  switch (kind) {
    case DocumentKind::Pmml:
      return "PMML document";
    case DocumentKind::Settings:
      return "settings document";
    case DocumentKind::DataModel:
      return "data-model document";
  }
  return {};
}

RQStatus DocumentParser::ParseToDOM(std::istream& in) {
  fBuildTask = nullptr;
  const RQStatus status = RQSettingsParser::ParseToDOM(in);
  if (!status.IsOK() && status.GetCode() != RQXPrsUtil::NoParameters) return status;
  if (status.IsOK() || !fForgiving) fBuildTask = RQXPrsUtil::GetFirstChildElmt(*fRootElement, "MiningBuildTask");
  if (fBuildTask == nullptr) fStatus = RQStatus();
  return fStatus;
}

Document ReadDocument(InputFile& input) {
  if (BeginsWithElement(input.FromStart(), kDataModel)) return ReadDataModel(input);
  auto parser = std::make_unique<DocumentParser>();
  const RQStatus status = Parse(*parser, input);
  if (status.GetCode() == RQXPrsUtil::WrongRootElement && IsDataModel(input)) return ReadDataModel(input);
  return FinishPmml(input, std::move(parser), status);
}

Document ReadModelDocument(InputFile& input) {
  auto parser = std::make_unique<DocumentParser>();
  parser->ForgiveMissingParameters();
  const RQStatus status = Parse(*parser, input);
  return FinishPmml(input, std::move(parser), status);
}

Document ReadSettings(InputFile& input) {
  auto parser = std::make_unique<DocumentParser>();
  const RQStatus status = Parse(*parser, input);
  Document document = FinishPmml(input, std::move(parser), status);
  if (document.kind != DocumentKind::Settings) throw NoParameters(input, *document.parser);
  return document;
}

void ReadTree(InputFile& input, RQXPrsUtil::RQXMLReadWrite& reader) {
  const RQStatus status = Parse(reader, input);
  if (!status.IsOK()) throw UnreadableDocument(input, reader.GetXercesMessage());
}

Failure NoPmmlDocument(InputFile& input) { return WrongElement(input); }

}  // namespace rqtool
