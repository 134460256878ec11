#include "host/formats/ExifNames.h"

#include <algorithm>
#include <array>
#include <span>

namespace vblur::host {

namespace {

struct TagName {
  std::uint16_t tag;
  std::string_view name;
};

constexpr auto kOfPicture = std::to_array<TagName>({{0x010e, "ImageDescription"},
                                                    {0x010f, "Make"},
                                                    {0x0110, "Model"},
                                                    {0x0112, "Orientation"},
                                                    {0x011a, "XResolution"},
                                                    {0x011b, "YResolution"},
                                                    {0x0128, "ResolutionUnit"},
                                                    {0x0131, "Software"},
                                                    {0x0132, "DateTime"},
                                                    {0x013b, "Artist"},
                                                    {0x0213, "Exif:YCbCrPositioning"},
                                                    {0x8298, "Copyright"}});

constexpr auto kOfCamera = std::to_array<TagName>({{0x829a, "ExposureTime"},
                                                   {0x829d, "FNumber"},
                                                   {0x8822, "Exif:ExposureProgram"},
                                                   {0x8827, "Exif:PhotographicSensitivity"},
                                                   {0x9000, "Exif:ExifVersion"},
                                                   {0x9003, "Exif:DateTimeOriginal"},
                                                   {0x9004, "Exif:DateTimeDigitized"},
                                                   {0x9201, "Exif:ShutterSpeedValue"},
                                                   {0x9202, "Exif:ApertureValue"},
                                                   {0x9203, "Exif:BrightnessValue"},
                                                   {0x9204, "Exif:ExposureBiasValue"},
                                                   {0x9205, "Exif:MaxApertureValue"},
                                                   {0x9206, "Exif:SubjectDistance"},
                                                   {0x9207, "Exif:MeteringMode"},
                                                   {0x9208, "Exif:LightSource"},
                                                   {0x9209, "Exif:Flash"},
                                                   {0x920a, "Exif:FocalLength"},
                                                   {0x9290, "Exif:SubsecTime"},
                                                   {0x9291, "Exif:SubsecTimeOriginal"},
                                                   {0x9292, "Exif:SubsecTimeDigitized"},
                                                   {0xa000, "Exif:FlashPixVersion"},
                                                   {0xa001, "Exif:ColorSpace"},
                                                   {0xa002, "Exif:PixelXDimension"},
                                                   {0xa003, "Exif:PixelYDimension"},
                                                   {0xa20b, "Exif:FlashEnergy"},
                                                   {0xa20e, "Exif:FocalPlaneXResolution"},
                                                   {0xa20f, "Exif:FocalPlaneYResolution"},
                                                   {0xa210, "Exif:FocalPlaneResolutionUnit"},
                                                   {0xa215, "Exif:ExposureIndex"},
                                                   {0xa217, "Exif:SensingMethod"},
                                                   {0xa401, "Exif:CustomRendered"},
                                                   {0xa402, "Exif:ExposureMode"},
                                                   {0xa403, "Exif:WhiteBalance"},
                                                   {0xa404, "Exif:DigitalZoomRatio"},
                                                   {0xa405, "Exif:FocalLengthIn35mmFilm"},
                                                   {0xa406, "Exif:SceneCaptureType"},
                                                   {0xa407, "Exif:GainControl"},
                                                   {0xa408, "Exif:Contrast"},
                                                   {0xa409, "Exif:Saturation"},
                                                   {0xa40a, "Exif:Sharpness"},
                                                   {0xa40c, "Exif:SubjectDistanceRange"},
                                                   {0xa420, "Exif:ImageUniqueID"},
                                                   {0xa430, "Exif:CameraOwnerName"},
                                                   {0xa431, "Exif:BodySerialNumber"},
                                                   {0xa432, "Exif:LensSpecification"},
                                                   {0xa433, "Exif:LensMake"},
                                                   {0xa434, "Exif:LensModel"},
                                                   {0xa435, "Exif:LensSerialNumber"}});

constexpr auto kOfPlace = std::to_array<TagName>({{0x0000, "GPS:VersionID"},       {0x0001, "GPS:LatitudeRef"},
                                                  {0x0002, "GPS:Latitude"},        {0x0003, "GPS:LongitudeRef"},
                                                  {0x0004, "GPS:Longitude"},       {0x0005, "GPS:AltitudeRef"},
                                                  {0x0006, "GPS:Altitude"},        {0x0007, "GPS:TimeStamp"},
                                                  {0x0008, "GPS:Satellites"},      {0x0009, "GPS:Status"},
                                                  {0x000a, "GPS:MeasureMode"},     {0x000b, "GPS:DOP"},
                                                  {0x000c, "GPS:SpeedRef"},        {0x000d, "GPS:Speed"},
                                                  {0x000e, "GPS:TrackRef"},        {0x000f, "GPS:Track"},
                                                  {0x0010, "GPS:ImgDirectionRef"}, {0x0011, "GPS:ImgDirection"},
                                                  {0x0012, "GPS:MapDatum"},        {0x0013, "GPS:DestLatitudeRef"},
                                                  {0x0014, "GPS:DestLatitude"},    {0x0015, "GPS:DestLongitudeRef"},
                                                  {0x0016, "GPS:DestLongitude"},   {0x0017, "GPS:DestBearingRef"},
                                                  {0x0018, "GPS:DestBearing"},     {0x0019, "GPS:DestDistanceRef"},
                                                  {0x001a, "GPS:DestDistance"},    {0x001d, "GPS:DateStamp"},
                                                  {0x001e, "GPS:Differential"},    {0x001f, "GPS:HPositioningError"}});

std::span<const TagName> NamesOf(ExifPart part) {
  switch (part) {
    case ExifPart::Picture: return kOfPicture;
    case ExifPart::Camera: return kOfCamera;
    case ExifPart::Place: break;
  }
  return kOfPlace;
}

}  // namespace

std::string_view NameOfExifTag(ExifPart part, std::uint16_t tag) {
  const auto names = NamesOf(part);
  const auto found = std::ranges::find(names, tag, &TagName::tag);
  if (found != names.end()) return found->name;
  // Some programs put the camera's fields there.
  return part == ExifPart::Picture ? NameOfExifTag(ExifPart::Camera, tag) : std::string_view();
}

}  // namespace vblur::host
