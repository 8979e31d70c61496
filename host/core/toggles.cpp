#include "contracts/host/toggle.h"
#include "contracts/runtime/runtime_factory.h"

namespace tarvo::skarnvisor {

Toggle::Toggle(QObject *parent) : QObject(parent) {}
Toggle::~Toggle() = default;

SDKToggle::SDKToggle(QObject *parent) : Toggle(parent) {}
SDKToggle::~SDKToggle() = default;

QSharedPointer<SDKSource> &SDKToggle::newSDKSource() {
  m_source = createSdkSource();
  return m_source;
}

InputSDKToggle::InputSDKToggle(QObject *parent) : SDKToggle(parent) {}
InputSDKToggle::~InputSDKToggle() = default;

FileSource::FileSource(QObject *parent) : QObject(parent), playState(std::make_shared<lidar::PlayState>()) {}
FileSource::~FileSource() = default;

FileToggle::FileToggle(QObject *parent) : Toggle(parent) {}
FileToggle::~FileToggle() = default;

QSharedPointer<FileSource> &FileToggle::newFileSource() {
  m_source = QSharedPointer<FileSource>::create();
  return m_source;
}

InputFileToggle::InputFileToggle(QObject *parent) : FileToggle(parent) {}
InputFileToggle::~InputFileToggle() = default;

TimeCursorToggle::TimeCursorToggle(QObject *parent) : Toggle(parent) {}
TimeCursorToggle::~TimeCursorToggle() = default;

void TimeCursorToggle::setTimeCursor(TimePoint cursor) {
  const Ticks::rep ticks = cursor.time_since_epoch().count();
  if (m_cursor.exchange(ticks, std::memory_order_acq_rel) != ticks) Q_EMIT timeCursorChanged();
}

QDateTime TimeCursorToggle::cursorDateTime() const { return toQDateTime(timeCursor()); }
void TimeCursorToggle::setCursorDateTime(const QDateTime &cursor) { setTimeCursor(fromQDateTime(cursor)); }

}  // namespace tarvo::skarnvisor
