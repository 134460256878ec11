// What widgets paint with: OpenGL in the current colour and matrix, unless colours are named. The quadric and
// the font are the process's: all of it runs on the thread that owns the OpenGL context.
#pragma once

#include <cstddef>
#include <cstdint>

#include "overlay/HvGeometry.h"
#include "platform/GlFont.h"

namespace vblur {

inline constexpr std::uint16_t kHvDash = 0x0F0F;
inline constexpr std::uint16_t kHvDashComplement = 0xF0F0;

// What is to be smooth, and what BeginSmooth found, for EndSmooth.
struct SmoothState {
  enum Mask : std::uint32_t { kPoints = 1, kLines = 2, kPolygons = 4 };

  explicit SmoothState(std::uint32_t smooth) : mask(smooth) {}

  std::uint32_t mask;
  bool active = false;
  bool blended = false;
  std::int32_t blendSource = 0;
  std::int32_t blendDestination = 0;
  // Smooth modes that were off before, by mask.
  std::uint32_t enabled = 0;
};

// Blending by alpha and the smooth modes of the mask, until EndSmooth; nothing for an empty mask.
void BeginSmooth(SmoothState& state);
void EndSmooth(SmoothState& state);

void SetGlColour(HvColour colour);

void DrawLine(float x0, float y0, float x1, float y1);
// Two passes whose dashes interlock.
void DrawDashedLine(float x0, float y0, float x1, float y1, HvColour colourA, HvColour colourB);
void DrawRectFilled(float x0, float y0, float x1, float y1);
void DrawRectOutline(float x0, float y0, float x1, float y1);
// Circles, discs and arcs of a radius of 0 or less draw nothing.
void DrawCircleOutline(float cx, float cy, float r);
void DrawFilledDisc(float cx, float cy, float r);
// In degrees, anticlockwise from +x.
void DrawArc(float cx, float cy, float r, float from, float to);
void DrawDashedArc(float cx, float cy, float r, float from, float to, HvColour colourA, HvColour colourB);
// A plain circle in the colour that is current lies under the two dashed ones, so that no gap shows the
// picture.
void DrawDashedCircle(float cx, float cy, float r, HvColour colourA, HvColour colourB);
void DrawDot(float cx, float cy, float r, HvColour fill, HvColour outline);
// The tip lies at the origin; `size` is its length and half its width.
void DrawArrowHead(HvPoint direction, HvPoint size, HvColour fill, HvColour outline);
void DrawArrowHeadAt(HvPoint pos, HvPoint direction, HvPoint size, HvColour fill, HvColour outline);

// The first of 96 display lists for the characters from 32 up; 0 without a device or a font.
std::uint32_t MakeOverlayFont(HDC dc);
void DeleteOverlayFont(std::uint32_t base);
// Which lists DrawText uses; 0 for none, and then texts are not drawn.
void SetOverlayFont(std::uint32_t base);
void DrawText(const char* text, std::size_t length, float x, float y);
// A dark text and a bright one over it, up and right of it by 1. Nothing for null.
void DrawShadowText(const char* text, float x, float y);

// Deletes the quadric that circles share. The next circle makes another.
void ReleaseOverlayQuadric();

}  // namespace vblur
