// The Dispatch table, made from the public headers. Which ISA build stands in which column is decided here.
#include "frame/dispatch.h"
#include "frame/shared.h"

#define ZPP_LIST(result, name, arguments) result name arguments;
#ifdef __i386__
namespace zpp::x87 {
#include "zpp.h"
}
namespace zpp::sse {
#include "zpp.h"
}
#endif
namespace zpp::sse2 {
#include "zpp.h"
}
namespace zpp::avx2 {
#include "zpp.h"
}
namespace zpp::avx512 {
#include "zpp.h"
}
#undef ZPP_LIST

namespace zpp {
namespace {

#ifdef __i386__
namespace build_px = zpp::x87;
namespace build_a6 = zpp::sse;
namespace build_w7 = zpp::sse2;
#else
namespace build_px = zpp::sse2;
namespace build_a6 = zpp::sse2;
namespace build_w7 = zpp::sse2;
#endif

enum Index {
#define ZPP_LIST(result, name, arguments) kIndex_##name,
#define ZPP_LIST_SHARED ZPP_LIST
#define ZPP_LIST_COLUMN ZPP_LIST
#include "zpp.h"
    kRecordCount
#undef ZPP_LIST_COLUMN
#undef ZPP_LIST_SHARED
#undef ZPP_LIST
};

// A cast in place, not in a function: the tables are initialised by the linker, before any constructor runs.
#define ZPP_ENTRY(function) reinterpret_cast<Entry>(&(function))

#define ZPP_RECORD(name, inPx, inA6, inW7) \
    {&zpp_slots[kIndex_##name], {ZPP_ENTRY(inPx::name), ZPP_ENTRY(inA6::name), ZPP_ENTRY(inW7::name)}},
#define ZPP_LIST(result, name, arguments) ZPP_RECORD(name, build_px, build_a6, build_w7)
#define ZPP_LIST_SHARED(result, name, arguments) ZPP_RECORD(name, shared, shared, shared)
#define ZPP_LIST_COLUMN(result, name, arguments) ZPP_RECORD(name, px, a6, w7)
const Record kRecords[] = {
#include "zpp.h"
};
#undef ZPP_LIST
#undef ZPP_LIST_SHARED
#undef ZPP_LIST_COLUMN

// The entries of px in each ISA build.
#define ZPP_LIST_SHARED(result, name, arguments) ZPP_ENTRY(shared::name),
#define ZPP_LIST_COLUMN(result, name, arguments) ZPP_ENTRY(px::name),
#ifdef __i386__
#define ZPP_LIST(result, name, arguments) ZPP_ENTRY(x87::name),
const Entry kX87[] = {
#include "zpp.h"
};
#undef ZPP_LIST
#define ZPP_LIST(result, name, arguments) ZPP_ENTRY(sse::name),
const Entry kSse[] = {
#include "zpp.h"
};
#undef ZPP_LIST
#else
constexpr const Entry* kX87 = nullptr;
constexpr const Entry* kSse = nullptr;
#endif
#define ZPP_LIST(result, name, arguments) ZPP_ENTRY(sse2::name),
const Entry kSse2[] = {
#include "zpp.h"
};
#undef ZPP_LIST
#define ZPP_LIST(result, name, arguments) ZPP_ENTRY(avx2::name),
const Entry kAvx2[] = {
#include "zpp.h"
};
#undef ZPP_LIST
#define ZPP_LIST(result, name, arguments) ZPP_ENTRY(avx512::name),
const Entry kAvx512[] = {
#include "zpp.h"
};
#undef ZPP_LIST

}  // namespace

const DispatchTable kDispatchTable = {kRecords, kRecordCount, {kX87, kSse, kSse2, kAvx2, kAvx512}};

}  // namespace zpp
