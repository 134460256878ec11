#include "host/hosted/HostedEffect.h"

#include <cstdio>
#include <new>
#include <sstream>
#include <utility>
#include <variant>

#include "host/base/Failure.h"
#include "host/base/NameMatch.h"
#include "host/jobs/JobCheck.h"
#include "host/properties/PropertyText.h"
#include "platform/IVBlurProcess.h"

namespace vblur::host {

namespace {

// The interface takes non-const pictures; the effect only reads inputs.
IDSImage* Borrow(const HostImage* image) {
  return const_cast<HostImage*>(image);
}

std::string Describe(const HostImage* image) {
  if (image == nullptr) return "none";
  return std::to_string(image->Width()) + " x " + std::to_string(image->Height()) + " x " +
         std::to_string(image->Components()) + " of " + std::to_string(image->Depth()) + " bits";
}

std::string Describe(const Curve& curve) {
  return std::to_string(curve.keys.size()) + " keys";
}

// The level as the effect writes it: case does not matter.
std::string LevelNamed(const std::string& level, const char* levels) {
  if (EqualIgnoringCase(level, "native")) return "native";
  std::istringstream words{std::string(levels)};
  for (std::string word; words >> word;) {
    if (EqualIgnoringCase(level, word)) return word;
  }
  return level;
}

}  // namespace

const GUID& FamilyOf(EffectKind kind) {
  switch (kind) {
    case EffectKind::Source: return families::kSource;
    case EffectKind::Generator: return families::kGenerator;
    case EffectKind::Paint: return families::kPaint;
    case EffectKind::Transition: return families::kTransition;
    case EffectKind::Other: return families::kOther;
    case EffectKind::Filter: break;
  }
  return families::kFilter;
}

HostedEffect::HostedEffect(ComPtr<IDSImageEffect> effect, CallTrace* trace, std::string name)
    : effect_(std::move(effect)),
      properties_(effect_.As<IDSProperties>()),
      facts_(effect_.As<IVBlurFacts>()),
      trace_(trace),
      name_(std::move(name)) {
  if (!effect_ || !properties_) throw Failure(ExitCode::WrongUsage, "the effect has no properties");
}

template <typename Call>
HRESULT HostedEffect::Made(const char* name, const std::string& arguments, Call call) const {
  return NotedCall(
      trace_, name_, [&] { return std::string(name) + "(" + arguments + ")"; }, call);
}

HostedEffect HostedEffect::Clone(const std::string& name) const {
  ComPtr<IDSImageEffect> clone;
  const HRESULT result = Made("Clone", "", [&] { return effect_->Clone(IDSImageEffect::kIid, clone.Receive()); });
  if (result == kOutOfMemory) throw std::bad_alloc();
  if (result != kOk) {
    throw Failure(ExitCode::SomeFramesFailed, "the effect cannot be cloned (" + FormatResult(result) + ")");
  }
  HostedEffect copy(clone, trace_, name);
  copy.region_ = region_;
  return copy;
}

void HostedEffect::UseAs(EffectKind kind) {
  tagDSFxInfo info;
  info.record = kDSFxInfoRecord;
  if (Made("GetInfo", "", [&] { return effect_->GetInfo(&info); }) != kOk) {
    throw Failure(ExitCode::WrongUsage, "the effect does not say what it is");
  }
  tagDSImgFxInfo use;
  use.record = kDSImgFxInfoRecord;
  use.family = FamilyOf(kind);
  const HRESULT result =
      Made("GetImageEffectInfo", FormatGuid(use.family), [&] { return effect_->GetImageEffectInfo(&use); });
  if (result != kOk) {
    throw Failure(ExitCode::WrongUsage, "the effect cannot be used as kind " + std::to_string(static_cast<int>(kind)));
  }
}

void HostedEffect::PutProperties(const PropertyStore& properties) {
  for (const Property& property : kProperties)
    PutProperty(property, properties.Find(property.guid));
}

void HostedEffect::PutProperty(const Property& property, const PropertyStore::Setting* setting) {
  const double* plain = setting == nullptr ? nullptr : std::get_if<double>(setting);
  const auto* curve = setting == nullptr ? nullptr : std::get_if<Curve>(setting);
  const double value = plain == nullptr ? property.defaultValue : *plain;
  const std::string name(property.name);
  HRESULT result = properties_->RemoveCurve(property.guid);
  if (result >= 0) {
    const auto put = [&] { return properties_->PutValue(property.guid, DSVariant::Of(value)); };
    // Defaults are not traced.
    result = plain == nullptr ? put() : Made("PutValue", name + ", " + FormatNumber(value), put);
  }
  if (result == kOk && curve != nullptr) {
    result =
        Made("PutCurve", name + ", " + Describe(*curve), [&] { return properties_->PutCurve(property.guid, *curve); });
  }
  if (result != kOk) Refuse(name, "the effect does not take this property");
}

PropertyStore HostedEffect::Properties() const {
  PropertyStore store;
  for (const Property& property : kProperties) {
    const Curve* curve = nullptr;
    DSVariant value;
    if (properties_->GetCurve(property.guid, &curve) == kOk) {
      store.Set(property.guid, *curve);
    } else if (properties_->GetValue(property.guid, &value) == kOk) {
      store.Set(property.guid, value.AsNumber());
    }
  }
  return store;
}

void HostedEffect::SetUp(const Job& job, IDSCoordMan& coordMan, IDSExecuteContext& context) {
  UseAs(ResolveKind(job));
  PutProperties(job.properties);
  const double duration = ResolveDuration(job);
  Made("SetDuration", FormatNumber(duration), [&] { return effect_->SetDuration(duration); });
  Made("SetCoordMan", "", [&] { return effect_->SetCoordMan(&coordMan); });
  Made("SetExecuteContext", "", [&] { return effect_->SetExecuteContext(&context); });
  SetRegion(job.roi);
}

void HostedEffect::PutRegion(const std::optional<Region>& region) {
  if (region != region_) SetRegion(region);
}

void HostedEffect::SetRegion(const std::optional<Region>& region) {
  region_ = region;
  if (!region) {
    Made("ClearROI", "", [&] { return effect_->ClearROI(); });
    return;
  }
  const Region& roi = *region;
  Made("SetROI",
       std::to_string(roi.x) + ", " + std::to_string(roi.y) + ", " + std::to_string(roi.width) + ", " +
           std::to_string(roi.height),
       [&] { return effect_->SetROI(roi.x, roi.y, roi.width, roi.height); });
}

void HostedEffect::BorrowPictures(const FramePictures& pictures, IDSEffectHost* host, std::int32_t field) {
  const auto offset = pictures.maskOffset;
  Made("SetEffectHost", "", [&] { return effect_->SetEffectHost(host); });
  Made("SetOutput", Describe(pictures.output), [&] { return effect_->SetOutput(pictures.output); });
  Made("SetInput", Describe(pictures.input), [&] { return effect_->SetInput(Borrow(pictures.input)); });
  Made("SetInput2", Describe(pictures.input2), [&] { return effect_->SetInput2(Borrow(pictures.input2)); });
  Made("SetPixelMask", Describe(pictures.mask),
       [&] { return effect_->SetPixelMask(Borrow(pictures.mask), offset[0], offset[1]); });
  Made("SetField", std::to_string(field), [&] { return effect_->SetField(field); });
}

HRESULT HostedEffect::RenderBorrowed(const FramePictures& pictures, double time) {
  const std::string at = FormatNumber(time);
  HRESULT result = Made("Verify", "", [&] { return effect_->Verify(); });
  if (result != kOk) return result;
  const GUID format = pictures.output == nullptr ? GUID{} : pictures.output->Format();
  result = Made("IsFormatSupported", FormatGuid(format), [&] { return effect_->IsFormatSupported(format); });
  if (result != kOk) return result;
  AskOverscan(time);
  if ((result = Made("PrepareData", "", [&] { return effect_->PrepareData(); })) != kOk) return result;
  if ((result = Made("Setup", "", [&] { return effect_->Setup(); })) != kOk) return result;
  result = Made("BeginFrame", at, [&] { return effect_->BeginFrame(time); });
  if (result == kOk) {
    result = Made("RenderFrame", at, [&] { return effect_->RenderFrame(time); });
    Made("EndFrame", "", [&] { return effect_->EndFrame(); });
  }
  Made("Cleanup", "", [&] { return effect_->Cleanup(); });
  return result;
}

void HostedEffect::AskOverscan(double time) {
  InputOverscan& o = overscan_;
  Made("GetInputOverscan", FormatNumber(time),
       [&] { return effect_->GetInputOverscan(time, &o.left, &o.right, &o.bottom, &o.top); });
}

InputOverscan HostedEffect::MeasureOverscan(const FramePictures& pictures, IDSEffectHost& host, double time,
                                            std::int32_t field) {
  BorrowPictures(pictures, &host, field);
  AskOverscan(time);
  BorrowPictures({}, nullptr, 0);
  return overscan_;
}

void HostedEffect::BeginFrameRange(double first, double last) {
  Made("BeginFrameRange", FormatNumber(first) + ", " + FormatNumber(last),
       [&] { return effect_->BeginFrameRange(first, last); });
}

void HostedEffect::EndFrameRange() {
  Made("EndFrameRange", "", [&] { return effect_->EndFrameRange(); });
}

HRESULT HostedEffect::RenderFrame(const FramePictures& pictures, IDSEffectHost& host, double time, std::int32_t field) {
  BorrowPictures(pictures, &host, field);
  const HRESULT result = RenderBorrowed(pictures, time);
  BorrowPictures({}, nullptr, 0);
  if (facts_ && facts_->RanOutOfMemory()) throw std::bad_alloc();
  return result;
}

std::string HostedEffect::WhyNotRendered() const {
  const FrameRefusal refusal = facts_ ? facts_->WhyNotRendered() : FrameRefusal{};
  if (refusal.reason == nullptr) return {};
  return refusal.picture == nullptr ? refusal.reason : std::string("its ") + refusal.picture + " " + refusal.reason;
}

BlurSizeFacts HostedEffect::DescribeBlurSize(double blur) const {
  return facts_ ? facts_->DescribeBlurSize(blur) : BlurSizeFacts{};
}

void HostedEffect::SetCpuLevel(const std::string& level) {
  const auto process = effect_.As<IVBlurProcess>();
  if (!process) throw Failure(ExitCode::WrongUsage, "the effect has no CPU levels to choose from");
  if (process->SetCpuLevel(LevelNamed(level, process->GetCpuLevels()).c_str()) == kOk) return;
  throw Failure(ExitCode::WrongUsage, "unknown CPU level " + Quoted(level) +
                                          ", expected one of these: " + std::string(process->GetCpuLevels()));
}

bool HostedEffect::UsesVectors() const {
  const auto process = effect_.As<IVBlurProcess>();
  return !process || std::string_view(process->GetCpuLevel()) != "twin";
}

void HostedEffect::SetRenderThreads(std::int32_t count) {
  if (const auto process = effect_.As<IVBlurProcess>(); process) process->SetRenderThreads(count);
}

}  // namespace vblur::host
