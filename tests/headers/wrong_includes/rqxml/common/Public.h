#include "rqxml/common/internal.h"
