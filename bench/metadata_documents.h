#ifndef RQXML_BENCH_METADATA_DOCUMENTS_H
#define RQXML_BENCH_METADATA_DOCUMENTS_H

#include <cstddef>

#include "documents.h"

namespace rqxml_bench {

/// A data-model document with `fields` fields: a third of them continuous with a range, categorical with three numbers,
/// categorical with three texts each, all with labels and roles.
Document MakeDataModel(std::size_t fields);

/// How many intervals each histogram of MakeStatistics has.
inline constexpr std::size_t kIntervals = 20;

/// A PMML document with one model ("TreeModel") that has the statistics of `fields` continuous fields, each a summary
/// and a histogram.
Document MakeStatistics(std::size_t fields);

}  // namespace rqxml_bench

#endif
