#ifndef RQXML_BROKEN_WARNS_H
#define RQXML_BROKEN_WARNS_H

inline char LosesBits(long value) { return value; }

#endif
