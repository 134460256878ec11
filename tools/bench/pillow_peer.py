"""Pillow's filters on the same pixels: three boxes, and its Gaussian of equal sigma, which consists of boxes too."""

import math
import time

SIZE = (3840, 2160)


def sigma_of_radius(radius):
    """As bench/Pictures.h derives it."""
    r = math.floor(radius)
    f = radius - r
    squares = r * (r + 1) * (2 * r + 1) / 3 + 2 * f * (r + 1) ** 2
    return math.sqrt(3 * squares / (2 * r + 1 + 2 * f))


def version():
    try:
        import PIL

        return PIL.__version__
    except ImportError:
        return "not installed"


def picture(image_module):
    """Gradients in green, as in the pictures of the other peers."""
    row = bytes(value for x in range(SIZE[0]) for value in (x * 37 & 255, x & 255, 128, 255))
    return image_module.frombytes("RGBA", SIZE, row * SIZE[1])


def measure(radii, repetitions):
    """Cases as Google Benchmark writes them."""
    try:
        from PIL import Image, ImageFilter, ImageStat
    except ImportError:
        return []

    def three_boxes(source, radius):
        for _ in range(3):
            source = source.filter(ImageFilter.BoxBlur(radius))
        return source

    def gaussian(source, radius):
        return source.filter(ImageFilter.GaussianBlur(sigma_of_radius(radius)))

    source = picture(Image)
    mean = ImageStat.Stat(source).mean[1]
    runs = []
    for _ in range(repetitions):
        for radius in radii:
            for peer, function in (("Pillow GaussianBlur", gaussian), ("Pillow 3 x BoxBlur", three_boxes)):
                start = time.perf_counter()
                processor = time.process_time()
                result = function(source, radius)
                seconds = time.perf_counter() - start
                computed = time.process_time() - processor
                name = f"what=peer/peer={peer}/depth=8/radius={radius:.4g}/threads=1/width={SIZE[0]}/height={SIZE[1]}"
                run = {"run_name": name, "run_type": "iteration", "real_time": seconds * 1e3, "time_unit": "ms"}
                run["cpu_time"] = computed * 1e3
                # Edges repeat the first and the last value, which affects far rows at the largest radius.
                inner = result.crop((SIZE[0] // 3, 0, SIZE[0] // 3 + 1280, SIZE[1]))
                if abs(ImageStat.Stat(inner).mean[1] - mean) > 2:
                    run |= {"error_occurred": True, "error_message": "another mean than the source"}
                runs.append(run)
    return runs


if __name__ == "__main__":
    print(version())
    for case in measure([10.0], 1):
        print(case)
