#include <cblas.h>

#include "bench/jobs.h"

namespace zpp::bench {
namespace {

double sum(const double* a, int len) { return cblas_dsum(len, a, 1); }
double norm1(const double* a, int len) { return cblas_dasum(len, a, 1); }
double norm2(const double* a, int len) { return cblas_dnrm2(len, a, 1); }
double dot(const double* a, const double* b, int len) { return cblas_ddot(len, a, 1, b, 1); }
void dotComplex(const Zpp64fc* a, const Zpp64fc* b, Zpp64fc* dst, int len) {
    cblas_zdotu_sub(len, a, 1, b, 1, dst);
}
int indexOfLargest(const double* a, int len) { return static_cast<int>(cblas_idmax(len, a, 1)); }

[[maybe_unused]] const Peers peers("openblas", {
                                                   {"Sum_64f", timed<sum>},
                                                   {"Norm_L1_64f", timed<norm1>},
                                                   {"Norm_L2_64f", timed<norm2>},
                                                   {"DotProd_64f", timed<dot>},
                                                   {"DotProd_64fc", timed<dotComplex>},
                                                   {"MaxIndx_64f", timed<indexOfLargest>},
                                               });

}  // namespace
}  // namespace zpp::bench
