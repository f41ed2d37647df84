#include <volk/volk.h>

#include "bench/jobs.h"

namespace zpp::bench {
namespace {

// Its arguments are the destination, the sources, a factor, the count; its functions are pointers that it
// sets.
void add(const double* a, const double* b, double* dst, int len) {
    volk_64f_x2_add_64f(dst, a, b, static_cast<unsigned>(len));
}
void multiply(const double* a, const double* b, double* dst, int len) {
    volk_64f_x2_multiply_64f(dst, a, b, static_cast<unsigned>(len));
}
void toSingles(const double* src, float* dst, int len) {
    volk_64f_convert_32f(dst, src, static_cast<unsigned>(len));
}
void toDoubles(const float* src, double* dst, int len) {
    volk_32f_convert_64f(dst, src, static_cast<unsigned>(len));
}
void wordsToSingles(const Zpp16s* src, float* dst, int len) {
    volk_16i_s32f_convert_32f(dst, src, 1, static_cast<unsigned>(len));
}
void intsToSingles(const Zpp32s* src, float* dst, int len) {
    volk_32i_s32f_convert_32f(dst, src, 1, static_cast<unsigned>(len));
}
void toWords(const float* src, Zpp16s* dst, int len) {
    volk_32f_s32f_convert_16i(dst, src, 32, static_cast<unsigned>(len));
}
void toInts(const float* src, Zpp32s* dst, int len) {
    volk_32f_s32f_convert_32i(dst, src, 32, static_cast<unsigned>(len));
}

[[maybe_unused]] const Peers peers("volk", {
                                               {"Add_64f", timed<add>},
                                               {"Mul_64f", timed<multiply>},
                                               {"Convert_64f32f", timed<toSingles>},
                                               {"Convert_32f64f", timed<toDoubles>},
                                               {"Convert_16s32f", timed<wordsToSingles>},
                                               {"Convert_32s32f", timed<intsToSingles>},
                                               {"Convert_32f16s_Sfs", timed<toWords>},
                                               {"Convert_32f32s_Sfs", timed<toInts>},
                                           });

}  // namespace
}  // namespace zpp::bench
