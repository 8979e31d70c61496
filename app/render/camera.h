#pragma once

#include <QMatrix4x4>
#include <QPointF>
#include <QString>
#include <QStringList>
#include <QVector3D>
#include <optional>

namespace tarvo::skarnvisor::app {

/// Where the points are: horizontal reach around the sensor and ground height, metres. The sensor stands at the origin.
struct SceneExtent {
  float radius = 50;
  float ground = -2;
  float ceiling = 5;
};

/// A camera that turns around a target, with perspective or without. z is up; +y is the sensor's forward direction, x
/// is to its right.
class OrbitCamera {
 public:
  /// Pulls the eye to a view of that name (see `viewNames()`), fitted to the scene; false and unchanged for another
  /// name.
  bool setView(const QString &name, const SceneExtent &scene);
  /// The first is the default.
  static QStringList viewNames();

  /// Keeps the direction and steps back until the scene fits.
  void fit(const SceneExtent &scene);
  /// Turns around `point` from now on, and looks at it; the eye keeps its distance to it.
  void setPivot(QVector3D point);
  void setOrthographic(bool on) { m_orthographic = on; }
  bool isOrthographic() const { return m_orthographic; }

  /// Turns around the target; the elevation stops short of the poles. Degrees.
  void orbit(float azimuthDeg, float elevationDeg);
  /// Moves the target in the picture plane by a share of the picture's height.
  void pan(float right, float up);
  /// Multiplies the distance to the target.
  void zoom(float factor);
  /// The same, but what lies in the target's plane under `at` stays there. `at`: from -1 to 1 over the picture, y up.
  void zoomAt(float factor, QPointF at, float aspect);

  QMatrix4x4 viewMatrix() const;
  QMatrix4x4 projectionMatrix(float aspect) const;
  QVector3D eye() const;
  QVector3D target() const { return m_target; }
  /// Pixels that a metre has at a depth of 1 m, and without perspective at any depth.
  float pixelsPerMetre(float pictureHeight) const;
  float distance() const { return m_distance; }
  float azimuthDeg() const { return m_azimuthDeg; }
  float elevationDeg() const { return m_elevationDeg; }
  static constexpr float fieldOfViewDeg = 45;

 private:
  /// Half of the height that the picture shows in the target's plane, metres.
  float halfHeight() const;

  QVector3D m_target{0, 15, 0};
  float m_distance = 45;
  /// Direction of looking, from +y clockwise seen from above.
  float m_azimuthDeg = 0;
  /// Height of the eye above the target's horizon.
  float m_elevationDeg = 25;
  bool m_orthographic = false;
};

}  // namespace tarvo::skarnvisor::app
