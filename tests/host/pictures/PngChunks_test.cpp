#include "host/pictures/PngChunks.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include "host/files/OutputFile.h"
#include "host/files/PictureReport.h"
#include "host/formats/PictureFileHeader.h"
#include "host/pictures/PictureFileOpen.h"
#include "tests/support/host/ExifBytes.h"
#include "tests/support/host/Pictures.h"
#include "tests/support/host/RawPictures.h"
#include "tests/support/host/ScratchFolder.h"

namespace vblur::host {
namespace {

struct Chunk {
  std::string name;
  std::string data;
};

std::string Big32(std::size_t value) {
  std::string bytes;
  for (int shift = 24; shift >= 0; shift -= 8)
    bytes.push_back(static_cast<char>(value >> shift & 0xff));
  return bytes;
}

std::string Packed(const std::string& name, const std::string& data) {
  const std::string sum = name + data;
  return Big32(data.size()) + sum +
         Big32(::crc32(0, reinterpret_cast<const Bytef*>(sum.data()), static_cast<uInt>(sum.size())));
}

std::vector<Chunk> ChunksOf(const std::string& file) {
  std::vector<Chunk> chunks;
  for (std::size_t at = 8; at + 12 <= file.size();) {
    std::size_t length = 0;
    for (std::size_t i = at; i < at + 4; ++i)
      length = length << 8 | static_cast<unsigned char>(file[i]);
    const Chunk chunk{file.substr(at + 4, 4), file.substr(at + 8, length)};
    EXPECT_EQ(file.substr(at, length + 12), Packed(chunk.name, chunk.data));
    // The place of the picture, which the library always writes.
    if (chunk.name != "oFFs") chunks.push_back(chunk);
    at += length + 12;
  }
  return chunks;
}

class PngChunks : public testing::Test {
 protected:
  // A PNG file as the library writes it, with these chunks behind its header.
  std::string WritePng(const std::string& name, const std::string& chunks) {
    OIIO::ImageSpec spec(2, 1, 3, OIIO::TypeDesc::UINT8);
    WriteRaw(folder_.path() / name, "png", spec, std::vector<std::uint8_t>(6, 50));
    std::string bytes = Bytes(folder_.path() / name);
    bytes.insert(kPngHead, chunks);
    folder_.Write(name, bytes);
    return name;
  }

  std::vector<Chunk> PassOn(const std::string& from) {
    HostImage image;
    const auto read = PictureReader().ReadColour(folder_.path() / from, 8, image);
    PictureWriter().Write(folder_.path() / "out.png", image, read.metadata.get(), true);
    return ChunksOf(Bytes(folder_.path() / "out.png"));
  }

  static std::vector<std::string> NamesOf(const std::vector<Chunk>& chunks) {
    std::vector<std::string> names;
    for (const Chunk& each : chunks)
      names.push_back(each.name);
    return names;
  }

