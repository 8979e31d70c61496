// Readers of point files on a million points each, beside a plain read of the same file from the page cache, and the
// scan of a folder of a thousand files beside its listing.

#include <dirent.h>
#include <fcntl.h>
#include <malloc.h>
#include <unistd.h>

#include <QString>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/measure.h"
#include "default/point_files/point_file_scan.h"
#include "default/point_files/readers/bin_reader.h"
#include "default/point_files/readers/lzf.h"
#include "default/point_files/readers/pcd_file_reader.h"
#include "default/point_files/readers/ply_reader.h"

#ifdef SKARNVISOR_HAVE_LZF
#include <lzf.h>
#endif

namespace tarvo::skarnvisor::bench {
namespace {

constexpr std::size_t pointCount = 1'000'000;
constexpr int folderFiles = 1000;

/// A folder that goes with its last user.
class Folder {
 public:
  Folder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "skarnvisor-bench-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder for the measures");
    m_path = pattern;
  }
  ~Folder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
  }
  Folder(const Folder &) = delete;
  Folder &operator=(const Folder &) = delete;
  [[nodiscard]] std::string write(const std::string &name, const std::string &bytes) const {
    std::string path = (m_path / name).string();
    std::FILE *file = std::fopen(path.c_str(), "wb");
    if (file == nullptr || std::fwrite(bytes.data(), 1, bytes.size(), file) != bytes.size() || std::fclose(file) != 0)
      throw std::runtime_error("cannot write " + path);
    return path;
  }
  [[nodiscard]] std::string path() const { return m_path.string(); }

 private:
  std::filesystem::path m_path;
};

struct Point {
  float x, y, z, intensity;
  std::uint16_t ring;
};

/// A sweep of rays with noise in every range, as a real sensor has it: text of full length, hard to compress.
std::vector<Point> street() {
  std::vector<Point> points(pointCount);
  std::mt19937 random(1);
  for (std::size_t i = 0; i < pointCount; ++i) {
    const auto angle = static_cast<float>(i % 2000) * 0.00314159F;
    const float range = 5.0F + static_cast<float>(random() % 4'500'000) * 1e-5F;
    points[i] = {range * std::sin(angle), range * std::cos(angle), range * 0.1F - 2.0F,
                 static_cast<float>(random() % 256), static_cast<std::uint16_t>(i / 2000 % 128 + 1)};
  }
  return points;
}

template <typename T>
void append(std::string &bytes, T value) {
  std::array<char, sizeof(T)> raw;
  std::memcpy(raw.data(), &value, sizeof value);
  bytes.append(raw.data(), raw.size());
}

std::string pcdHeader(const char *kind) {
  const std::string count = std::to_string(pointCount);
  return "VERSION .7\nFIELDS x y z intensity ring\nSIZE 4 4 4 4 2\nTYPE F F F F U\nCOUNT 1 1 1 1 1\nWIDTH " + count +
         "\nHEIGHT 1\nVIEWPOINT 0 0 0 1 0 0 0\nPOINTS " + count + "\nDATA " + kind + "\n";
}

std::string plyHeader(const char *format) {
  return std::string("ply\nformat ") + format + " 1.0\nelement vertex " + std::to_string(pointCount) +
         "\nproperty float x\nproperty float y\nproperty float z\nproperty float intensity\nproperty float confidence\n"
         "property ushort ring\nend_header\n";
}

/// `middle` stands between the intensity and the ring.
std::string textRows(const char *middle) {
  std::string text;
  std::array<char, 128> line;
  for (const Point &point : street()) {
    const int length = std::snprintf(line.data(), line.size(), "%.9g %.9g %.9g %g %s%u\n", static_cast<double>(point.x),
                                     static_cast<double>(point.y), static_cast<double>(point.z),
                                     static_cast<double>(point.intensity), middle, point.ring);
    text.append(line.data(), static_cast<std::size_t>(length));
  }
  return text;
}

std::string binaryRows(bool confidence) {
  std::string bytes;
  for (const Point &point : street()) {
    for (const float value : {point.x, point.y, point.z, point.intensity}) append(bytes, value);
    if (confidence) append(bytes, 0.0F);
    append(bytes, point.ring);
  }
  return bytes;
}

std::string columns() {
  const std::vector<Point> points = street();
  std::string bytes;
  for (float Point::*member : {&Point::x, &Point::y, &Point::z, &Point::intensity})
    for (const Point &point : points) append(bytes, point.*member);
  for (const Point &point : points) append(bytes, point.ring);
  return bytes;
}

