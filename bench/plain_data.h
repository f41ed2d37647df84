// The loops that a user would write for conversions, compiled with -O3 -march=native.
#pragma once

#include "zpp/types.h"

namespace zpp::plain {

void convert(const Zpp8s* src, Zpp16s* dst, int len);
void convert(const Zpp16s* src, Zpp32s* dst, int len);
void convert(const Zpp32s* src, Zpp16s* dst, int len);
void convert(const Zpp8u* src, Zpp32f* dst, int len);
void convert(const Zpp16s* src, Zpp32f* dst, int len);
void convert(const Zpp32s* src, Zpp32f* dst, int len);
void convert(const Zpp32s* src, Zpp64f* dst, int len);
void convert(const Zpp32f* src, Zpp64f* dst, int len);
void convert(const Zpp64f* src, Zpp32f* dst, int len);

// To integers: rounded and saturated. An integer factor is a scale factor above 0.
void scale(const Zpp16s* src, Zpp32f* dst, int len, float multiplier);
void scale(const Zpp16s* src, Zpp64f* dst, int len, double multiplier);
void scale(const Zpp32s* src, Zpp16s* dst, int len, int factor);
void scale(const Zpp32f* src, Zpp8s* dst, int len, float multiplier);
void scale(const Zpp32f* src, Zpp16s* dst, int len, float multiplier);
void scale(const Zpp32f* src, Zpp32s* dst, int len, float multiplier);
void scale(const Zpp64f* src, Zpp32s* dst, int len, double multiplier);

void unpack24(const Zpp8u* src, Zpp32s* dst, int len);
void unpack24(const Zpp8u* src, Zpp32f* dst, int len);
void pack24(const Zpp32s* src, Zpp8u* dst, int len, int factor);
void pack24(const Zpp32f* src, Zpp8u* dst, int len, float multiplier);
void swapBytes24(const Zpp8u* src, Zpp8u* dst, int len);
void fromHalf(const Zpp16f* src, Zpp32f* dst, int len);
void toHalf(const Zpp32f* src, Zpp16f* dst, int len);

}  // namespace zpp::plain
