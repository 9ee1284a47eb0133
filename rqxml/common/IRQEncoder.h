#ifndef RQXML_COMMON_IRQENCODER_H
#define RQXML_COMMON_IRQENCODER_H

#include <string>
#include <vector>

#include "rqxml/common/RQExport.h"

namespace RQMTD_NAMESPACE {

/// The part of a variable that knows how its values are encoded: bin labels, missing values, the invalid range.
///
/// The order of the virtual operations is part of the binary interface. All texts are UTF-8.
class RQ_API IRQEncoder {
 public:
  virtual ~IRQEncoder();

  /// Replaces the labels of the bins, one for each bin in ascending order.
  virtual void SetBinLabels(const std::vector<std::string>& labels) = 0;
  /// Adds a number that stands for a missing value; `label` may be empty.
  virtual void AddNumMissingValue(double value, const std::string& label) = 0;
  /// Adds a text that stands for a missing value; `label` may be empty.
  virtual void AddStrMissingValue(const std::string& value, const std::string& label) = 0;
  /// Replaces the range of numbers that count as invalid, both ends included.
  virtual void SetInvalidRange(double lower, double upper) = 0;

 protected:
  IRQEncoder() = default;
  IRQEncoder(const IRQEncoder&) = default;
  IRQEncoder& operator=(const IRQEncoder&) = default;
};

}  // namespace RQMTD_NAMESPACE

#endif
