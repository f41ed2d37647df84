// The recursions as a user writes them, with the number of sections or the order known to the compiler.
#include <cstring>
#include "bench/iir.h"

#include "bench/peers/plain.h"

namespace zpp::bench {
namespace {

Zpp64fc operator+(Zpp64fc a, Zpp64fc b) { return {a.re + b.re, a.im + b.im}; }
Zpp64fc operator-(Zpp64fc a, Zpp64fc b) { return {a.re - b.re, a.im - b.im}; }
Zpp64fc operator*(Zpp64fc a, Zpp64fc b) { return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re}; }

template <class T, int kSections, class D>
void cascade(const D* __restrict src, D* __restrict dst, int len) {
    static T b[kSections][3], a[kSections][2], line[kSections][2];
    T d[kSections][2];
    for (int k = 0; k < kSections; ++k) sectionTaps(k, b[k], a[k]);
    memcpy(&d, &line, sizeof d);
    for (int n = 0; n < len; ++n) {
        T x = src[n];
        for (int k = 0; k < kSections; ++k) {
            const T y = b[k][0] * x + d[k][0];
            d[k][0] = b[k][1] * x + d[k][1] - a[k][0] * y;
            d[k][1] = b[k][2] * x - a[k][1] * y;
            x = y;
        }
        dst[n] = static_cast<D>(x);
    }
    memcpy(&line, &d, sizeof d);
}

template <class T, int kOrder>
void arbitrary(const T* __restrict src, T* __restrict dst, int len) {
    static T b[kOrder + 1], a[kOrder], line[kOrder + 1];
    T d[kOrder + 1];
    tapsOf(kOrder, b, a);
    memcpy(&d, &line, sizeof d);
    for (int n = 0; n < len; ++n) {
        const T x = src[n], y = b[0] * x + d[0];
        for (int i = 0; i < kOrder; ++i) d[i] = b[i + 1] * x - a[i] * y + d[i + 1];
        dst[n] = y;
    }
    memcpy(&line, &d, sizeof d);
}

template <class T, int kSections, class D = T>
constexpr auto sections = timed<cascade<T, kSections, D>>;
template <class T, int kOrder>
constexpr auto ofOrder = timed<arbitrary<T, kOrder>>;

[[maybe_unused]] const Peers iir(kWho, {
                                           {"IIR_BiQuad_64f_1", sections<Zpp64f, 1>},
                                           {"IIR_BiQuad_64f_2", sections<Zpp64f, 2>},
                                           {"IIR_BiQuad_64f_4", sections<Zpp64f, 4>},
                                           {"IIR_BiQuad_64f_8", sections<Zpp64f, 8>},
                                           {"IIR_BiQuad_64fc_1", sections<Zpp64fc, 1>},
                                           {"IIR_BiQuad_64fc_2", sections<Zpp64fc, 2>},
                                           {"IIR_BiQuad_64fc_4", sections<Zpp64fc, 4>},
                                           {"IIR_BiQuad_64fc_8", sections<Zpp64fc, 8>},
                                           {"IIR64f_BiQuad_32f_1", sections<Zpp64f, 1, Zpp32f>},
                                           {"IIR64f_BiQuad_32f_4", sections<Zpp64f, 4, Zpp32f>},
                                           {"IIR_64f_order1", ofOrder<Zpp64f, 1>},
                                           {"IIR_64f_order2", ofOrder<Zpp64f, 2>},
                                           {"IIR_64f_order8", ofOrder<Zpp64f, 8>},
                                           {"IIR_64f_order20", ofOrder<Zpp64f, 20>},
                                           {"IIR_64fc_order8", ofOrder<Zpp64fc, 8>},
                                       });

}  // namespace
}  // namespace zpp::bench
