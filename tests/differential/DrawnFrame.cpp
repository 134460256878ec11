#include "tests/differential/DrawnFrame.h"

#include <bit>
#include <limits>
#include <string>

#include "tests/differential/Rolls.h"

namespace vblur::differential {
namespace {

std::int32_t DrawSide(Rolls& roll) {
  return roll.OneIn(8) ? roll.Whole(1, 3) : roll.OneIn(10) ? roll.Whole(40, 90) : roll.Whole(2, 33);
}

// Rarely 1: a single row has no second field.
std::int32_t DrawHeight(Rolls& roll, host::FieldChoice field) {
  const std::int32_t height = DrawSide(roll);
  return field != host::FieldChoice::Frame && height == 1 && !roll.OneIn(10) ? 2 : height;
}

constexpr std::int32_t Bits(double value) {
  return std::bit_cast<std::int32_t>(static_cast<float>(value));
}

// Below 0 and far above 1.0 as well, up to what no filter carries.
std::int32_t DrawFloat(Rolls& roll, std::int32_t style, std::int32_t x, std::int32_t y) {
  switch (style) {
    case 0: return Bits(roll.Real(0.0, 1.0));
    case 1: return Bits(roll.OneIn(4) ? roll.Real(-2000.0, 2000.0) : roll.Real(-1.0, 3.0));
    case 2: return Bits(roll.Of({-65504.0, -1.0, -0.0, 0.0, 1e-40, 0.5, 1.0, 2.0, 65504.0, 1e30}));
    case 3: return Bits((x * 9 - y * 5) / 256.0);
    default: return Bits(roll.OneIn(9) ? 1.0 : 0.0);
  }
}

std::int32_t DrawComponent(Rolls& roll, std::int32_t depth, std::int32_t style, std::int32_t x, std::int32_t y) {
  if (depth == 32) return DrawFloat(roll, style, x, y);
  const bool eight = depth == 8;
  switch (style) {
    case 0: return eight ? roll.Whole(0, 255) : roll.Whole(0, 16384);
    case 1: return eight ? roll.Whole(0, 255) : roll.Whole(-32768, 32767);
    case 2: return eight ? roll.Of({0, 255}) : roll.Of({-32768, 0, 16384, 32767});
    case 3: return eight ? (x * 9 + y * 5) % 256 : (x * 900 - y * 500) % 32768;
    default: return roll.OneIn(9) ? (eight ? 255 : 16384) : 0;
  }
}

DrawnPicture DrawPicture(Rolls& roll, std::int32_t depth, std::int32_t components, std::int32_t width,
                         std::int32_t height) {
  DrawnPicture picture{width, height, components, {}};
  const std::int32_t style = roll.Whole(0, 4);
  for (std::int32_t y = 0; y < height; ++y) {
    for (std::int32_t x = 0; x < width * components; ++x) {
      picture.values.push_back(DrawComponent(roll, depth, style, x, y));
    }
  }
  return picture;
}

// A third of the values is 0 or full; at 16 bits some are negative, of floats some beyond full or no number.
std::int32_t DrawAmount(Rolls& roll, std::int32_t depth) {
  if (depth == 32) {
    if (roll.OneIn(3)) return Bits(roll.Of({0.0, 1.0}));
    if (roll.OneIn(40)) return Bits(std::numeric_limits<double>::quiet_NaN());
    return Bits(roll.OneIn(6) ? roll.Real(-1.0, 2.0) : roll.Real(0.0, 1.0));
  }
  const std::int32_t top = depth == 8 ? 255 : 32767;
  return roll.OneIn(3) ? roll.Of({0, top}) : roll.Whole(depth == 8 || !roll.OneIn(6) ? 0 : -32768, top);
}

DrawnPicture DrawMask(Rolls& roll, std::int32_t depth, std::int32_t width, std::int32_t height) {
  DrawnPicture mask{width, height, 1, {}};
  for (std::int32_t i = 0; i < width * height; ++i)
    mask.values.push_back(DrawAmount(roll, depth));
  return mask;
}

// Often at (0, 0), sometimes elsewhere.
void DrawPlace(Rolls& roll, host::ImageRecord& record) {
  if (roll.OneIn(2)) record.origin = {roll.Whole(-12, 12), roll.Whole(-12, 12)};
  if (roll.OneIn(6)) record.position = {roll.Real(-9.0, 9.0), roll.Real(-9.0, 9.0)};
  if (roll.OneIn(6)) record.size = {roll.Real(0.5, 90.0), roll.Real(0.5, 90.0)};
}

double DrawNumber(Rolls& roll, const Property& property) {
  const double span = property.maximum - property.minimum;
  switch (roll.Whole(0, 9)) {
    case 0: return property.minimum;
    case 1: return property.maximum;
    case 2: return property.defaultValue;
    case 3: return roll.Real(property.minimum - span, property.minimum);
    case 4: return roll.Real(property.maximum, property.maximum + span);
    case 5: return roll.Whole(static_cast<std::int32_t>(property.minimum), static_cast<std::int32_t>(property.maximum));
    default: return roll.Real(property.minimum, property.maximum);
  }
}

double DrawBlur(Rolls& roll) {
  switch (roll.Whole(0, 9)) {
    case 0: return 0.0;
    case 1: return roll.Of({1e-6, 1e-4, 0.001, 1.5, 3.0, 3.75, 4.5});
    case 2: return roll.Real(-20.0, 0.0);
    case 3: return roll.Real(100.0, 1000.0);
    case 4: return roll.Of({189.0, 190.0, 192.0, 195.0, 300.0, 3000.0, 30000.0});
    case 5: return static_cast<double>(3 * roll.Whole(0, 40));
    default: return roll.Real(0.0, 60.0);
  }
}

double DrawValue(Rolls& roll, const Property& property) {
  return property.id == PropertyId::Blur ? DrawBlur(roll) : DrawNumber(roll, property);
}

bool BelongsToFilter(PropertyId id) {
  using enum PropertyId;
  switch (id) {
    case MixBack:
    case MaskRed:
    case MaskGreen:
    case MaskBlue:
    case MaskAlpha:
    case DisplayCropped:
    case BlankCropped: return false;
    default: return true;
  }
}

void DrawProperties(Rolls& roll, DrawnKinds kinds, host::PropertyStore& store) {
  for (const Property& property : kProperties) {
    if (kinds == DrawnKinds::Filters && !BelongsToFilter(property.id)) continue;
    if (roll.OneIn(3)) continue;
    switch (property.control) {
      case PropertyControl::Number: store.Set(property.guid, DrawValue(roll, property)); break;
      case PropertyControl::List:
        store.Set(property.guid, static_cast<double>(roll.Whole(0, static_cast<std::int32_t>(property.maximum))));
        break;
      case PropertyControl::OnOff:
        // Most frames show the effect.
        store.Set(property.guid, roll.OneIn(4) ? 1.0 - property.defaultValue : property.defaultValue);
        break;
    }
  }
}

// Inside, across and outside the picture.
void DrawRegion(Rolls& roll, const DrawnPicture& output, host::Job& job) {
  if (!roll.OneIn(3)) return;
  host::Region region;
  region.x = roll.Whole(-8, output.width + 4);
  region.y = roll.Whole(-8, output.height + 4);
  region.width = roll.Whole(1, output.width + 6);
  region.height = roll.Whole(1, output.height + 6);
  if (roll.OneIn(12)) region.x = roll.Of({-200, 200});
  job.roi = region;
}

void DrawTimes(Rolls& roll, host::Job& job) {
  job.duration = roll.Of({1.0, 24.0, 24.0, 10.0, 100.0, 0.0});
  const double duration = *job.duration;
  switch (roll.Whole(0, 7)) {
    case 0: job.time = 0.0; break;
    case 1: job.time = duration; break;
    case 2: job.time = duration / 2.0; break;
    case 3: job.time = roll.Real(-duration, 0.0); break;
    case 4: job.time = roll.Real(duration, 2.0 * duration); break;
    default: job.time = roll.Real(0.0, duration); break;
  }
}

void DrawProject(Rolls& roll, const DrawnPicture& output, host::Job& job) {
  if (roll.OneIn(10)) {
    job.projectUnreadable = true;
  } else {
    const std::array<double, 2> user =
        roll.OneIn(2) ? std::array<double, 2>{static_cast<double>(output.width), static_cast<double>(output.height)}
                      : std::array<double, 2>{roll.Real(1.0, 99.0), roll.Real(1.0, 99.0)};
    job.project = host::ProjectSizes{user, user};
    if (roll.OneIn(3)) job.project->world = {roll.Real(1.0, 99.0), roll.Real(1.0, 99.0)};
  }
  if (roll.OneIn(4)) job.proxy = {roll.Of({0.25, 0.5, 1.0, 2.0, 0.3}), roll.Of({0.25, 0.5, 1.0, 2.0, 0.3})};
}

template <class Record>
Record NamedRecord(const char* name, std::int32_t depth) {
  Record record;
  record.file = std::string(name) + (depth == 8 ? ".png" : ".exr");
  return record;
}

struct Sides {
  std::int32_t width;
  std::int32_t height;
};

// The arguments of a call have no order: what is rolled for one is named before it.
Sides DrawSides(Rolls& roll, host::FieldChoice field) {
  const std::int32_t height = DrawHeight(roll, field);
  return {DrawSide(roll), height};
}

// Of the same size as another picture, or of a random one.
DrawnPicture DrawLike(Rolls& roll, const DrawnPicture& other, const host::Job& job) {
  const bool same = !roll.OneIn(3);
  const Sides sides = same ? Sides{other.width, other.height} : DrawSides(roll, job.field);
  return DrawPicture(roll, *job.depth, 4, sides.width, sides.height);
}

// Apart from the rolls of the frame, which then is the same at 8 and 16 bits whether floats are asked for or not.
bool IsOfFloats(std::uint64_t seed, std::uint64_t index, DrawnDepths depths) {
  if (depths != DrawnDepths::All) return depths == DrawnDepths::Floats;
  return Rolls(seed ^ 0xf10a7u, index).OneIn(3);
}

}  // namespace

DrawnFrame DrawFrame(std::uint64_t seed, std::uint64_t index, DrawnKinds kinds, DrawnDepths depths) {
  Rolls roll(seed, index);
  DrawnFrame frame;
  host::Job& job = frame.job;
  const std::int32_t integerDepth = roll.Of({8, 16});
  const std::int32_t depth = IsOfFloats(seed, index, depths) ? 32 : integerDepth;
  job.depth = depth;
  const std::int32_t kind = kinds == DrawnKinds::Filters ? 1 : roll.Of({1, 1, 1, 2, 3, 4, 4, 5, 5, 5, 7});
  job.kind = static_cast<host::EffectKind>(kind);
  job.field = roll.OneIn(3) ? roll.Of({host::FieldChoice::First, host::FieldChoice::Second}) : host::FieldChoice::Frame;

  const Sides output = DrawSides(roll, job.field);
  frame.initial = DrawPicture(roll, depth, 4, output.width, output.height);
  job.output = NamedRecord<host::OutputRecord>("out", depth);
  job.output.width = frame.initial.width;
  job.output.height = frame.initial.height;
  job.output.initial = NamedRecord<host::ImageRecord>("initial", depth).file;
  DrawPlace(roll, job.output);
  // Sometimes a required picture is absent.
  if (kind == 3 || kind == 7 ? roll.OneIn(3) : !roll.OneIn(20)) {
    frame.input = DrawLike(roll, frame.initial, job);
    job.input = NamedRecord<host::ImageRecord>("input", depth);
    if (roll.OneIn(2)) {
      job.input->origin = job.output.origin;
    } else {
      DrawPlace(roll, *job.input);
    }
  }
  if (kind == 5 ? !roll.OneIn(20) : kinds == DrawnKinds::All && roll.OneIn(10)) {
    frame.input2 = DrawLike(roll, frame.input ? *frame.input : frame.initial, job);
    job.input2 = NamedRecord<host::ImageRecord>("input2", depth);
    if (job.input && !roll.OneIn(3)) {
      job.input2->origin = job.input->origin;
    } else {
      DrawPlace(roll, *job.input2);
    }
  }
  if (kind == 4 ? !roll.OneIn(12) : kinds == DrawnKinds::All && roll.OneIn(12)) {
    const std::int32_t height = DrawSide(roll);
    const std::int32_t width = DrawSide(roll);
    frame.mask = DrawMask(roll, depth, width, height);
    job.mask = NamedRecord<host::MaskRecord>("mask", depth);
    if (roll.OneIn(2)) job.mask->offset = {roll.Whole(-9, 9), roll.Whole(-9, 9)};
  }
  DrawRegion(roll, frame.initial, job);
  DrawTimes(roll, job);
  DrawProject(roll, frame.initial, job);
  DrawProperties(roll, kinds, job.properties);
  return frame;
}

DrawnFrame RedrawFrame(const DrawnFrame& frame, std::uint64_t seed, std::uint64_t index) {
  Rolls roll(seed, index);
  DrawnFrame redrawn = frame;
  const std::int32_t depth = *frame.job.depth;
  const auto redraw = [&](DrawnPicture& picture) {
    picture = picture.components == 1 ? DrawMask(roll, depth, picture.width, picture.height)
                                      : DrawPicture(roll, depth, 4, picture.width, picture.height);
  };
  redraw(redrawn.initial);
  for (std::optional<DrawnPicture>* picture : {&redrawn.input, &redrawn.input2, &redrawn.mask}) {
    if (*picture) redraw(**picture);
  }
  for (const Property& property : kProperties) {
    if (property.IsAnimated() && frame.job.properties.Find(property.guid) != nullptr)
      redrawn.job.properties.Set(property.guid, DrawValue(roll, property));
  }
  return redrawn;
}

}  // namespace vblur::differential
