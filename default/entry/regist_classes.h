#pragma once

#include <QMetaObject>
#include <array>

namespace tarvo::skarnvisor {

/// The meta-objects of every class that the host may create by name, in the order of their registration.
const std::array<const QMetaObject *, 16> &registeredClasses();

}  // namespace tarvo::skarnvisor
