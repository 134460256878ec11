"""exports.py PREFIX: every library below PREFIX exports its entry points, or names of this project only."""
import pathlib
import subprocess
import sys

# Those that are looked up by name. The others are linked, and export classes of the project's namespace.
ENTRY_POINTS = {
    "libvblur.so": {"vblur_blur", "vblur_last_error", "vblur_set_threads", "vblur_settings_init", "vblur_sharpen",
                    "vblur_version"},
    "V_Blur.so": {"DllCanUnloadNow", "DllGetClassObject", "DllRegisterServer", "DllUnregisterServer"},
    "libvblur_host_gl.so": {"VBlurMakeOffScreenSurface", "VBlurModuleVersion"},
    "libvblur_host_light_jpeg.so": {"VBlurLightPictures", "VBlurModuleVersion"},
    "libvblur_host_light_openexr.so": {"VBlurLightPictures", "VBlurModuleVersion"},
    "libvblur_host_light_dpx.so": {"VBlurLightPictures", "VBlurModuleVersion"},
    "libvblur_host_light_png.so": {"VBlurLightPictures", "VBlurModuleVersion"},
    "libvblur_host_light_tiff.so": {"VBlurLightPictures", "VBlurModuleVersion"},
    "libvblur_host_pictures.so": {"VBlurPictureLibrary", "VBlurDrawingLibrary", "VBlurModuleVersion"},
}
LINKED = {"libvblur.so", "libvblur_host.so", "libvblur_sdk_effects.so",
          "libvblur_sdk_system.so", "libvblur_sdk_viewer.so"}
OWN = ("vblur::", "typeinfo for vblur::", "typeinfo name for vblur::", "vtable for vblur::", "VTT for vblur::",
       "guard variable for vblur::", "non-virtual thunk to vblur::", "virtual thunk to vblur::")


def exported(library):
    listed = subprocess.run(["nm", "-D", "--defined-only", "-C", library], check=True, capture_output=True, text=True)
    return {line.split(maxsplit=2)[2] for line in listed.stdout.splitlines() if len(line.split(maxsplit=2)) == 3}


def soname(library):
    listed = subprocess.run(["objdump", "-p", library], check=True, capture_output=True, text=True)
    return next((line.split()[1] for line in listed.stdout.splitlines() if "SONAME" in line), "")


def main():
    wrong = []
    libraries = {path.name: path for path in pathlib.Path(sys.argv[1]).rglob("*.so")}
    for name in sorted(set(ENTRY_POINTS) | LINKED):
        if name not in libraries:
            wrong.append(f"{name}: not installed")
            continue
        names = exported(libraries[name])
        if name in ENTRY_POINTS and names != ENTRY_POINTS[name]:
            wrong.append(f"{name}: exports {sorted(names ^ ENTRY_POINTS[name])[:5]} more or less than its entry points")
        if name not in ENTRY_POINTS:
            wrong += [f"{name}: exports {other}" for other in sorted(names) if not other.startswith(OWN)][:5]
        if name in LINKED and not soname(libraries[name]).startswith(name + "."):
            wrong.append(f"{name}: has no version: {soname(libraries[name])!r}")
    for name in sorted(set(libraries) - set(ENTRY_POINTS) - LINKED):
        wrong.append(f"{name}: a library that no list of exports knows")
    print("\n".join(wrong))
    return 1 if wrong else 0


sys.exit(main())
