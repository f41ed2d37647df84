"""What each ISA build may use, as lists of mnemonics in the spelling of objdump. What is not listed is refused."""
import re
from typing import NamedTuple


def pattern(*groups):
    """One expression from groups of alternatives separated by blanks."""
    return "|".join("|".join(group.split()) for group in groups)


CONDITION = "(?:n?[abceolgpsz]|n?[abgl]e|p[eo])"

# Of an i586. The operand suffix stands where no register tells the size.
I586 = pattern(
    "(?:mov|add|adc|sub|sbb|and|or|xor|cmp|test|neg|not|inc|dec|i?mul|i?div|push|pop|lea|xchg|call|jmp|ret|leave)[bwlq]?",
    "(?:sh[lr]|sa[lr]|ro[lr]|rc[lr]|shld|shrd|bt|bt[src]|bs[fr]|bswap|xadd|cmpxchg)[bwlq]?",
    "(?:movs|stos|lods|scas|cmps)[bwlq]? movs[bw][wlq] movz[bw][wlq] movabs movslq cltd cltq cqto cwtl cwtd",
    f"set{CONDITION} j{CONDITION} je?cxz nop cld std sahf lahf pushf popf int3 hlt cpuid rdtsc cmpxchg8b")

# Of the x87 unit before the P6.
X87 = pattern(
    "f(?:i?ld|i?st|i?stp|xch|bld|bstp)(?:[lst]|ll)?",
    "f(?:add|sub|subr|mul|div|divr)p?[ls]? fi(?:add|sub|subr|mul|div|divr|com|comp)[ls]?",
    "f(?:com|comp|ucom|ucomp)[ls]? fcompp fucompp ftst fxam fabs fchs fsqrt fscale fprem1? frndint fxtract",
    "f2xm1 fyl2xp? fyl2xp1 fptan fpatan fsin fcos fsincos fld(?:z|1|pi|l2e|l2t|lg2|ln2)",
    "fnstcw fldcw fnstsw fnclex fninit fnstenv fldenv fnsave frstor ffree fincstp fdecstp fnop fwait")

P6 = pattern(f"cmov{CONDITION}[wlq]? fcmov(?:n?[beu]|n?be) fu?comip? nop[wl] ud2")

SSE = pattern(
    "mov(?:[au]ps|[hl]ps|hlps|lhps|ss|mskps|ntps)",
    "(?:add|sub|mul|div|sqrt|rcp|rsqrt|min|max|cmp(?:n?eq|n?l[te]|(?:un)?ord)?)[ps]s u?comiss",
    "(?:andn?|or|xor|shuf|unpck[hl])ps cvtsi2ss[lq]? cvtt?ss2si[lq]?",
    "ldmxcsr stmxcsr")
PREFETCH = pattern("prefetch(?:nta|t[012]) sfence")

# On vectors; with a v in front they are AVX and AVX2 too.
SSE2_VECTOR = pattern(
    "mov(?:[au]pd|[hl]pd|sd|mskpd|ntpd|ntdq|dq[au]|[dq])",
    "(?:add|sub|mul|div|sqrt|min|max|cmp(?:n?eq|n?l[te]|(?:un)?ord)?)[ps]d u?comisd (?:andn?|or|xor|shuf|unpck[hl])pd",
    "cvt(?:dq2p[ds]|pd2dq|pd2ps|ps2dq|ps2pd|tpd2dq|tps2dq|sd2ss|ss2sd) cvtsi2sd[lq]? cvtt?sd2si[lq]?",
    "p(?:add|sub)(?:[bwdq]|u?s[bw]) p(?:andn?|or|xor) pavg[bw] pcmp(?:eq|gt)[bwd] pmaddwd p(?:max|min)(?:sw|ub) pmovmskb",
    "pmul(?:udq|hu?w|lw) psadbw pshuf(?:d|[hl]w) ps(?:ll|rl)(?:[wdq]|dq) psra[wd] punpck[hl](?:bw|wd|dq|qdq)",
    "pack(?:ss(?:dw|wb)|uswb) pextrw pinsrw")
PLAIN_SSE2 = pattern("movnti [lm]fence pause clflush")
SSE2 = f"{SSE2_VECTOR}|{PLAIN_SSE2}"

AVX2_ONLY = pattern(
    "(?:addsub|hadd|hsub)p[sd] mov(?:ddup|s[hl]dup|ntdqa) lddqu",  # SSE3
    "pabs[bwd] palignr ph(?:add|sub)(?:w|d|sw) pmaddubsw pmulhrsw pshufb psign[bwd]",  # SSSE3
    "blendv?p[sd] dpp[sd] extractps insertps mpsadbw packusdw pblendvb pblendw pcmpeqq pextr[bdq] phminposuw",  # SSE4.1
    "pinsr[bdq] p(?:max|min)(?:s[bd]|u[wd]) pmov[sz]x(?:b[wdq]|w[dq]|dq) pmuldq pmulld ptest round[ps][sd]",
    "pcmp[ei]str[im] pcmpgtq",  # SSE4.2
    "broadcast(?:s[sd]|[fi]128) cmp\\w*[ps][sd] (?:extract|insert|perm2)[fi]128 maskmovp[sd] permil(?:2)?p[sd] testp[sd]",
    "zeroupper zeroall pblendd pbroadcast[bwdq] perm(?:d|q|ps|pd) pmaskmov[dq] ps[lr]lv[dq] psravd p?gather[dq](?:[dqsp]|p[sd])",
    "fn?m(?:add|sub)(?:132|213|231)[ps][sd] fm(?:addsub|subadd)(?:132|213|231)p[sd] cvtph2ps cvtps2ph")  # FMA, F16C
