#include "host/formats/ExifTags.h"

#include <algorithm>
#include <array>

#include "host/base/NameMatch.h"

namespace vblur::host {

namespace {

constexpr auto AllExifTags() {
  using enum ExifPart;
  using enum ExifType;
  // Of two names for one number the first is given.
  return std::to_array<ExifTag>({
      {Picture, 0x0100, "Exif:ImageWidth", None},
      {Picture, 0x0101, "Exif:ImageLength", None},
      {Picture, 0x0102, "Exif:BitsPerSample", None, 0},
      {Picture, 0x0103, "Exif:Compression", None},
      {Picture, 0x0106, "Exif:Photometric", None},
      {Picture, 0x010e, "ImageDescription", Text, 0},
      {Picture, 0x010f, "Make", Text, 0},
      {Picture, 0x0110, "Model", Text, 0},
      {Picture, 0x0112, "Orientation", Short},
      {Picture, 0x0115, "Exif:SamplesPerPixel", None},
      {Picture, 0x011a, "XResolution", Fraction},
      {Picture, 0x011b, "YResolution", Fraction},
      {Picture, 0x011c, "Exif:PlanarConfig", None},
      {Picture, 0x0128, "ResolutionUnit", Short},
      {Picture, 0x0131, "Software", Text, 0},
      {Picture, 0x0132, "DateTime", Text, 0},
      {Picture, 0x013b, "Artist", Text, 0},
      {Picture, 0x0212, "Exif:YCbCrSubsampling", Short},
      {Picture, 0x0213, "Exif:YCbCrPositioning", Short},
      {Picture, 0x8298, "Copyright", Text, 0},
      {Picture, 0x8769, "Exif:ExifIFD", None},
      {Picture, 0x8825, "Exif:GPSIFD", None},
      {Camera, 0x829a, "ExposureTime", Fraction},
      {Camera, 0x829d, "FNumber", Fraction},
      {Camera, 0x8822, "Exif:ExposureProgram", Short},
      {Camera, 0x8824, "Exif:SpectralSensitivity", Text, 0},
      {Camera, 0x8827, "Exif:PhotographicSensitivity", Short},
      {Camera, 0x8827, "Exif:ISOSpeedRatings", Short},
      {Camera, 0x8828, "Exif:OECF", None},
      {Camera, 0x8830, "Exif:SensitivityType", Short},
      {Camera, 0x8831, "Exif:StandardOutputSensitivity", Long},
      {Camera, 0x8832, "Exif:RecommendedExposureIndex", Long},
      {Camera, 0x8833, "Exif:ISOSpeed", Long},
      {Camera, 0x8834, "Exif:ISOSpeedLatitudeyyy", Long},
      {Camera, 0x8835, "Exif:ISOSpeedLatitudezzz", Long},
      {Camera, 0x9000, "Exif:ExifVersion", Bytes},
      {Camera, 0x9003, "Exif:DateTimeOriginal", Text, 0},
      {Camera, 0x9004, "Exif:DateTimeDigitized", Text, 0},
      {Camera, 0x9010, "Exif:OffsetTime", Text, 0},
      {Camera, 0x9011, "Exif:OffsetTimeOriginal", Text, 0},
      {Camera, 0x9012, "Exif:OffsetTimeDigitized", Text, 0},
      {Camera, 0x9101, "Exif:ComponentsConfiguration", Bytes},
      {Camera, 0x9102, "Exif:CompressedBitsPerPixel", Fraction},
      {Camera, 0x9201, "Exif:ShutterSpeedValue", SignedFraction},
      {Camera, 0x9202, "Exif:ApertureValue", Fraction},
      {Camera, 0x9203, "Exif:BrightnessValue", SignedFraction},
      {Camera, 0x9204, "Exif:ExposureBiasValue", SignedFraction},
      {Camera, 0x9205, "Exif:MaxApertureValue", Fraction},
      {Camera, 0x9206, "Exif:SubjectDistance", Fraction},
      {Camera, 0x9207, "Exif:MeteringMode", Short},
      {Camera, 0x9208, "Exif:LightSource", Short},
      {Camera, 0x9209, "Exif:Flash", Short},
      {Camera, 0x920a, "Exif:FocalLength", Fraction},
      {Camera, 0x9212, "Exif:SecurityClassification", Text},
      {Camera, 0x9213, "Exif:ImageHistory", Text},
      {Camera, 0x9214, "Exif:SubjectArea", None},
      {Camera, 0x927c, "Exif:MakerNote", Byte, 0},
      {Camera, 0x9286, "Exif:UserComment", Byte, 0},
      {Camera, 0x9290, "Exif:SubsecTime", Text, 0},
      {Camera, 0x9291, "Exif:SubsecTimeOriginal", Text, 0},
      {Camera, 0x9292, "Exif:SubsecTimeDigitized", Text, 0},
      {Camera, 0x9400, "Exif:Temperature", SignedFraction},
      {Camera, 0x9401, "Exif:Humidity", Fraction},
      {Camera, 0x9402, "Exif:Pressure", Fraction},
      {Camera, 0x9403, "Exif:WaterDepth", SignedFraction},
      {Camera, 0x9404, "Exif:Acceleration", Fraction},
      {Camera, 0x9405, "Exif:CameraElevationAngle", SignedFraction},
      {Camera, 0xa000, "Exif:FlashPixVersion", Bytes},
      {Camera, 0xa001, "Exif:ColorSpace", Short},
      {Camera, 0xa002, "Exif:PixelXDimension", Long},
      {Camera, 0xa003, "Exif:PixelYDimension", Long},
      {Camera, 0xa004, "Exif:RelatedSoundFile", Text, 0},
      {Camera, 0xa005, "Exif:InteroperabilityIFD", None},
      {Camera, 0xa20b, "Exif:FlashEnergy", Fraction},
      {Camera, 0xa20c, "Exif:SpatialFrequencyResponse", None},
      {Camera, 0xa20e, "Exif:FocalPlaneXResolution", Fraction},
      {Camera, 0xa20f, "Exif:FocalPlaneYResolution", Fraction},
      {Camera, 0xa210, "Exif:FocalPlaneResolutionUnit", Short},
      {Camera, 0xa214, "Exif:SubjectLocation", Short, 2},
      {Camera, 0xa215, "Exif:ExposureIndex", Fraction},
      {Camera, 0xa217, "Exif:SensingMethod", Short},
      {Camera, 0xa300, "Exif:FileSource", Bytes},
      {Camera, 0xa301, "Exif:SceneType", Bytes},
      {Camera, 0xa302, "Exif:CFAPattern", None},
      {Camera, 0xa401, "Exif:CustomRendered", Short},
      {Camera, 0xa402, "Exif:ExposureMode", Short},
      {Camera, 0xa403, "Exif:WhiteBalance", Short},
      {Camera, 0xa404, "Exif:DigitalZoomRatio", Fraction},
      {Camera, 0xa405, "Exif:FocalLengthIn35mmFilm", Short},
      {Camera, 0xa406, "Exif:SceneCaptureType", Short},
      {Camera, 0xa407, "Exif:GainControl", Fraction},
      {Camera, 0xa408, "Exif:Contrast", Short},
      {Camera, 0xa409, "Exif:Saturation", Short},
      {Camera, 0xa40a, "Exif:Sharpness", Short},
      {Camera, 0xa40b, "Exif:DeviceSettingDescription", None},
      {Camera, 0xa40c, "Exif:SubjectDistanceRange", Short},
      {Camera, 0xa420, "Exif:ImageUniqueID", Text, 0},
      {Camera, 0xa430, "Exif:CameraOwnerName", Text, 0},
      {Camera, 0xa431, "Exif:BodySerialNumber", Text, 0},
      {Camera, 0xa432, "Exif:LensSpecification", Fraction, 4},
      {Camera, 0xa433, "Exif:LensMake", Text, 0},
      {Camera, 0xa434, "Exif:LensModel", Text, 0},
      {Camera, 0xa435, "Exif:LensSerialNumber", Text, 0},
      {Camera, 0xa500, "Exif:Gamma", Fraction, 0},
      {Place, 0x0000, "GPS:VersionID", Byte, 4},
      {Place, 0x0001, "GPS:LatitudeRef", Text, 2},
      {Place, 0x0002, "GPS:Latitude", Fraction, 3},
      {Place, 0x0003, "GPS:LongitudeRef", Text, 2},
      {Place, 0x0004, "GPS:Longitude", Fraction, 3},
      {Place, 0x0005, "GPS:AltitudeRef", Byte},
      {Place, 0x0006, "GPS:Altitude", Fraction},
      {Place, 0x0007, "GPS:TimeStamp", Fraction, 3},
      {Place, 0x0008, "GPS:Satellites", Text, 0},
      {Place, 0x0009, "GPS:Status", Text, 2},
      {Place, 0x000a, "GPS:MeasureMode", Text, 2},
      {Place, 0x000b, "GPS:DOP", Fraction},
      {Place, 0x000c, "GPS:SpeedRef", Text, 2},
      {Place, 0x000d, "GPS:Speed", Fraction},
      {Place, 0x000e, "GPS:TrackRef", Text, 2},
      {Place, 0x000f, "GPS:Track", Fraction},
      {Place, 0x0010, "GPS:ImgDirectionRef", Text, 2},
      {Place, 0x0011, "GPS:ImgDirection", Fraction},
      {Place, 0x0012, "GPS:MapDatum", Text, 0},
      {Place, 0x0013, "GPS:DestLatitudeRef", Text, 2},
      {Place, 0x0014, "GPS:DestLatitude", Fraction, 3},
      {Place, 0x0015, "GPS:DestLongitudeRef", Text, 2},
      {Place, 0x0016, "GPS:DestLongitude", Fraction, 3},
      {Place, 0x0017, "GPS:DestBearingRef", Text, 2},
      {Place, 0x0018, "GPS:DestBearing", Fraction},
      {Place, 0x0019, "GPS:DestDistanceRef", Text, 2},
      {Place, 0x001a, "GPS:DestDistance", Fraction},
      {Place, 0x001b, "GPS:ProcessingMethod", Bytes},
      {Place, 0x001c, "GPS:AreaInformation", Bytes},
      {Place, 0x001d, "GPS:DateStamp", Text, 0},
      {Place, 0x001e, "GPS:Differential", Short},
      {Place, 0x001f, "GPS:HPositioningError", Fraction},
  });
}

constexpr auto kExifTags = AllExifTags();

bool IsGiven(const ExifTag& tag) {
  const bool isBytes = tag.type == ExifType::Bytes;
  const bool isVersion = isBytes && tag.name.ends_with("Version");
  const bool isNote = tag.type == ExifType::Byte && tag.count == 0;
  return isVersion || (tag.type != ExifType::None && !isBytes && !isNote);
}

bool IsPlace(ExifPart part) {
  return part == ExifPart::Place;
}

}  // namespace

const ExifTag* FindExifTag(ExifPart part, std::uint16_t number) {
  const auto found = std::ranges::find_if(
      kExifTags, [&](const ExifTag& tag) { return tag.number == number && IsPlace(tag.part) == IsPlace(part); });
  return found != kExifTags.end() ? &*found : nullptr;
}

const ExifTag* FindExifTag(std::string_view name) {
  const auto found =
      std::ranges::find_if(kExifTags, [&](const ExifTag& tag) { return EqualIgnoringCase(tag.name, name); });
  return found != kExifTags.end() ? &*found : nullptr;
}

std::string_view NameOfExifTag(ExifPart part, std::uint16_t number) {
  const ExifTag* const tag = FindExifTag(part, number);
  return tag != nullptr && IsGiven(*tag) ? tag->name : std::string_view();
}

bool IsExifOfStorage(ExifPart part, std::uint16_t number) {
  constexpr std::uint16_t kStorage[] = {0x0100, 0x0101, 0x0102, 0x0103, 0x0106, 0x0111, 0x0115, 0x0116, 0x0117, 0x011c,
                                        0x0201, 0x0202, 0x0212, 0x0213, 0x9000, 0x9101, 0x9102, 0xa000, 0xa002, 0xa003};
  constexpr std::uint16_t kPlaceVersion = 0;
  return IsPlace(part) ? number == kPlaceVersion : std::ranges::find(kStorage, number) != std::end(kStorage);
}

}  // namespace vblur::host
