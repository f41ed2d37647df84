/* Status codes. Negative codes are errors, returned before anything was written; positive codes are warnings,
 * returned after all output was written. zppGetStatusString gives the text of a code. */
#ifndef ZPP_STATUS_H
#define ZPP_STATUS_H

typedef int ZppStatus;

enum {
    zppStatusOk = 0,           /* No error, it's OK */
    zppStatusError = -2,       /* Unknown/unspecified error */
    zppStatusNoMemory = -4,    /* Not enough memory for the operation */
    zppStatusBadArgument = -5, /* Function arg/param is bad */
    zppStatusSizeError = -6,   /* Wrong value of data size */
    zppStatusBoundsError = -7, /* Bad values of bounds: the lower bound is greater than the upper bound */
    zppStatusNullPointer = -8, /* Null pointer error */
    zppStatusAllocationFailed = -9,        /* Not enough memory allocated for the operation */
    zppStatusDivideByZeroError = -10,      /* An attempt to divide by zero */
    zppStatusOutOfRange = -11,             /* Argument is out of range or point is outside the image */
    zppStatusBadDataType = -12,            /* Bad or unsupported data type */
    zppStatusScaleRange = -13,             /* Scale bounds are out of the range */
    zppStatusBadStep = -14,                /* Step value is less than or equal to zero */
    zppStatusFftOrder = -15,               /* Invalid value of the FFT order parameter */
    zppStatusFftFlag = -16,                /* Invalid value of the FFT flag parameter */
    zppStatusContextMismatch = -17,        /* Context parameter doesn't match the operation */
    zppStatusThresholdBounds = -18,        /* Invalid threshold bounds */
    zppStatusThresholdNegativeLevel = -19, /* Negative value of the level in the threshold operation */
    zppStatusFlipMode = -21,               /* Invalid flip mode */
    zppStatusDelayIndex = -24,             /* Invalid value of the delay line sample index */
    zppStatusIirOrder = -25,               /* Order of an IIR filter is less than or equal to zero */
    zppStatusFirLength = -26,              /* Length of a FIR filter is less than or equal to zero */
    zppStatusRelativeFrequency = -27,      /* Relative frequency value is out of range */
    zppStatusFirMrPhase =
        -28, /* MR FIR sampling phase is negative, or greater than or equal to the sampling factor */
    zppStatusFirMrFactor = -29,       /* MR FIR sampling factor is less than or equal to zero */
    zppStatusSamplePhase = -30,       /* Phase value is out of range: 0 <= phase < factor */
    zppStatusSampleFactor = -31,      /* Sampling factor is less than or equal to zero */
    zppStatusNegativeShift = -32,     /* Shift value is less than zero */
    zppStatusMaskSize = -33,          /* Invalid mask size */
    zppStatusWaveletOffset = -35,     /* Invalid offset value of wavelet filter */
    zppStatusNegativeMagnitude = -38, /* Magnitude value is negative */
    zppStatusKaiserTooHuge = -39,     /* Kaiser window is too huge */
    zppStatusTriangleAsymmetry =
        -40,                      /* Triangle asymmetry is less than -PI, or greater than or equal to PI */
    zppStatusTrianglePhase = -41, /* Triangle phase is negative, or greater than or equal to 2*PI */
    zppStatusTriangleFrequency = -42,  /* Triangle frequency is negative, or greater than or equal to 0.5 */
    zppStatusTriangleMagnitude = -43,  /* Triangle magnitude is less than or equal to zero */
    zppStatusTonePhase = -44,          /* Tone phase is negative, or greater than or equal to 2*PI */
    zppStatusToneFrequency = -45,      /* Tone frequency is negative, or greater than or equal to 0.5 */
    zppStatusToneMagnitude = -46,      /* Tone magnitude is less than or equal to zero */
    zppStatusCpuNotSupported = -9998,  /* The target cpu is not supported */
    zppStatusNotSupportedMode = -9999, /* The requested mode is currently not supported */
    zppStatusNoOperation = 1,          /* No operation has been executed */
    zppStatusMisaligned = 2,           /* Misaligned pointer in operation in which it must be aligned */
    zppStatusSqrtNegative = 3,         /* Negative value(s) of the argument in the function Sqrt */
    zppStatusInvZero = 4,              /* INF result. Zero value was met by InvThresh with zero level */
    zppStatusEvenMedianMask = 5,       /* Even size of the Median Filter mask was replaced by the odd one */
    zppStatusDivByZero = 6,            /* Zero value(s) of the divisor in the function Div */
    zppStatusLnZeroArg = 7,            /* Zero value(s) of the argument in the function Ln */
    zppStatusLnNegativeArg = 8,        /* Negative value(s) of the argument in the function Ln */
    zppStatusNanArg = 9,               /* Not a Number argument value warning */
    zppStatusFloored = 11,             /* All result values are floored */
    zppStatusOverflow = 12,            /* Overflow occurred in the operation */
    zppStatusUnderflow = 17,           /* Underflow occurred in the operation */
    zppStatusSingularity = 18,         /* Singularity occurred in the operation */
    zppStatusDomain = 19,              /* Argument is out of the function domain */
    zppStatusNotVarenCpu = 20,         /* The target cpu is not Genuine Varen */
    zppStatusCpuNotSet = 21,           /* The library for given cpu cannot be set */
    zppStatusNoEffect = 24             /* The function does nothing in the dynamic version of the library */
};

#endif
