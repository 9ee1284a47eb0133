#include "rqxml/encoding/ExtNameStr.h"