/// A plain packer: the last place of each three bytes is tried as a reference.
std::string packLzf(const std::string &bytes) {
  constexpr std::size_t longest = 264, farthest = 8192;
  std::vector<std::size_t> places(1 << 16, bytes.size());
  std::string packed, literals;
  const auto flush = [&] {
    for (std::size_t at = 0; at < literals.size(); at += 32) {
      const std::string run = literals.substr(at, 32);
      packed += static_cast<char>(run.size() - 1) + run;
    }
    literals.clear();
  };
  for (std::size_t at = 0; at < bytes.size();) {
    std::size_t length = 0;
    std::size_t distance = 0;
    if (at + 3 <= bytes.size()) {
      std::uint32_t three = 0;
      std::memcpy(&three, bytes.data() + at, 3);
      std::size_t &place = places[three * 2654435761U >> 16];
      if (place < at && at - place <= farthest) {
        while (length < longest && at + length < bytes.size() && bytes[place + length] == bytes[at + length]) ++length;
        distance = at - place - 1;
      }
      place = at;
    }
    if (length < 3) {
      literals += bytes[at++];
      continue;
    }
    flush();
    const std::size_t field = length - 2;
    packed += static_cast<char>((field < 7 ? field : 7) << 5 | distance >> 8);
    if (field >= 7) packed += static_cast<char>(field - 7);
    packed += static_cast<char>(distance & 0xff);
    at += length;
  }
  flush();
  return packed;
}

std::string compressedFile() {
  const std::string plain = columns();
  const std::string packed = packLzf(plain);
  std::string bytes = pcdHeader("binary_compressed");
  append(bytes, static_cast<std::uint32_t>(packed.size()));
  append(bytes, static_cast<std::uint32_t>(plain.size()));
  return bytes + packed;
}

std::string binFile() {
  std::string bytes;
  append(bytes, static_cast<std::uint32_t>(pointCount));
  for (const Point &point : street()) {
    for (const float value : {point.x, point.y, point.z}) append(bytes, value);
    for (const std::uint16_t word : {static_cast<std::uint16_t>(point.intensity), std::uint16_t{0}, point.ring})
      append(bytes, word);
  }
  return bytes;
}

/// From here on every large block comes fresh from the system and goes back to it, in our readers and in the floor
/// alike: what is measured is one read of one file, not what former calls left in the heap.
void takeFreshMemory() { ::mallopt(M_MMAP_THRESHOLD, 1 << 20); }

/// The least that any reader does: the file's bytes into memory of its own, fresh for each call as a reader's points
/// are.
void plainRead(const std::string &path, std::size_t size) {
  const std::unique_ptr<char[]> target(new char[size]);
  const int descriptor = ::open(path.c_str(), O_RDONLY);
  std::size_t done = 0;
  while (done < size) {
    const ssize_t got = ::read(descriptor, target.get() + done, size - done);
    if (got <= 0) break;
    done += static_cast<std::size_t>(got);
  }
  ::close(descriptor);
  if (done != size) throw std::runtime_error("the file of the measure is gone");
}

template <typename Read>
Measure readMeasure(const char *name, std::string (*content)(), const char *suffix, Read read) {
  return {name, "1,000,000 points from one file in the page cache", [=] {
            takeFreshMemory();
            const auto folder = std::make_shared<Folder>();
            const std::string bytes = content();
            const std::string path = folder->write(std::string("frame") + suffix, bytes);
            return Bodies{[folder, path, read] { read(path); },
                          [folder, path, size = bytes.size()] { plainRead(path, size); }};
          }};
}

void readPcd(const std::string &path) {
  PcdFileReader reader;
  if (!reader.read(path) || reader.points().size() != pointCount) throw std::runtime_error("not all points were read");
}

void readPlyFile(const std::string &path) {
  if (readPly(path).size() != pointCount) throw std::runtime_error("not all points were read");
}

/// A line of /proc/self/status, in bytes.
double statusBytes(const char *name) {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);)
    if (line.rfind(name, 0) == 0) return std::strtod(line.c_str() + std::strlen(name), nullptr) * 1024.0;
  throw std::runtime_error("the system tells no memory in use");
}

/// The most that one read held at a time, beside the file's size and 40 bytes a point, which is what it may hold;
/// `blocks` come on top.
template <typename Read>
Measure memoryMeasure(const char *name, std::string (*content)(), const char *suffix, double blocks, Read read) {
  constexpr double megabyte = 1e6;
  const auto run = [=] {
    takeFreshMemory();
    const Folder folder;
    double allowed = 40.0 * pointCount + blocks;
    std::string path;
    {
      const std::string bytes = content();
      allowed += static_cast<double>(bytes.size());
      path = folder.write(std::string("frame") + suffix, bytes);
    }
    ::malloc_trim(0);
    std::ofstream("/proc/self/clear_refs") << "5";  // the peak begins anew
    const double before = statusBytes("VmRSS:");
    read(path);
    const double peak = statusBytes("VmHWM:") - before;
    std::printf("%-26s %10.3f MB %10.3f %6.2f  the most that a read holds, beside what it may hold\n", name,
                peak / megabyte, allowed / megabyte, allowed / peak);
    std::fflush(stdout);
    return true;
  };
  return {name, "", {}, run};
}

