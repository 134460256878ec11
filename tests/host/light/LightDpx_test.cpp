// Plain DPX files by the light and by the full picture library.
#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <random>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "host/formats/DpxHeader.h"
#include "tests/host/light/LightPicturesTest.h"

namespace vblur::host {
namespace {

struct DpxFileKind {
  int channels = 3;
  int bits = 10;
  bool isFilled = true;
  bool isBig = false;
  std::uint32_t begin = 8192;
  int width = 13;
  int height = 7;
};

// Numbers of a header the other way round, as big-endian files have them.
void Turn(std::string& bytes) {
  const auto turn = [&](std::size_t from, std::size_t count, std::size_t size) {
    for (std::size_t at = from; at < from + count * size; at += size)
      std::reverse(bytes.begin() + static_cast<std::ptrdiff_t>(at),
                   bytes.begin() + static_cast<std::ptrdiff_t>(at + size));
  };
  turn(0, 2, 4);
  turn(16, 5, 4);
  turn(660, 1, 4);
  turn(768, 2, 2);
  turn(772, 2, 4);
  for (std::size_t element = 780; element < 780 + 8 * 72; element += 72) {
    turn(element, 5, 4);
    turn(element + 24, 2, 2);
    turn(element + 28, 3, 4);
  }
  turn(1408, 6, 4);
  turn(1620, 4, 2);
  turn(1628, 4, 4);
  turn(1712, 5, 4);
  turn(1920, 2, 4);
  turn(1932, 10, 4);
}

std::size_t RowBytes(const DpxFileKind& kind) {
  const auto samples = static_cast<std::size_t>(kind.width * kind.channels);
  const auto bits = static_cast<std::size_t>(kind.bits);
  if (bits % 8 == 0) return samples * bits / 8;
  if (!kind.isFilled) return (samples * bits + 31) / 32 * 4;
  return bits == 10 ? (samples + 2) / 3 * 4 : samples * 2;
}

// The full library cannot read them.
bool IsLightAlone(const DpxFileKind& kind) {
  return kind.channels == 1 && kind.bits == 10 && kind.isFilled && kind.width % 3 != 0;
}

using MoreFields = std::function<void(DpxHeader&)>;

class LightDpx : public LightPicturesTest {
 protected:
  std::filesystem::path MakeDpx(const DpxFileKind& kind, const MoreFields& more = {}) const {
    DpxHeader header(kind.begin);
    header.SetWhole(dpx::kWidth, static_cast<std::uint32_t>(kind.width));
    header.SetWhole(dpx::kHeight, static_cast<std::uint32_t>(kind.height));
    header.SetByte(dpx::kDescriptor, kind.channels == 1 ? 6 : kind.channels == 3 ? 50 : 51);
    header.SetByte(dpx::kBits, static_cast<std::uint32_t>(kind.bits));
    header.SetHalf(dpx::kPacking, kind.isFilled ? 1 : 0);
    const std::size_t pixels = RowBytes(kind) * static_cast<std::size_t>(kind.height);
    header.SetWhole(dpx::kFileBytes, kind.begin + static_cast<std::uint32_t>(pixels));
    if (more) more(header);
    std::string bytes = header.Bytes();
    if (kind.isBig) Turn(bytes);
    bytes.resize(kind.begin);
    std::mt19937 random(3);
    for (std::size_t i = 0; i < pixels; ++i)
      bytes += static_cast<char>(random());
    return Write(bytes, "in.dpx");
  }

