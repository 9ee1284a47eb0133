#ifndef RQXML_FIELDS_RQXFIELD_H
#define RQXML_FIELDS_RQXFIELD_H

#include <limits>
#include <string>
#include <vector>

#include "rqxml/common/IRQVariable.h"

namespace RQXPrsUtil {

/// What the readers of all document kinds gather about one field before it becomes a variable.
struct RQXField {
  /// The ends of a range that nothing narrows.
  static constexpr double kLowest = std::numeric_limits<double>::lowest();
  static constexpr double kHighest = std::numeric_limits<double>::max();

  std::string name;
  std::string label;
  RQMTD_NAMESPACE::IRQVariable::VariableRole role = RQMTD_NAMESPACE::IRQVariable::RoleInput;
  int storage = 0;          // the code handed to IRQVariable::SetStorageType
  bool numeric = true;      // values are numbers, else texts
  bool categorical = true;  // else continuous
  std::vector<double> numbers;
  std::vector<double> missingNumbers;
  std::vector<std::string> texts;
  std::vector<std::string> missingTexts;
  std::vector<std::string> labels;         // of the valid values, paired by position
  std::vector<std::string> missingLabels;  // of the missing values, paired by position
  double low = kLowest;
  double high = kHighest;
  double invalidLower = kLowest;
  double invalidUpper = kHighest;

  bool HasInvalidRange() const { return invalidLower != kLowest || invalidUpper != kHighest; }

  /// Back to the start, keeping the room that the lists have.
  void Reset();
};

}  // namespace RQXPrsUtil

#endif
