#pragma once

#include <QSharedPointer>

#include "contracts/host/functor.h"
#include "contracts/host/toggle.h"

namespace tarvo::skarnvisor {

/// The entry of the point-cloud file pipeline: it holds the input switch through which a folder comes in.
class DefaultPcdLoader : public Functor {
  Q_OBJECT
  Q_PROPERTY(tarvo::skarnvisor::InputFileToggle *inputFileToggle READ inputFileToggle CONSTANT)

 public:
  Q_INVOKABLE explicit DefaultPcdLoader(QObject *parent);
  Q_INVOKABLE DefaultPcdLoader();
  ~DefaultPcdLoader() override;

  [[nodiscard]] virtual InputFileToggle *inputFileToggle() const { return m_inputFileToggle.data(); }

 private:
  QSharedPointer<InputFileToggle> m_inputFileToggle;
};

}  // namespace tarvo::skarnvisor
