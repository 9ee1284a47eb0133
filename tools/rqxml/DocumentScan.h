#ifndef RQXML_TOOLS_DOCUMENTSCAN_H
#define RQXML_TOOLS_DOCUMENTSCAN_H

/// @file
/// A second look at a document, for better messages only: what cannot be found out is simply not told. No part of a
/// document type declaration is followed, and nothing behind one is found.

#include <cstddef>
#include <istream>
#include <optional>
#include <string>

#include "Failure.h"

namespace rqtool {

/// The name of the document element, as written, and the end of its start tag.
struct DocumentElement {
  std::string name;
  Place place;
};

/// The name that the library gives to a stream that it reads from. Other names in its messages belong to external
/// entities.
inline constexpr const char* kStreamName = "istream";

/// Finds the place of the first error that makes the document that `in` holds unreadable. The XML library decodes in
/// blocks: the place of bytes that cannot be decoded is not where they stand.
std::optional<Place> FindError(std::istream& in);

/// Finds the document element of the document that `in` holds from its current position on. The XML library must
/// have been started.
std::optional<DocumentElement> FindDocumentElement(std::istream& in);

/// Finds where the start tag of the `index`-th (from 0) "DataField" of the first "DataDictionary" below the document
/// element ends.
std::optional<Place> FindDataField(std::istream& in, std::size_t index);

/// True when a document type declaration is the first markup besides comments and processing instructions. Works for
/// every encoding whose markup is ASCII or UTF-16.
bool HasDoctype(std::istream& in);

}  // namespace rqtool

#endif
