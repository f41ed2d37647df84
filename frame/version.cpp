// The version records: one per part and column.
#include "frame/shared.h"

namespace zpp {
namespace {

constexpr char kVersion[] = "v4.0";
constexpr char kSignalDate[] = "Oct 16 2003";
constexpr char kVectorMathDate[] = "Oct 20 2003";

constexpr ZppLibraryVersion signalRecord(char first, char second, const char* name) {
    return {4, 0, 19, 77, {first, second, 0, 0}, name, kVersion, kSignalDate};
}

constexpr ZppLibraryVersion vectorMathRecord(char first, char second, const char* name) {
    return {4, 0, 10, 17, {first, second, 0, 0}, name, kVersion, kVectorMathDate};
}

constexpr ZppLibraryVersion kSignalPx = signalRecord('p', 'x', "zppspxl.lib");
constexpr ZppLibraryVersion kSignalA6 = signalRecord('a', '6', "zppsa6l.lib");
constexpr ZppLibraryVersion kSignalW7 = signalRecord('w', '7', "zppsw7l.lib");
constexpr ZppLibraryVersion kVectorMathPx = vectorMathRecord('p', 'x', "zppvmpxl.lib");
constexpr ZppLibraryVersion kVectorMathA6 = vectorMathRecord('a', '6', "zppvma6l.lib");
constexpr ZppLibraryVersion kVectorMathW7 = vectorMathRecord('w', '7', "zppvmw7l.lib");

}  // namespace

const ZppLibraryVersion* px::zppsGetLibVersion() { return &kSignalPx; }
const ZppLibraryVersion* a6::zppsGetLibVersion() { return &kSignalA6; }
const ZppLibraryVersion* w7::zppsGetLibVersion() { return &kSignalW7; }
const ZppLibraryVersion* px::zppvmGetLibVersion() { return &kVectorMathPx; }
const ZppLibraryVersion* a6::zppvmGetLibVersion() { return &kVectorMathA6; }
const ZppLibraryVersion* w7::zppvmGetLibVersion() { return &kVectorMathW7; }

}  // namespace zpp
