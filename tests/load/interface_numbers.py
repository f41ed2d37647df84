"""The numbers of the public interface, which programs are compiled with: interface_numbers.py HEADERS COMPILER FLAGS...

Fails on a name of an enumeration that has another number than here, and on one that stands only here or only there.
"""
import re
import sys

import object_code

NUMBERS = {  # by the beginning of the names
    "zppStatus": """
        Ok 0  Error -2  NoMemory -4  BadArgument -5  SizeError -6  BoundsError -7  NullPointer -8  AllocationFailed -9
        DivideByZeroError -10  OutOfRange -11  BadDataType -12  ScaleRange -13  BadStep -14  FftOrder -15  FftFlag -16
        ContextMismatch -17  ThresholdBounds -18  ThresholdNegativeLevel -19  FlipMode -21  DelayIndex -24
        IirOrder -25  FirLength -26  RelativeFrequency -27  FirMrPhase -28  FirMrFactor -29  SamplePhase -30
        SampleFactor -31  NegativeShift -32  MaskSize -33  WaveletOffset -35  NegativeMagnitude -38  KaiserTooHuge -39
        TriangleAsymmetry -40  TrianglePhase -41  TriangleFrequency -42  TriangleMagnitude -43  TonePhase -44
        ToneFrequency -45  ToneMagnitude -46  CpuNotSupported -9998  NotSupportedMode -9999  NoOperation 1
        Misaligned 2  SqrtNegative 3  InvZero 4  EvenMedianMask 5  DivByZero 6  LnZeroArg 7  LnNegativeArg 8  NanArg 9
        Floored 11  Overflow 12  Underflow 17  Singularity 18  Domain 19  NotVarenCpu 20  CpuNotSet 21  NoEffect 24""",
    "zppRound": "Zero 0  Near 1",
    "zppCmp": "Less 0  Greater 4",
    "zppCpu": """
        Unknown 0  Family5 1  Family5Mmx 2  Family6 3  Family6Mmx 4  Family6Sse 5  Family15Sse2 6  Family15Sse2Ht 7
        Family15Sse3 8  Family6Sse2 9  Family7 16  Family15WithoutSse2 17""",
}


def main(headers, *compiler):
    expected = {start + name: number for start, words in NUMBERS.items()
                for name, number in re.findall(r"(\w+) (-?\d+)", words)}
    source = object_code.preprocessed(headers, compiler)
    entries = [entry.split("=") for body in re.findall(r"\benum\b[^{;]*{([^}]*)}", source) for entry in body.split(",")]
    found = {name.strip(): "=".join(number).strip() for name, *number in entries}
    faults = [f"{name}: {found.get(name, 'not declared')}, not {expected.get(name, 'known')}"
              for name in sorted(expected.keys() | found.keys()) if found.get(name) != expected.get(name)]
    return object_code.report(faults, f"{len(found)} numbers")


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
