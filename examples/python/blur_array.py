"""Blurs a NumPy array: blur_array.py LIBRARY, as in blur_array.py /usr/local/lib/libvblur.so"""
import ctypes as c, sys
import numpy as np

class Picture(c.Structure):
    _fields_ = [("pixels", c.c_void_p), ("format", c.c_int32), ("width", c.c_int32), ("height", c.c_int32),
                ("stride", c.c_ssize_t)]
class Settings(c.Structure):  # only the first fields: the rest has its defaults
    _fields_ = [("struct_size", c.c_uint32), ("channels", c.c_int32), ("size_x", c.c_double), ("size_y", c.c_double)]

library = c.CDLL(sys.argv[1])
library.vblur_last_error.restype = c.c_char_p

def picture(a):  # rows x columns x RGBA, uint8 or int16; rows may lie anywhere, the pixels of a row side by side
    assert a.dtype in (np.uint8, np.int16) and a.shape[2:] == (4,) and a.strides[1:] == (4 * a.itemsize, a.itemsize)
    return Picture(a.ctypes.data, a.dtype == np.int16, a.shape[1], a.shape[0], a.strides[0])
def blur(a, size):
    result = np.empty(a.shape, a.dtype)
    settings = Settings(c.sizeof(Settings), 1, size, size)  # 1: RGBA
    if library.vblur_blur(c.byref(picture(a)), c.byref(picture(result)), c.byref(settings)):
        raise ValueError(library.vblur_last_error().decode())
    return result

edge = np.zeros((64, 64, 4), np.uint8)
edge[:, 32:] = 255
for x in range(20, 44, 4):
    print(f"x = {x}: {blur(edge, 12.0)[32, x, 0]}")
