// FFT and packed spectra, beside FFTW with measured plans: out of place, single-threaded, both with all
// memory that they need allocated before.
#include <algorithm>
#include <memory>
#include <optional>

#include "bench/jobs.h"

#ifdef ZPP_HAVE_FFTW
#include <fftw3.h>
#endif

namespace zpp::bench {
namespace {

constexpr int kFirstOrder = 4;
constexpr int kLastOrder = 20;  // of 2 * kLargest complex elements, one half for each of two arrays

// Of the cosine transforms: also those that are no powers of two, by every method.
constexpr int kCosineLengths[] = {8,    16,    32,    64,     128,     256, 512, 1024, 2048, 4096,
                                  8192, 16384, 65536, 262144, 1048576, 100, 360, 1000, 1001, 10007};

// What a transform moves at the least: its input and its output.
size_t traffic(int length, size_t bytesPerPoint) { return 2 * bytesPerPoint * static_cast<size_t>(length); }

// As add(), for what needs a plan: prepare() gives the body when the case first runs, and is not timed. A
// plan stays for the further repetitions, to the end of the program.
template <class Prepare>
void addPlanned(const char* what, const char* who, int length, size_t bytesPerPoint, Prepare prepare) {
    if (!isWanted(what, who)) return;
    const auto prepared = std::make_shared<std::optional<decltype(prepare())>>();
    registerCase(what, who, length, [=](benchmark::State& state) {
        if (!prepared->has_value()) prepared->emplace(prepare());
        const auto& body = **prepared;
        for (auto iteration : state) {
            (void)iteration;
            body();
            benchmark::ClobberMemory();
        }
        state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(traffic(length, bytesPerPoint)));
    });
}

// Times call(pSpec, pBuffer) for all orders.
template <class Call>
void timeOurs(const char* what, size_t bytesPerPoint, ZppStatus (*init)(ZppsFFTSpec**, int, int, int),
              ZppStatus (*bufSize)(const ZppsFFTSpec*, int*), Call call) {
    for (int order = kFirstOrder; order <= kLastOrder; ++order)
        addPlanned(what, "zpp", 1 << order, bytesPerPoint, [=] {
            ZppsFFTSpec* spec = nullptr;
            int size = 0;
            init(&spec, order, 8, 0);
            bufSize(spec, &size);
            auto* buffer = reinterpret_cast<Zpp8u*>(zppsMalloc_32s(size / 4 + 1));
            return [=] { call(spec, buffer); };
        });
}

// The same for cosine transforms.
void timeCosines(const char* what, ZppStatus (*init)(ZppsDCTSpec**, int, int),
                 ZppStatus (*bufSize)(const ZppsDCTSpec*, int*),
                 ZppStatus (*call)(const Zpp64f*, Zpp64f*, const ZppsDCTSpec*, Zpp8u*)) {
    for (const int length : kCosineLengths)
        addPlanned(what, "zpp", length, 8, [=] {
            ZppsDCTSpec* spec = nullptr;
            int size = 0;
            init(&spec, length, 0);
            bufSize(spec, &size);
            auto* buffer = reinterpret_cast<Zpp8u*>(zppsMalloc_32s(size / 4 + 1));
            return [=] { call(source(0), destination(), spec, buffer); };
        });
}

#ifdef ZPP_HAVE_FFTW
// Times the plan that make(n) gives.
template <class Make>
void timeFftw(const char* what, size_t bytesPerPoint, Make make) {
    for (int order = kFirstOrder; order <= kLastOrder; ++order)
        addPlanned(what, "FFTW", 1 << order, bytesPerPoint, [=] {
            const fftw_plan plan = make(1 << order);
            return [=] { fftw_execute(plan); };
        });
}

// Planning overwrites its arrays, so it has some of its own, filled anew for each plan.
double* scratch(int which) {
    static double* const arrays[] = {fftw_alloc_real(4 * kLargest), fftw_alloc_real(4 * kLargest)};
    return arrays[which];
}

fftw_plan filled(fftw_plan plan) {
    for (const int i : {0, 1}) std::copy_n(source(i), 2 * kLargest, scratch(i));
    return plan;
}

// Measured plans are kept beside the program's other results: to measure takes longer than to time.
struct KeptPlans {
    static constexpr const char* kFile = "fftw.wisdom";
    KeptPlans() { fftw_import_wisdom_from_filename(kFile); }
    ~KeptPlans() { fftw_export_wisdom_to_filename(kFile); }
};

void addFftw() {
    static const KeptPlans kept;
    const auto complex = [](int which) { return reinterpret_cast<fftw_complex*>(scratch(which)); };
    timeFftw("FFT_C_64fc", 16, [=](int n) {
        return filled(fftw_plan_dft_1d(n, complex(0), complex(1), FFTW_FORWARD, FFTW_MEASURE));
    });
    timeFftw("FFTInv_C_64fc", 16, [=](int n) {
        return filled(fftw_plan_dft_1d(n, complex(0), complex(1), FFTW_BACKWARD, FFTW_MEASURE));
    });
    timeFftw("FFT_C_64f", 16, [](int n) {
        const fftw_iodim dim = {n, 1, 1};
        double *in = scratch(0), *out = scratch(1);
        return filled(fftw_plan_guru_split_dft(1, &dim, 0, nullptr, in, in + n, out, out + n, FFTW_MEASURE));
    });
    timeFftw("FFT_R_64f", 8,
             [=](int n) { return filled(fftw_plan_dft_r2c_1d(n, scratch(0), complex(1), FFTW_MEASURE)); });
    timeFftw("FFTInv_R_64f", 8, [=](int n) {
        return filled(fftw_plan_dft_c2r_1d(n, complex(0), scratch(1), FFTW_MEASURE | FFTW_PRESERVE_INPUT));
    });
    for (const int length : kCosineLengths)
        for (const bool inverse : {false, true})
            addPlanned(inverse ? "DCTInv_64f" : "DCTFwd_64f", "FFTW", length, 8, [=] {
                const fftw_plan plan = filled(fftw_plan_r2r_1d(
                    length, scratch(0), scratch(1), inverse ? FFTW_REDFT01 : FFTW_REDFT10, FFTW_MEASURE));
                return [=] { fftw_execute(plan); };
            });
}
#else
void addFftw() {}
#endif

}  // namespace

