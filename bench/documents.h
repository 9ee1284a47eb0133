#ifndef RQXML_BENCH_DOCUMENTS_H
#define RQXML_BENCH_DOCUMENTS_H

#include <cstddef>
#include <string>
#include <vector>

namespace rqxml_bench {

/// What is asked of a generated document.
enum class Variant {
  Plain,  ///< all fields, a third of them continuous, categorical with numbers, categorical with texts each
  Bins,   ///< all fields, all of them continuous, each with three bins in the transformation dictionary
  Filter  ///< every second field of a plain document, by name
};

/// All variants, in the order of the tables.
inline constexpr Variant kVariants[] = {Variant::Plain, Variant::Bins, Variant::Filter};

/// The name of a variant in tables and on the command line.
const char* NameOf(Variant variant);

/// A PMML document with three "Value"s in each data field, and how it is to be read.
struct Document {
  std::string text;                ///< UTF-8, indented as programs write it
  std::vector<std::string> names;  ///< the name filter; empty for all fields
  bool useBins = false;            ///< whether bins are asked for
  int variables = 0;               ///< how many variables must come out
};

/// Makes the document of a variant.
Document MakeDocument(std::size_t fields, Variant variant);

}  // namespace rqxml_bench

#endif
