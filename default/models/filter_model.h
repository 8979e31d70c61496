#pragma once

#include "default/models/filter_snapshot.h"
#include "default/models/settings_value.h"

#include <QObject>

#include <memory>

namespace tarvo::skarnvisor {

/// A slot of the point filter, in test order.
enum class FilterSlot {
  AzimuthCalib,
  ElevationCalib,
  Distance,
  X,
  Y,
  Z,
  Intensity,
  Confidence,
  WeightFactor,
  AngleState,
  TurnIndex,
  PointId,
  Confidence0,
  Confidence1,
  Confidence2,
  Confidence3,
  Confidence4567,
  Confidence01234,
  Confidence5,
  Confidence6,
  Confidence7,
  NbqVtArea,
  NbqVtStepId,
  NbqVtSpadId,
};

/// The user's range filter over point attributes, as the filter panel sees it. The panel reads which
/// slots are offered; the frame passes take a snapshot. Writers: the GUI thread, and the lidar type
/// configuration before the first frame.
class FilterModel : public QObject {
  Q_OBJECT
  Q_PROPERTY(bool filterEnabled READ filterEnabled NOTIFY filterEnabledChanged)
  Q_PROPERTY(int filterMode READ filterMode WRITE setFilterMode NOTIFY filterModeChanged)
  Q_PROPERTY(int highlight READ highlight WRITE setHighlightValue NOTIFY highlightChanged)
  Q_PROPERTY(int azimuthCalibFilterFlag READ azimuthCalibFilterFlag NOTIFY filterListChange)
  Q_PROPERTY(int elevationCalibFilterFlag READ elevationCalibFilterFlag NOTIFY filterListChange)
  Q_PROPERTY(int distanceFilterFlag READ distanceFilterFlag NOTIFY filterListChange)
  Q_PROPERTY(int xFilterFlag READ xFilterFlag NOTIFY filterListChange)
  Q_PROPERTY(int yFilterFlag READ yFilterFlag NOTIFY filterListChange)
  Q_PROPERTY(int zFilterFlag READ zFilterFlag NOTIFY filterListChange)
  Q_PROPERTY(int intensityFilterFlag READ intensityFilterFlag NOTIFY filterListChange)
  Q_PROPERTY(int confidenceFilterFlag READ confidenceFilterFlag NOTIFY filterListChange)
  Q_PROPERTY(int weightFactorFilterFlag READ weightFactorFilterFlag NOTIFY filterListChange)
  Q_PROPERTY(int angleStateFilterFlag READ angleStateFilterFlag NOTIFY filterListChange)
  Q_PROPERTY(int turnIndexFilterFlag READ turnIndexFilterFlag NOTIFY filterListChange)
  Q_PROPERTY(int pointIdFilterFlag READ pointIdFilterFlag NOTIFY filterListChange)
  Q_PROPERTY(int confidence0FilterFlag READ confidence0FilterFlag NOTIFY filterListChange)
  Q_PROPERTY(int confidence1FilterFlag READ confidence1FilterFlag NOTIFY filterListChange)
  Q_PROPERTY(int confidence2FilterFlag READ confidence2FilterFlag NOTIFY filterListChange)
  Q_PROPERTY(int confidence3FilterFlag READ confidence3FilterFlag NOTIFY filterListChange)
  Q_PROPERTY(int confidence4567FilterFlag READ confidence4567FilterFlag NOTIFY filterListChange)
  Q_PROPERTY(int confidence01234FilterFlag READ confidence01234FilterFlag NOTIFY filterListChange)
  Q_PROPERTY(int confidence5FilterFlag READ confidence5FilterFlag NOTIFY filterListChange)
  Q_PROPERTY(int confidence6FilterFlag READ confidence6FilterFlag NOTIFY filterListChange)
  Q_PROPERTY(int confidence7FilterFlag READ confidence7FilterFlag NOTIFY filterListChange)
  Q_PROPERTY(int nbqVtAreaFilterFlag READ nbqVtAreaFilterFlag NOTIFY filterListChange)
  Q_PROPERTY(int nbqVtStepIdFilterFlag READ nbqVtStepIdFilterFlag NOTIFY filterListChange)
  Q_PROPERTY(int nbqVtSpadIdFilterFlag READ nbqVtSpadIdFilterFlag NOTIFY filterListChange)

