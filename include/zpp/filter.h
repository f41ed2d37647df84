/* Filters. */
#if !defined(ZPP_FILTER_H) || defined(ZPP_LIST)
#define ZPP_FILTER_H
#include "export.h"

#endif
