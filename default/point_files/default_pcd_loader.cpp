#include "default/point_files/default_pcd_loader.h"

namespace tarvo::skarnvisor {

DefaultPcdLoader::DefaultPcdLoader(QObject *parent) : Functor(parent), m_inputFileToggle(new InputFileToggle(this)) {
  m_inputFileToggle->setExts({QStringLiteral("pcap")});
}

DefaultPcdLoader::DefaultPcdLoader() : DefaultPcdLoader(nullptr) {}

DefaultPcdLoader::~DefaultPcdLoader() = default;

}  // namespace tarvo::skarnvisor
