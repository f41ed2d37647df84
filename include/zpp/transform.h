/* Transforms. */
#if !defined(ZPP_TRANSFORM_H) || defined(ZPP_LIST)
#define ZPP_TRANSFORM_H
#include "export.h"

#endif