  ScratchFolder folder_;
};

// The library's reader says sRGB of files that say nothing.
TEST_F(PngChunks, ColoursAreWhatTheSourceSaysOfThem) {
  const std::vector<std::string> plain = {"IHDR", "IDAT", "IEND"};
  EXPECT_EQ(NamesOf(PassOn(WritePng("plain.png", ""))), plain);
  const std::string gamma = Packed("gAMA", Big32(100000));
  const std::string white = Packed("cHRM", std::string(32, '\1'));
  const auto chunks = PassOn(WritePng("linear.png", gamma + white));
  EXPECT_EQ(NamesOf(chunks), (std::vector<std::string>{"IHDR", "gAMA", "cHRM", "IDAT", "IEND"}));
  EXPECT_EQ(chunks[1].data, Big32(100000));
  EXPECT_EQ(chunks[2].data, std::string(32, '\1'));
  const auto srgb = PassOn(WritePng("srgb.png", Packed("sRGB", std::string(1, '\2'))));
  EXPECT_EQ(NamesOf(srgb), (std::vector<std::string>{"IHDR", "sRGB", "IDAT", "IEND"}));
  EXPECT_EQ(srgb[1].data, std::string(1, '\2'));
}

TEST_F(PngChunks, OnlyColourChunksThatReadersTakeArePassedOn) {
  const auto passed = [&](const std::string& chunks) {
    WritePng("in.png", chunks);
    return FactsOfChunks(folder_.path() / "in.png").colourChunks;
  };
  const std::string gamma = Packed("gAMA", Big32(100000));
  const std::string srgb = Packed("sRGB", std::string(1, '\2'));
  EXPECT_EQ(passed(gamma + srgb), gamma + srgb);
  EXPECT_EQ(passed(gamma + Packed("gAMA", Big32(50000)) + srgb + srgb), gamma + srgb);
  EXPECT_EQ(passed(Packed("gAMA", std::string(4000, '\1'))), "");
  EXPECT_EQ(passed(Packed("gAMA", std::string(6, '\1')) + Packed("sRGB", "")), "");
  std::string damaged = gamma;
  damaged.back() ^= 1;
  EXPECT_EQ(passed(damaged), "");
  EXPECT_EQ(passed(damaged + gamma), gamma);
  for (const auto& [name, bytes] : {std::pair("cICP", 4), std::pair("mDCV", 24), std::pair("cLLI", 8)}) {
    const std::string chunk = Packed(name, std::string(static_cast<std::size_t>(bytes), '\1'));
    EXPECT_EQ(passed(chunk), chunk);
  }
  // Behind the pixels they mean nothing.
  WritePng("in.png", "");
  std::string late = Bytes(folder_.path() / "in.png");
  folder_.Write("in.png", late.insert(late.size() - 12, gamma));
  EXPECT_EQ(FactsOfChunks(folder_.path() / "in.png").colourChunks, "");
}

TEST_F(PngChunks, AProfileTakesThePlaceOfANamedColourSpace) {
  const std::string gamma = Packed("gAMA", Big32(45455));
  const std::string srgb = Packed("sRGB", std::string(1, '\0'));
  OIIO::ImageSpec spec;
  EXPECT_EQ(TakePngChunks(spec, gamma + srgb, ""), gamma + srgb);
  spec.attribute("ICCProfile", "profile");
  EXPECT_EQ(TakePngChunks(spec, srgb + gamma, ""), gamma);
}

// As some programs write them.
TEST_F(PngChunks, TextsBehindThePixelsStay) {
  const std::string text = Packed("tEXt", std::string("date\0now", 8)) + Packed("iTXt", std::string("t\0\0\0\0\0x", 7));
  const auto late = [&](const std::string& chunks) {
    WritePng("in.png", "");
    std::string bytes = Bytes(folder_.path() / "in.png");
    return folder_.Write("in.png", bytes.insert(bytes.size() - 12, chunks));
  };
  const auto lost = [](const std::filesystem::path& file, const char* output) {
    return ListOf(LossesOf(ReportPicture(file), OutputFormatOf(output), {}, 8));
  };
  const auto file = late(text);
  EXPECT_EQ(lost(file, "out.png"), "");
  EXPECT_EQ(lost(file, "out.tif"), "texts behind the pixels");
  const auto chunks = PassOn("in.png");
  EXPECT_EQ(NamesOf(chunks), (std::vector<std::string>{"IHDR", "tEXt", "iTXt", "IDAT", "IEND"}));
  EXPECT_EQ(chunks[1].data, std::string("date\0now", 8));
  std::string damaged = text;
  damaged.back() ^= 1;
  EXPECT_EQ(lost(late(damaged), "out.png"), "texts behind the pixels");
  EXPECT_EQ(lost(late(Packed("tEXt", std::string((1 << 20) + 1, 'x'))), "out.png"), "texts behind the pixels");
}

TEST_F(PngChunks, ExifDataThatIsNotTakenIsReported) {
  using Kinds = std::vector<std::string>;
  const std::string exif = Packed("eXIf", ExifBytes{}.Build());
  const auto facts = [&](const std::string& chunks) {
    WritePng("in.png", chunks);
    return FactsOfChunks(folder_.path() / "in.png");
  };
  EXPECT_EQ(facts(exif).exif, ExifBytes{}.Build());
  EXPECT_EQ(facts(exif).unread, Kinds{});
  EXPECT_EQ(facts(Packed("eXIf", std::string("Exif\0\0", 6) + ExifBytes{}.Build())).unread, Kinds{"Exif data"});
  std::string damaged = exif;
  damaged.back() ^= 1;
  EXPECT_EQ(facts(damaged).unread, Kinds{"damaged Exif data"});
  EXPECT_EQ(facts(damaged).exif, "");
  EXPECT_EQ(facts(Packed("iTXt", std::string("XML:com.adobe.xmp\0\0\0\0\0<x/>", 26))).unread, Kinds{"XMP data"});
  WritePng("in.png", "");
  std::string late = Bytes(folder_.path() / "in.png");
  folder_.Write("in.png", late.insert(late.size() - 12, exif));
  EXPECT_EQ(FactsOfChunks(folder_.path() / "in.png").unread, Kinds{"Exif data behind the pixels"});
}

TEST_F(PngChunks, ExifDataInATextStays) {
  using Kinds = std::vector<std::string>;
  const auto digits = [](const std::string& bytes) {
    std::string text;
    for (const char c : bytes)
      for (const int half : {c >> 4 & 0xf, c & 0xf})
        text.push_back("0123456789abcdef"[half]);
    return text;
  };
  const auto text = [&](const std::string& exif) {
    const std::string bytes = std::string("Exif\0\0", 6) + exif;
    return Packed("tEXt", std::string("Raw profile type exif\0", 22) + "\nexif\n" + std::to_string(bytes.size()) +
                              "\n" + digits(bytes) + "\n");
  };
  const std::string exif = ExifBytes{false, "abc", true, 2, 1}.Build();
  const auto chunks = PassOn(WritePng("in.png", text(exif)));
  EXPECT_EQ(NamesOf(chunks), (Kinds{"IHDR", "eXIf", "tEXt", "IDAT", "IEND"}));
  EXPECT_EQ(chunks[1].data, exif);
  EXPECT_EQ(chunks[2].data, std::string("Description\0abc", 15));
  const auto lost = [&](const std::string& written, const char* output) {
    const auto file = folder_.path() / WritePng("in.png", written);
    return ListOf(LossesOf(ReportPicture(file), OutputFormatOf(output), {}, 8));
  };
  EXPECT_EQ(lost(text(exif), "out.png"), "");
  EXPECT_EQ(lost(text(exif), "out.jpg"), "maker note");
  EXPECT_EQ(lost(text(exif) + text(exif) + Packed("eXIf", exif), "out.png"), "");
  const std::string other = ExifBytes{true}.Build();
  EXPECT_EQ(lost(text(exif) + text(other), "out.png"), "further Exif data");
  EXPECT_EQ(lost(text(other) + Packed("eXIf", exif), "out.png"), "further Exif data");
  EXPECT_EQ(lost(Packed("eXIf", exif) + Packed("eXIf", other), "out.png"), "further Exif data");
  EXPECT_EQ(FactsOfChunks(folder_.path() / "in.png").exif, exif);
  std::string damaged = text(exif);
  damaged.back() ^= 1;
  EXPECT_EQ(lost(damaged, "out.png"), "damaged Exif data");
}

TEST_F(PngChunks, WhatNoOutputHasIsNamed) {
  using Kinds = std::vector<std::string>;
  const auto unread = [&](const std::string& before, const std::string& behind, const std::string& after) {
    WritePng("in.png", before);
    std::string bytes = Bytes(folder_.path() / "in.png");
    bytes.insert(bytes.size() - 12, behind);
    folder_.Write("in.png", bytes + after);
    return FactsOfChunks(folder_.path() / "in.png").unread;
  };
  const std::string bits = Packed("sBIT", "\5\5\5");
  const std::string ground = Packed("bKGD", std::string(6, '\1'));
  const std::string time = Packed("tIME", std::string(7, '\1'));
  EXPECT_EQ(unread(bits, "", ""), Kinds{"PNG chunk sBIT"});
  EXPECT_EQ(unread(ground + bits + ground + Packed("prVt", ""), "", ""), Kinds{"PNG chunks bKGD, sBIT, prVt"});
  EXPECT_EQ(unread(time + Packed("pHYs", std::string("\0\0\1\0\0\0\1\0\1", 9)), "", ""), Kinds{});
  EXPECT_EQ(unread("", time, ""), Kinds{"PNG chunk tIME"});
  EXPECT_EQ(unread("", Packed("gAMA", Big32(100000)), ""), Kinds{"PNG chunk gAMA"});
  EXPECT_EQ(unread(Packed("gAMA", "no"), "", ""), Kinds{"PNG chunk gAMA"});
  EXPECT_EQ(unread("", Packed("ca\x01x", ""), ""), Kinds{});
  EXPECT_EQ(unread(Packed("caBX", ""), "", ""), Kinds{"signed history (JUMBF)"});
  EXPECT_EQ(unread("", "", std::string(100'000, '\0')), Kinds{});
  EXPECT_EQ(unread("", "", std::string(100'000, '\0') + "video"), Kinds{"data behind the picture"});
  EXPECT_EQ(ListOf(LossesOf(ReportPicture(folder_.path() / "in.png"), OutputFormatOf("out.png"), {}, 8)),
            "data behind the picture");
  std::string many;
  for (char letter = 'a'; letter <= 'k'; ++letter)
    many += Packed(std::string("abC") + letter, "");
  EXPECT_EQ(unread(many, "", ""),
            Kinds{"PNG chunks abCa, abCb, abCc, abCd, abCe, abCf, abCg, abCh, abCi, abCj and others"});
}

// Readers pass over a chunk whose checksum is wrong, and over a place in another unit than pixels.
TEST_F(PngChunks, WhatReadersPassOverIsNamed) {
  using Kinds = std::vector<std::string>;
  const auto unread = [&](const std::string& chunks) {
    WritePng("in.png", chunks);
    return OpenPictureFile(folder_.path() / "in.png", {}).info.unread;
  };
  const std::string text("Author\0Ann", 10);
  const auto damaged = [](std::string chunk) {
    chunk.back() = static_cast<char>(chunk.back() + 1);
    return chunk;
  };
  EXPECT_EQ(unread(Packed("tEXt", text)), Kinds{});
  EXPECT_EQ(unread(damaged(Packed("tEXt", text)) + damaged(Packed("tEXt", text))), Kinds{"damaged PNG chunk tEXt"});
  EXPECT_EQ(unread(damaged(Packed("tIME", std::string("\x07\xe4\x01\x02\x03\x04\x05", 7)))),
            Kinds{"damaged PNG chunk tIME"});
  EXPECT_EQ(unread(Packed("zTXt", std::string("Key\0\0no stream", 14))), Kinds{"damaged PNG chunk zTXt"});
  EXPECT_EQ(unread(damaged(Packed("tRNS", std::string(6, '\0')))), Kinds{"damaged PNG chunk tRNS"});
  const auto place = [](char last, char unit) { return Packed("oFFs", std::string(7, '\0') + last + unit); };
  EXPECT_EQ(unread(place('\5', '\0')), Kinds{});
  EXPECT_EQ(unread(place('\0', '\1')), Kinds{});
  EXPECT_EQ(unread(place('\5', '\1')), Kinds{"place in micrometres"});
  EXPECT_EQ(unread(damaged(place('\5', '\1'))), Kinds{"damaged PNG chunk oFFs"});
}

TEST_F(PngChunks, TextsBeyondAsciiAreUtf8) {
  using namespace std::string_literals;
  const auto chunks = PassOn(WritePng("text.png", Packed("tEXt", "Author\0M\xfcller"s) +
                                                      Packed("iTXt", "Description\0\0\0\0\0\xe6\x97\xa5"s) +
                                                      Packed("tEXt", "Title\0plain"s)));
  EXPECT_EQ(NamesOf(chunks), (std::vector<std::string>{"IHDR", "iTXt", "iTXt", "tEXt", "IDAT", "IEND"}));
  EXPECT_EQ(chunks[1].data, "Author\0\0\0\0\0M\xc3\xbcller"s);
  EXPECT_EQ(chunks[2].data, "Description\0\0\0\0\0\xe6\x97\xa5"s);
  EXPECT_EQ(chunks[3].data, "Title\0plain"s);
  // And read again.
  const OIIO::ImageSpec spec = OpenPictureFile(folder_.path() / "out.png", {}).file->spec();
  EXPECT_EQ(spec.get_string_attribute("Artist"), "M\xc3\xbcller");
  EXPECT_EQ(spec.get_string_attribute("ImageDescription"), "\xe6\x97\xa5");
}

TEST_F(PngChunks, Latin1BecomesUtf8Once) {
  OIIO::ImageSpec spec;
  const auto expect = [&](const char* text, const char* utf8) {
    spec.attribute("Artist", text);
    MakePngTextsUtf8(spec);
    EXPECT_EQ(spec.get_string_attribute("Artist"), utf8);
  };
  expect("\xe9\xff", "\xc3\xa9\xc3\xbf");
  expect("\x80", "\xc2\x80");
  for (const char* same : {"", "a", "\xc2\x80", "\xdf\xbf", "\xe0\xa0\x80", "\xf4\x8f\xbf\xbf"})
    expect(same, same);
  // A character that ends too soon, one that only goes on, and bytes that UTF-8 never has.
  expect("\xc3", "\xc3\x83");
  expect("\xe6\x97", "\xc3\xa6\xc2\x97");
  expect("\xc3(", "\xc3\x83(");
  expect("\xbf", "\xc2\xbf");
  expect("\xc1\x80", "\xc3\x81\xc2\x80");
  expect("\xe0\x80\x80", "\xc3\xa0\xc2\x80\xc2\x80");
  expect("\xed\xa0\x80", "\xc3\xad\xc2\xa0\xc2\x80");
  expect("\xf0\x80\x80\x80", "\xc3\xb0\xc2\x80\xc2\x80\xc2\x80");
  expect("\xf4\x90\x80\x80", "\xc3\xb4\xc2\x90\xc2\x80\xc2\x80");
  expect("\xf5\x80\x80\x80", "\xc3\xb5\xc2\x80\xc2\x80\xc2\x80");
}

TEST_F(PngChunks, ExifDataIsHeldOnceAndNotAsText) {
  OIIO::ImageSpec spec(2, 1, 3, OIIO::TypeDesc::UINT8);
  spec.attribute("Orientation", 6);
  spec.attribute("Make", "Maker");
  spec.attribute("ExposureTime", 0.5f);
  spec.attribute("Exif:DateTimeOriginal", "2020:01:01 00:00:00");
  spec.attribute("GPS:Altitude", 12.0f);
  spec.attribute("Artist", "somebody");
  WriteRaw(folder_.path() / "photo.tif", "tiff", spec, std::vector<std::uint8_t>(6, 50));
  for (const char* from : {"photo.tif", "again.png"}) {
    const auto chunks = PassOn(from);
    EXPECT_EQ(NamesOf(chunks), (std::vector<std::string>{"IHDR", "eXIf", "tIME", "tEXt", "IDAT", "IEND"})) << from;
    EXPECT_EQ(chunks[1].data.substr(0, 4), std::string("II*\0", 4));
    const OIIO::ImageSpec out = OpenPictureFile(folder_.path() / "out.png", {}).file->spec();
    EXPECT_EQ(out.get_int_attribute("Orientation"), 6);
    EXPECT_EQ(out.get_string_attribute("Make"), "Maker");
    EXPECT_EQ(out.get_float_attribute("ExposureTime"), 0.5f);
    EXPECT_EQ(out.get_string_attribute("Exif:DateTimeOriginal"), "2020:01:01 00:00:00");
    // TIFF files have none.
    EXPECT_EQ(out.find_attribute("GPS:Altitude"), nullptr);
    EXPECT_EQ(out.get_string_attribute("Artist"), "somebody");
    std::filesystem::rename(folder_.path() / "out.png", folder_.path() / "again.png");
  }
}

TEST_F(PngChunks, NoExifDataIsMadeUp) {
  OIIO::ImageSpec description;
  description.attribute("Artist", "somebody");
  EXPECT_EQ(TakePngChunks(description, "", ""), "");
  EXPECT_EQ(description.get_string_attribute("Artist"), "somebody");
}

TEST_F(PngChunks, ANameThatIsNoKeywordStaysWithTheLibrary) {
  OIIO::ImageSpec spec;
  for (const std::string& name : {std::string(80, 'n'), std::string(" n"), std::string("n "), std::string("n  n"),
                                  std::string("n\nn"), std::string("\xc3\xbc")}) {
    spec.attribute(name, "\xc3\xbc");
    EXPECT_EQ(TakePngChunks(spec, "", ""), "") << name;
    EXPECT_EQ(spec.get_string_attribute(name), "\xc3\xbc");
  }
  spec.attribute(std::string(79, 'n'), "\xc3\xbc");
  EXPECT_NE(TakePngChunks(spec, "", ""), "");
}

}  // namespace
}  // namespace vblur::host
