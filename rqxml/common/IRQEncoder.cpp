#include "rqxml/common/IRQEncoder.h"

namespace RQMTD_NAMESPACE {

// Defined here so that the class has one home for its virtual table.
IRQEncoder::~IRQEncoder() = default;

}  // namespace RQMTD_NAMESPACE
