// Convolution through FFTW as an expert would write it: plans measured beforehand, blocks (overlap-save) or
// one transform, of the lengths without large factors the one that takes the least.
#include <fftw3.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <map>
#include <memory>

#include "bench/jobs.h"

namespace zpp::bench {
namespace {

// Of the vectors a, not the longer, and b.
class Convolution {
  public:
    Convolution(int lenA, int lenB, int n)
        : lenA_(lenA),
          lenB_(lenB),
          n_(n),
          samples_(fftw_alloc_real(size())),
          spectrum_(complex()),
          other_(complex()) {
        forward_ = fftw_plan_dft_r2c_1d(n, samples_, spectrum_, FFTW_MEASURE);
        inverse_ = fftw_plan_dft_c2r_1d(n, spectrum_, samples_, FFTW_MEASURE);
    }
    ~Convolution() {
        fftw_destroy_plan(forward_);
        fftw_destroy_plan(inverse_);
        fftw_free(samples_);
        fftw_free(spectrum_);
        fftw_free(other_);
    }
    Convolution(const Convolution&) = delete;
    Convolution& operator=(const Convolution&) = delete;

    void run(const double* a, const double* b, double* dst) const {
        const int total = lenA_ + lenB_ - 1, wrapped = n_ >= total ? 0 : lenA_ - 1, block = n_ - wrapped;
        read(a, lenA_, 0);
        fftw_execute_dft_r2c(forward_, samples_, other_);
        for (int done = 0; done < total; done += block) {
            read(b, lenB_, done - wrapped);
            fftw_execute(forward_);
            multiply();
            fftw_execute(inverse_);
            std::memcpy(dst + done, samples_ + wrapped,
                        sizeof(double) * static_cast<size_t>(std::min(block, total - done)));
        }
    }

  private:
    size_t size() const { return static_cast<size_t>(n_); }
    fftw_complex* complex() const { return fftw_alloc_complex(size() / 2 + 1); }

    // n numbers of x from a place on, with zeros around them.
    void read(const double* x, int len, int from) const {
        const int before = std::min(n_, std::max(0, -from)), begin = std::max(0, from);
        const int count = std::max(0, std::min(n_ - before, len - begin));
        std::fill_n(samples_, before, 0.0);
        std::copy_n(x + begin, count, samples_ + before);
        std::fill_n(samples_ + before + count, n_ - before - count, 0.0);
    }
    void multiply() const {
        const double scale = 1.0 / n_;
        for (size_t i = 0; i <= size() / 2; ++i) {
            const double re = spectrum_[i][0] * other_[i][0] - spectrum_[i][1] * other_[i][1];
            const double im = spectrum_[i][0] * other_[i][1] + spectrum_[i][1] * other_[i][0];
            spectrum_[i][0] = re * scale;
            spectrum_[i][1] = im * scale;
        }
    }

    int lenA_, lenB_, n_;
    double* samples_;
    fftw_complex *spectrum_, *other_;
    fftw_plan forward_, inverse_;
};

// The next length that is a product of 4 and small primes.
int smooth(int n) {
    for (;; ++n) {
        int rest = n;
        for (const int prime : {2, 3, 5, 7})
            while (rest % prime == 0) rest /= prime;
        if (rest == 1 && n % 4 == 0) return n;
    }
}

using Clock = std::chrono::steady_clock;

Clock::duration timeOf(const Convolution& convolution, const double* a, const double* b, double* dst) {
    auto least = Clock::duration::max();
    for (int turn = 0; turn < 5; ++turn) {
        const auto start = Clock::now();
        convolution.run(a, b, dst);
        least = std::min(least, Clock::now() - start);
    }
    return least;
}

const Convolution& quickest(const double* a, int lenA, const double* b, int lenB, double* dst) {
    static std::map<std::pair<int, int>, std::unique_ptr<Convolution>> kept;
    auto& best = kept[{lenA, lenB}];
    if (best != nullptr) return *best;
    const int total = lenA + lenB - 1;
    auto least = Clock::duration::max();
    const auto consider = [&](int n) {
        auto candidate = std::make_unique<Convolution>(lenA, lenB, n);
        const auto taken = timeOf(*candidate, a, b, dst);
        if (taken >= least) return;
        least = taken;
        best = std::move(candidate);
    };
    consider(smooth(total));
    for (int n = 2 * lenA; n < total && n <= 64 * lenA; n *= 2) consider(smooth(n));
    return *best;
}

template <int kShort>
void convolve(const double* a, const double* b, double* dst, int len) {
    const int other = kShort > 0 ? kShort : len;
    if (other <= len)
        quickest(a, other, b, len, dst).run(a, b, dst);
    else
        quickest(b, len, a, other, dst).run(b, a, dst);
}

[[maybe_unused]] const Peers convolutions("FFTW", {
                                                      {"Conv_64f_16", timed<convolve<16>>},
                                                      {"Conv_64f_256", timed<convolve<256>>},
                                                      {"Conv_64f_1000", timed<convolve<1000>>},
                                                      {"Conv_64f_equal", timed<convolve<0>>},
                                                  });

}  // namespace
}  // namespace zpp::bench
