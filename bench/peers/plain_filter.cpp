#include <cstring>

#include "bench/peers/plain.h"

namespace zpp::bench {
namespace {

template <class T>
void sampleUp(const T* __restrict src, int len, T* __restrict dst, int factor, int phase) {
    memset(static_cast<void*>(dst), 0, sizeof(T) * static_cast<size_t>(len));
    for (int i = phase; i < len; i += factor) dst[i] = *src++;
}
template <class T>
void sampleDown(const T* __restrict src, int len, T* __restrict dst, int factor, int phase) {
    for (int i = phase; i < len; i += factor) *dst++ = src[i];
}

[[maybe_unused]] const Peers sampling(kWho, {
                                                {"SampleUp_64f_2", timed<sampleUp<double>, 2, 1>},
                                                {"SampleUp_64f_3", timed<sampleUp<double>, 3, 1>},
                                                {"SampleUp_64f_20", timed<sampleUp<double>, 20, 1>},
                                                {"SampleUp_64fc_2", timed<sampleUp<Zpp64fc>, 2, 1>},
                                                {"SampleUp_64fc_4", timed<sampleUp<Zpp64fc>, 4, 1>},
                                                {"SampleDown_64f_2", timed<sampleDown<double>, 2, 1>},
                                                {"SampleDown_64f_5", timed<sampleDown<double>, 5, 1>},
                                                {"SampleDown_64fc_2", timed<sampleDown<Zpp64fc>, 2, 1>},
                                                {"SampleDown_64fc_5", timed<sampleDown<Zpp64fc>, 5, 1>},
                                            });

}  // namespace
}  // namespace zpp::bench
