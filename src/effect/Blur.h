// The effect object: what its host calls, and the driver that renders a frame.
#pragma once

#include <atomic>
#include <cstdint>

#include "effect/BlurSize.h"
#include "effect/FrameTextures.h"
#include "effect/HvDsEffect.h"
#include "effect/ProcessSettings.h"
#include "image/HvTexture.h"
#include "overlay/HvTDsCircle.h"
#include "overlay/HvTDsCrop.h"
#include "platform/CDSImageMIEffect.h"
#include "platform/IVBlurFacts.h"
#include "platform/ServerCount.h"

namespace vblur {

// One render needs its object to itself; frames that render side by side use clones. A clone reports where its
// images lie to its source, which must outlive it.
class Blur : public HvDsEffect, public CDSImageMIEffect, public IVBlurFacts, public ProcessSettings {
 public:
  // The server's object count, null without a server, and the module that holds the effect's texts and bitmaps. Set
  // before the first effect is made.
  static inline std::atomic<std::int32_t>* liveObjects = nullptr;
  static inline HMODULE module = nullptr;

  Blur();
  ~Blur() override;

  BlurSize GetBlurSize(double time) override;
  void AttachOverlay() override;
  void PageShown(const char* pageName, std::int32_t = 0, std::int32_t = 0) override;
  void UpdateOverlayPlacement() override;

  HRESULT QueryInterface(const GUID& iid, void** result) override;
  std::uint32_t AddRef() override { return CDSBasePropertyContainer::AddRef(); }
  std::uint32_t Release() override { return CDSBasePropertyContainer::Release(); }

  HRESULT GetName(char16_t* buffer, std::int32_t capacity) override;
  HRESULT GetDescription(char16_t* buffer, std::int32_t capacity) override;
  HRESULT GetPicture(HBITMAP* picture) override;
  HRESULT GetStaticPropertyCount(std::int32_t* count) override;
  HRESULT GetStaticPropertiesMap(const CDSPropertiesMap** map) override;
  HRESULT GetClassID(GUID* clsid) override;
  HRESULT Init() override;

  HRESULT GetInfo(tagDSFxInfo* info) override;
  HRESULT GetImageEffectInfo(tagDSImgFxInfo* info) override;
  HRESULT IsFormatSupported(const GUID& format) override;
  HRESULT SetDefaults() override;
  HRESULT GetInputOverscan(double time, double* left, double* right, double* bottom, double* top) override;
  HRESULT Verify() override;
  HRESULT RenderFrame(double time) override;
  HRESULT Clone(const GUID& iid, void** result) override;

  BlurSizeFacts DescribeBlurSize(double blur) const override;
  bool RanOutOfMemory() const override { return frame.interrupt.memoryRefused.load(std::memory_order_relaxed) != 0; }
  FrameMemoryFacts DescribeFrameMemory() const override { return frameMemory_; }
  FrameRefusal WhyNotRendered() const override { return frame.refusal; }

  // For tests and tracing: the places of the last frame, or of a clone's last frame.
  const PlaceRecord& OutputPlace() const { return frame.outputPlace; }
  const PlaceRecord& InputPlace() const { return frame.inputPlace; }
  const PlaceRecord& Input2Place() const { return frame.input2Place; }

 protected:
  void* FindInterface(const GUID& iid) override;
  void DetachOverlay() override;

 private:
  // Makes a clone.
  Blur(const Blur& source);

  void SetConstants();
  void ResetBlurParameters();
  void CopyParameters(const Blur& other);
  HRESULT LoadText(std::int32_t id, char16_t* buffer, std::int32_t capacity) const;
  // Adds the property pages of the kind.
  void AddPages();

  static const CDSPropertiesMap& InitStaticPropertyMap();
  template <PropertyId id>
  static void* LocateMember(CDSBasePropertyContainer& container);
  // The member that holds a property's plain value: a double for a 64-bit float, else a 32-bit integer.
  void* MemberOf(PropertyId id);
  double Evaluate(PropertyId id, double plainValue, double time) const;

  // The steps of RenderFrame.
  void ArmInterrupt();
  void SettleRegion();
  void EvaluateCrop(double time);
  void UpdateTransition(double time);
  void ReportPlaces();
  // Notes what is wrong with the frame's pictures. False: it must not be rendered.
  bool CheckPictures();
  void NoteBlurWithoutSize();
  bool NeedsInput() const {
    return effectKind >= kKindFilter && effectKind <= kKindUnused && effectKind != kKindGenerator;
  }
  HRESULT RenderSettledFrame(double time);

  template <class Pixel>
  HRESULT RenderPixels(double time);
  template <class Pixel>
  void WrapTextures(FrameTextures<Pixel>& textures);
  template <class Pixel>
  void FirstPass(double time, FrameTextures<Pixel>& textures);
  template <class Pixel>
  void SecondPass(double time, FrameTextures<Pixel>& textures);
  template <class Pixel>
  HRESULT RunBlurStage(double time, HvTexture<Pixel, Rf>& destination, HvTexture<Pixel, Rf>& source);

  BlurSizeParts SizeParts(double time) const;
  BlurSize FilterRadius(const BlurSizeParts& parts) const;
  bool MixesClips() const { return effectKind == kKindTransition && transitionMixesInputs == 1; }
  bool PutsMaskedChannelsBack() const {
    return effectKind != kKindTransition && effectKind != kKindGenerator && (effectFlags & kFlagChannelMasks) != 0;
  }

  MaskParameters masks_;
  const ServerCount countsInServer{liveObjects};
  Blur* cloneSource = nullptr;
  HvTDsCircle blurControl;
  HvTDsCrop cropControl;
  BlurParameters blur_;
  FrameMemoryFacts frameMemory_;
};

}  // namespace vblur
