"""Mixes two channels of packed 24-bit samples with libzpp, by ctypes alone: from_python.py path/of/libzpp.so"""
import ctypes as c
import sys


class LibraryVersion(c.Structure):  # ZppLibraryVersion
    _fields_ = [("major", c.c_int32), ("minor", c.c_int32), ("majorBuild", c.c_int32), ("build", c.c_int32),
                ("targetCpu", c.c_char * 4), ("Name", c.c_char_p), ("Version", c.c_char_p), ("BuildDate", c.c_char_p)]


zpp = c.CDLL(sys.argv[1])
zpp.zppGetStatusString.restype = c.c_char_p
zpp.zppsGetLibVersion.restype = c.POINTER(LibraryVersion)


def checked(status):
    if status < 0:
        raise ValueError(zpp.zppGetStatusString(status).decode())


def channel(packed):
    """24-bit samples, as in a recording, as numbers from -1 to below 1."""
    count = len(packed) // 3
    wide, scaled = (c.c_int32 * count)(), (c.c_double * count)()
    checked(zpp.zppsConvert_24s32s(packed, wide, count))
    checked(zpp.zppsConvert_32s64f_Sfs(wide, scaled, count, 23))
    return scaled


version = zpp.zppsGetLibVersion().contents
print(f"libzpp {version.Version.decode()}, column {version.targetCpu.decode()}")

left = channel(bytes.fromhex("000040 0000e0 000010"))
right = channel(bytes.fromhex("000020 000020 000080"))
checked(zpp.zppsAdd_64f_I(left, right, len(right)))
print(*right)  # 0.75 0.0 -0.875

try:
    checked(zpp.zppsAdd_64f_I(None, right, len(right)))
except ValueError as error:
    print(error)  # Null pointer error
