// The server is unloaded after it has drawn its controls.
#include <gtest/gtest.h>

#include "host/hosted/ExecuteContext.h"
#include "host/viewer/ViewSession.h"
#include "tests/support/ImportHook_windows.h"
// It includes the system's header, which goes behind those of the project.
#include <GL/glu.h>

namespace vblur::host {
namespace {

int quadricsMade = 0;
int quadricsDeleted = 0;

GLUquadric* WINAPI MakeQuadric() {
  ++quadricsMade;
  return gluNewQuadric();
}

void WINAPI DeleteQuadric(GLUquadric* quadric) {
  ++quadricsDeleted;
  gluDeleteQuadric(quadric);
}

void PaintControls(const EffectServer& server) {
  Job job;
  job.depth = 8;
  job.kind = EffectKind::Generator;
  job.output.file = "none.png";
  job.output.width = 64;
  job.output.height = 64;
  ExecuteContext context;
  ViewSession session(job, 0, {}, server.Factory(), context, nullptr);
  session.OpenPage("FullBlurPPG", false);
  HostImage picture;
  session.Paint(picture);
}

TEST(ServerUnload, DeletesTheQuadricOfTheOverlay) {
  ASSERT_EQ(::GetModuleHandleW(L"V_Blur.dll"), nullptr) << "another test holds it";
  {
    const EffectServer server(DefaultServerFile());
    HINSTANCE const library = ::GetModuleHandleW(L"V_Blur.dll");
    ASSERT_NE(library, nullptr);
    test::HookImport(library, "glu32.dll", "gluNewQuadric", &MakeQuadric);
    test::HookImport(library, "glu32.dll", "gluDeleteQuadric", &DeleteQuadric);
    PaintControls(server);
    EXPECT_EQ(quadricsMade, 1);
    EXPECT_EQ(quadricsDeleted, 0);
  }
  EXPECT_EQ(::GetModuleHandleW(L"V_Blur.dll"), nullptr);
  EXPECT_EQ(quadricsDeleted, 1);
}

// What is called in the place of gluDeleteQuadric ends the process with a code of its own.
TEST(ServerUnload, DeletesTheQuadricWhereTheProcessEndsFirst) {
  constexpr int kDeleted = 77;
  const auto endWithAQuadric = [] {
    const EffectServer server(DefaultServerFile());
    HINSTANCE const library = ::GetModuleHandleW(L"V_Blur.dll");
    void (*const end)(GLUquadric*) = [](GLUquadric*) { ::TerminateProcess(::GetCurrentProcess(), kDeleted); };
    test::HookImport(library, "glu32.dll", "gluDeleteQuadric", end);
    PaintControls(server);
    ::ExitProcess(0);
  };
  EXPECT_EXIT(endWithAQuadric(), testing::ExitedWithCode(kDeleted), "");
}

}  // namespace
}  // namespace vblur::host
