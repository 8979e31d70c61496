#pragma once

#include <QString>

namespace tarvo::skarnvisor::app {

/// Leads from the 0-to-1 value in a colour word back to the attribute's own unit: own = value * factor + offset.
struct AttributeScale {
  double factor = 1;
  double offset = 0;
  QString unit;

  double own(double value) const { return value * factor + offset; }
};

/// The scale of a colour mode, by its title; titles without one keep the share.
AttributeScale attributeScale(const QString &title);

}  // namespace tarvo::skarnvisor::app
