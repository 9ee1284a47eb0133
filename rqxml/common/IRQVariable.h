#ifndef RQXML_COMMON_IRQVARIABLE_H
#define RQXML_COMMON_IRQVARIABLE_H

#include <string>

#include "rqxml/common/RQExport.h"

namespace RQMTD_NAMESPACE {

/// One variable of a variable list, as the readers and writers of this project see it.
///
/// The order of the virtual operations is part of the binary interface.
class RQ_API IRQVariable {
 public:
  /// What a variable is used for.
  enum VariableRole : int {
    RoleNone = 0,             ///< no role given
    RoleIdentifier = 1,       ///< tells cases apart; the readers of this project never set it
    RoleTarget = 2,           ///< predicted by the model
    RoleFrequencyWeight = 3,  ///< counts how often a case stands for itself
    RoleInput = 4,            ///< predictor
    RoleInputField = 5        ///< predictor of a data model whose caller asked for field roles
  };

  /// How the values of a frequency weight become whole numbers.
  enum WRoundingOption : int {
    RoundingNone = 0,      ///< weights stay as they are
    RoundingTruncate = 1,  ///< the fraction is cut off
    RoundingNearest = 2    ///< to the nearest whole number; what the readers of this project ask for
  };

  virtual ~IRQVariable();

  /// 1 continuous, 2 categorical with numeric values, 3 categorical with string values.
  virtual int GetTypeCode() const = 0;
  /// The name, in UTF-8.
  virtual std::string GetName() const = 0;
  /// The label, in UTF-8; empty when there is none.
  virtual std::string GetLabel() const = 0;
  /// How many categories the variable has; 0 for a continuous one.
  virtual int GetNumCategories() const = 0;
  /// 1 when the values are integers, else 0.
  virtual int GetIntegerIndicator() const = 0;
  /// The text of the category at `index` (0 to GetNumCategories() - 1), in UTF-8.
  virtual std::string GetCategoryText(int index) const = 0;
  /// Tells how the values are stored: 1 integer, 2 real, 3 string, 4 date, 5 time, 6 date-time, 0 not known.
  virtual void SetStorageType(int code) = 0;

 protected:
  IRQVariable() = default;
  IRQVariable(const IRQVariable&) = default;
  IRQVariable& operator=(const IRQVariable&) = default;
};

}  // namespace RQMTD_NAMESPACE

#endif
