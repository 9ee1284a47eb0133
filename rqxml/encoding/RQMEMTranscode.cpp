#include "rqxml/encoding/RQMEMTranscode.h"