void registerTransforms() {
    const Zpp64f* src = source(0);
    Zpp64f* dst = destination();
    const Zpp64fc* complexSrc = complexVector(source(0));
    Zpp64fc* complexDst = complexVector(destination());
    timeOurs("FFT_C_64fc", 16, zppsFFTInitAlloc_C_64fc, zppsFFTGetBufSize_C_64fc,
             [=](auto* spec, auto* buffer) { zppsFFTFwd_CToC_64fc(complexSrc, complexDst, spec, buffer); });
    timeOurs("FFTInv_C_64fc", 16, zppsFFTInitAlloc_C_64fc, zppsFFTGetBufSize_C_64fc,
             [=](auto* spec, auto* buffer) { zppsFFTInv_CToC_64fc(complexSrc, complexDst, spec, buffer); });
    timeOurs("FFT_C_64f", 16, zppsFFTInitAlloc_C_64f, zppsFFTGetBufSize_C_64f, [=](auto* spec, auto* buffer) {
        zppsFFTFwd_CToC_64f(src, src + kLargest, dst, dst + kLargest, spec, buffer);
    });
    timeOurs("FFT_R_64f", 8, zppsFFTInitAlloc_R_64f, zppsFFTGetBufSize_R_64f,
             [=](auto* spec, auto* buffer) { zppsFFTFwd_RToCCS_64f(src, dst, spec, buffer); });
    timeOurs("FFTInv_R_64f", 8, zppsFFTInitAlloc_R_64f, zppsFFTGetBufSize_R_64f,
             [=](auto* spec, auto* buffer) { zppsFFTInv_CCSToR_64f(src, dst, spec, buffer); });
    timeCosines("DCTFwd_64f", zppsDCTFwdInitAlloc_64f, zppsDCTFwdGetBufSize_64f, zppsDCTFwd_64f);
    timeCosines("DCTInv_64f", zppsDCTInvInitAlloc_64f, zppsDCTInvGetBufSize_64f, zppsDCTInv_64f);
    addFftw();
}

namespace {
// The frequencies are no numbers of the vectors, which are above 1.
void timedOne(benchmark::State& state, int len) {
    Zpp64fc value;
    for (auto iteration : state) {
        (void)iteration;
        zppsGoertz_64fc(complexVector(source(0)), len, &value, 0.1234);
        benchmark::DoNotOptimize(value);
    }
}
void timedTwo(benchmark::State& state, int len) {
    Zpp64fc values[2];
    const Zpp64f frequencies[] = {0.1234, 0.321};
    for (auto iteration : state) {
        (void)iteration;
        zppsGoertzTwo_64fc(complexVector(source(0)), len, values, frequencies);
        benchmark::DoNotOptimize(values);
    }
}
[[maybe_unused]] const Reductions goertzel = {{"Goertz_64fc", 16, timedOne},
                                              {"GoertzTwo_64fc", 16, timedTwo}};
[[maybe_unused]] const Jobs packed = {{"MulPerm_64f", 24, timed<zppsMulPerm_64f>}};
[[maybe_unused]] const Jobs haar = {
    {"WTHaarFwd_64f", 16, timed<zppsWTHaarFwd_64f>},
    {"WTHaarFwd_32s", 8, timed<zppsWTHaarFwd_32s>},
    {"WTHaarFwd_32s_Sfs", 8, timed<zppsWTHaarFwd_32s_Sfs, 3>},
    {"WTHaarInv_64f", 16, timed<zppsWTHaarInv_64f>},
    {"WTHaarInv_32s", 8, timed<zppsWTHaarInv_32s>},
    {"WTHaarInv_32s_Sfs", 8, timed<zppsWTHaarInv_32s_Sfs, 3>},
};
}  // namespace

}  // namespace zpp::bench
