#pragma once

#include <QDir>
#include <QString>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

#include "tests/support/test_environment.h"

namespace tarvo::skarnvisor::test {

/// Writes `bytes` to a file of this process and returns its path.
inline std::string writeFile(const std::string &name, const std::string &bytes) {
  const std::string path = QDir::current().filePath(QString::fromStdString(name)).toLocal8Bit().toStdString();
  std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  return path;
}

/// A fresh, empty folder of this process.
inline QString freshFolder(const QString &name) {
  QDir(name).removeRecursively();
  QDir().mkpath(name);
  return QDir::current().filePath(name);
}

/// The same into a folder.
inline void writeInto(const QString &folder, const char *name, const std::string &bytes) {
  writeFile((folder + "/" + name).toLocal8Bit().toStdString(), bytes);
}

/// The bytes of a number, little-endian as the machine.
template <typename T>
std::string bytesOf(T value) {
  std::string bytes(sizeof value, '\0');
  std::memcpy(bytes.data(), &value, sizeof value);
  return bytes;
}

/// A PCD file: header lines, without the DATA line's keyword, then the data.
inline std::string pcdText(const std::string &fields, const std::string &sizes, const std::string &types,
                           const std::string &points, const std::string &kind, const std::string &data) {
  return "# .PCD v.7\nVERSION .7\nFIELDS " + fields + "\nSIZE " + sizes + "\nTYPE " + types + "\nWIDTH " + points +
         "\nHEIGHT 1\nPOINTS " + points + "\nDATA " + kind + "\n" + data;
}

/// One record of a BIN file.
inline std::string binRecord(float x, float y, float z, std::uint16_t intensity, std::uint16_t confidence,
                             std::uint16_t ring) {
  return bytesOf(x) + bytesOf(y) + bytesOf(z) + bytesOf(intensity) + bytesOf(confidence) + bytesOf(ring);
}

/// `bytes` as LZF literals: what any packer may write, 32 bytes a run.
inline std::string lzfLiterals(const std::string &bytes) {
  std::string packed;
  for (std::size_t at = 0; at < bytes.size(); at += 32) {
    const std::string run = bytes.substr(at, 32);
    packed += static_cast<char>(run.size() - 1) + run;
  }
  return packed;
}

/// A binary_compressed data section.
inline std::string compressedSection(const std::string &packed, std::uint32_t unpackedSize) {
  return bytesOf(static_cast<std::uint32_t>(packed.size())) + bytesOf(unpackedSize) + packed;
}

/// Files that other programs wrote; empty where they do not lie beside the sources.
inline QString realDataFolder() {
  const QString named = qEnvironmentVariable("SKARNVISOR_TEST_DATA");
  const QString folder =
      QDir::cleanPath(named.isEmpty() ? QString::fromUtf8(SKARNVISOR_SOURCE_DIR) + "/../shared/data" : named);
  return QDir(folder).exists() ? folder : QString();
}

}  // namespace tarvo::skarnvisor::test
