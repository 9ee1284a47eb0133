#include <string>
#include <xercesc/dom/DOM.hpp>
#include "internal.h"
#include "rqxml/xml/reader.h"
