"""The numbers of the public interface, which programs are compiled with: interface_numbers.py HEADERS COMPILER FLAGS...

Fails on a name of an enumeration that has another number than here, and on one that stands only here or only there.
"""
import re
import subprocess
import sys

NUMBERS = """
    zppStatusOk 0  zppStatusError -2  zppStatusNoMemory -4  zppStatusBadArgument -5  zppStatusSizeError -6
    zppStatusBoundsError -7  zppStatusNullPointer -8  zppStatusAllocationFailed -9  zppStatusDivideByZeroError -10
    zppStatusOutOfRange -11  zppStatusBadDataType -12  zppStatusScaleRange -13  zppStatusBadStep -14
    zppStatusFftOrder -15  zppStatusFftFlag -16  zppStatusContextMismatch -17  zppStatusThresholdBounds -18
    zppStatusThresholdNegativeLevel -19  zppStatusFlipMode -21  zppStatusDelayIndex -24  zppStatusIirOrder -25
    zppStatusFirLength -26  zppStatusRelativeFrequency -27  zppStatusFirMrPhase -28  zppStatusFirMrFactor -29
    zppStatusSamplePhase -30  zppStatusSampleFactor -31  zppStatusNegativeShift -32  zppStatusMaskSize -33
    zppStatusWaveletOffset -35  zppStatusNegativeMagnitude -38  zppStatusKaiserTooHuge -39
    zppStatusTriangleAsymmetry -40  zppStatusTrianglePhase -41  zppStatusTriangleFrequency -42
    zppStatusTriangleMagnitude -43  zppStatusTonePhase -44  zppStatusToneFrequency -45  zppStatusToneMagnitude -46
    zppStatusCpuNotSupported -9998  zppStatusNotSupportedMode -9999
    zppStatusNoOperation 1  zppStatusMisaligned 2  zppStatusSqrtNegative 3  zppStatusInvZero 4
    zppStatusEvenMedianMask 5  zppStatusDivByZero 6  zppStatusLnZeroArg 7  zppStatusLnNegativeArg 8
    zppStatusNanArg 9  zppStatusFloored 11  zppStatusOverflow 12  zppStatusUnderflow 17  zppStatusSingularity 18
    zppStatusDomain 19  zppStatusNotVarenCpu 20  zppStatusCpuNotSet 21  zppStatusNoEffect 24
    zppRoundZero 0  zppRoundNear 1
    zppCpuUnknown 0  zppCpuFamily5 1  zppCpuFamily5Mmx 2  zppCpuFamily6 3  zppCpuFamily6Mmx 4  zppCpuFamily6Sse 5
    zppCpuFamily15Sse2 6  zppCpuFamily15Sse2Ht 7  zppCpuFamily15Sse3 8  zppCpuFamily6Sse2 9  zppCpuFamily7 16
    zppCpuFamily15WithoutSse2 17
"""


def declared(headers, compiler):
    """What stands in the enumerations, each name with its number, or with what else stands there."""
    source = subprocess.run([*compiler, "-x", "c", "-E", "-P", f"{headers}/zpp.h"], check=True, stdout=subprocess.PIPE,
                            text=True).stdout
    entries = [entry.split("=") for body in re.findall(r"\benum\b[^{;]*{([^}]*)}", source) for entry in body.split(",")]
    return {name.strip(): "=".join(number).strip() for name, *number in entries}


def main(headers, *compiler):
    words = NUMBERS.split()
    expected, found = dict(zip(words[::2], words[1::2])), declared(headers, compiler)
    faults = [f"{name}: {found.get(name, 'not declared')}, not {expected.get(name, 'known')}"
              for name in sorted(expected.keys() | found.keys()) if found.get(name) != expected.get(name)]
    print(f"{len(found)} numbers", *faults, sep="\n")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
