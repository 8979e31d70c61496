// Reads every include of the tree and holds it against the floors of the house: a folder sees the folders below it and
// what its row lists, nothing else.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

struct Layer {
  std::string folder;                   // path prefix of the files that the row speaks of
  std::vector<std::string> mayInclude;  // path prefixes that they may include, beside their own folder
};

// The most telling prefix wins: "default/frame/" is looked up before "default/".
const std::vector<Layer> &layers() {
  static const std::vector<std::string> floor2 = {"contracts/", "default/frame/", "default/models/", "default/files/",
                                                  "default/telemetry/"};
  static const auto with = [](std::vector<std::string> base, const std::vector<std::string> &more) {
    base.insert(base.end(), more.begin(), more.end());
    return base;
  };
  static const std::vector<std::string> floor3 = with(floor2, {"default/pipeline/", "default/point_files/"});
  static const std::vector<std::string> floor4 =
      with(floor3, {"default/families/", "default/zones/", "libtarvo/", "retrieval/"});
  static const std::vector<Layer> rows = {
      {"contracts/host/", {"contracts/"}},
      {"contracts/runtime/", {"contracts/"}},
      {"host/core/", {"contracts/"}},
      {"runtime/wire/", {}},
      {"runtime/", {"contracts/", "libtarvo/UdpParser/"}},
      {"libtarvo/", {"contracts/runtime/", "contracts/host/log.h"}},
      {"retrieval/", {"contracts/host/"}},
      {"default/frame/", {"contracts/runtime/", "default/models/", "default/files/"}},
      {"default/models/", {"contracts/", "default/files/"}},
      {"default/files/", {"contracts/"}},
      {"default/telemetry/", {"contracts/"}},
      {"default/pipeline/", with(floor2, {"libtarvo/UdpParser/"})},
      {"default/point_files/", floor2},
      {"default/families/", with(floor3, {"libtarvo/"})},
      {"default/zones/", with(floor3, {"libtarvo/"})},
      {"default/types/", floor4},
      {"default/entry/", with(floor4, {"default/types/"})},
      {"app/", {"contracts/", "host/core/"}},
      {"tools/sim/", {"runtime/wire/"}},
      {"tools/drive/", {"app/", "tests/window/", "tests/app/"}},
  };
  return rows;
}

const std::vector<std::string> kOurFolders = {"contracts", "host", "runtime", "libtarvo", "retrieval",
                                              "default",   "app",  "tools",   "tests",    "bench"};

bool startsWith(const std::string &text, const std::string &prefix) { return text.rfind(prefix, 0) == 0; }

const Layer *layerOf(const std::string &file) {
  const Layer *best = nullptr;
  for (const Layer &layer : layers())
    if (startsWith(file, layer.folder) && (!best || layer.folder.size() > best->folder.size())) best = &layer;
  return best;
}

bool allowed(const Layer &layer, const std::string &included) {
  if (startsWith(included, layer.folder)) return true;
  for (const std::string &prefix : layer.mayInclude)
    if (startsWith(included, prefix)) return true;
  return false;
}

std::string breachesIn(const fs::path &root) {
  static const std::regex include(R"re(^\s*#\s*include\s*"([^"]+)")re");
  std::string breaches;
  for (const std::string &folder : kOurFolders) {
    if (folder == "tests" || folder == "bench" || !fs::exists(root / folder)) continue;
    for (const fs::directory_entry &entry : fs::recursive_directory_iterator(root / folder)) {
      const std::string extension = entry.path().extension().string();
      if (extension != ".cpp" && extension != ".h") continue;
      const std::string file = fs::relative(entry.path(), root).generic_string();
      const Layer *layer = layerOf(file);
      if (!layer) {
        breaches += file + ": its folder stands in no row of the layer table\n";
        continue;
      }
      std::ifstream in(entry.path());
      std::string line;
      for (int number = 1; std::getline(in, line); ++number) {
        std::smatch match;
        if (!std::regex_search(line, match, include)) continue;
        const std::string included = match[1];
        const bool moc = included.size() > 4 && included.substr(included.size() - 4) == ".moc";
        if (moc) continue;
        if (!fs::exists(root / included))
          breaches += file + ":" + std::to_string(number) + ": \"" + included + "\" is not a path from the root\n";
        else if (!allowed(*layer, included))
          breaches += file + ":" + std::to_string(number) + ": may not include " + included + "\n";
      }
    }
  }
  return breaches;
}

TEST(IncludeLayers, NoFolderIncludesSidewaysOrUp) {
  const fs::path root = SKARNVISOR_SOURCE_DIR;
  ASSERT_TRUE(fs::exists(root / "contracts")) << root;
  const std::string breaches = breachesIn(root);
  EXPECT_TRUE(breaches.empty()) << breaches;
}

TEST(IncludeLayers, ABreachIsFound) {
  const fs::path root = fs::temp_directory_path() / ("skarnvisor-layers-" + std::to_string(::getpid()));
  fs::create_directories(root / "default/frame");
  fs::create_directories(root / "default/pipeline");
  std::ofstream(root / "default/pipeline/upper.h") << "#pragma once\n";
  std::ofstream(root / "default/frame/lower.cpp") << "#include \"default/pipeline/upper.h\"\n#include \"gone.h\"\n";
  const std::string breaches = breachesIn(root);
  fs::remove_all(root);
  EXPECT_NE(breaches.find("default/frame/lower.cpp:1: may not include"), std::string::npos) << breaches;
  EXPECT_NE(breaches.find("default/frame/lower.cpp:2: \"gone.h\""), std::string::npos) << breaches;
}

}  // namespace
