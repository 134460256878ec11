#include "server/CDsClassFactory.h"

#include <atomic>
#include <barrier>
#include <chrono>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "platform/ComPtr.h"

namespace vblur {
namespace {

// Notes how many of its constructors run at a time.
class SlowObject final : public IUnknown {
 public:
  static inline std::atomic<int> made = 0;
  static inline std::atomic<int> inside = 0;
  static inline std::atomic<int> most = 0;

  SlowObject() {
    const int here = ++inside;
    for (int before = most; before < here && !most.compare_exchange_weak(before, here);) {
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    ++made;
    --inside;
  }

  HRESULT QueryInterface(const GUID& iid, void** result) override {
    *result = nullptr;
    if (iid != IUnknown::kIid) return kNoInterface;
    *result = this;
    AddRef();
    return kOk;
  }
  std::uint32_t AddRef() override { return references_.Add(); }
  std::uint32_t Release() override {
    const std::uint32_t left = references_.Drop();
    if (left == 0) delete this;
    return left;
  }

 private:
  ~SlowObject() = default;

  RefCount references_;
};

TEST(CDsClassFactory, MakesOneObjectAtATime) {
  constexpr int kThreads = 4;
  std::atomic<std::int32_t> locks = 0;
  const auto factory = ComPtr<IClassFactory>::Own(new CDsClassFactory<SlowObject>(locks));
  std::barrier begin(kThreads);
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i)
    threads.emplace_back([&] {
      begin.arrive_and_wait();
      ComPtr<IUnknown> object;
      EXPECT_EQ(factory->CreateInstance(nullptr, IUnknown::kIid, object.Receive()), kOk);
      EXPECT_TRUE(object);
    });
  for (std::thread& thread : threads)
    thread.join();
  EXPECT_EQ(SlowObject::made, kThreads);
  EXPECT_EQ(SlowObject::most, 1);
}

}  // namespace
}  // namespace vblur
