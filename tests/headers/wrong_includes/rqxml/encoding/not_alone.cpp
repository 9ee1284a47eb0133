#include "rqxml/common/Public.h"
