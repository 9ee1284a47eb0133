#include "rqxml/common/IRQVariable.h"

namespace RQMTD_NAMESPACE {

// Defined here so that the class has one home for its virtual table.
IRQVariable::~IRQVariable() = default;

}  // namespace RQMTD_NAMESPACE
