// vblur/blur.h as a C compiler sees it.
#pragma once

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

size_t sizeOfPictureInC(void);
size_t sizeOfSettingsInC(void);
// Blurs RGBA pictures of 8 bits, without gaps, by a call from C.
int32_t blurFromC(void* source, void* result, int32_t width, int32_t height, double size);

#ifdef __cplusplus
}
#endif
