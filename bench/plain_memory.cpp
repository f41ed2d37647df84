#include "bench/plain.h"

namespace zpp::plain {

void copy(const double* a, double* dst, int len) {
    for (int i = 0; i < len; ++i) dst[i] = a[i];
}
void set(double val, double* dst, int len) {
    for (int i = 0; i < len; ++i) dst[i] = val;
}
void set(Zpp64fc val, Zpp64fc* dst, int len) {
    for (int i = 0; i < len; ++i) dst[i] = val;
}
void flip(const double* a, double* dst, int len) {
    for (int i = 0; i < len; ++i) dst[len - 1 - i] = a[i];
}
void flip(double* a, int len) {
    for (int i = 0; i < len / 2; ++i) {
        const double kept = a[i];
        a[i] = a[len - 1 - i];
        a[len - 1 - i] = kept;
    }
}

}  // namespace zpp::plain
