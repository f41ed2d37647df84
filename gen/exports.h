// The functions of this folder, in the namespace of the ISA build.
#pragma once

#include "core/isa.h"

#define ZPP_LIST ZPP_DECLARE
namespace zpp::ZPP_ISA {
#include "zpp/gen.h"
}
#undef ZPP_LIST
