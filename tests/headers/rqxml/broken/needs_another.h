#ifndef RQXML_BROKEN_NEEDS_ANOTHER_H
#define RQXML_BROKEN_NEEDS_ANOTHER_H

std::string NeedsTheStringHeader();

#endif
