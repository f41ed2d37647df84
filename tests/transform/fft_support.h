// The kinds of FFT specification, for the tests of specifications and of transforms.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>

#include "zpp/transform.h"

namespace zpp::test {

// The functions of a kind.
struct Kind {
    ZppStatus (*init)(ZppsFFTSpec**, int order, int flag, int hint);
    ZppStatus (*free)(ZppsFFTSpec*);
    ZppStatus (*bufSize)(const ZppsFFTSpec*, int*);
    const char* name;
    bool real;
};
#define ZPP_FFT_KIND(space, type, real)                                                                    \
    {                                                                                                      \
        space::zppsFFTInitAlloc_##type, space::zppsFFTFree_##type, space::zppsFFTGetBufSize_##type, #type, \
            real                                                                                           \
    }
#define ZPP_FFT_KINDS(space)                                                   \
    {                                                                          \
        ZPP_FFT_KIND(space, C_64fc, false), ZPP_FFT_KIND(space, C_64f, false), \
            ZPP_FFT_KIND(space, R_64f, true)                                   \
    }
inline const Kind kKinds[] = ZPP_FFT_KINDS();

class Spec {
  public:
    Spec(const Kind& kind, int order, int flag = 8) : kind_(kind) {
        EXPECT_EQ(kind.init(&spec_, order, flag, 0), zppStatusOk);
        EXPECT_EQ(kind.bufSize(spec_, &bufSize_), zppStatusOk);
    }
    Spec(const Spec&) = delete;
    ~Spec() { EXPECT_EQ(kind_.free(spec_), zppStatusOk); }
    operator ZppsFFTSpec*() const { return spec_; }
    std::size_t bufSize() const { return static_cast<std::size_t>(bufSize_); }

  private:
    const Kind& kind_;
    ZppsFFTSpec* spec_ = nullptr;
    int bufSize_ = -1;
};

}  // namespace zpp::test
