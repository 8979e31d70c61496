#pragma once

#include "contracts/host/functor.h"

namespace tarvo::skarnvisor {

/// The functor of the point-cloud file pipeline that a folder's clip belongs to.
class DefaultPcdFileLoader : public Functor {
  Q_OBJECT

 public:
  Q_INVOKABLE explicit DefaultPcdFileLoader(QObject *parent);
  Q_INVOKABLE DefaultPcdFileLoader();
  ~DefaultPcdFileLoader() override;
};

}  // namespace tarvo::skarnvisor
