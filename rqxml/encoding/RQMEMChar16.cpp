#include "rqxml/encoding/RQMEMChar16.h"
