// Movement and conversions. In place of a rounding mode there is the one to nearest, of a scale factor 3.
#include "bench/jobs.h"

namespace zpp::bench {
namespace {

[[maybe_unused]] const Jobs movement = {
    {"Copy_8u", 2, timed<zppsCopy_8u>},         {"Copy_64f", 16, timed<zppsCopy_64f>, true},
    {"Move_64f", 16, timed<zppsMove_64f>},      {"Set_32s", 4, timed<zppsSet_32s>},
    {"Set_64f", 8, timed<zppsSet_64f>, true},   {"Set_64fc", 16, timed<zppsSet_64fc>},
    {"Zero_64f", 8, timed<zppsZero_64f>, true}, {"Flip_64f", 16, timed<zppsFlip_64f>},
    {"Flip_64f_I", 16, timed<zppsFlip_64f_I>},
};

[[maybe_unused]] const Jobs conversions = {
    {"Convert_8s16s", 3, timed<zppsConvert_8s16s>},
    {"Convert_16s32s", 6, timed<zppsConvert_16s32s>},
    {"Convert_32s16s", 6, timed<zppsConvert_32s16s>},
    {"Convert_8u32f", 5, timed<zppsConvert_8u32f>},
    {"Convert_16s32f", 6, timed<zppsConvert_16s32f>},
    {"Convert_32s32f", 8, timed<zppsConvert_32s32f>},
    {"Convert_32s64f", 12, timed<zppsConvert_32s64f>},
    {"Convert_32f64f", 12, timed<zppsConvert_32f64f>},
    {"Convert_64f32f", 12, timed<zppsConvert_64f32f>},
    {"Convert_16s32f_Sfs", 6, timed<zppsConvert_16s32f_Sfs, 3>},
    {"Convert_16s64f_Sfs", 10, timed<zppsConvert_16s64f_Sfs, 3>},
    {"Convert_32s16s_Sfs", 6, timed<zppsConvert_32s16s_Sfs, 3>},
    {"Convert_32f8u_Sfs", 5, timed<zppsConvert_32f8u_Sfs, zppRoundNear, -5>},
    {"Convert_32f16s_Sfs", 6, timed<zppsConvert_32f16s_Sfs, zppRoundNear, -5>},
    {"Convert_32f32s_Sfs", 8, timed<zppsConvert_32f32s_Sfs, zppRoundNear, -5>},
    {"Convert_64f32s_Sfs", 12, timed<zppsConvert_64f32s_Sfs, zppRoundNear, -5>},
    {"Convert_24s32s", 7, timed<zppsConvert_24s32s>},
    {"Convert_24s32f", 7, timed<zppsConvert_24s32f>},
    {"Convert_32s24s_Sfs", 7, timed<zppsConvert_32s24s_Sfs, 3>},
    {"Convert_32f24s_Sfs", 7, timed<zppsConvert_32f24s_Sfs, -5>},
    {"SwapBytes_24u", 6, timed<zppsSwapBytes_24u>},
    {"Convert_16f32f", 6, timed<zppsConvert_16f32f>},
    {"Convert_32f16f", 6, timed<zppsConvert_32f16f, zppRoundNear>},
};

// Codes and words of any bits; singles are beyond full scale.
[[maybe_unused]] const Jobs companding = {
    {"LinToALaw_16s8u", 3, timed<zppsLinToALaw_16s8u>},
    {"LinToALaw_32f8u", 5, timed<zppsLinToALaw_32f8u>},
    {"LinToMuLaw_16s8u", 3, timed<zppsLinToMuLaw_16s8u>},
    {"LinToMuLaw_32f8u", 5, timed<zppsLinToMuLaw_32f8u>},
    {"ALawToLin_8u16s", 3, timed<zppsALawToLin_8u16s>},
    {"ALawToLin_8u32f", 5, timed<zppsALawToLin_8u32f>},
    {"MuLawToLin_8u16s", 3, timed<zppsMuLawToLin_8u16s>},
    {"MuLawToLin_8u32f", 5, timed<zppsMuLawToLin_8u32f>},
    {"ALawToMuLaw_8u", 2, timed<zppsALawToMuLaw_8u>},
    {"MuLawToALaw_8u", 2, timed<zppsMuLawToALaw_8u>},
};

// The level is 1.5, for elements of magnitude 1 to 2.
[[maybe_unused]] const Jobs thresholds = {
    {"Threshold_LT_64f", 16, timed<zppsThreshold_LT_64f>},
    {"Threshold_GT_64fc", 32, timed<zppsThreshold_GT_64fc>},
    {"Threshold_LTInv_64f", 16, timed<zppsThreshold_LTInv_64f>},
};

[[maybe_unused]] const Jobs complexVectors = {
    {"Conj_64fc", 32, timed<zppsConj_64fc>},
    {"ConjFlip_64fc", 32, timed<zppsConjFlip_64fc>},
    {"Real_64fc", 24, timed<zppsReal_64fc>},
    {"CplxToReal_64fc", 32, timed<zppsCplxToReal_64fc>},
    {"RealToCplx_64f", 32, timed<zppsRealToCplx_64f>},
    {"Magnitude_64fc", 24, timed<zppsMagnitude_64fc>},
    {"Magnitude_64f", 24, timed<zppsMagnitude_64f>},
    {"Magnitude_32sc_Sfs", 12, timed<zppsMagnitude_32sc_Sfs, 1>},
    {"MagSquared_32sc32s_Sfs", 12, timed<zppsMagSquared_32sc32s_Sfs, 32>},
    {"Phase_64fc", 24, timed<zppsPhase_64fc>},
    {"Phase_64f", 24, timed<zppsPhase_64f>},
    {"Phase_32sc_Sfs", 12, timed<zppsPhase_32sc_Sfs, -15>},
    {"CartToPolar_64fc", 32, timed<zppsCartToPolar_64fc>},
    {"CartToPolar_64f", 32, timed<zppsCartToPolar_64f>},
    {"PolarToCart_64fc", 32, timed<zppsPolarToCart_64fc>},
    {"PolarToCart_64f", 32, timed<zppsPolarToCart_64f>},
    {"PowerSpectr_64fc", 24, timed<zppsPowerSpectr_64fc>},
    {"PowerSpectr_64f", 24, timed<zppsPowerSpectr_64f>},
    {"Normalize_64f", 16, timed<zppsNormalize_64f>},
    {"Normalize_64fc", 32, timed<zppsNormalize_64fc>},
};

}  // namespace
}  // namespace zpp::bench
