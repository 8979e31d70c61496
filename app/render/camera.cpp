#include "app/render/camera.h"

#include <QtMath>
#include <algorithm>
#include <array>
#include <cmath>

namespace tarvo::skarnvisor::app {
namespace {

struct View {
  const char *name;
  float azimuthDeg;
  float elevationDeg;
  /// Distance of the eye and of the target ahead of the sensor, as shares of the scene's radius.
  float distance;
  float ahead;
};

const QVector3D upward(0, 0, 1);

constexpr std::array<View, 7> views{{
    {"default", 0, 24, 1.35F, 0.55F},
    {"top", 0, 89.9F, 2.5F, 0.0F},
    {"front", 180, 20, 1.6F, 0.0F},
    {"back", 0, 12, 1.6F, 0.0F},
    {"left", 90, 15, 1.6F, 0.0F},
    {"right", -90, 15, 1.6F, 0.0F},
    {"bottom", 0, -89.9F, 2.5F, 0.0F},
}};

}  // namespace

QStringList OrbitCamera::viewNames() {
  QStringList names;
  for (const View &view : views) names << QString::fromLatin1(view.name);
  return names;
}

bool OrbitCamera::setView(const QString &name, const SceneExtent &scene) {
  for (const View &view : views) {
    if (name != QLatin1String(view.name)) continue;
    m_azimuthDeg = view.azimuthDeg;
    m_elevationDeg = view.elevationDeg;
    m_distance = std::max(view.distance * scene.radius, 1.0F);
    m_target = QVector3D(0, view.ahead * scene.radius, scene.ground);
    return true;
  }
  return false;
}

void OrbitCamera::fit(const SceneExtent &scene) {
  m_target = QVector3D(0, 0, (scene.ground + scene.ceiling) / 2);
  m_distance = std::max(scene.radius / std::tan(qDegreesToRadians(fieldOfViewDeg / 2)), 1.0F);
}

void OrbitCamera::setPivot(QVector3D point) {
  m_distance = std::clamp((point - eye()).length(), 0.2F, 3000.0F);
  m_target = point;
}

void OrbitCamera::orbit(float azimuthDeg, float elevationDeg) {
  m_azimuthDeg = std::remainder(m_azimuthDeg + azimuthDeg, 360.0F);
  m_elevationDeg = std::clamp(m_elevationDeg + elevationDeg, -89.9F, 89.9F);
}

void OrbitCamera::pan(float right, float up) {
  const float height = 2 * halfHeight();
  const QVector3D forward = (m_target - eye()).normalized();
  const QVector3D rightward = QVector3D::crossProduct(forward, upward).normalized();
  m_target += (rightward * right + QVector3D::crossProduct(rightward, forward) * up) * height;
}

void OrbitCamera::zoom(float factor) { m_distance = std::clamp(m_distance * factor, 0.2F, 3000.0F); }

void OrbitCamera::zoomAt(float factor, QPointF at, float aspect) {
  const float before = m_distance;
  zoom(factor);
  // In picture heights: half of them from the middle to the edge.
  const float share = (before / m_distance - 1) / 2;
  pan(static_cast<float>(at.x()) * aspect * share, static_cast<float>(at.y()) * share);
}

float OrbitCamera::halfHeight() const { return m_distance * std::tan(qDegreesToRadians(fieldOfViewDeg / 2)); }

float OrbitCamera::pixelsPerMetre(float pictureHeight) const {
  const float half = m_orthographic ? halfHeight() : std::tan(qDegreesToRadians(fieldOfViewDeg / 2));
  return pictureHeight / (2 * half);
}

QVector3D OrbitCamera::eye() const {
  const float azimuth = qDegreesToRadians(m_azimuthDeg);
  const float elevation = qDegreesToRadians(m_elevationDeg);
  const QVector3D backward(-std::sin(azimuth) * std::cos(elevation), -std::cos(azimuth) * std::cos(elevation),
                           std::sin(elevation));
  return m_target + backward * m_distance;
}

QMatrix4x4 OrbitCamera::viewMatrix() const {
  QMatrix4x4 matrix;
  matrix.lookAt(eye(), m_target, upward);
  return matrix;
}

QMatrix4x4 OrbitCamera::projectionMatrix(float aspect) const {
  QMatrix4x4 matrix;
  if (m_orthographic) {
    const float half = halfHeight();
    matrix.ortho(-half * aspect, half * aspect, -half, half, -3000.0F, m_distance + 3000.0F);
    return matrix;
  }
  // The near plane follows the zoom, which keeps the depth buffer's steps small where the eye is.
  matrix.perspective(fieldOfViewDeg, aspect, std::max(0.02F, m_distance * 0.01F), m_distance + 3000.0F);
  return matrix;
}

}  // namespace tarvo::skarnvisor::app
