#include "rqxml/fields/RQXField.h"

namespace RQXPrsUtil {

void RQXField::Reset() {
  name.clear();
  label.clear();
  role = RQMTD_NAMESPACE::IRQVariable::RoleInput;
  storage = 0;
  numeric = true;
  categorical = true;
  numbers.clear();
  missingNumbers.clear();
  texts.clear();
  missingTexts.clear();
  labels.clear();
  missingLabels.clear();
  low = kLowest;
  high = kHighest;
  invalidLower = kLowest;
  invalidUpper = kHighest;
}

}  // namespace RQXPrsUtil
