"""Blurs a NumPy array: blur_array.py LIBRARY, as in blur_array.py /usr/local/lib/libvblur.so"""
import ctypes, sys
import numpy as np

library = ctypes.CDLL(sys.argv[1])
library.vblur_last_error.restype = ctypes.c_char_p
Picture = np.dtype([("pixels", "P"), ("format", "i4"), ("width", "i4"), ("height", "i4"), ("stride", "p")], align=True)
Settings = np.dtype([("struct_size", "u4"), ("channels", "i4"), ("size_x", "f8"), ("size_y", "f8")])  # others: defaults

def picture(a):  # rows x columns x RGBA, uint8 or int16; rows may lie anywhere, the pixels of a row side by side
    assert a.dtype in (np.uint8, np.int16) and a.shape[2:] == (4,) and a.strides[1:] == (4 * a.itemsize, a.itemsize)
    return np.array((a.ctypes.data, a.dtype == np.int16, a.shape[1], a.shape[0], a.strides[0]), Picture)
def blur(a, size):
    result = np.empty(a.shape, a.dtype)
    settings = np.array((Settings.itemsize, 1, size, size), Settings)  # 1: RGBA
    if library.vblur_blur(picture(a).ctypes, picture(result).ctypes, settings.ctypes):
        raise ValueError(library.vblur_last_error().decode())
    return result

edge = np.zeros((64, 64, 4), np.uint8)
edge[:, 32:] = 255
for x in range(20, 44, 4):
    print(f"x = {x}: {blur(edge, 12.0)[32, x, 0]}")
