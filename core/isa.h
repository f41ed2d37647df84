// The ISA build that a family file is compiled into. A family file is compiled once per build, into the
// namespace that CMake names by ZPP_ISA; nothing in it may have external linkage outside that namespace, or
// the linker would merge copies of different instruction sets. So family files use no standard templates.
#pragma once

#include <stddef.h>
#include <stdint.h>
#include <string.h>

#include "zpp/status.h"
#include "zpp/types.h"

#ifndef ZPP_ISA
#error "ZPP_ISA names the namespace of the ISA build"
#endif

// What a folder's exports.h includes the folder's public header with: each of its functions is declared in
// the namespace of the build. The global names are not declared, so that a call in a family file reaches its
// own build, never an entry stub.
#define ZPP_DECLARE(result, name, arguments) result name arguments;
