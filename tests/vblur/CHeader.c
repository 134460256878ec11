#include "tests/vblur/CHeader.h"

#include "vblur/blur.h"

size_t sizeOfPictureInC(void) {
  return sizeof(vblur_picture);
}

size_t sizeOfSettingsInC(void) {
  return sizeof(vblur_settings);
}

int32_t blurFromC(void* source, void* result, int32_t width, int32_t height, double size) {
  const vblur_picture from = {source, VBLUR_RGBA_8, width, height, 0};
  const vblur_picture to = {result, VBLUR_RGBA_8, width, height, 0};
  vblur_settings settings;
  vblur_settings_init(&settings, sizeof(settings));
  settings.size_x = size;
  settings.size_y = size;
  return vblur_blur(&from, &to, &settings);
}
