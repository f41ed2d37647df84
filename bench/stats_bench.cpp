// Reductions: their limit is to load what they read. Complex L1 norms are bound by their square roots. And
// sorting.
#include "bench/positive.h"
#include "bench/sorting.h"

namespace zpp::bench {
namespace {

[[maybe_unused]] const Reductions reductions = {
    {"Sum_64f", 8, timed<zppsSum_64f>, true},
    {"Sum_64fc", 16, timed<zppsSum_64fc>},
    {"Sum_32s_Sfs", 4, timed<zppsSum_32s_Sfs, 3>},
    {"StdDev_64f", 8, timed<zppsStdDev_64f>},
    {"Max_64f", 8, timed<zppsMax_64f>},
    {"MaxIndx_64f", 8, timed<zppsMaxIndx_64f>},
    {"MinMax_64f", 8, timed<zppsMinMax_64f>},
    {"MinMax_32s", 4, timed<zppsMinMax_32s>},
    {"MinMaxIndx_64f", 8, timed<zppsMinMaxIndx_64f>},
    {"MaxOrder_64f", 8, timed<zppsMaxOrder_64f>},
    {"Norm_Inf_64f", 8, timed<zppsNorm_Inf_64f>},
    {"Norm_L1_64f", 8, timed<zppsNorm_L1_64f>},
    {"Norm_L2_64f", 8, timed<zppsNorm_L2_64f>},
    {"Norm_L1_64fc64f", 16, timed<zppsNorm_L1_64fc64f>},
    {"NormDiff_L2_64f", 16, timed<zppsNormDiff_L2_64f>},
    {"DotProd_64f", 16, timed<zppsDotProd_64f>},
    {"DotProd_64fc", 32, timed<zppsDotProd_64fc>},
    {"DotProd_32f64f", 8, timed<zppsDotProd_32f64f>},
    {"DotProd_32s_Sfs", 8, timed<zppsDotProd_32s_Sfs, 20>},
    {"SumLn_64f", 8, timedOfPositive<zppsSumLn_64f>},
};

[[maybe_unused]] const Jobs maps = {
    {"MaxEvery_32s_I", 12, timed<zppsMaxEvery_32s_I>},
    {"SortAscend_32s_I", 8, timedSort<Zpp32s, zppsSortAscend_32s_I>},
    {"SortDescend_32s_I", 8, timedSort<Zpp32s, zppsSortDescend_32s_I>},
    {"SortAscend_64f_I", 16, timedSort<Zpp64f, zppsSortAscend_64f_I>},
    {"SortDescend_64f_I", 16, timedSort<Zpp64f, zppsSortDescend_64f_I>},
};

}  // namespace
}  // namespace zpp::bench
