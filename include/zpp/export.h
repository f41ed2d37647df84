/* How an export is declared: ZPP_EXPORT(result, name, (arguments)). For a program this is the prototype.
 * ZPP_EXPORT_SHARED marks a function with one implementation for all columns, ZPP_EXPORT_COLUMN one with an
 * implementation for each column, whatever the instruction set.
 *
 * The library includes the same headers again as the list of its exports, with ZPP_LIST (and ZPP_LIST_SHARED,
 * ZPP_LIST_COLUMN for the marked ones) defined to what each entry becomes: that is how the slots, the entry
 * stubs, the Dispatch table and the declarations of each build are made, and why each header lets itself be
 * included again in list mode.
 */
#undef ZPP_EXPORT
#undef ZPP_EXPORT_SHARED
#undef ZPP_EXPORT_COLUMN

#ifdef ZPP_LIST
#define ZPP_EXPORT(result, name, arguments) ZPP_LIST(result, name, arguments)
#ifdef ZPP_LIST_SHARED
#define ZPP_EXPORT_SHARED(result, name, arguments) ZPP_LIST_SHARED(result, name, arguments)
#else
#define ZPP_EXPORT_SHARED(result, name, arguments)
#endif
#ifdef ZPP_LIST_COLUMN
#define ZPP_EXPORT_COLUMN(result, name, arguments) ZPP_LIST_COLUMN(result, name, arguments)
#else
#define ZPP_EXPORT_COLUMN(result, name, arguments)
#endif
#else
#ifdef _WIN32
#define ZPP_CALL __cdecl /* whatever the compiler's default is */
#else
#define ZPP_CALL
#endif
#ifdef __cplusplus
#define ZPP_EXPORT(result, name, arguments) extern "C" result ZPP_CALL name arguments;
#else
#define ZPP_EXPORT(result, name, arguments) extern result ZPP_CALL name arguments;
#endif
#define ZPP_EXPORT_SHARED ZPP_EXPORT
#define ZPP_EXPORT_COLUMN ZPP_EXPORT
#endif

#ifndef __ASSEMBLER__
#include "status.h"
#include "types.h"
#endif