  using LightPicturesTest::ExpectSame;
  void ExpectSame(const std::filesystem::path& path) const { ExpectSame(path, "out.dpx"); }
};

TEST_F(LightDpx, ReadAndWriteEveryTypeAndLayout) {
  for (const int channels : {1, 3, 4}) {
    for (const int bits : {8, 10, 12, 16}) {
      for (const bool isFilled : {false, true}) {
        for (const bool isBig : {false, true}) {
          SCOPED_TRACE(std::to_string(channels) + " of " + std::to_string(bits) + (isFilled ? " filled" : " packed") +
                       (isBig ? " big" : " little"));
          DpxFileKind kind{channels, bits, isFilled, isBig};
          if (IsLightAlone(kind)) kind.width = 12;
          ExpectSame(MakeDpx(kind));
        }
      }
    }
  }
}

// Every place of a sample in its word, and of the last word of a row.
TEST_F(LightDpx, ReadAndWriteEveryWidth) {
  for (int width = 1; width <= 17; ++width) {
    for (const int channels : {1, 3, 4}) {
      for (const int bits : {8, 10, 12, 16}) {
        for (const bool isFilled : {false, true}) {
          SCOPED_TRACE(std::to_string(width) + " x " + std::to_string(channels) + " of " + std::to_string(bits));
          DpxFileKind kind{channels, bits, isFilled, width % 2 == 0};
          kind.width = width;
          const auto path = MakeDpx(kind);
          const auto light = Read(Light, path, 16);
          if (IsLightAlone(kind)) {
            EXPECT_NE(FailureOf(Full, path).find("were expected to fill their last word"), std::string::npos);
            continue;
          }
          const auto full = Read(Full, path, 16);
          EXPECT_EQ(light->Pixels(), full->Pixels());
          EXPECT_EQ(Seen(Light, *light, "out.dpx"), Seen(Full, *full, "out.dpx"));
        }
      }
    }
  }
}

// By hand: three samples from the upper bits of a word down, and for one channel from the lower ones up.
TEST_F(LightDpx, TakesSamplesFromTheirPlaces) {
  const auto first = [&](DpxFileKind kind, const std::string& pixels) {
    kind.width = kind.height = 1;
    auto path = MakeDpx(kind);
    std::string bytes = BytesOf(path);
    bytes.replace(kind.begin, pixels.size(), pixels);
    path = Write(bytes, "in.dpx");
    std::vector<int> values;
    for (const PictureLibraries library : {Light, Full}) {
      if (library == Full && IsLightAlone(kind)) continue;
      const auto read = Read(library, path, 16);
      const auto* components = reinterpret_cast<const std::int16_t*>(read->image.Row(0));
      for (int c = 0; c < kind.channels; ++c)
        values.push_back(components[c]);
    }
    return values;
  };
  using Values = std::vector<int>;
  // 1023 << 22 | 512 << 12 | 1 << 2, of 16384.
  EXPECT_EQ(first({3, 10, true, true}, std::string("\xff\xe0\x00\x04", 4)), (Values{16384, 8200, 16, 16384, 8200, 16}));
  const std::string little("\x04\x00\xe0\xff", 4);
  EXPECT_EQ(first({3, 10, true, false}, little), (Values{16384, 8200, 16, 16384, 8200, 16}));
  EXPECT_EQ(first({1, 10, true, false}, little), (Values{16}));
  // The lower bits of a word without a gap.
  EXPECT_EQ(first({1, 10, false, false}, std::string("\xff\x03\x00\x00", 4)), (Values{16384, 16384}));
  EXPECT_EQ(first({1, 12, false, false}, std::string("\xff\x0f\x00\x00", 4)), (Values{16384, 16384}));
  // The upper 12 of 16 bits: white is white.
  EXPECT_EQ(first({1, 12, true, true}, "\xff\xf0"), (Values{16384, 16384}));
  EXPECT_EQ(first({4, 10, true, true}, std::string("\xff\xe0\x00\x04\xff\xc0\x00\x00", 8)),
            (Values{16384, 8200, 16, 16384, 16384, 8200, 16, 16384}));
}

// Several stretches for each thread, with values beyond white in the first and the last.
TEST_F(LightDpx, ReadAndWriteLargePicturesByAnyNumberOfThreads) {
  DpxFileKind kind{4, 16};
  kind.width = 701;
  kind.height = 1603;
  const auto read = Read(Light, MakeDpx(kind), 16);
  EXPECT_EQ(read->Pixels(), Read(Full, folder_.path() / "in.dpx", 16)->Pixels());
  for (const std::int32_t row : {0, 1, 1602})
    reinterpret_cast<std::int16_t*>(read->image.Row(row))[7] = static_cast<std::int16_t>(20000 + row);
  const std::string full = Seen(Full, *read, "full.dpx");
  EXPECT_NE(full.find("3 components from 1.2207 to 1.31848 clipped to 0 to 1"), std::string::npos);
  UsePictures(Light);
  for (const std::int32_t threads : {1, 2, 5}) {
    const auto out = folder_.path() / "light.dpx";
    WrittenPicture written = PictureWriter().WriteBeside(out, read->image, read->facts.metadata.get(),
                                                         {.overwrite = true, .sync = false, .threads = threads});
    ASSERT_FALSE(written.Notes().empty());
    EXPECT_NE(written.Notes().back().find("3 components from 1.2207 to 1.31848 clipped to 0 to 1"), std::string::npos);
    written.Commit();
    EXPECT_TRUE(BytesOf(out).substr(8192) == BytesOf(folder_.path() / "full.dpx").substr(8192)) << threads;
  }
}

void PutAllFields(DpxHeader& header) {
  int number = 1;
  for (const DpxField& field : DpxFields()) {
    if (field.kind == DpxKind::Text && field.name != "dpx:Version")
      header.SetText(field.place, field.bytes, "text " + std::to_string(number));
    if (field.kind == DpxKind::Time) header.SetText(field.place, field.bytes, "2026:11:23:12:34:56Z");
    if (field.kind == DpxKind::Float) header.SetFloat(field.place, 0.25f * static_cast<float>(number));
    const bool isPadding = field.place >= dpx::kLinePadding && field.place <= dpx::kLinePadding + 4;
    if (field.kind == DpxKind::Whole && !isPadding)
      header.SetWhole(field.place, 4000000000u + static_cast<unsigned>(number));
    if (field.kind == DpxKind::Byte) header.SetByte(field.place, static_cast<unsigned>(number));
    ++number;
  }
  header.SetWhole(dpx::kPixelAspect, 4);
  header.SetWhole(dpx::kPixelAspect + 4, 3);
}

TEST_F(LightDpx, ReadAndWriteWhatStandsInTheHeader) {
  std::vector<MoreFields> cases{PutAllFields,
                                [](DpxHeader& header) { header.SetText(136, 24, "2026:11:23:12:34:56+0100"); },
                                [](DpxHeader& header) { header.SetWhole(dpx::kPixelAspect + 4, 0); },
                                [](DpxHeader& header) {
                                  header.SetWhole(dpx::kPixelAspect, dpx::kUndefined);
                                  header.SetWhole(dpx::kPixelAspect + 4, dpx::kUndefined);
                                },
                                [](DpxHeader& header) { header.SetWhole(dpx::kOffsetX, dpx::kUndefined); },
                                [](DpxHeader& header) { header.SetWhole(dpx::kOriginalWidth, 13); },
                                [](DpxHeader& header) { header.SetWhole(dpx::kUserBytes, dpx::kUndefined); },
                                [](DpxHeader& header) { header.SetWhole(dpx::kUserBytes, 100); },
                                [](DpxHeader& header) { header.SetWhole(dpx::kUserBytes, 5); },
                                [](DpxHeader& header) { header.SetText(160, 100, "\xff\xff"); },
                                [](DpxHeader& header) { header.SetFloat(dpx::kGamma, 2.2f); }};
  for (const std::uint32_t code : {0x01020304u, 0x23595929u, 0x23595969u, 0xc1a2b3d4u}) {
    cases.emplace_back([=](DpxHeader& header) {
      header.SetWhole(dpx::kTimeCode, code);
      header.SetWhole(dpx::kUserBits, 0x12345678);
    });
  }
  for (const std::size_t place : {dpx::kTransfer, dpx::kColorimetric}) {
    for (unsigned number = 0; number <= 14; ++number)
      cases.emplace_back([=](DpxHeader& header) { header.SetByte(place, number); });
  }
  for (const unsigned number :
       {0u, 1u, 4u, 5u, 50u, 51u, 52u, 100u, 101u, 150u, 151u, 152u, 153u, 200u, 201u, 202u, 203u, 204u, 255u})
    cases.emplace_back([=](DpxHeader& header) { header.SetByte(dpx::kSignal, number); });
  for (const char* format : {"", "2kvv x", "4kvv", "2k3perf", "4k3perf", "Academy", "VistaVision", "8kimax"}) {
    cases.emplace_back([=](DpxHeader& header) {
      header.SetText(dpx::kFilmHeader, 17, "0213071234567890");
      header.SetText(1680, 32, format);
    });
  }
  for (std::size_t i = 0; i < cases.size(); ++i) {
    for (const bool isBig : {false, true}) {
      SCOPED_TRACE(std::to_string(i) + (isBig ? " big" : " little"));
      DpxFileKind kind;
      kind.isBig = isBig;
      ExpectSame(MakeDpx(kind, cases[i]));
    }
  }
}

// All of a source's header but how its pixels are stored.
TEST_F(LightDpx, OutputsKeepTheHeader) {
  const auto path = MakeDpx({3, 10, true, true}, [](DpxHeader& header) {
    PutAllFields(header);
    header.SetText(dpx::kFilmHeader, 17, "0213071234567890");
    header.SetByte(dpx::kTransfer, 13);
    header.SetByte(dpx::kColorimetric, 9);
    header.SetByte(dpx::kSignal, 153);
    header.SetFloat(dpx::kGamma, 2.5f);
    header.SetFloat(1416, 3.5f);
    header.SetHalf(1620, 4);
    header.SetWhole(dpx::kUserBytes, 300);
  });
  const auto source = DpxHeader::Of(path);
  for (const PictureLibraries library : {Light, Full}) {
    const auto read = Read(library, path, 16);
    Written(library, *read, "out.dpx");
    const auto written = DpxHeader::Of(folder_.path() / "out.dpx");
    ASSERT_TRUE(source && written);
    for (const DpxField& field : DpxFields()) {
      if (field.name == "dpx:Packing" || field.name == "dpx:Version") continue;
      EXPECT_EQ(written->Field(field), source->Field(field)) << field.name;
    }
    for (const std::size_t place : {std::size_t{1416}, std::size_t{1620}, dpx::kGamma, dpx::kUserBytes})
      EXPECT_EQ(written->Whole(place), source->Whole(place)) << place;
    EXPECT_EQ(BytesOf(folder_.path() / "out.dpx").substr(2048, 300), BytesOf(path).substr(2048, 300));
    EXPECT_EQ(written->Begin(), 8192u);
    EXPECT_EQ(BytesOf(folder_.path() / "out.dpx").substr(36, 8), std::string("out.dpx\0", 8));
  }
}

// Pixels that begin where those headers would be are none.
TEST_F(LightDpx, NothingIsReadOfHeadersThatAreNotThere) {
  for (const std::uint32_t begin : {1664u, 1700u, 1920u, 1936u, 2048u}) {
    for (const bool isBig : {false, true}) {
      SCOPED_TRACE(begin);
      DpxFileKind kind{3, 8, false, isBig, begin};
      kind.width = 40;
      kind.height = 40;
      const auto path = MakeDpx(kind);
      ExpectSame(path);
      UsePictures(Full);
      for (const auto& [name, value] : ReportPicture(path).attributes) {
        const auto found = std::ranges::find(DpxFields(), name, &DpxField::name);
        if (found != DpxFields().end()) {
          EXPECT_TRUE(found->place < dpx::kFilmHeader || begin == 2048) << name << ' ' << value;
        }
      }
      Written(Full, *Read(Full, path, 8), "out.dpx");
      const auto written = DpxHeader::Of(folder_.path() / "out.dpx");
      ASSERT_TRUE(written);
      EXPECT_EQ(written->Whole(dpx::kTimeCode), dpx::kUndefined);
    }
  }
}

// The full library reads no file that is smaller than all headers, and takes the header for pixels where an element
// does not say where its own begin.
TEST_F(LightDpx, ReadsWhatTheFullLibraryCannot) {
  DpxFileKind kind{3, 8, false};
  kind.width = kind.height = 2;
  const std::string pixels = Read(Full, MakeDpx(kind), 8)->Pixels();
  kind.begin = 1664;
  EXPECT_EQ(Read(Automatic, MakeDpx(kind), 8)->Pixels(), pixels);
  kind.begin = 8192;
  for (const std::uint32_t begin : {0u, dpx::kUndefined}) {
    const auto path = MakeDpx(kind, [&](DpxHeader& header) { header.SetWhole(dpx::kElementBegin, begin); });
    EXPECT_EQ(Read(Automatic, path, 8)->Pixels(), pixels);
    EXPECT_EQ(FailureOf(Full, path), path.string() + ": cannot read: its element does not say where its pixels begin");
  }
}

TEST_F(LightDpx, LeavesOtherKindsAlone) {
  const std::vector<MoreFields> cases{
      [](DpxHeader& header) { header.SetByte(dpx::kDescriptor, 52); },
      [](DpxHeader& header) { header.SetByte(dpx::kDescriptor, 1); },
      [](DpxHeader& header) { header.SetHalf(dpx::kOrientation, 2); },
      [](DpxHeader& header) { header.SetWhole(dpx::kSign, 1); },
      [](DpxHeader& header) { header.SetHalf(dpx::kPacking, 2); },
      [](DpxHeader& header) { header.SetWhole(dpx::kOffsetX, 3); },
      [](DpxHeader& header) { header.SetWhole(dpx::kOffsetY, 3); },
      [](DpxHeader& header) { header.SetWhole(dpx::kOriginalWidth, 50); },
      [](DpxHeader& header) { header.SetWhole(dpx::kOriginalHeight, 50); },
      [](DpxHeader& header) { header.SetText(160, 100, "\xc3\xa9"); },
      [](DpxHeader& header) { header.SetText(260, 200, "a\tb"); },
      [](DpxHeader& header) { header.SetText(dpx::kFilmHeader, 17, "02 3071234567890"); },
      [](DpxHeader& header) {
        header.SetByte(dpx::kTransfer, 0);
        header.SetFloat(dpx::kGamma, 2.2f);
      }};
  for (std::size_t i = 0; i < cases.size(); ++i) {
    SCOPED_TRACE(i);
    ExpectLeft(MakeDpx({4, 8, true}, cases[i]));
  }
  // A text without an end.
  ExpectLeft(MakeDpx({}, [](DpxHeader& header) {
    header.SetText(820, 40, "thirty-two letters are no text!!");
    header.SetWhole(dpx::kOriginalWidth, 13);
  }));
  const auto path = MakeDpx({});
  const std::string bytes = BytesOf(path);
  for (const std::size_t kept : {bytes.size() - 1, bytes.size() / 2, std::size_t{2000}, std::size_t{100}})
    ExpectLeft(Write(bytes.substr(0, kept), "in.dpx"));
}

}  // namespace
}  // namespace vblur::host
