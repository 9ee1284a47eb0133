#ifndef RQXML_COMMON_RQSTATUS_H
#define RQXML_COMMON_RQSTATUS_H

#include "rqxml/common/RQExport.h"

namespace RQCommon {

/// The outcome of an operation that can fail: OK, or a code with a flag.
///
/// A plain value, copied whole; it owns nothing, never throws and may be read from any number of threads.
class RQ_API RQStatus {
 public:
  /// Makes the OK status.
  constexpr RQStatus() noexcept = default;

  /// Makes a status from a failure code and its flag. The code 0 is no failure: the result is then OK, and it keeps
  /// the flag.
  constexpr RQStatus(long code, bool flag) noexcept : fCode(code), fFlag(flag) {}

  /// True for a status without a failure code.
  constexpr bool IsOK() const noexcept { return fCode == 0; }

  /// The failure code; 0 when the status is OK.
  constexpr long GetCode() const noexcept { return fCode; }

  /// The flag given with the code; false for a default-constructed status.
  constexpr bool GetFlag() const noexcept { return fFlag; }

  /// Two statuses are equal when code and flag are.
  friend constexpr bool operator==(const RQStatus& a, const RQStatus& b) noexcept {
    return a.fCode == b.fCode && a.fFlag == b.fFlag;
  }
  /// The negation of ==.
  friend constexpr bool operator!=(const RQStatus& a, const RQStatus& b) noexcept { return !(a == b); }

 private:
  long fCode = 0;
  bool fFlag = false;
};

}  // namespace RQCommon

#endif
