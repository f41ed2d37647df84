#include "check/machine.h"

#include <cstdlib>
#include <string>

#include "frame/cpu.h"
#include "frame/dispatch.h"
#include "zpp.h"

namespace zpp::check {
namespace {

#ifdef _WIN32
#define SYSTEM "windows"
#define PROCESSOR_32 "i686"
#else
#define SYSTEM "linux"
#define PROCESSOR_32 "i386"
#endif
#ifdef __x86_64__
constexpr char kTarget[] = SYSTEM "-x86_64";
#else
constexpr char kTarget[] = SYSTEM "-" PROCESSOR_32;
#endif

// The bytes of some words of CPUID, as a text.
void append(std::string& text, std::initializer_list<std::uint32_t> words) {
    for (const std::uint32_t word : words)
        for (int i = 0; i < 4; ++i) text += static_cast<char>(word >> 8 * i);
}

std::string processor() {
    if (!cpuReader.hasCpuid()) return "without CPUID";
    const CpuidRegisters vendor = cpuReader.cpuid(0, 0), signature = cpuReader.cpuid(1, 0);
    std::string text;
    append(text, {vendor.ebx, vendor.edx, vendor.ecx});
    char numbers[64];
    const unsigned family = signature.eax >> 8 & 15, model = signature.eax >> 4 & 15;
    std::snprintf(numbers, sizeof numbers, ", family %u, model %u, stepping %u",
                  family + (family == 15 ? signature.eax >> 20 & 255 : 0),
                  model + (family == 6 || family == 15 ? signature.eax >> 12 & 0xF0 : 0), signature.eax & 15);
    text += numbers;
    if (cpuReader.cpuid(0x80000000, 0).eax < 0x80000004) return text;
    std::string brand;
    for (const std::uint32_t leaf : {0x80000002, 0x80000003, 0x80000004}) {
        const CpuidRegisters r = cpuReader.cpuid(leaf, 0);
        append(brand, {r.eax, r.ebx, r.ecx, r.edx});
    }
    return text + ", " + brand.c_str();  // zeros fill it
}

}  // namespace

const test::Binding& loadedBinding() {
    const BindingReason& reason = bindingReason();
    for (const test::Binding& binding : test::allBindings())
        if (binding.column == reason.column && (reason.column != kPx || binding.isa == reason.isa))
            return binding;
    std::abort();  // the load would have been refused
}

void describeMachine(std::FILE* file) {
    const ZppLibraryVersion& version = *zppsGetLibVersion();
    const BindingReason& reason = bindingReason();
    const test::Binding &bound = loadedBinding(), best = {kPx, reason.best};
    std::fprintf(file,
                 "zpp-check %d.%d.%d, %s\n"
                 "processor: %s\n"
                 "bound: column %s, ISA build %s; type %d is of level %d of the waterfall, the best build "
                 "for px is %s%s\n",
                 version.major, version.minor, version.majorBuild, kTarget, processor().c_str(),
                 bound.columnName().c_str(), bound.isaName().c_str(), reason.type, reason.level,
                 best.isaName().c_str(), reason.isa == reason.best ? "" : ", which ZPP_ISA lowers");
}

}  // namespace zpp::check
