// The exported functions with one implementation for all columns and ISA builds (zpp::shared), and those with
// one for each column (zpp::px, zpp::a6, zpp::w7).
#pragma once

#include <stddef.h>
#include <stdint.h>

#include "zpp/status.h"
#include "zpp/types.h"

#define ZPP_LIST(result, name, arguments)
#define ZPP_LIST_SHARED(result, name, arguments) result name arguments;
namespace zpp::shared {
#include "zpp/frame.h"
}
#undef ZPP_LIST_SHARED

#define ZPP_LIST_COLUMN(result, name, arguments) result name arguments;
namespace zpp::px {
#include "zpp/frame.h"
}
namespace zpp::a6 {
#include "zpp/frame.h"
}
namespace zpp::w7 {
#include "zpp/frame.h"
}
#undef ZPP_LIST_COLUMN
#undef ZPP_LIST
