// What the effect reads from its host, and how often.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/effect/EffectBench.h"

namespace vblur {
namespace {

// Records which properties are evaluated, and when.
class NotingBlur : public Blur {
 public:
  double GetValueDirect(const GUID& property, double plainValue, double time) const override {
    asked.push_back(property);
    times.push_back(time);
    return Blur::GetValueDirect(property, plainValue, time);
  }

  mutable std::vector<GUID> asked;
  mutable std::vector<double> times;
};

std::vector<GUID> IdsOf(std::initializer_list<PropertyId> properties) {
  std::vector<GUID> ids;
  for (const PropertyId id : properties)
    ids.push_back(PropertyOf(id).guid);
  return ids;
}

const auto kStage = {PropertyId::Blur, PropertyId::Aspect, PropertyId::Blend, PropertyId::EffectGain,
                     PropertyId::SourceGain};

TEST(Evaluation, TheSizeEvaluatesAllThatTheStageDoes) {
  const auto effect = ComPtr<NotingBlur>::Own(new NotingBlur());
  effect->GetBlurSize(3.0);
  EXPECT_EQ(effect->asked, IdsOf(kStage));
  EXPECT_EQ(effect->times, std::vector<double>(5, 3.0));
}

TEST(Evaluation, AFrameEvaluatesItsSizeItsCropAndItsStage) {
  const auto effect = ComPtr<NotingBlur>::Own(new NotingBlur());
  host::HostImage output, input;
  const auto black = [](std::int32_t, std::int32_t) { return Pixel8{}; };
  Paint<Pixel8>(output, 4, 4, black);
  Paint<Pixel8>(input, 4, 4, black);
  effect->SetOutput(&output);
  effect->SetInput(&input);
  ASSERT_EQ(effect->RenderFrame(2.0), kOk);
  std::vector<GUID> expected = IdsOf(kStage);
  const auto crop = IdsOf({PropertyId::CropLeft, PropertyId::CropRight, PropertyId::CropBottom, PropertyId::CropTop,
                           PropertyId::CropColourR, PropertyId::CropColourG, PropertyId::CropColourB});
  expected.insert(expected.end(), crop.begin(), crop.end());
  const auto stage = IdsOf(kStage);
  expected.insert(expected.end(), stage.begin(), stage.end());
  EXPECT_EQ(effect->asked, expected);
}

// A project whose world height grows at each read.
class GrowingProject : public IDSEffectHost {
 public:
  HRESULT ContentProperty(const char* key, double& value) const override {
    value = std::string(key) == kProjectWorldSizeY ? 64.0 / ++reads : 64.0;
    return kOk;
  }

 private:
  mutable double reads = 0.0;
};

TEST(Evaluation, APlacementReadsTheProjectForPositionAndForSize) {
  const auto effect = ComPtr<Blur>::Own(new Blur());
  GrowingProject project;
  host::HostImage output, input;
  for (host::HostImage* image : {&output, &input}) {
    image->Reset(8, 4, 4, 4);
    image->Clear();
    host::ImageRecord record;
    record.position = {3.0, 5.0};
    record.size = {7.0, 11.0};
    image->Place(record);
  }
  effect->SetEffectHost(&project);
  effect->SetOutput(&output);
  effect->SetInput(&input);
  ASSERT_EQ(effect->RenderFrame(0.0), kOk);
  EXPECT_EQ(effect->InputPlace().positionX, 3.0f);
  EXPECT_EQ(effect->InputPlace().positionY, 5.0f);
  EXPECT_EQ(effect->InputPlace().sizeX, 14.0f);
  EXPECT_EQ(effect->InputPlace().sizeY, 22.0f);
  EXPECT_EQ(effect->OutputPlace().positionX, 9.0f);
  EXPECT_EQ(effect->OutputPlace().sizeX, 28.0f);
}

}  // namespace
}  // namespace vblur
