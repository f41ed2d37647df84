#include "bench/plain_data.h"

#include <cmath>
#include <cstring>

namespace zpp::plain {
namespace {

template <class S, class D, class Op>
inline void loop(const S* __restrict src, D* __restrict dst, int len, Op op) {
    for (int i = 0; i < len; ++i) dst[i] = op(src[i]);
}

template <class D>
inline D toInteger(float x, float multiplier, float lower, float upper) {
    const float y = x * multiplier;
    return static_cast<D>(y < upper ? y > lower ? std::rint(y) : lower : upper);
}

inline int scaled(int x, int factor, int lower, int upper) {
    const long long half = (1LL << (factor - 1)) - 1;
    const long long y = (x + half + (x >> factor & 1)) >> factor;
    return static_cast<int>(y < lower ? lower : y > upper ? upper : y);
}

inline int packed(const unsigned char* p) {
    return static_cast<int>(p[0] | p[1] << 8 | p[2] << 16) << 8 >> 8;
}

}  // namespace

void convert(const Zpp8s* src, Zpp16s* dst, int len) {
    loop(src, dst, len, [](Zpp8s x) { return x; });
}
void convert(const Zpp16s* src, Zpp32s* dst, int len) {
    loop(src, dst, len, [](Zpp16s x) { return x; });
}
void convert(const Zpp32s* src, Zpp16s* dst, int len) {
    loop(src, dst, len, [](Zpp32s x) {
        return static_cast<Zpp16s>(x < -32768 ? -32768 : x > 32767 ? 32767 : x);
    });
}
void convert(const Zpp8u* src, Zpp32f* dst, int len) {
    loop(src, dst, len, [](Zpp8u x) { return static_cast<float>(x); });
}
void convert(const Zpp16s* src, Zpp32f* dst, int len) {
    loop(src, dst, len, [](Zpp16s x) { return static_cast<float>(x); });
}
void convert(const Zpp32s* src, Zpp32f* dst, int len) {
    loop(src, dst, len, [](Zpp32s x) { return static_cast<float>(x); });
}
void convert(const Zpp32s* src, Zpp64f* dst, int len) {
    loop(src, dst, len, [](Zpp32s x) { return static_cast<double>(x); });
}
void convert(const Zpp32f* src, Zpp64f* dst, int len) {
    loop(src, dst, len, [](Zpp32f x) { return static_cast<double>(x); });
}
void convert(const Zpp64f* src, Zpp32f* dst, int len) {
    loop(src, dst, len, [](Zpp64f x) { return static_cast<float>(x); });
}

void scale(const Zpp16s* src, Zpp32f* dst, int len, float multiplier) {
    loop(src, dst, len, [=](Zpp16s x) { return static_cast<float>(x) * multiplier; });
}
void scale(const Zpp16s* src, Zpp64f* dst, int len, double multiplier) {
    loop(src, dst, len, [=](Zpp16s x) { return x * multiplier; });
}
void scale(const Zpp32s* src, Zpp16s* dst, int len, int factor) {
    loop(src, dst, len, [=](Zpp32s x) { return static_cast<Zpp16s>(scaled(x, factor, -32768, 32767)); });
}
void scale(const Zpp32f* src, Zpp8s* dst, int len, float multiplier) {
    loop(src, dst, len, [=](Zpp32f x) { return toInteger<Zpp8s>(x, multiplier, -128, 127); });
}
void scale(const Zpp32f* src, Zpp16s* dst, int len, float multiplier) {
    loop(src, dst, len, [=](Zpp32f x) { return toInteger<Zpp16s>(x, multiplier, -32768, 32767); });
}
void scale(const Zpp32f* src, Zpp32s* dst, int len, float multiplier) {
    loop(src, dst, len, [=](Zpp32f x) {
        const float y = x * multiplier;
        return y < 2147483648.0F ? y > -2147483648.0F ? static_cast<Zpp32s>(std::rint(y)) : -2147483647 - 1
                                 : 2147483647;
    });
}
void scale(const Zpp64f* src, Zpp32s* dst, int len, double multiplier) {
    loop(src, dst, len, [=](Zpp64f x) {
        const double y = x * multiplier;
        return static_cast<Zpp32s>(y < 2147483647.0 ? y > -2147483648.0 ? std::rint(y) : -2147483648.0
                                                    : 2147483647.0);
    });
}

void unpack24(const Zpp8u* src, Zpp32s* dst, int len) {
    for (int i = 0; i < len; ++i) dst[i] = packed(src + 3 * i);
}
void unpack24(const Zpp8u* src, Zpp32f* dst, int len) {
    for (int i = 0; i < len; ++i) dst[i] = static_cast<float>(packed(src + 3 * i));
}
void pack24(const Zpp32s* __restrict src, Zpp8u* __restrict dst, int len, int factor) {
    for (int i = 0; i < len; ++i) {
        const int y = scaled(src[i], factor, -8388608, 8388607);
        for (int k = 0; k < 3; ++k) dst[3 * i + k] = static_cast<Zpp8u>(y >> 8 * k);
    }
}
void pack24(const Zpp32f* __restrict src, Zpp8u* __restrict dst, int len, float multiplier) {
    for (int i = 0; i < len; ++i) {
        const int y = toInteger<int>(src[i], multiplier, -8388608, 8388607);
        for (int k = 0; k < 3; ++k) dst[3 * i + k] = static_cast<Zpp8u>(y >> 8 * k);
    }
}
void swapBytes24(const Zpp8u* __restrict src, Zpp8u* __restrict dst, int len) {
    for (int i = 0; i < 3 * len; i += 3) {
        dst[i] = src[i + 2];
        dst[i + 1] = src[i + 1];
        dst[i + 2] = src[i];
    }
}

// With the compiler's own half type.
void fromHalf(const Zpp16f* src, Zpp32f* dst, int len) {
    for (int i = 0; i < len; ++i) {
        _Float16 half;
        std::memcpy(&half, src + i, sizeof half);
        dst[i] = static_cast<float>(half);
    }
}
void toHalf(const Zpp32f* src, Zpp16f* dst, int len) {
    for (int i = 0; i < len; ++i) {
        const _Float16 half = static_cast<_Float16>(src[i]);
        std::memcpy(dst + i, &half, sizeof half);
    }
}

}  // namespace zpp::plain
