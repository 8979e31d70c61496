#include "app/session/capture_check.h"

#include <QFile>
#include <QFileInfo>
#include <QtEndian>

namespace tarvo::skarnvisor::app {
namespace {

constexpr quint32 sectionHeader = 0x0a0d0d0a;
constexpr quint32 byteOrderMark = 0x1a2b3c4d;
constexpr qint64 classicHeaderBytes = 24;

bool isClassicMagic(quint32 magic) {
  constexpr quint32 microseconds = 0xa1b2c3d4;
  constexpr quint32 nanoseconds = 0xa1b23c4d;
  return magic == microseconds || magic == nanoseconds || magic == qbswap(microseconds) || magic == qbswap(nanoseconds);
}

/// Whether a block-structured capture holds a packet: an enhanced, simple or obsolete packet block.
bool holdsPacketBlock(QFile &file) {
  char head[12];
  bool swapped = false;
  qint64 position = 0;
  while (file.seek(position) && file.read(head, sizeof head) == sizeof head) {
    auto type = qFromLittleEndian<quint32>(head);
    auto length = qFromLittleEndian<quint32>(head + 4);
    if (type == sectionHeader) swapped = qFromLittleEndian<quint32>(head + 8) != byteOrderMark;
    if (swapped) {
      type = qbswap(type);
      length = qbswap(length);
    }
    if (type == 2 || type == 3 || type == 6) return true;
    if (length < 12) return false;
    position += length;
  }
  return false;
}

}  // namespace

QString captureFault(const QString &path) {
  const QFileInfo info(path);
  if (!info.exists()) return QStringLiteral("%1: no such file").arg(path);
  if (info.isDir()) return QStringLiteral("%1 is a folder, not a capture file").arg(path);
  if (!info.isFile()) return QStringLiteral("%1 is a pipe or a device, not a capture file").arg(path);
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return QStringLiteral("%1 cannot be read: %2").arg(path, file.errorString());
  if (file.size() == 0) return QStringLiteral("%1 is empty").arg(path);
  const QByteArray head = file.peek(4);
  const quint32 magic = head.size() == 4 ? qFromLittleEndian<quint32>(head.constData()) : 0;
  if (!isClassicMagic(magic) && magic != sectionHeader)
    return QStringLiteral(
               "%1 is not a capture, neither pcap nor pcapng: choose a .pcap, .pcapng, .pcd, .ply or .bin file")
        .arg(path);
  const bool empty = magic == sectionHeader ? !holdsPacketBlock(file) : file.size() <= classicHeaderBytes;
  return empty ? QStringLiteral("%1 is a capture without any packet").arg(path) : QString();
}

bool namesPointFiles(const QString &path) {
  const QFileInfo info(path);
  if (info.isDir()) return true;
  const QString suffix = info.suffix().toLower();
  return suffix == QLatin1String("ply") || suffix == QLatin1String("bin") || suffix == QLatin1String("pcd");
}

}  // namespace tarvo::skarnvisor::app
