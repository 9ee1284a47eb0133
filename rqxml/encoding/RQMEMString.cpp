#include "rqxml/encoding/RQMEMString.h"