 public:
  Q_INVOKABLE explicit FilterModel(QObject *parent);
  Q_INVOKABLE FilterModel() : FilterModel(nullptr) {}

  /// The state as it stands, for a pass over a frame. Any thread.
  std::shared_ptr<const FilterSnapshot> snapshot() const { return m_state.take(); }

  bool isFiltered(const tarvo::lidar::SDKPointInfo &point) const { return snapshot()->isFiltered(point); }

  /// Says whether a slot takes part in the test and shows in the panel.
  void setOffered(FilterSlot slot, bool offered);
  bool offered(FilterSlot slot) const { return snapshot()->offered[static_cast<std::size_t>(slot)]; }

  bool filterEnabled() const { return snapshot()->enabled; }
  int filterMode() const { return snapshot()->mode; }
  void setFilterMode(int mode);
  int highlight() const { return snapshot()->highlight; }
  void setHighlightValue(int highlight) { setHighlight(highlight != 0); }

  int azimuthCalibFilterFlag() const { return offered(FilterSlot::AzimuthCalib); }
  int elevationCalibFilterFlag() const { return offered(FilterSlot::ElevationCalib); }
  int distanceFilterFlag() const { return offered(FilterSlot::Distance); }
  int xFilterFlag() const { return offered(FilterSlot::X); }
  int yFilterFlag() const { return offered(FilterSlot::Y); }
  int zFilterFlag() const { return offered(FilterSlot::Z); }
  int intensityFilterFlag() const { return offered(FilterSlot::Intensity); }
  int confidenceFilterFlag() const { return offered(FilterSlot::Confidence); }
  int weightFactorFilterFlag() const { return offered(FilterSlot::WeightFactor); }
  int angleStateFilterFlag() const { return offered(FilterSlot::AngleState); }
  int turnIndexFilterFlag() const { return offered(FilterSlot::TurnIndex); }
  int pointIdFilterFlag() const { return offered(FilterSlot::PointId); }
  int confidence0FilterFlag() const { return offered(FilterSlot::Confidence0); }
  int confidence1FilterFlag() const { return offered(FilterSlot::Confidence1); }
  int confidence2FilterFlag() const { return offered(FilterSlot::Confidence2); }
  int confidence3FilterFlag() const { return offered(FilterSlot::Confidence3); }
  int confidence4567FilterFlag() const { return offered(FilterSlot::Confidence4567); }
  int confidence01234FilterFlag() const { return offered(FilterSlot::Confidence01234); }
  int confidence5FilterFlag() const { return offered(FilterSlot::Confidence5); }
  int confidence6FilterFlag() const { return offered(FilterSlot::Confidence6); }
  int confidence7FilterFlag() const { return offered(FilterSlot::Confidence7); }
  int nbqVtAreaFilterFlag() const { return offered(FilterSlot::NbqVtArea); }
  int nbqVtStepIdFilterFlag() const { return offered(FilterSlot::NbqVtStepId); }
  int nbqVtSpadIdFilterFlag() const { return offered(FilterSlot::NbqVtSpadId); }

  Q_INVOKABLE void setHighlight(bool flag);

  /// Takes over the limits: 12 numbers and 36 numbers, low before high, in slot order. `flag` takes
  /// effect even when a list has the wrong length; that list and those behind it are left alone.
  Q_INVOKABLE void setFilter(bool flag, QVariant fLimits, QVariant iLimits);

  /// Switches the filter off and restores the limits. Mode, highlight and offered slots stay.
  Q_INVOKABLE void reset();

 Q_SIGNALS:
  void filterEnabledChanged();
  void filterModeChanged();
  void filterListChange();
  void highlightChanged();

 private:
  Snapshot<FilterSnapshot> m_state;
};

}  // namespace tarvo::skarnvisor