Measure expandMeasure() {
#ifdef SKARNVISOR_HAVE_LZF
  const char *const floor = "18 MB expanded; the floor is the common LZF library";
#else
  const char *const floor = "18 MB expanded; the floor is a copy of the result";
#endif
  return {"lzf_decompress", floor, [] {
            const auto plain = std::make_shared<const std::string>(columns());
            const auto packed = std::make_shared<const std::string>(packLzf(*plain));
            const auto target = std::make_shared<std::vector<char>>(plain->size());
            return Bodies{[=] {
                            if (!lzfDecompress(reinterpret_cast<const std::uint8_t *>(packed->data()),
                                               static_cast<std::uint32_t>(packed->size()),
                                               reinterpret_cast<std::uint8_t *>(target->data()),
                                               static_cast<std::uint32_t>(target->size())))
                              throw std::runtime_error("the block does not expand");
                          },
                          [=] {
#ifdef SKARNVISOR_HAVE_LZF
                            ::lzf_decompress(packed->data(), static_cast<unsigned>(packed->size()), target->data(),
                                             static_cast<unsigned>(target->size()));
#else
                            std::memcpy(target->data(), plain->data(), plain->size());
#endif
                          }};
          }};
}

/// The scan prints a line a file: not into the table of measures.
void scanQuietly(const std::string &path) {
  std::fflush(stdout);
  const int kept = ::dup(STDOUT_FILENO);
  const int nowhere = ::open("/dev/null", O_WRONLY);
  ::dup2(nowhere, STDOUT_FILENO);
  const PcdFrameList frames = scanPointFiles(QString::fromStdString(path));
  std::fflush(stdout);
  ::dup2(kept, STDOUT_FILENO);
  ::close(nowhere);
  ::close(kept);
  if (frames.size() != folderFiles) throw std::runtime_error("not all files were found");
}

void listFolder(const std::string &path) {
  DIR *const folder = ::opendir(path.c_str());
  int found = 0;
  while (const dirent *entry = ::readdir(folder)) found += entry->d_name[0] != '.' ? 1 : 0;
  ::closedir(folder);
  if (found != folderFiles) throw std::runtime_error("not all files were listed");
}

Measure folderMeasure() {
  return {"open_folder_1000_files", "names of 1,000 files read, their times taken; the floor lists the folder", [] {
            const auto folder = std::make_shared<Folder>();
            for (int i = 0; i < folderFiles; ++i)
              static_cast<void>(folder->write("frame_" + std::to_string(1'700'000'000 + i) + ".250.pcd", ""));
            const std::string path = folder->path();
            return Bodies{[folder, path] { scanQuietly(path); }, [folder, path] { listFolder(path); }};
          }};
}

std::string asciiPcd() { return pcdHeader("ascii") + textRows(""); }
std::string binaryPcd() { return pcdHeader("binary") + binaryRows(false); }
std::string asciiPly() { return plyHeader("ascii") + textRows("0 "); }
std::string binaryPly() { return plyHeader("binary_little_endian") + binaryRows(true); }

/// The shortest lines that hold points: here a point takes much more room than its text.
std::string shortLines() {
  std::string text = pcdHeader("ascii");
  for (std::size_t i = 0; i < pointCount; ++i) text += "0\n";
  return text;
}

void addMemoryMeasures(std::vector<Measure> &measures) {
  constexpr double compressedBlocks = 3.0 * 18.0 * pointCount;
  measures.push_back(memoryMeasure("memory_pcd_ascii", asciiPcd, ".pcd", 0.0, readPcd));
  measures.push_back(memoryMeasure("memory_pcd_short_lines", shortLines, ".pcd", 0.0, readPcd));
  measures.push_back(memoryMeasure("memory_pcd_binary", binaryPcd, ".pcd", 0.0, readPcd));
  measures.push_back(memoryMeasure("memory_pcd_compressed", compressedFile, ".pcd", compressedBlocks, readPcd));
  measures.push_back(memoryMeasure("memory_ply_ascii", asciiPly, ".ply", 0.0, readPlyFile));
  measures.push_back(memoryMeasure("memory_ply_binary", binaryPly, ".ply", 0.0, readPlyFile));
}

}  // namespace

void addPointFileMeasures(std::vector<Measure> &measures) {
  measures.push_back(readMeasure("read_pcd_ascii", asciiPcd, ".pcd", readPcd));
  measures.push_back(readMeasure("read_pcd_binary", binaryPcd, ".pcd", readPcd));
  measures.push_back(readMeasure("read_pcd_compressed", compressedFile, ".pcd", readPcd));
  measures.push_back(expandMeasure());
  measures.push_back(readMeasure("read_ply_ascii", asciiPly, ".ply", readPlyFile));
  measures.push_back(readMeasure("read_ply_binary", binaryPly, ".ply", readPlyFile));
  measures.push_back(readMeasure("read_bin", binFile, ".bin", [](const std::string &path) {
    BinFrame frame;
    if (readBin(path, frame) != BinResult::read) throw std::runtime_error("the file is no BIN file");
  }));
  measures.push_back(folderMeasure());
  addMemoryMeasures(measures);
}

}  // namespace tarvo::skarnvisor::bench
