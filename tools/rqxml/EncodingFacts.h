#ifndef RQXML_TOOLS_ENCODINGFACTS_H
#define RQXML_TOOLS_ENCODINGFACTS_H

#include <unicode/ucnv.h>

#include <string>
#include <vector>

#include "Json.h"

namespace rqtool {

/// What is known of an encoding.
struct EncodingFacts {
  std::string name;                  ///< ICU's own
  std::string iana;                  ///< empty for none
  std::string mime;                  ///< empty for none
  std::vector<std::string> aliases;  ///< all other names
  std::string type;                  ///< single-byte, double-byte, multi-byte, stateful or Unicode
  int minBytes = 0;                  ///< of a character
  int maxBytes = 0;                  ///< of a UTF-16 unit, with shift sequences
  std::string substitute;            ///< the bytes that stand for a character that it lacks, in hexadecimal digits
};

/// The facts about an open converter.
EncodingFacts FactsOf(const UConverter& converter);

/// The facts as a JSON object; null for names that there are not.
Json FactsToJson(const EncodingFacts& facts);

}  // namespace rqtool

#endif
