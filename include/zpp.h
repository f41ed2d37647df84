/* libzpp: signal processing and vector mathematics for x86. This header includes the whole library.
 *
 * Every function returns a ZppStatus unless its text says otherwise: 0 is success; a negative code is an
 * error, found before anything was written; a positive code is a warning, returned after all output was
 * written. Vectors belong to the caller and are never kept. Lengths count elements. Unless a text says
 * otherwise, a destination is either the same array as a source or does not overlap it, and a function may be
 * called from any number of threads on different destinations.
 *
 * The library binds its functions to the processor while it is loaded. Where that fails it refuses to be
 * loaded: on Windows with a message box, elsewhere with two lines on standard error and exit status 127.
 */
#include "zpp/frame.h"
/* The order of these headers is the order of the Dispatch table. */
/* clang-format off */
#include "zpp/arith.h"
#include "zpp/data.h"
#include "zpp/stats.h"
#include "zpp/gen.h"
#include "zpp/filter.h"
#include "zpp/transform.h"
#include "zpp/vm.h"
/* clang-format on */
