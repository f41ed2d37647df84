// What the vector-math functions call for every element that raises a warning.
#pragma once

#include "zpp/status.h"
#include "zpp/types.h"

namespace zpp {

// Does nothing: the one place at which a report of elements could be attached. Functions of one source or
// destination give the same pointer twice. The control and the flags of the unit that computes are kept
// around it.
void vmErrorHook(ZppStatus warning, int index, const Zpp64f* pSrc1, const Zpp64f* pSrc2, Zpp64f* pDst1,
                 Zpp64f* pDst2, const char* name);

}  // namespace zpp
