#include "rqxml/common/RQMV.h"

#include <limits>

namespace RQMV {

// Constant-initialised: constructors of other files' globals may already read it.
constinit const double gMissingValue = std::numeric_limits<double>::lowest();

}  // namespace RQMV
