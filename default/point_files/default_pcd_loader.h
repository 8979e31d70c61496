#pragma once

#include <QSharedPointer>

#include "contracts/host/functor.h"
#include "contracts/host/toggle.h"

namespace tarvo::skarnvisor {

namespace Category {
class Instance;
}

/// The entry of the point-cloud file pipeline: it holds the input switch through which a folder comes in, and builds
/// one pipeline a folder as a sub-category of its own category.
class DefaultPcdLoader : public Functor {
  Q_OBJECT
  Q_PROPERTY(tarvo::skarnvisor::InputFileToggle *inputFileToggle READ inputFileToggle CONSTANT)

 public:
  Q_INVOKABLE explicit DefaultPcdLoader(QObject *parent);
  Q_INVOKABLE DefaultPcdLoader();
  ~DefaultPcdLoader() override;

  /// Builds the pipeline of the toggle's source. @throws std::runtime_error when the host cannot make it; nothing stays
  /// behind
  void operator()() override;
  [[nodiscard]] virtual InputFileToggle *inputFileToggle() const { return m_inputFileToggle.data(); }

 private:
  void wire(Category::Instance &made, const QString &key);

  QSharedPointer<InputFileToggle> m_inputFileToggle;
  int m_pipelinesMade = 0;  ///< thread of the object
};

}  // namespace tarvo::skarnvisor
