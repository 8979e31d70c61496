#include "default/telemetry/fault_messages.h"

#include "contracts/runtime/status_packet.h"

#include <algorithm>
#include <array>
#include <bitset>

namespace tarvo::skarnvisor {

namespace {

constexpr std::size_t packetBytes = tarvo::lidar::shortStatusPacketBytes;
constexpr std::size_t validByte = 5;
constexpr std::size_t valuesAtMost = 1000;

struct Field {
  const char *name;
  int (*value)(const unsigned char *packet);
};

constexpr std::array plainFields{
    Field{"Fault Message Version", [](const unsigned char *packet) -> int { return packet[0]; }},
    Field{"Lidar State", [](const unsigned char *packet) -> int { return packet[1] >> 5; }},
    Field{"Fault Code Type", [](const unsigned char *packet) -> int { return packet[1] >> 3 & 3; }},
    Field{"Total Fault Code Num", [](const unsigned char *packet) -> int { return packet[2] >> 4; }},
};

int faultCode(const unsigned char *packet) { return packet[3] | packet[4] << 8; }

/// In ascending order.
std::vector<int> distinctValues(const unsigned char *packets, int count, int (*value)(const unsigned char *)) {
  std::bitset<0x10000> seen;
  std::vector<int> values;
  for (int i = 0; i < count && values.size() < valuesAtMost; ++i) {
    const unsigned char *packet = packets + static_cast<std::size_t>(i) * packetBytes;
    if (packet[validByte] == 0) continue;
    const int found = value(packet);
    if (seen.test(static_cast<std::size_t>(found))) continue;
    seen.set(static_cast<std::size_t>(found));
    values.push_back(found);
  }
  std::sort(values.begin(), values.end());
  return values;
}

}  // namespace

std::vector<NamedValue> faultRows(const unsigned char *packets, int count) {
  std::vector<NamedValue> rows;
  const auto add = [&rows](const QString &name, const QVariant &value) {
    rows.push_back({static_cast<int>(rows.size()), name, value});
  };
  for (const Field &field : plainFields) {
    for (const int value : distinctValues(packets, count, field.value)) add(QLatin1String(field.name), value);
  }
  int number = 0;
  for (const int code : distinctValues(packets, count, faultCode))
    add(QStringLiteral("Fault Code %1").arg(++number), QStringLiteral("0x%1").arg(code, 4, 16, QLatin1Char('0')));
  return rows;
}

}  // namespace tarvo::skarnvisor
