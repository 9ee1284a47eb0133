#include <xercesc/dom/DOM.hpp>
#include "rqxml/common/internal.h"
