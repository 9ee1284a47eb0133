#ifndef RQXML_COMMON_RQMV_H
#define RQXML_COMMON_RQMV_H

#include "rqxml/common/RQExport.h"

namespace RQMV {

/// The system-missing value: the lowest finite double, -1.7976931348623157e308.
extern RQ_API const double gMissingValue;

}  // namespace RQMV

#endif
