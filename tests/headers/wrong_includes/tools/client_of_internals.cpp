#include "rqxml/common/Public.h"
#include "rqxml/common/internal.h"
