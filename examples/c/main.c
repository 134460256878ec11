// Blurs a picture in memory with the library, from C: black on the left, white on the right.
#include <stdio.h>
#include <vblur/blur.h>

static unsigned char before[64 * 64 * 4];
static unsigned char after[64 * 64 * 4];

int main(void) {
  const vblur_picture source = {before, VBLUR_RGBA_8, 64, 64, 0};
  const vblur_picture result = {after, VBLUR_RGBA_8, 64, 64, 0};
  vblur_settings settings;
  size_t i;
  for (i = 0; i < sizeof(before); ++i)
    before[i] = i / 4 % 64 < 32 ? 0 : 255;

  vblur_settings_init(&settings, sizeof(settings));
  settings.size_x = settings.size_y = 12.0;  // pixels
  settings.edge_x = VBLUR_EDGE_REPEAT;
  if (vblur_blur(&source, &result, &settings) != VBLUR_DONE) {
    fprintf(stderr, "%s\n", vblur_last_error());
    return 1;
  }
  for (i = 20; i < 44; i += 4)
    printf("x = %d: %d\n", (int)i, after[(32 * 64 + i) * 4]);
  return 0;
}