AVX = f"v(?:{SSE}|{SSE2_VECTOR}|{AVX2_ONLY})[xy]?"
BMI2 = pattern("mulx pdep pext rorx sarx sh[lr]x bzhi popcnt[wlq]?")  # popcnt comes with SSE4.2

# F, DQ, BW and VL of AVX-512.
MASKS = pattern("k(?:add|andn?|mov|not|x?n?or|ortest|shift[lr]|test)[bwdq] kunpck(?:bw|wd|dq)")
AVX512_ONLY = pattern(
    "movdqa(?:32|64) movdqu(?:8|16|32|64) p(?:andn?|or|xor)[dq] pternlog[dq] ptestn?m[bwdq] p?blendm(?:[bwdq]|p[sd])",
    "pcmp(?:n?eq|n?l[te])?u?[bwdq] cmp\\w*[ps][sd] align[dq] broadcast[fi](?:32x[248]|64x[24]) compressp[sd] expandp[sd]",
    "pcompress[dq] pexpand[dq] cvtt?p[sd]2u?(?:dq|qq) cvtt?s[sd]2usi[lq]? cvtu?(?:dq|qq)2p[sd] cvtusi2s[sd][lq]?",
    "(?:extract|insert)[fi](?:32x[48]|64x[24]) fixupimm[ps][sd] fpclass[ps][sd] getexp[ps][sd] getmant[ps][sd] pabsq",
    "p(?:max|min)[su]q perm[it]2(?:[wdq]|p[sd]) permw pmov[bwdq]2m pmovm2[bwdq] pmov(?:u?s)?(?:q[bwd]|d[bw]|wb) pmullq",
    "pro[lr]v?[dq] psrav?q ps(?:ll|rl|ra)vw psrlq psllq p?scatter[dq](?:[dq]|p[sd]) range[ps][sd] rcp14[ps][sd] reduce[ps][sd]",
    "rndscale[ps][sd] rsqrt14[ps][sd] scalef[ps][sd] shuf[fi](?:32x4|64x2) dbpsadbw")
AVX512 = f"{MASKS}|v(?:{AVX512_ONLY})[xyz]?|{AVX}z?"

# The compiler writes tzcnt as `rep bsf`, which an older processor runs as bsf, where an operand of zero has no
# result anyway.
REP_BSF = "tzcnt"

# What an indirect jump of 64-bit Linux may land on, a long nop for processors that do not look.
LANDING = "endbr64"

MM, XMM, YMM, ZMM, K = r"%mm\d", r"%xmm\d", r"%ymm\d", r"%zmm\d", r"%k\d"
HIGH = r"%[xy]mm(?:1[6-9]|[23]\d)"


class Table(NamedTuple):
    mnemonics: "re.Pattern"
    registers: "re.Pattern"  # refused
    evidence: "re.Pattern"
    evex: bool = False
    named: dict = {}  # function -> mnemonics that it alone may use

    def allows(self, it, function):
        if it.mnemonic == "nop" and it.operands and not self.mnemonics.fullmatch("nopl"):
            return False  # longer than a byte: of the P6
        if it.mnemonic == "pextrw" and it.operands.endswith(")"):
            return False  # to memory: of SSE4.1
        if self.registers.search(it.operands) or (is_evex(it) and not self.evex):
            return False
        return bool(self.mnemonics.fullmatch(it.mnemonic)) or any(re.search(name, function) and re.fullmatch(only, it.mnemonic) for name, only in self.named.items())


def is_evex(it):
    return it.mnemonic[0] == "v" and it.code[0] == 0x62


def table(evidence, refused, *mnemonics, **more):
    return Table(re.compile("|".join(mnemonics)), re.compile("|".join(refused)), re.compile(evidence), **more)


# The frame asks before it uses what an i586 may lack, and does so in functions of their own.
FRAME = {
    "updateMxcsr|zppSetFlushToZero|zppSetDenormAreZeros": "stmxcsr|ldmxcsr",
    "readMxcsrMask": "fxsave",
    "readExtendedControl": "xgetbv",
}

BEYOND_XMM = [MM, YMM, ZMM, K]
TO_SSE = [I586, X87, P6, SSE, PREFETCH]
UNENCODED = [LANDING, I586, X87, P6, PREFETCH, PLAIN_SSE2, BMI2, REP_BSF]  # what has no VEX form; legacy SSE would be slow
TABLES = {
    "x87": table(r"^fld|^fmul", [MM, XMM, YMM, ZMM, K], I586, X87),
    "sse": table(rf"{XMM}|^cmov|^fu?comi", BEYOND_XMM, *TO_SSE),
    "sse2": table(r"^(?:add|mul)pd|^padd", BEYOND_XMM, *TO_SSE, SSE2, REP_BSF, LANDING),
    "avx2": table(YMM, [MM, ZMM, K, HIGH], *UNENCODED, AVX),
    "avx512": table(ZMM, [MM], *UNENCODED, AVX512, evex=True),
    "frame-i386": table("^cpuid", [MM, XMM, YMM, ZMM, K], I586, X87, named=FRAME),
    "frame-x86_64": table("^cpuid", BEYOND_XMM, *TO_SSE, SSE2, LANDING, named=FRAME),
}
