#pragma once

#include "contracts/host/functor.h"

namespace tarvo::skarnvisor {

/// The last stage of the point-cloud file pipeline.
class DefaultPcdParser : public Functor {
  Q_OBJECT

 public:
  Q_INVOKABLE explicit DefaultPcdParser(QObject *parent);
  Q_INVOKABLE DefaultPcdParser();
  ~DefaultPcdParser() override;
};

}  // namespace tarvo::skarnvisor
