#ifndef RQXML_TOOLS_DOCUMENT_H
#define RQXML_TOOLS_DOCUMENT_H

#include <memory>
#include <string_view>

#include "InputFile.h"
#include "rqxml/pmml/RQPMMLParser.h"

namespace rqtool {

/// The kinds of document that the command tells apart.
enum class DocumentKind {
  Pmml  ///< a PMML document
};

/// The word for a kind in JSON output.
std::string_view KindWord(DocumentKind kind);

/// The words for a kind in texts for people.
std::string_view KindTitle(DocumentKind kind);

/// A document that was read whole.
struct Document {
  DocumentKind kind;
  std::unique_ptr<RQXPrsUtil::RQPMMLParser> parser;  ///< holds the parsed document; its status is OK
};

/// Reads the document that `input` holds. This is the one place that decides which kind of document it is.
/// @throws Failure when it cannot be read (FileFailed) or is refused (Refused)
Document ReadDocument(InputFile& input);

}  // namespace rqtool

#endif
