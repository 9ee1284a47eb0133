#include "rqxml/encoding/RQMEMConverter.h"
