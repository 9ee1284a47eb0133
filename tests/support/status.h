#ifndef TESTS_SUPPORT_STATUS_H
#define TESTS_SUPPORT_STATUS_H

#include <ostream>

#include "rqxml/common/RQStatus.h"

namespace RQCommon {

inline void PrintTo(const RQStatus& status, std::ostream* out) {
  if (status == RQStatus()) {
    *out << "OK";
  } else {
    *out << status.GetCode() << (status.GetFlag() ? " (flag)" : "");
  }
}

}  // namespace RQCommon

namespace rqtest {

inline RQCommon::RQStatus Ok() { return RQCommon::RQStatus(); }
inline RQCommon::RQStatus Failure(long code) { return RQCommon::RQStatus(code, false); }

}  // namespace rqtest

#endif
