// Drawing routines of the widgets. They use the current OpenGL matrix, and the current colour unless colours are
// passed. Quadric and font are shared by the process: call only on the thread that owns the OpenGL context.
#pragma once

#include <cstddef>
#include <cstdint>

#include "overlay/HvGeometry.h"
#include "platform/GlFont.h"

namespace vblur {

inline constexpr std::uint16_t kHvDash = 0x0F0F;
inline constexpr std::uint16_t kHvDashComplement = 0xF0F0;

// What to smooth, and the state that BeginSmooth saves for EndSmooth.
struct SmoothState {
  enum Mask : std::uint32_t { kPoints = 1, kLines = 2, kPolygons = 4 };

  explicit SmoothState(std::uint32_t smooth) : mask(smooth) {}

  std::uint32_t mask;
  bool active = false;
  bool blended = false;
  std::int32_t blendSource = 0;
  std::int32_t blendDestination = 0;
  // Smooth modes that BeginSmooth enabled.
  std::uint32_t enabled = 0;
};

// Enables alpha blending and the smooth modes of the mask until EndSmooth. An empty mask does nothing.
void BeginSmooth(SmoothState& state);
void EndSmooth(SmoothState& state);

void SetGlColour(HvColour colour);

void DrawLine(float x0, float y0, float x1, float y1);
// Two passes with interlocking dashes.
void DrawDashedLine(float x0, float y0, float x1, float y1, HvColour colourA, HvColour colourB);
void DrawRectFilled(float x0, float y0, float x1, float y1);
void DrawRectOutline(float x0, float y0, float x1, float y1);
// Circles, discs and arcs of a radius of 0 or less draw nothing.
void DrawCircleOutline(float cx, float cy, float r);
void DrawFilledDisc(float cx, float cy, float r);
// In degrees, anticlockwise from +x.
void DrawArc(float cx, float cy, float r, float from, float to);
void DrawDashedArc(float cx, float cy, float r, float from, float to, HvColour colourA, HvColour colourB);
// Draws a plain circle in the current colour and stipple first, then the two dashed ones.
void DrawDashedCircle(float cx, float cy, float r, HvColour colourA, HvColour colourB);
void DrawDot(float cx, float cy, float r, HvColour fill, HvColour outline);
// The tip lies at the origin; `size` is its length and half its width.
void DrawArrowHead(HvPoint direction, HvPoint size, HvColour fill, HvColour outline);
void DrawArrowHeadAt(HvPoint pos, HvPoint direction, HvPoint size, HvColour fill, HvColour outline);

// The first of 96 display lists for the characters from 32 up; 0 without a device or a font.
std::uint32_t MakeOverlayFont(HDC dc);
void DeleteOverlayFont(std::uint32_t base);
// The display lists for DrawText; 0 for none: DrawText then draws nothing.
void SetOverlayFont(std::uint32_t base);
void DrawText(const char* text, std::size_t length, float x, float y);
// Dark text, and the same in the tip colour 1 up and right of it. Null draws nothing.
void DrawShadowText(const char* text, float x, float y);

// Deletes the shared quadric; the next circle creates it again.
void ReleaseOverlayQuadric();

}  // namespace vblur
