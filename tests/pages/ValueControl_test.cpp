#include "pages/ValueControl.h"

#include "tests/pages/PlainPage.h"

namespace vblur {
namespace {

using namespace plain_page;
using host::Calls;
using host::CheckBoxControl;
using host::ListControl;
using host::NumberControl;

class ValueControlTest : public PageTest<PlainPage> {
 protected:
  template <class Value>
  Value GetDuringChange(const ValueControl<Value>& control) {
    const PlainPage::Change change(*page, GUID_NO_PROPERTY, nullptr);
    return control.Get();
  }
};

TEST_F(ValueControlTest, TakesItsRow) {
  const ControlRow row{7, 8, PropertyId::CropLeft, 1};
  const ValueControl<double> control(*page, row);
  EXPECT_EQ(control.page, page.get());
  EXPECT_EQ(control.controlId, 7u);
  EXPECT_EQ(control.labelId, 8u);
  EXPECT_EQ(control.property, PropertyOf(PropertyId::CropLeft).guid);
  EXPECT_EQ(control.localOnly, 0);
  EXPECT_EQ(control.value, 0.0);
  EXPECT_EQ(control.animated, 1);
  EXPECT_EQ(page->finish.animated, 0);
  EXPECT_EQ(page->channels.value, 0);
  EXPECT_FALSE(page->display.value);
  EXPECT_EQ(ValueControl<double>().property, GUID_NO_PROPERTY);
}

TEST_F(ValueControlTest, WritesAnAnimatedNumberAtTheSitesTime) {
  Open();
  site.time = 5.0;
  page->size.Set(33.5);
  EXPECT_EQ(site.Taken().back(), "SetAnimatedProperty Blur 33.5");
  EXPECT_EQ(page->size.value, 33.5);
  EXPECT_EQ(Get(PropertyId::Blur), 33.5);
  EXPECT_EQ(Of<NumberControl>(kSize).Value(), 33.5);
  Animate(PropertyId::Blur, 0.0, 100.0);
  page->size.Set(70.0);
  double value = 0.0;
  effect->GetValueAt(PropertyOf(PropertyId::Blur).guid, 5.0, &value);
  EXPECT_EQ(value, 70.0);
  EXPECT_EQ(Get(PropertyId::Blur), 33.5);
}

TEST_F(ValueControlTest, WritesThePlainFlavours) {
  Open();
  page->finish.Set(40.5);
  page->channels.Set(6);
  page->display.Set(true);
  EXPECT_EQ(site.TakenChanges(),
            (Calls{"begin", "end", "SetPlainProperty Finish Fading Out First Clip 40.5", "begin", "end",
                   "SetPlainProperty Channels 6", "begin", "end", "SetPlainProperty Display Cropped 1"}));
  EXPECT_EQ(Get(PropertyId::FinishFadingOutFirstClip), 40.5);
  EXPECT_EQ(Get(PropertyId::Channels), 6.0);
  EXPECT_EQ(Get(PropertyId::DisplayCropped), 1.0);
  EXPECT_TRUE(Of<CheckBoxControl>(kDisplay).IsChecked());
  page->display.Set(false);
  EXPECT_EQ(Get(PropertyId::DisplayCropped), 0.0);
  EXPECT_FALSE(Of<CheckBoxControl>(kDisplay).IsChecked());
}

TEST_F(ValueControlTest, WritesTypedVariants) {
  struct Typed : IDSPropertyNotify {
    void OnPropertyChanged(const GUID&, const DSVariant* value, std::uint32_t) override { last = *value; }
    DSVariant last;
  } typed;
  Open();
  effect->Advise(&typed);
  page->display.Set(true);
  EXPECT_EQ(typed.last.type, DSValueType::Boolean32);
  EXPECT_EQ(typed.last.whole, 1);
  page->channels.Set(2);
  EXPECT_EQ(typed.last.type, DSValueType::Integer32);
  EXPECT_EQ(typed.last.whole, 2);
  effect->Unadvise(&typed);
}

TEST_F(ValueControlTest, WritesWithTheUndoStyleOfItsPage) {
  Open();
  page->undoStyle = 2;
  page->size.Set(1.0);
  page->finish.Set(2.0);
  page->channels.Set(3);
  page->display.Set(true);
  EXPECT_EQ(site.TakenChanges(), (Calls{"SetAnimatedProperty Blur 1", "SetPlainProperty Finish Fading Out First Clip 2",
                                        "SetPlainProperty Channels 3", "SetPlainProperty Display Cropped 1"}));
}

TEST_F(ValueControlTest, MovesItsControlAfterTheWrite) {
  Open();
  for (const char16_t* entry : {u"zero", u"one", u"two"})
    SendMessageW(page->GetHwndControl(kChannels), CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(entry));
  page->SetObjects(0, nullptr);
  page->size.Set(8.0);
  page->channels.Set(2);
  page->display.Set(true);
  EXPECT_EQ(Of<NumberControl>(kSize).Value(), 8.0) << "even if the write fails";
  EXPECT_EQ(Of<ListControl>(kChannels).Selected(), 2);
  EXPECT_TRUE(Of<CheckBoxControl>(kDisplay).IsChecked());
  EXPECT_EQ(page->size.value, 8.0);
}

TEST_F(ValueControlTest, MayHaveNoControl) {
  Open();
  page->size.controlId = 0;
  page->size.Set(8.0);
  EXPECT_EQ(Get(PropertyId::Blur), 8.0);
  page->finish.controlId = 0;
  page->finish.localOnly = 1;
  page->finish.Set(5.0);
  EXPECT_EQ(Of<NumberControl>(kFinish).Value(), 100.0);
}

TEST_F(ValueControlTest, WritesAreNotKeptFromNoProperty) {
  Open();
  page->size.property = GUID_NO_PROPERTY;
  page->channels.property = GUID_NO_PROPERTY;
  page->size.Set(8.0);
  page->channels.Set(1);
  EXPECT_EQ(site.TakenChanges(), (Calls{"begin", "end", "SetAnimatedProperty nothing 8 fails", "begin", "end",
                                        "SetPlainProperty nothing 1 fails"}));
  EXPECT_EQ(page->size.value, 8.0);
  double read = 4.0;
  EXPECT_FALSE(page->size.Read(read)) << "but reads are";
  EXPECT_EQ(read, 4.0);
  EXPECT_EQ(site.Taken(), Calls{});
}

TEST_F(ValueControlTest, TouchesNoPropertyWhenLocal) {
  Open();
  page->size.localOnly = 1;
  page->channels.localOnly = 1;
  page->display.localOnly = 1;
  page->size.Set(9.0);
  page->channels.Set(2);
  page->display.Set(true);
  EXPECT_EQ(Of<NumberControl>(kSize).Value(), 9.0);
  EXPECT_TRUE(Of<CheckBoxControl>(kDisplay).IsChecked());
  EXPECT_EQ(GetDuringChange(page->size), 9.0);
  EXPECT_EQ(GetDuringChange(page->channels), 2);
  EXPECT_TRUE(GetDuringChange(page->display));
  EXPECT_EQ(site.Taken(), Calls{});
  EXPECT_EQ(Get(PropertyId::Blur), 10.0);
  EXPECT_EQ(Get(PropertyId::Channels), 1.0);
  EXPECT_EQ(Get(PropertyId::DisplayCropped), 0.0);
}

TEST_F(ValueControlTest, GetsTheKeptValueUnlessAChangeIsReported) {
  Open();
  site.time = 5.0;
  Animate(PropertyId::Blur, 0.0, 100.0);
  Put(PropertyId::FinishFadingOutFirstClip, 60.0);
  Put(PropertyId::DisplayCropped, 1.0);
  page->size.value = 1.0;
  page->finish.value = 2.0;
  page->channels.value = 3;
  page->display.value = false;
  site.Taken();
  EXPECT_EQ(page->size.Get(), 1.0);
  EXPECT_EQ(page->finish.Get(), 2.0);
  EXPECT_EQ(page->channels.Get(), 3);
  EXPECT_FALSE(page->display.Get());
  EXPECT_EQ(site.Taken(), Calls{});
  EXPECT_EQ(GetDuringChange(page->size), 50.0);
  EXPECT_EQ(GetDuringChange(page->finish), 60.0);
  EXPECT_EQ(GetDuringChange(page->channels), 1);
  EXPECT_TRUE(GetDuringChange(page->display));
  EXPECT_EQ(site.Taken(), (Calls{"GetAnimatedProperty Blur 50", "GetPlainProperty Finish Fading Out First Clip 60",
                                 "GetPlainProperty Channels 1", "GetPlainProperty Display Cropped 1"}));
  EXPECT_EQ(page->size.value, 1.0) << "nothing is kept";
}

TEST_F(ValueControlTest, GetsTheKeptValueWhenTheReadFails) {
  Open();
  page->SetObjects(0, nullptr);
  page->size.value = 1.0;
  page->finish.value = 2.0;
  page->channels.value = 3;
  page->display.value = true;
  EXPECT_EQ(GetDuringChange(page->size), 1.0);
  EXPECT_EQ(GetDuringChange(page->finish), 2.0);
  EXPECT_EQ(GetDuringChange(page->channels), 3);
  EXPECT_TRUE(GetDuringChange(page->display));
}

TEST_F(ValueControlTest, IsNothingWithoutAPage) {
  ValueControl<double> number;
  ValueControl<std::int32_t> whole;
  ValueControl<bool> tick;
  number.Set(5.0);
  whole.Set(6);
  tick.Set(true);
  EXPECT_EQ(number.value, 5.0);
  EXPECT_EQ(number.Get(), 0.0);
  EXPECT_EQ(whole.Get(), 0);
  EXPECT_FALSE(tick.Get());
  EXPECT_FALSE(number.Read(number.value));
}

}  // namespace
}  // namespace vblur
