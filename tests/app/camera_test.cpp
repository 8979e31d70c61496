#include "app/render/camera.h"

#include <gtest/gtest.h>

#include <cmath>

namespace tarvo::skarnvisor::app {
namespace {

constexpr SceneExtent scene{.radius = 40, .ground = -2, .ceiling = 6};

QVector3D project(const OrbitCamera &camera, QVector3D place) {
  return (camera.projectionMatrix(1.5F) * camera.viewMatrix()).map(place);
}

TEST(OrbitCamera, EveryViewCentresItsTargetAndAnUnknownNameChangesNothing) {
  for (const QString &name : OrbitCamera::viewNames()) {
    OrbitCamera camera;
    ASSERT_TRUE(camera.setView(name, scene));
    const QVector3D centre = project(camera, camera.target());
    EXPECT_NEAR(centre.x(), 0, 1e-4) << name.toStdString();
    EXPECT_NEAR(centre.y(), 0, 1e-4) << name.toStdString();
    const QMatrix4x4 before = camera.viewMatrix();
    EXPECT_FALSE(camera.setView("sideways", scene));
    EXPECT_EQ(camera.viewMatrix(), before);
  }
}

TEST(OrbitCamera, TheDefaultViewStandsBehindAndAboveTheSensorAndLooksForward) {
  OrbitCamera camera;
  camera.setView("default", scene);
  EXPECT_LT(camera.eye().y(), 0);
  EXPECT_GT(camera.eye().z(), 5);
  const QVector3D sensor = project(camera, {0, 0, 0});
  const QVector3D ahead = project(camera, {0, 30, -2});
  const QVector3D right = project(camera, {10, 0, 0});
  EXPECT_LT(std::abs(sensor.y()), 1) << "the sensor is inside the picture";
  EXPECT_GT(ahead.y(), sensor.y());
  EXPECT_GT(right.x(), sensor.x());
}

TEST(OrbitCamera, StandardViewsPutTheAxesWhereTheirNamesSay) {
  struct Case {
    const char *name;
    QVector3D toTheRight;
    QVector3D upOrFar;
  };
  const Case cases[] = {{"top", {5, 0, -2}, {0, 5, -2}},
                        {"back", {5, 0, -2}, {0, 0, 5}},
                        {"front", {-5, 0, -2}, {0, 0, 5}},
                        {"left", {0, -5, -2}, {0, 0, 5}},
                        {"right", {0, 5, -2}, {0, 0, 5}}};
  for (const Case &row : cases) {
    OrbitCamera camera;
    ASSERT_TRUE(camera.setView(row.name, scene));
    EXPECT_GT(project(camera, row.toTheRight).x(), 0.02F) << row.name;
    EXPECT_GT(project(camera, row.upOrFar).y(), 0.02F) << row.name;
  }
}

TEST(OrbitCamera, PanMovesTheSceneByTheShareOfThePicture) {
  OrbitCamera camera;
  camera.setView("back", scene);
  const QVector3D held = camera.target();
  camera.pan(0.25F, -0.1F);
  const QVector3D now = project(camera, held);
  EXPECT_NEAR(now.x() * 1.5F / 2, -0.25F, 1e-3);
  EXPECT_NEAR(now.y() / 2, 0.1F, 1e-3);
}

TEST(OrbitCamera, OrbitAndZoomStayWithinTheirLimits) {
  OrbitCamera camera;
  camera.orbit(350, 500);
  EXPECT_NEAR(camera.azimuthDeg(), -10, 1e-3);
  EXPECT_LT(camera.elevationDeg(), 90);
  camera.orbit(0, -1000);
  EXPECT_GT(camera.elevationDeg(), -90);
  camera.zoom(1e9F);
  EXPECT_LE(camera.distance(), 3000);
  camera.zoom(1e-9F);
  EXPECT_GT(camera.distance(), 0);
  EXPECT_FALSE(std::isnan(camera.viewMatrix()(0, 0)));
}

TEST(OrbitCamera, ZoomingKeepsWhatIsUnderTheCursorInPlaceWithAndWithoutPerspective) {
  for (const bool orthographic : {false, true}) {
    OrbitCamera camera;
    camera.setView("default", scene);
    camera.setOrthographic(orthographic);
    const QPointF cursor(0.4, -0.3);
    // The place in the target's plane that is drawn at the cursor.
    const QMatrix4x4 matrix = camera.projectionMatrix(1.5F) * camera.viewMatrix();
    const float depth = matrix.map(camera.target()).z();
    const QVector3D place = matrix.inverted().map(QVector3D(0.4F, -0.3F, depth));
    camera.zoomAt(0.5F, cursor, 1.5F);
    const QVector3D after = project(camera, place);
    EXPECT_NEAR(after.x(), 0.4, 1e-3);
    EXPECT_NEAR(after.y(), -0.3, 1e-3);
  }
}

TEST(OrbitCamera, APivotComesIntoTheMiddleAndTheEyeKeepsItsDistance) {
  OrbitCamera camera;
  camera.setView("default", scene);
  const QVector3D pivot(5, 12, 1);
  const float before = (camera.eye() - pivot).length();
  camera.setPivot(pivot);
  EXPECT_NEAR(project(camera, pivot).x(), 0, 1e-4);
  EXPECT_NEAR((camera.eye() - pivot).length(), before, 1e-3);
}

}  // namespace
}  // namespace tarvo::skarnvisor::app
