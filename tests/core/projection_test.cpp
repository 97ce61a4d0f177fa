// Projection enforcement on redraw.
#include <gmock/gmock.h>

#include <cmath>

#include "prefs/projection.h"
#include "tests/support/plugin_fixture.h"

namespace hublet {
namespace testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;

const Matrix43 kUserView = {{{1, 0, 0}, {0, 0.8f, -0.6f}, {0, 0.6f, 0.8f}, {10, -20, 30}}};

class ProjectionTest : public PluginTest {
 protected:
  void StartWithSwitches(int persp, int ortho) {
    StartWith("[FLINT]\nFORCEPERSP=" + std::to_string(persp) + "\nFORCEORTHO=" + std::to_string(ortho) + "\n");
  }
  // The view commands act on the active viewport, so the redrawn one is made active.
  SimView& view0() {
    host().activeViewport = 0;
    return host().viewport(0);
  }
};

TEST_F(ProjectionTest, AnOrthographicUserViewBecomesACameraViewStandingBackTwoHundred) {
  StartWithSwitches(1, 0);
  host().SetTime(960);
  view0().type = host::kViewIsoUser;
  view0().transform = kUserView;
  // The view steps back 200 along its z axis; the camera's transform is the inverse of
  // that view: the transposed rotation, and the translation -t * R^T.
  const char kBackedOff[] = "[1 0 0 | 0 0.8 -0.6 | 0 0.6 0.8 | 10 -20 -170]";
  const Matrix43 kCamera = {{{1, 0, 0}, {0, 0.8f, 0.6f}, {0, -0.6f, 0.8f}, {-10, -86, 148}}};
  EXPECT_THAT(Redraw(0), ElementsAre("view[0].Type() -> 6", "view[0].AffineTransform() -> " + FormatMatrix(kUserView),
                                     "CreateCameraObject(1) -> camera#1", "CreateObjectNode(camera) -> node#1",
                                     "CurrentTime() -> 960", StartsWith("SetNodeTransform(node#1, 960, "),
                                     "view[0].SetViewCamera(node#1)", "SelectNode(node#1, 1)",
                                     std::string("view[0].SetAffineTransform(") + kBackedOff + ")",
                                     "ForceCompleteRedraw(true)"));
  ASSERT_EQ(host().nodes.size(), 1u);
  for (int r = 0; r < 4; ++r)
    for (int c = 0; c < 3; ++c) EXPECT_NEAR(host().nodes[0].transform.m[r][c], kCamera.m[r][c], 1e-4) << r << c;
  EXPECT_EQ(view0().type, host::kViewCamera);
  EXPECT_EQ(host().selection, std::vector<int>{1});
  EXPECT_THAT(Redraw(0), ElementsAre("view[0].Type() -> 8"));  // a camera view is left alone
}

TEST_F(ProjectionTest, APerspectiveUserViewBecomesOrthographic) {
  StartWithSwitches(0, 1);
  view0().type = host::kViewPerspUser;
  EXPECT_THAT(Redraw(0), ElementsAre("view[0].Type() -> 7", "ExecuteCommand(118)", "ForceCompleteRedraw(true)"));
  EXPECT_EQ(view0().type, host::kViewIsoUser);
}

TEST_F(ProjectionTest, BothSwitchesTurnAPerspectiveViewIntoOneCameraOverTwoRedraws) {
  StartWithSwitches(1, 1);
  view0().type = host::kViewPerspUser;
  Redraw(0);
  EXPECT_EQ(view0().type, host::kViewIsoUser);
  EXPECT_TRUE(host().nodes.empty());
  Redraw(0);
  EXPECT_EQ(view0().type, host::kViewCamera);
  Redraw(0);
  EXPECT_EQ(host().nodes.size(), 1u);
}

TEST(Matrix, InverseUndoesAnAffineTransformAndSurvivesASingularOne) {
  const Matrix43 m = {{{0, 2, 0}, {-1, 0, 0}, {0, 0, 4}, {5, 6, 7}}};
  const Matrix43 inv = Inverse(m);
  // p * m * inv == p for a few points.
  for (const float* p : {m.m[3], m.m[0]}) {
    float q[3], back[3];
    for (int c = 0; c < 3; ++c) q[c] = p[0] * m.m[0][c] + p[1] * m.m[1][c] + p[2] * m.m[2][c] + m.m[3][c];
    for (int c = 0; c < 3; ++c)
      back[c] = q[0] * inv.m[0][c] + q[1] * inv.m[1][c] + q[2] * inv.m[2][c] + inv.m[3][c];
    for (int c = 0; c < 3; ++c) EXPECT_NEAR(back[c], p[c], 1e-5);
  }
  const Matrix43 singular = {{{1, 2, 3}, {2, 4, 6}, {0, 0, 1}, {1, 1, 1}}};
  EXPECT_EQ(Inverse(singular), IdentityMatrix());
  // An inverse too large for a float saturates instead of overflowing the conversion.
  const Matrix43 tiny = {{{1e-39f, 0, 0}, {0, 1, 0}, {0, 0, 1}, {1, 1, 1}}};
  EXPECT_TRUE(std::isinf(Inverse(tiny).m[0][0]));
}

}  // namespace
}  // namespace testing
}  // namespace hublet
