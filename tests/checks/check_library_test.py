#!/usr/bin/env python3
"""The check of Windows libraries sees what it looks for."""
import pathlib
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "tools" / "windows"))
import check_library  # noqa: E402

HEADERS = """
\tDLL Name: KERNEL32.dll
\tDLL Name: vblur_sdk_effects.dll

[Ordinal/Name Pointer] Table
\t[   0] DllCanUnloadNow
\t[   1] DllGetClassObject

PE File Base Relocations
"""


def spills(*instructions):
    lines = ["0000000180001000 <function>:"]
    return [found for _, found in check_library.aligned_spills(lines + [f"   18000:\t{text}" for text in instructions])]


class CheckLibrary(unittest.TestCase):
    def test_reads_exports_and_imports(self):
        self.assertEqual(check_library.exports_of(HEADERS), ["DllCanUnloadNow", "DllGetClassObject"])
        self.assertEqual(check_library.imports_of(HEADERS), ["kernel32", "vblur_sdk_effects"])

    def test_finds_aligned_spills_of_wide_vectors(self):
        for text in ("vmovaps %ymm6,0x20(%rsp)", "vmovdqa 0x40(%rsp),%ymm1", "vmovdqa64 %zmm16,(%rsp)",
                     "vmovapd %zmm3,-0x40(%rbp)", "vmovdqa %ymm1,(%rax)", "vmovdqa32 %ymm2,0x10(%rsp,%rax,8)"):
            self.assertEqual(spills(text), [text])

    def test_lets_pass_what_is_safe(self):
        self.assertEqual(spills("vmovdqu %ymm6,0x20(%rsp)", "movaps %xmm6,0x20(%rsp)", "vmovdqa 0x10(%rip),%ymm1",
                                "vmovdqa %ymm1,%ymm2", "vmovntdq %zmm5,0x0(%rbp)"), [])

    def test_a_function_may_align_its_stack(self):
        self.assertEqual(spills("and $0xffffffffffffffe0,%rsp", "vmovaps %ymm6,0x20(%rsp)"), [])
        self.assertEqual(spills("and $0xfffffffffffffff0,%rsp", "vmovaps %ymm6,0x20(%rsp)"),
                         ["vmovaps %ymm6,0x20(%rsp)"])


if __name__ == "__main__":
    unittest.main()
