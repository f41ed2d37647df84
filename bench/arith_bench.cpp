// Elementwise arithmetic.
#include "bench/positive.h"

namespace zpp::bench {
namespace {

[[maybe_unused]] const Jobs integers = {
    {"Add_32s_Sfs", 12, timed<zppsAdd_32s_Sfs, 5>},  {"Add_32s_Sfs_saturated", 12, timed<zppsAdd_32s_Sfs, 0>},
    {"Mul_32s_Sfs", 12, timed<zppsMul_32s_Sfs, 20>}, {"MulC_32s_Sfs", 8, timed<zppsMulC_32s_Sfs, 20>},
    {"Div_32s_Sfs", 12, timed<zppsDiv_32s_Sfs, -5>}, {"Mul_32sc_Sfs", 24, timed<zppsMul_32sc_Sfs, 20>},
};

[[maybe_unused]] const Jobs floating = {
    {"Add_64f", 24, timed<zppsAdd_64f>, true},
    {"Sub_64f", 24, timed<zppsSub_64f>},
    {"Mul_64f", 24, timed<zppsMul_64f>},
    {"Div_64f", 24, timed<zppsDiv_64f>},
    {"AddProduct_64f", 32, timed<zppsAddProduct_64f>},
    {"Add_64f_I", 24, timed<zppsAdd_64f_I>},
    {"AddC_64f", 16, timed<zppsAddC_64f>, true},
    {"MulC_64f", 16, timed<zppsMulC_64f>},
    {"SubCRev_64f", 16, timed<zppsSubCRev_64f>},
    {"Add_64fc", 48, timed<zppsAdd_64fc>},
    {"Mul_64fc", 48, timed<zppsMul_64fc>},
    {"Div_64fc", 48, timed<zppsDiv_64fc>},
    {"AddProduct_64fc", 64, timed<zppsAddProduct_64fc>},
    {"MulC_64fc", 32, timed<zppsMulC_64fc>},
};

[[maybe_unused]] const Jobs roots = {
    {"Abs_32s", 8, timed<zppsAbs_32s>},      {"Sqr_64fc", 32, timed<zppsSqr_64fc>},
    {"Sqrt_64f", 16, timed<zppsSqrt_64f>},   {"Arctan_64f", 16, timed<zppsArctan_64f>},
    {"Sqrt_64fc", 32, timed<zppsSqrt_64fc>},
};

[[maybe_unused]] const Jobs elementary = {
    {"Exp_64f", 16, timed<zppsExp_64f>},
    {"Exp_64fc", 32, timed<zppsExp_64fc>},
    {"Exp_32s_Sfs", 8, timed<zppsExp_32s_Sfs, 2>},
    {"Ln_64f", 16, timedOfPositive<zppsLn_64f>},
    {"Ln_64fc", 32, timed<zppsLn_64fc>},
    {"Ln_32s_Sfs", 8, timedOfPositive<zppsLn_32s_Sfs, -20>},
    {"10Log10_32s_Sfs", 8, timedOfPositive<zpps10Log10_32s_Sfs, -20>},
};

}  // namespace
}  // namespace zpp::bench
