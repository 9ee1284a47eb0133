#ifndef RQXML_BENCH_SETTINGS_DOCUMENTS_H
#define RQXML_BENCH_SETTINGS_DOCUMENTS_H

#include <cstddef>
#include <string>

#include "documents.h"

namespace rqxml_bench {

/// A settings document with `fields` continuous data fields, each with a range, missing values and three bins, and as
/// many derived fields, which hold the bins: a third of them continuous with its range in an extension, categorical
/// with numbers, categorical with texts each. Its name filter is empty, and bins are asked for.
Document MakeFieldSettings(std::size_t fields);

/// The types of parameters, in the order in which MakeParameterSettings takes turns.
enum class Type { Text, Integer, Double, Boolean, List, Count };

/// The type of the parameter number `i`.
inline Type TypeOf(std::size_t i) { return static_cast<Type>(i % static_cast<std::size_t>(Type::Count)); }

/// Its name.
std::string ParameterName(std::size_t i);

/// A settings document with `parameters` parameters of all types in turns, and no fields. The number `i` is the value
/// of an integer or a double (there with a half), the end of a text, and the first of the three items of a list.
Document MakeParameterSettings(std::size_t parameters);

}  // namespace rqxml_bench

#endif
