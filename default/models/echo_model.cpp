#include "default/models/echo_model.h"

#include <array>

namespace tarvo::skarnvisor {

namespace {

struct ReturnMode {
  unsigned char code;
  const char *name;
  std::array<const char *, 3> titles;  ///< behind "Any"; null ends the list
};

constexpr std::array modes{
    ReturnMode{50, "secondStrongest", {}},
    ReturnMode{51, "first", {}},
    ReturnMode{52, "second", {}},
    ReturnMode{53, "third", {}},
    ReturnMode{54, "forth", {}},
    ReturnMode{55, "strongest", {}},
    ReturnMode{56, "last", {}},
    ReturnMode{57, "last & strongest", {"Last", "Strongest"}},
    ReturnMode{58, "first & second", {"First", "Second"}},
    ReturnMode{59, "last & first", {"Last", "First"}},
    ReturnMode{60, "first & strongest", {"First", "Strongest"}},
    ReturnMode{61, "first & last & strongest", {"First", "Last", "Strongest"}},
    ReturnMode{62, "strongest & second", {"Strongest", "second"}},
    ReturnMode{63, "strongest & secondStrongest", {"Strongest", "secondStrongest"}},
    ReturnMode{64, "#1 & #2 & #3", {"#1", "#2", "#3"}},
};

constexpr ReturnMode firstBeforeLastMode{59, "first & last", {"First", "Last"}};

const ReturnMode *find(unsigned char code, bool firstBeforeLast) {
  if (code == firstBeforeLastMode.code && firstBeforeLast) return &firstBeforeLastMode;
  for (const ReturnMode &mode : modes) {
    if (mode.code == code) return &mode;
  }
  return nullptr;
}

}  // namespace

EchoModel::EchoModel(QObject *parent) : QObject(parent) {}

QStringList EchoModel::echoTitles() const {
  QStringList titles{QStringLiteral("Any")};
  if (const ReturnMode *mode = find(m_returnMode, m_firstBeforeLast)) {
    for (const char *title : mode->titles) {
      if (title != nullptr) titles.append(QLatin1String(title));
    }
  }
  return titles;
}

bool EchoModel::storeReturnMode(unsigned char code) { return m_returnMode.exchange(code) != code; }

void EchoModel::setReturnMode(unsigned char code) {
  if (storeReturnMode(code)) Q_EMIT echoTitlesChanged();
}

QString EchoModel::returnModeName() const {
  const unsigned char code = m_returnMode;
  if (const ReturnMode *mode = find(code, m_firstBeforeLast)) return QLatin1String(mode->name);
  return QStringLiteral("0x") + QString::number(code, 16);
}

}  // namespace tarvo::skarnvisor
